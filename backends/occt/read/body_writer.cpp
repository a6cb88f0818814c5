#include "backends/occt/read/body_writer.h"

#include <BRep_Tool.hxx>
#include <TCollection_AsciiString.hxx>
#include <TCollection_ExtendedString.hxx>
#include <TDF_Tool.hxx>
#include <TDataStd_Name.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/occt/read/bodies.h"
#include "backends/occt/read/item_names.h"
#include "platform/hps/component_type.h"

namespace occt {
namespace {

using HPS::Exchange::BRepMode;

/// Whether the faces of a body are triangles without a surface.
bool isMesh(const TopoDS_Shape& body) {
    const TopExp_Explorer face(body, TopAbs_FACE);
    if (!face.More()) return false;
    TopLoc_Location location;
    return BRep_Tool::Surface(TopoDS::Face(face.Current()), location).IsNull();
}

}  // namespace

std::string entryOf(const TDF_Label& label) {
    TCollection_AsciiString entry;
    TDF_Tool::Entry(label, entry);
    return entry.ToCString();
}

BodyWriter::BodyWriter(const ReadRequest& request, DescribedModel& out)
    : request_(request), out_(out) {}

TDF_Label BodyWriter::labelOf(const TopoDS_Shape& shape, const std::string& name) {
    const auto tool = XCAFDoc_DocumentTool::ShapeTool(request_.document.handle()->Main());
    const TDF_Label label = tool->AddShape(shape, Standard_False, Standard_False);
    TDataStd_Name::Set(label, TCollection_ExtendedString(name.c_str(), Standard_True));
    return label;
}

void BodyWriter::add(std::size_t definition, const TopoDS_Shape& shape, const NameOf& nameOf) {
    DescribedDefinition& part = out_.description.definitions[definition];
    const bool meshOnly = request_.options.brepMode == BRepMode::TessellationOnly;
    std::string common;
    for (Body& body : collectBodies(shape, request_.options)) {
        DescribedItem item;
        item.type = body.type;
        item.name = nameOf ? nameOf(body.shape) : std::string();
        const bool isBrep = body.type == HPS::ComponentType::BrepModel;
        if (isBrep && isMesh(body.shape)) item.type = HPS::ComponentType::PolyBrepModel;
        if (meshOnly && item.type == HPS::ComponentType::BrepModel) {
            body.shape = meshOf(body.shape, request_.options.tessellationLevel);
            if (body.shape.IsNull()) continue;
            item.type = HPS::ComponentType::PolyBrepModel;
            item.label = entryOf(labelOf(body.shape, part.name));
        } else {
            if (common.empty()) common = entryOf(labelOf(shape, part.name));
            item.label = common;
            item.path = std::move(body.path);
        }
        shapes_[{definition, part.items.size()}] = body.shape;
        part.items.push_back(std::move(item));
    }
}

void BodyWriter::finish() {
    auto& definitions = out_.description.definitions;
    for (DescribedDefinition& definition : definitions) makeUnique(definition.items);
    for (const auto& [place, shape] : shapes_) {
        out_.measurements.push_back({shape, &definitions[place.first].items[place.second]});
    }
}

}  // namespace occt
