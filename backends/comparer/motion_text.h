#pragma once

#include <string>

#include <gp_Trsf.hxx>

#include "backends/comparer/matching.h"

namespace comparer {

/// Takes angle and axis of a motion in world space.
void setRotation(const gp_Trsf& motion, Match& match);

/// "moved 12.0 mm along +X", "turned 30.0 deg about +Z", both joined by "and"; empty for matches
/// that have not moved.
std::string motionText(const Match& match);

}  // namespace comparer
