#include "backends/occt/read/step_translation.h"

#include <array>
#include <string_view>

#include <Interface_Static.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <STEPControl_Reader.hxx>
#include <StepData_Protocol.hxx>
#include <TransferBRep.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include "backends/occt/read/item_names.h"
#include "backends/occt/read/step_model.h"
#include "backends/occt/read/step_pieces.h"
#include "backends/occt/read/whole_step.h"

namespace occt {
namespace {

/// Ends of the keywords of what the file's completeness is measured by.
constexpr std::array<std::string_view, 6> kCounted = {
    "_FACE",           "FACE_SURFACE", "MANIFOLD_SOLID_BREP",
    "BREP_WITH_VOIDS", "FACETED_BREP", "SURFACE_MODEL",
};

}  // namespace

StepTranslation::StepTranslation(const step::Part21& file, const step::Products& products)
    : file_(file), products_(products) {}

bool StepTranslation::run(BinaryDocument& document, ProgressReporter& progress,
                          std::size_t pieceSize) {
    document_ = document.handle();
    prepare();
    XCAFDoc_ShapeTool::SetAutoNaming(Standard_False);
    // Without products the library must look for shapes as such. It knows the parameter only once
    // it is set up.
    STEPCAFControl_Controller::Init();
    Interface_Static::SetIVal("read.step.product.mode", products_.products.empty() ? 0 : 1);
    progress.beginPhase("reading", 0.05);
    const auto cut = cutIntoPieces(file_, products_, pieceSize);
    if (!cut) return runWhole(progress);
    progress.beginPhase("translating", 0.85);
    for (std::size_t i = 0; i < cut->pieces.size(); ++i) translate(*cut, i, progress);
    return true;
}

void StepTranslation::translate(const StepPieces& cut, std::size_t number,
                                ProgressReporter& progress) {
    const std::vector<std::uint32_t>& piece = cut.pieces[number];
    STEPCAFControl_Reader reader;
    leaveOutAttributes(reader);
    const Handle(XSControl_WorkSession) session = reader.ChangeReader().WS();
    const auto protocol = Handle(StepData_Protocol)::DownCast(session->Protocol());
    const StepModel model = readEntities(file_, piece, cut, protocol);
    session->SetModel(model.model);
    session->InitTransferReader(4);
    const double share = 1.0 / static_cast<double>(cut.pieces.size());
    const Handle(OcctProgress) indicator =
        new OcctProgress(progress, share * static_cast<double>(number), share);
    reader.Transfer(document_, indicator->Start());
    std::vector<Entity> entities;
    for (std::size_t i = 0; i < piece.size(); ++i) {
        if (asked_[piece[i]]) entities.emplace_back(piece[i], model.entities[i]);
    }
    collect(entities, session->TransferReader()->TransientProcess());
}

void StepTranslation::prepare() {
    const std::size_t count = file_.instances().size();
    asked_.assign(count, false);
    kept_.assign(count, false);
    translated_.assign(count, false);
    for (const std::string_view keyword : file_.keywords()) {
        for (const std::string_view end : kCounted) {
            if (!keyword.ends_with(end)) continue;
            for (const std::uint32_t index : file_.ofType(keyword)) asked_[index] = true;
        }
    }
    const auto keep = [this](std::uint64_t entity) {
        const std::uint32_t position = file_.position(entity);
        if (position != step::Part21::kNone) asked_[position] = kept_[position] = true;
    };
    for (const step::Product& product : products_.products) keep(product.instance);
    for (const NamedItem& item : namedItems(file_)) keep(item.entity);
}

bool StepTranslation::runWhole(ProgressReporter& progress) {
    progress.beginPhase("reading", 0.45);
    WholeStep whole;
    if (!whole.read(file_.text(), progress)) return false;
    progress.beginPhase("translating", 0.85);
    whole.transfer(products_, document_, progress);
    std::vector<Entity> entities;
    for (const auto& [number, found] : whole.entities()) {
        const std::uint32_t position = file_.position(number);
        if (position != step::Part21::kNone && asked_[position]) {
            entities.emplace_back(position, found);
        }
    }
    collect(entities, whole.process());
    return true;
}

void StepTranslation::collect(const std::vector<Entity>& entities,
                              const Handle(Transfer_TransientProcess) & process) {
    for (const auto& [position, entity] : entities) {
        if (entity.IsNull()) continue;
        const TopoDS_Shape shape = TransferBRep::ShapeResult(process, entity);
        if (shape.IsNull()) continue;
        translated_[position] = true;
        if (kept_[position]) shapes_[position] = shape;
    }
}

TopoDS_Shape StepTranslation::shape(std::uint64_t entity) const {
    const auto found = shapes_.find(file_.position(entity));
    return found == shapes_.end() ? TopoDS_Shape() : found->second;
}

bool StepTranslation::isTranslated(std::uint64_t entity) const {
    const std::uint32_t position = file_.position(entity);
    return position != step::Part21::kNone && translated_[position];
}

TDF_Label StepTranslation::label(const TopoDS_Shape& shape) const {
    TDF_Label found;
    if (shape.IsNull() || document_.IsNull()) return found;
    const auto tool = XCAFDoc_DocumentTool::ShapeTool(document_->Main());
    tool->FindShape(shape.Located(TopLoc_Location()), found);
    return found;
}

}  // namespace occt
