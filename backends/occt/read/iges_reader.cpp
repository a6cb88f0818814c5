#include "backends/occt/read/iges_reader.h"

#include <utility>

#include <IGESControl_Controller.hxx>

#include "backends/occt/read/body_writer.h"
#include "backends/occt/read/iges_structure.h"
#include "backends/occt/read/iges_text.h"
#include "backends/occt/read/iges_translation.h"
#include "backends/occt/step/pmi_text.h"
#include "backends/occt/step/units.h"

namespace occt {
namespace {

using HPS::Exchange::ImportCause;

struct GlobalField {
    std::size_t number;
    const char* name;
};

/// Parameters of the global section that say something to people.
constexpr GlobalField kFields[] = {
    {3, "Header Product ID"},
    {4, "Header File Name"},
    {18, "Header Time Stamp"},
    {21, "Header Author"},
    {22, "Header Organization"},
    {6, "Header Preprocessor"},
    {5, "Header Originating System"},
    {12, "Header Receiver Product ID"},
    {15, "Header Unit"},
    {25, "Header Modified"},
    {26, "Header Application Protocol"},
};

constexpr std::size_t kVersionField = 23;
constexpr const char* kVersions[] = {"IGES 1.0", "IGES 1.0", "IGES 2.0", "IGES 2.0",
                                     "IGES 3.0", "IGES 3.0", "IGES 4.0", "IGES 4.0",
                                     "IGES 5.0", "IGES 5.1", "IGES 5.2", "IGES 5.3"};

constexpr std::size_t kStandardField = 24;
constexpr const char* kStandards[] = {"", "ISO", "AFNOR", "ANSI", "BSI", "CSA", "DIN", "JIS"};

std::vector<HPS::MetadataValue> metadataOf(const iges::Text& text) {
    std::vector<HPS::MetadataValue> out;
    const auto add = [&out](const char* name, const std::string& written) {
        std::string value = step::oneLine(written);
        if (!value.empty()) out.push_back({name, std::move(value)});
    };
    add("Header Description", text.remarks());
    for (const GlobalField& field : kFields) add(field.name, text.global(field.number).text);
    const std::size_t version = text.global(kVersionField).pointer();
    if (version > 0 && version < std::size(kVersions)) {
        out.push_back({"Header Schema", std::string(kVersions[version])});
    }
    const std::size_t standard = text.global(kStandardField).pointer();
    if (standard > 0 && standard < std::size(kStandards)) {
        out.push_back({"Header Drafting Standard", std::string(kStandards[standard])});
    }
    return out;
}

class IgesReader {
public:
    IgesReader(const ReadRequest& request, DescribedModel& out)
        : request_(request),
          out_(out),
          text_(request.bytes),
          bodies_(request, out),
          unit_(step::namedUnit(iges::namedUnitMm(text_))) {}

    std::optional<ImportCause> run() {
        if (text_.entities().empty()) return damaged();
        request_.progress.beginPhase("reading", 0.45);
        structure_ = iges::readStructure(text_);
        if (!translation_.read(request_.name)) return damaged();
        request_.progress.beginPhase("translating", 0.85);
        describe();
        bodies_.finish();
        tellGaps();
        return std::nullopt;
    }

private:
    ImportCause damaged() const {
        std::string text = request_.name + " is damaged: ";
        if (text_.brokenLines() > 0) {
            text += "line " + std::to_string(text_.firstBroken()) + " is of no section.";
        } else if (!text_.isWhole()) {
            text +=
                "it ends in line " + std::to_string(text_.lineCount()) + ", before its data end.";
        } else {
            text += "it holds nothing that can be read.";
        }
        return {"damaged", text};
    }

    void describe() {
        Description& description = out_.description;
        description.unitMm = unit_.lengthMm;
        if (request_.options.attributes) description.fileMetadata = metadataOf(text_);
        const std::size_t count = structure_.nodes.size();
        for (const iges::Node& node : structure_.nodes) addDefinition(node);
        for (std::size_t i = 0; i < count; ++i) {
            addContent(i);
            request_.progress.report(static_cast<double>(i + 1) / static_cast<double>(count));
        }
        description.root = rootOf();
    }

    void addDefinition(const iges::Node& node) {
        DescribedDefinition definition;
        definition.isAssembly = !node.usages.empty();
        definition.name =
            !node.name.empty() ? node.name : (definition.isAssembly ? "Assembly" : "Part");
        definition.unitMm = unit_.lengthMm;
        definition.unitName = unit_.name;
        for (const iges::Usage& usage : node.usages) {
            definition.usages.push_back(
                {static_cast<std::uint32_t>(usage.node), usage.placement, {}});
        }
        out_.description.definitions.push_back(std::move(definition));
    }

    /// Bodies of an assembly's own stand below one more leaf, named like it.
    void addContent(std::size_t number) {
        auto& definitions = out_.description.definitions;
        std::size_t holder = number;
        for (const auto& entities : structure_.nodes[number].shapes) {
            const TopoDS_Shape shape = translation_.shape(text_, entities);
            if (shape.IsNull()) continue;
            if (holder == number && definitions[number].isAssembly) {
                holder = definitions.size();
                DescribedDefinition leaf;
                leaf.name = definitions[number].name;
                leaf.unitMm = unit_.lengthMm;
                leaf.unitName = unit_.name;
                definitions.push_back(std::move(leaf));
                definitions[number].usages.push_back(
                    {static_cast<std::uint32_t>(holder), kNoMove, {}});
            }
            bodies_.add(holder, shape, [this](const TopoDS_Shape& body) { return nameOf(body); });
        }
    }

    std::string nameOf(const TopoDS_Shape& body) const {
        const std::uint32_t entity = translation_.entityOf(body);
        return entity == 0 ? std::string() : iges::nameOf(text_, entity);
    }

    /// A file with one thing in it is that thing.
    std::uint32_t rootOf() const {
        const auto& definitions = out_.description.definitions;
        std::uint32_t root = 0;
        while (definitions[root].usages.size() == 1 && root < structure_.nodes.size() &&
               structure_.nodes[root].shapes.empty() && structure_.nodes[root].name.empty() &&
               definitions[root].usages[0].placement == kNoMove) {
            root = definitions[root].usages[0].definition;
        }
        return root;
    }

    void tellGaps() {
        std::vector<std::string>& gaps = out_.description.gaps;
        if (!text_.isWhole()) {
            gaps.emplace_back("The last line of the file is missing or counts other lines.");
        }
        if (text_.brokenLines() > 0) {
            gaps.push_back(std::to_string(text_.brokenLines()) +
                           " lines of the file could not be read, the first is line " +
                           std::to_string(text_.firstBroken()) + ".");
        }
        if (text_.brokenEntries() > 0) {
            gaps.push_back(std::to_string(text_.brokenEntries()) +
                           " entries of the file's directory could not be read.");
        }
        if (structure_.brokenUsages > 0) {
            gaps.push_back(std::to_string(structure_.usageCount - structure_.brokenUsages) +
                           " of " + std::to_string(structure_.usageCount) + " usages were read.");
        }
        if (structure_.unread > 0) {
            gaps.push_back(std::to_string(structure_.unread) +
                           " arrays, networks and references to other files were not read.");
        }
        for (std::string& gap : translation_.gaps(text_, structure_)) {
            gaps.push_back(std::move(gap));
        }
    }

    const ReadRequest& request_;
    DescribedModel& out_;
    iges::Text text_;
    BodyWriter bodies_;
    step::NamedUnit unit_;
    iges::Structure structure_;
    IgesTranslation translation_;
};

}  // namespace

std::optional<ImportCause> readIges(const ReadRequest& request, DescribedModel& out) {
    IGESControl_Controller::Init();
    return IgesReader(request, out).run();
}

}  // namespace occt
