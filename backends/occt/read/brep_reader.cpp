#include "backends/occt/read/brep_reader.h"

#include <algorithm>
#include <ios>
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
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_TShape.hxx>

#include "backends/occt/read/body_writer.h"
#include "backends/occt/read/brep_text.h"
#include "backends/occt/step/units.h"

namespace occt {
namespace {

using HPS::Exchange::ImportCause;

// An entry takes a few bytes at the least, in either form.
constexpr std::size_t kSmallestEntryBytes = 2;

std::string lineOf(std::string_view bytes, std::size_t offset) {
    const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(std::min(offset, bytes.size()));
    return "line " + std::to_string(1 + std::count(bytes.begin(), end, '\n'));
}

/// Distinct shapes of a file.
struct ShapeCount {
    std::size_t all = 0;
    std::size_t faces = 0;
    std::size_t emptyFaces = 0;  ///< with neither a surface nor triangles
    std::size_t surfaces = 0;    ///< faces with a surface
    std::size_t edges = 0;
    std::size_t curves = 0;  ///< edges with a curve in space
};

void addFace(const TopoDS_Face& face, ShapeCount& count) {
    TopLoc_Location location;
    ++count.faces;
    if (!BRep_Tool::Surface(face, location).IsNull()) {
        ++count.surfaces;
    } else if (BRep_Tool::Triangulation(face, location).IsNull()) {
        ++count.emptyFaces;
    }
}

void addEdge(const TopoDS_Edge& edge, ShapeCount& count) {
    TopLoc_Location location;
    double first = 0.0;
    double last = 0.0;
    ++count.edges;
    if (!BRep_Tool::Curve(edge, location, first, last).IsNull()) ++count.curves;
}

/// Counts a shape and what lies below it.
ShapeCount countShapes(const TopoDS_Shape& root) {
    ShapeCount count;
    std::unordered_set<const TopoDS_TShape*> known = {root.TShape().get()};
    std::vector<TopoDS_Shape> open = {root};
    while (!open.empty()) {
        const TopoDS_Shape shape = open.back();
        open.pop_back();
        if (shape.ShapeType() == TopAbs_FACE) addFace(TopoDS::Face(shape), count);
        if (shape.ShapeType() == TopAbs_EDGE) addEdge(TopoDS::Edge(shape), count);
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

/// What the file announces or held when it was read, and its shapes lack.
void addGaps(const ShapeCount& found, const ShapeCount& declared, std::vector<std::string>& gaps) {
    const auto of = [](std::size_t some, std::size_t all) {
        return std::to_string(some) + " of " + std::to_string(all);
    };
    if (found.all < declared.all) {
        gaps.push_back(of(found.all, declared.all) + " shapes were read.");
    }
    const std::size_t surfaces = std::max(declared.surfaces, found.surfaces + found.emptyFaces);
    if (found.surfaces < surfaces) {
        gaps.push_back(of(surfaces - found.surfaces, std::max(found.faces, surfaces)) +
                       " faces have no surface that could be read.");
    }
    if (found.curves < declared.curves) {
        gaps.push_back(of(declared.curves - found.curves, std::max(found.edges, declared.curves)) +
                       " edges have no curve that could be read.");
    }
}

class BrepFile {
public:
    explicit BrepFile(const ReadRequest& request)
        : request_(request), sections_(brepSections(request.bytes)) {
        const std::size_t text = request.bytes.find("CASCADE Topology V");
        isBinary_ = text >= 5 && text != std::string::npos &&
                    request.bytes.compare(text - 5, 5, "Open ") == 0;
    }

    /// What the sections' heads show to be wrong.
    std::optional<ImportCause> refuse() const {
        for (const BrepSection& section : sections_) {
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
        // The library asks again and again for what is not there and takes each failed answer for
        // the one before, so that the first failure has to end it. A number at the very end would
        // be one.
        std::istringstream stream(isBinary_ ? request_.bytes : request_.bytes + '\n');
        stream.imbue(std::locale::classic());
        stream.exceptions(std::ios::eofbit | std::ios::failbit | std::ios::badbit);
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
        } catch (const std::ios_base::failure&) {
            shape.Nullify();
        }
        if (!shape.IsNull()) return std::nullopt;
        stream.exceptions(std::ios::goodbit);
        stream.clear();
        const auto reached = static_cast<std::streamoff>(stream.tellg());
        const std::size_t offset =
            reached > 0 ? static_cast<std::size_t>(reached) : request_.bytes.size();
        return damaged("its shapes cannot be read (reading went as far as " +
                       where(std::min(offset, request_.bytes.size())) + ")");
    }

    /// What a sound import of the file holds at the least.
    ShapeCount declared(const TopoDS_Shape& read) const {
        ShapeCount count = countShapes(read);
        count.all = static_cast<std::size_t>(sections_.back().count.value_or(0));
        if (isBinary_) return count;
        const BrepGeometry named = brepGeometry(request_.bytes, sections_.back().offset);
        count.surfaces = std::max(count.surfaces, named.surfaces);
        count.curves = std::max(count.curves, named.curves);
        return count;
    }

    ImportCause damaged(const std::string& why) const {
        return {"damaged", request_.name + " is damaged: " + why + "."};
    }

private:
    std::string where(std::size_t offset) const {
        return isBinary_ ? "byte " + std::to_string(offset) : lineOf(request_.bytes, offset);
    }

    const ReadRequest& request_;
    std::vector<BrepSection> sections_;
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
    addGaps(countShapes(kept), file.declared(shape), out.description.gaps);
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
