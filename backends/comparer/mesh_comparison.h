#pragma once

#include <vector>

#include <TopoDS_Shape.hxx>
#include <gp_Trsf.hxx>

#include "backends/comparer/time_limit.h"
#include "backends/comparer/tolerances.h"

namespace comparer {

/// How two bodies differ of which at least one is made of triangles.
struct MeshDifference {
    gp_Trsf motion;            ///< that of the guesses which fits best
    bool same = false;         ///< no point is further from the other body than is granted
    double largestMm = 0.0;    ///< of the points that differ; 0 when none does
    double allowanceMm = 0.0;  ///< how far triangles may be off what they stand for, at most
};

/// Compares corners, middles and where needed parts of triangles with the other body, and points
/// of the faces and edges of a body with surfaces with the triangles. Corners are held to the
/// length tolerance; where surfaces bulge out over triangles, that much is granted in addition.
/// Throws OutOfTime, and what the geometry library throws.
MeshDifference compareTriangles(const TopoDS_Shape& reference, const TopoDS_Shape& compare,
                                const std::vector<gp_Trsf>& guesses, const Tolerances& tolerances,
                                const TimeLimit& limit);

}  // namespace comparer
