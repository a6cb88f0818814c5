#include "backends/occt/read/whole_step.h"

#include <istream>
#include <unordered_set>

#include <STEPControl_Reader.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_HArray1OfRepresentationItem.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_ShapeRepresentationRelationship.hxx>
#include <StepShape_ContextDependentShapeRepresentation.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include "backends/occt/read/memory_stream.h"

namespace occt {

void leaveOutAttributes(STEPCAFControl_Reader& reader) {
    reader.SetNameMode(Standard_False);
    reader.SetSHUOMode(Standard_False);
    reader.SetPropsMode(Standard_False);
    reader.SetViewMode(Standard_False);
    reader.SetColorMode(Standard_False);
    reader.SetLayerMode(Standard_False);
    reader.SetGDTMode(Standard_False);
    reader.SetMatMode(Standard_False);
}

WholeStep::WholeStep() {
    leaveOutAttributes(reader_);
}

bool WholeStep::read(std::string_view text, ProgressReporter& progress) {
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

bool WholeStep::transfer(const step::Products& products, Handle(TDocStd_Document) & document,
                         ProgressReporter& progress) {
    detachUsages(products);
    detachItems(products);
    const Handle(XSControl_WorkSession) session = reader_.ChangeReader().WS();
    session->ComputeGraph(Standard_True);
    const Handle(OcctProgress) indicator = new OcctProgress(progress);
    return reader_.Transfer(document, indicator->Start());
}

Handle(Transfer_TransientProcess) WholeStep::process() const {
    const auto& reader = const_cast<STEPCAFControl_Reader&>(reader_).ChangeReader();
    return reader.WS()->TransferReader()->TransientProcess();
}

void WholeStep::detachUsages(const step::Products& products) {
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

void WholeStep::detachItems(const step::Products& products) {
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

Handle(Standard_Transient) WholeStep::entity(std::uint64_t number) const {
    const auto found = entities_.find(number);
    return found == entities_.end() ? Handle(Standard_Transient)() : found->second;
}

}  // namespace occt
