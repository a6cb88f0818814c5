#pragma once

#include <vector>

#include <Quantity_Color.hxx>
#include <TopoDS_Shape.hxx>
#include <XSControl_WorkSession.hxx>

namespace samples {

struct PartColor {
    TopoDS_Shape shape;
    Quantity_Color color;
};

/// Adds the colours of parts to a STEP model that was translated just before. The library's own
/// writer orders them by memory address, so its files differ from run to run.
void addColors(const Handle(XSControl_WorkSession) & session, const std::vector<PartColor>& colors);

}  // namespace samples
