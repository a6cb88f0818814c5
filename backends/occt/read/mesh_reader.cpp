#include "backends/occt/read/mesh_reader.h"

#include <BRep_Builder.hxx>
#include <TDataStd_Name.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/mesh/bodies.h"
#include "backends/mesh/scene.h"
#include "backends/occt/read/body_writer.h"
#include "backends/occt/read/item_names.h"
#include "backends/occt/read/mesh_shapes.h"
#include "platform/hps/component_type.h"

namespace occt {
namespace {

using HPS::Exchange::ImportCause;

constexpr const char* kPartWord = "Part";
constexpr const char* kAssemblyWord = "Assembly";

/// Takes a scene over into a description and a document.
class SceneWriter {
public:
    SceneWriter(mesh::Scene scene, const ReadRequest& request, DescribedModel& out)
        : scene_(std::move(scene)),
          request_(request),
          out_(out),
          tool_(XCAFDoc_DocumentTool::ShapeTool(request.document.handle()->Main())) {}

    void run() {
        Description& description = out_.description;
        description.unitMm = scene_.unitMm;
        description.root = scene_.root;
        description.gaps = std::move(scene_.gaps);
        out_.warnings = std::move(scene_.warnings);
        if (request_.options.attributes) addMetadata(scene_.metadata, description.fileMetadata);
        const std::size_t count = scene_.definitions.size();
        definitions().resize(count);
        shapes_.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            addDefinition(i);
            request_.progress.report(static_cast<double>(i + 1) / static_cast<double>(count));
        }
        listMeasurements();
    }

private:
    std::vector<DescribedDefinition>& definitions() { return out_.description.definitions; }

    static void addMetadata(const std::vector<mesh::Metadata>& from,
                            std::vector<HPS::MetadataValue>& to) {
        for (const auto& [name, text] : from) to.push_back({name, text});
    }

    void addDefinition(std::size_t number) {
        mesh::Definition from = std::move(scene_.definitions[number]);
        DescribedDefinition& definition = definitions()[number];
        definition.isAssembly = !from.usages.empty();
        definition.name = !from.name.empty()      ? from.name
                          : definition.isAssembly ? kAssemblyWord
                                                  : kPartWord;
        setUnit(definition);
        if (request_.options.attributes) addMetadata(from.metadata, definition.metadata);
        for (const mesh::Usage& usage : from.usages) {
            definition.usages.push_back({usage.definition, usage.placement, {}});
        }
        if (from.bodies.empty()) return;
        std::size_t holder = number;
        if (definition.isAssembly) {
            // Bodies of an assembly's own stand below one more leaf, named like it.
            holder = definitions().size();
            definition.usages.push_back({static_cast<std::uint32_t>(holder), kNoMove, {}});
            DescribedDefinition leaf;
            leaf.name = definition.name;
            setUnit(leaf);
            definitions().push_back(std::move(leaf));
            shapes_.emplace_back();
        }
        addBodies(holder, from.bodies);
    }

    void setUnit(DescribedDefinition& definition) const {
        definition.unitMm = scene_.unitMm;
        definition.unitName = scene_.unitName;
    }

    bool wanted(const mesh::Body& body) const {
        const auto& options = request_.options;
        if (options.solids == options.surfaces) return options.solids;
        return mesh::isClosed(body.triangles, body.pointsMm.size()) == options.solids;
    }

    void addBodies(std::size_t number, std::vector<mesh::Body>& bodies) {
        DescribedDefinition& definition = definitions()[number];
        const BRep_Builder builder;
        TopoDS_Compound all;
        builder.MakeCompound(all);
        for (mesh::Body& body : bodies) {
            if (!wanted(body)) continue;
            const TopoDS_Shape shape = shapeOf(body);
            DescribedItem item;
            item.type = HPS::ComponentType::PolyBrepModel;
            item.name = body.name;
            item.path.push_back(static_cast<std::uint32_t>(definition.items.size()));
            builder.Add(all, shape);
            definition.items.push_back(std::move(item));
            shapes_[number].push_back(shape);
            body = {};  // large ones would be there twice
        }
        if (definition.items.empty()) return;
        const TDF_Label label = tool_->AddShape(all, Standard_False, Standard_False);
        TDataStd_Name::Set(label,
                           TCollection_ExtendedString(definition.name.c_str(), Standard_True));
        const std::string entry = entryOf(label);
        for (DescribedItem& item : definition.items) item.label = entry;
        makeUnique(definition.items);
    }

    void listMeasurements() {
        for (std::size_t i = 0; i < shapes_.size(); ++i) {
            for (std::size_t k = 0; k < shapes_[i].size(); ++k) {
                out_.measurements.push_back({shapes_[i][k], &definitions()[i].items[k]});
            }
        }
    }

    mesh::Scene scene_;
    const ReadRequest& request_;
    DescribedModel& out_;
    Handle(XCAFDoc_ShapeTool) tool_;
    std::vector<std::vector<TopoDS_Shape>> shapes_;  ///< of each definition's items
};

std::optional<ImportCause> readMesh(mesh::Format format, const ReadRequest& request,
                                    DescribedModel& out) {
    request.progress.beginPhase("reading", 0.45);
    mesh::Outcome outcome = mesh::read(format, request.bytes, request.otherFile);
    if (outcome.refusal) {
        return ImportCause{outcome.refusal->code, request.name + " " + outcome.refusal->text};
    }
    request.progress.beginPhase("translating", 0.85);
    SceneWriter(std::move(outcome.scene), request, out).run();
    return std::nullopt;
}

}  // namespace

std::optional<ImportCause> readStl(const ReadRequest& request, DescribedModel& out) {
    return readMesh(mesh::Format::Stl, request, out);
}

std::optional<ImportCause> readObj(const ReadRequest& request, DescribedModel& out) {
    return readMesh(mesh::Format::Obj, request, out);
}

std::optional<ImportCause> readPly(const ReadRequest& request, DescribedModel& out) {
    return readMesh(mesh::Format::Ply, request, out);
}

std::optional<ImportCause> readGltf(const ReadRequest& request, DescribedModel& out) {
    return readMesh(mesh::Format::Gltf, request, out);
}

std::optional<ImportCause> readThreeMf(const ReadRequest& request, DescribedModel& out) {
    return readMesh(mesh::Format::ThreeMf, request, out);
}

}  // namespace occt
