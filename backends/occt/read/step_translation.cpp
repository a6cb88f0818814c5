#include "backends/occt/read/step_translation.h"

#include <istream>
#include <unordered_set>

#include <Interface_Static.hxx>
#include <STEPControl_Reader.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_ShapeRepresentationRelationship.hxx>
#include <StepShape_ContextDependentShapeRepresentation.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include "backends/occt/read/memory_stream.h"

namespace occt {

StepTranslation::StepTranslation() {
    // Names are taken from the file's text, which keeps every character of them.
    reader_.SetNameMode(Standard_False);
    reader_.SetSHUOMode(Standard_False);
    reader_.SetPropsMode(Standard_False);
    reader_.SetViewMode(Standard_False);
    reader_.SetColorMode(Standard_False);
    reader_.SetLayerMode(Standard_False);
    reader_.SetGDTMode(Standard_False);
    reader_.SetMatMode(Standard_False);
}

bool StepTranslation::read(const std::string& text, ProgressReporter& progress) {
    MemoryBuffer buffer(text, [&progress](double share) { progress.report(share); });
    std::istream stream(&buffer);
    if (reader_.ChangeReader().ReadStream("model", stream) != IFSelect_RetDone) return false;
    const auto model = Handle(StepData_StepModel)::DownCast(reader_.ChangeReader().Model());
    if (model.IsNull() || model->NbEntities() == 0) return false;
    entities_.reserve(static_cast<std::size_t>(model->NbEntities()));
    for (int i = 1; i <= model->NbEntities(); ++i) {
        const Handle(Standard_Transient)& found = model->Value(i);
        const int number = model->IdentLabel(found);
        if (number > 0) entities_[static_cast<std::uint64_t>(number)] = found;
    }
    return true;
}

bool StepTranslation::transfer(const step::Products& products,

                               BinaryDocument& document, ProgressReporter& progress) {
    document_ = document.handle();
    detachUsages(products);
    detachItems(products);
    const Handle(XSControl_WorkSession) session = reader_.ChangeReader().WS();
    session->ComputeGraph(Standard_True);
    XCAFDoc_ShapeTool::SetAutoNaming(Standard_False);
    // Without products the reader must look for shapes as such.
    if (products.products.empty()) Interface_Static::SetIVal("read.step.product.mode", 0);
    const Handle(OcctProgress) indicator = new OcctProgress(progress);
    return reader_.Transfer(document_, indicator->Start());
}

void StepTranslation::detachUsages(const step::Products& products) {
    for (const auto& [number, found] : entities_) {
        const auto usage = Handle(StepRepr_NextAssemblyUsageOccurrence)::DownCast(found);
        if (usage.IsNull()) continue;
        usage->SetRelatingProductDefinition(nullptr);
        usage->SetRelatedProductDefinition(nullptr);
    }
    if (products.usageCount == 0) return;
    for (const auto& [number, found] : entities_) {
        const auto placed = Handle(StepShape_ContextDependentShapeRepresentation)::DownCast(found);
        if (placed.IsNull()) continue;
        const auto relation = placed->RepresentationRelation();
        if (relation.IsNull()) continue;
        relation->SetRep1(nullptr);
        relation->SetRep2(nullptr);
    }
}

void StepTranslation::detachItems(const step::Products& products) {
    if (products.usageItems.empty()) return;
    std::unordered_set<const Standard_Transient*> items;
    for (const std::uint64_t number : products.usageItems) {
        items.insert(entity(number).get());
    }
    for (const step::Product& product : products.products) {
        if (product.usages.empty()) continue;
        for (const std::uint64_t number : product.representations) {
            const auto representation = Handle(StepRepr_Representation)::DownCast(entity(number));
            if (representation.IsNull() || representation->Items().IsNull()) continue;
            std::vector<Handle(StepRepr_RepresentationItem)> kept;
            for (int i = 1; i <= representation->NbItems(); ++i) {
                const auto item = representation->ItemsValue(i);
                if (items.count(item.get()) == 0) kept.push_back(item);
            }
            Handle(StepRepr_HArray1OfRepresentationItem) array;
            if (!kept.empty()) {
                array = new StepRepr_HArray1OfRepresentationItem(1, static_cast<int>(kept.size()));
                for (std::size_t i = 0; i < kept.size(); ++i) {
                    array->SetValue(static_cast<int>(i) + 1, kept[i]);
                }
            }
            representation->SetItems(array);
        }
    }
}

Handle(Standard_Transient) StepTranslation::entity(std::uint64_t number) const {
    const auto found = entities_.find(number);
    return found == entities_.end() ? Handle(Standard_Transient)() : found->second;
}

TopoDS_Shape StepTranslation::shape(std::uint64_t number) const {
    const Handle(Standard_Transient) found = entity(number);
    if (found.IsNull()) return {};
    const auto& reader = const_cast<STEPCAFControl_Reader&>(reader_).ChangeReader();
    const auto process = reader.WS()->TransferReader()->TransientProcess();
    return TransferBRep::ShapeResult(process, found);
}

TDF_Label StepTranslation::label(const TopoDS_Shape& shape) const {
    TDF_Label found;
    if (shape.IsNull() || document_.IsNull()) return found;
    const auto tool = XCAFDoc_DocumentTool::ShapeTool(document_->Main());
    tool->FindShape(shape.Located(TopLoc_Location()), found);
    return found;
}

}  // namespace occt
