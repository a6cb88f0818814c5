#include "backends/occt/read/brep_reader.h"

#include <algorithm>
#include <charconv>
#include <locale>
#include <optional>
#include <sstream>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <BinTools.hxx>
#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_TShape.hxx>

#include "backends/occt/read/body_writer.h"
#include "backends/occt/step/units.h"

namespace occt {
namespace {

using HPS::Exchange::ImportCause;

// An entry takes a few bytes at the least, in either form.
constexpr std::size_t kSmallestEntryBytes = 2;

/// One section of a file and how many entries it announces.
struct Section {
    std::string_view name;
    std::size_t offset = 0;
    std::optional<std::uint64_t> count;
};

/// Sections in the order in which both forms write them.
std::vector<Section> sectionsOf(std::string_view bytes) {
    constexpr std::string_view names[] = {
        "Locations", "Curve2ds",       "Curves", "Polygon3D", "PolygonOnTriangulations",
        "Surfaces",  "Triangulations", "TShapes"};
    std::vector<Section> sections;
    std::size_t at = 0;
    for (const std::string_view name : names) {
        const std::size_t found = bytes.find("\n" + std::string(name) + " ", at);
        if (found == std::string_view::npos) continue;
        Section section{name, found + 1, std::nullopt};
        const char* const number = bytes.data() + found + name.size() + 2;
        std::uint64_t count = 0;
        const auto parsed = std::from_chars(number, bytes.data() + bytes.size(), count);
        if (parsed.ec == std::errc()) section.count = count;
        sections.push_back(section);
        at = section.offset;
    }
    return sections;
}

std::string lineOf(std::string_view bytes, std::size_t offset) {
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(offset, bytes.size()));
    return "line " + std::to_string(1 + std::count(bytes.begin(), end, '\n'));
}

/// Distinct shapes of a file.
struct ShapeCount {
    std::size_t all = 0;
    std::size_t faces = 0;
    std::size_t emptyFaces = 0;  ///< with neither a surface nor triangles
};

bool isEmptyFace(const TopoDS_Shape& shape) {
    TopLoc_Location location;
    const TopoDS_Face& face = TopoDS::Face(shape);
    return BRep_Tool::Surface(face, location).IsNull() &&
           BRep_Tool::Triangulation(face, location).IsNull();
}

/// Counts a shape and what lies below it.
ShapeCount countShapes(const TopoDS_Shape& root) {
    ShapeCount count;
    std::unordered_set<const TopoDS_TShape*> known = {root.TShape().get()};
    std::vector<TopoDS_Shape> open = {root};
    while (!open.empty()) {
        const TopoDS_Shape shape = open.back();
        open.pop_back();
        if (shape.ShapeType() == TopAbs_FACE) {
            ++count.faces;
            count.emptyFaces += isEmptyFace(shape) ? 1 : 0;
        }
        for (TopoDS_Iterator child(shape); child.More(); child.Next()) {
            const TopoDS_Shape& below = child.Value();
            if (below.IsNull() || !known.insert(below.TShape().get()).second) continue;
            open.push_back(below);
        }
    }
    count.all = known.size();
    return count;
}

/// The shape as it comes back from a document. Numbers beyond sense survive in memory, but not the
/// way to the host. Null when nothing comes back.
TopoDS_Shape throughDocument(const TopoDS_Shape& shape) {
    std::stringstream stream(std::ios::in | std::ios::out | std::ios::binary);
    stream.imbue(std::locale::classic());
    TopoDS_Shape back;
    try {
        BinTools::Write(shape, stream);
        BinTools::Read(back, stream);
    } catch (const Standard_OutOfMemory&) {
        throw;
    } catch (const Standard_Failure&) {
        back.Nullify();
    }
    return back;
}

/// What the file announces and its shapes lack.
void addGaps(const ShapeCount& found, std::uint64_t declared, std::vector<std::string>& gaps) {
    if (found.all < declared) {
        gaps.push_back(std::to_string(found.all) + " of " + std::to_string(declared) +
                       " shapes were read.");
    }
    if (found.emptyFaces > 0) {
        gaps.push_back(std::to_string(found.emptyFaces) + " of " + std::to_string(found.faces) +
                       " faces have no surface that could be read.");
    }
}

class BrepFile {
public:
    explicit BrepFile(const ReadRequest& request)
        : request_(request), sections_(sectionsOf(request.bytes)) {
        const std::size_t text = request.bytes.find("CASCADE Topology V");
        isBinary_ = text >= 5 && text != std::string::npos &&
                    request.bytes.compare(text - 5, 5, "Open ") == 0;
    }

    /// What the sections' heads show to be wrong.
    std::optional<ImportCause> refuse() const {
        for (const Section& section : sections_) {
            const bool fits =
                section.count && *section.count <= request_.bytes.size() / kSmallestEntryBytes;
            if (fits) continue;
            return damaged("the number of its " + std::string(section.name) + " in " +
                           where(section.offset) + " cannot be");
        }
        if (sections_.empty() || sections_.back().name != "TShapes") {
            return damaged("it ends in " + where(request_.bytes.size()) +
                           ", before its shapes begin");
        }
        return std::nullopt;
    }

    std::optional<ImportCause> read(TopoDS_Shape& shape) const {
        std::istringstream stream(request_.bytes);
        stream.imbue(std::locale::classic());
        const Handle(OcctProgress) progress = new OcctProgress(request_.progress);
        try {
            if (isBinary_) {
                BinTools::Read(shape, stream, progress->Start());
            } else {
                BRepTools::Read(shape, stream, BRep_Builder(), progress->Start());
            }
        } catch (const Standard_OutOfMemory&) {
            throw;
        } catch (const Standard_Failure&) {
            shape.Nullify();
        }
        if (!shape.IsNull()) return std::nullopt;
        stream.clear();
        const auto reached = static_cast<std::streamoff>(stream.tellg());
        const std::size_t offset =
            reached > 0 ? static_cast<std::size_t>(reached) : request_.bytes.size();
        return damaged("its shapes cannot be read (reading went as far as " + where(offset) + ")");
    }

    ImportCause damaged(const std::string& why) const {
        return {"damaged", request_.name + " is damaged: " + why + "."};
    }

    std::uint64_t declaredShapes() const { return sections_.back().count.value_or(0); }

private:
    std::string where(std::size_t offset) const {
        return isBinary_ ? "byte " + std::to_string(offset) : lineOf(request_.bytes, offset);
    }

    const ReadRequest& request_;
    std::vector<Section> sections_;
    bool isBinary_ = false;
};

}  // namespace

std::optional<ImportCause> readBrep(const ReadRequest& request, DescribedModel& out) {
    const BrepFile file(request);
    if (auto cause = file.refuse()) return cause;
    request.progress.beginPhase("reading", 0.85);
    TopoDS_Shape shape;
    if (auto cause = file.read(shape)) return cause;
    const TopoDS_Shape kept = throughDocument(shape);
    if (kept.IsNull()) return file.damaged("its shapes hold numbers that cannot be");
    addGaps(countShapes(kept), file.declaredShapes(), out.description.gaps);
    DescribedDefinition part;
    part.name = "Part";
    const step::NamedUnit unit = step::namedUnit(1.0);
    part.unitMm = unit.lengthMm;
    part.unitName = unit.name;
    out.description.unitMm = unit.lengthMm;
    out.description.definitions.push_back(std::move(part));
    BodyWriter bodies(request, out);
    bodies.add(0, shape);
    bodies.finish();
    return std::nullopt;
}

}  // namespace occt
