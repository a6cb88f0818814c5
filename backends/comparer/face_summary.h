#pragma once

#include <string>

#include <gp_Trsf.hxx>
#include <gp_Vec.hxx>

#include "backends/comparer/face_matching.h"

namespace comparer {

/// What a designer would say happened to a body, in English, UTF-8: "4 cylindrical faces: radius
/// 2.5 mm -> 3.0 mm; 2 planar faces with another outline". Lengths in millimetres with up to three
/// decimals. `motion` is the one that the faces were matched under; `placement` leads from the
/// compare body's frame to the world, whose axes directions are given in.
std::string describeChanges(const FaceSet& reference, const FaceSet& compare, const gp_Trsf& motion,
                            const FaceMatching& matching, const gp_Trsf& placement);

/// "12.0": with up to three decimals and at least one, a full stop for the point.
std::string numberText(double value);

/// "+X", "-Z" or "(0.6, 0.8, 0.0)".
std::string directionText(const gp_Vec& way);

}  // namespace comparer
