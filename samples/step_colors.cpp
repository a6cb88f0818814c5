#include "samples/step_colors.h"

#include <Interface_InterfaceModel.hxx>
#include <STEPConstruct_Styles.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepShape_ShapeRepresentation.hxx>
#include <StepVisual_Colour.hxx>
#include <StepVisual_MechanicalDesignGeometricPresentationRepresentation.hxx>
#include <StepVisual_PresentationStyleAssignment.hxx>
#include <StepVisual_StyledItem.hxx>
#include <TopExp_Explorer.hxx>

namespace samples {

namespace {

/// Context of the representation that holds one of these items.
Handle(StepRepr_RepresentationContext) contextOf(const Handle(Interface_InterfaceModel) & model,
                                                 const Handle(StepRepr_RepresentationItem) & item) {
    for (Standard_Integer i = 1; i <= model->NbEntities(); ++i) {
        const auto shape = Handle(StepShape_ShapeRepresentation)::DownCast(model->Value(i));
        if (shape.IsNull()) continue;
        for (Standard_Integer k = 1; k <= shape->NbItems(); ++k) {
            if (shape->ItemsValue(k) == item) return shape->ContextOfItems();
        }
    }
    return {};
}

}  // namespace

void addColors(const Handle(XSControl_WorkSession) & session,
               const std::vector<PartColor>& colors) {
    for (const PartColor& entry : colors) {
        STEPConstruct_Styles styles(session);
        const Handle(StepVisual_Colour) color = STEPConstruct_Styles::EncodeColor(entry.color);
        const Handle(StepVisual_PresentationStyleAssignment) style = styles.MakeColorPSA(
            Handle(StepRepr_RepresentationItem)(), color, color, Handle(StepVisual_Colour)(), 0.0);
        Handle(StepRepr_RepresentationContext) context;
        for (TopExp_Explorer solids(entry.shape, TopAbs_SOLID); solids.More(); solids.Next()) {
            const auto styled =
                styles.AddStyle(solids.Current(), style, Handle(StepVisual_StyledItem)());
            if (styled.IsNull() || !context.IsNull()) continue;
            context = contextOf(session->Model(), styled->Item());
        }
        Handle(StepVisual_MechanicalDesignGeometricPresentationRepresentation) drawing;
        if (context.IsNull() || !styles.CreateMDGPR(context, drawing)) continue;
        session->Model()->AddWithRefs(drawing);
    }
}

}  // namespace samples
