#pragma once

#include <TopoDS_Edge.hxx>

namespace comparer {

/// Nobody may lie further off than this, whatever a file says of its accuracy.
constexpr double kMostSlackMm = 0.05;

/// How far an edge lies off the surfaces that meet in it. None for most edges: what is less than a
/// tenth of the usual tolerance doesn't count.
double slackOf(const TopoDS_Edge& edge);

/// The tolerance for things that lie off by that much together. The distance between two
/// approximations may be larger than both errors where surfaces meet at a flat angle.
double withSlack(double toleranceMm, double slackMm);

}  // namespace comparer
