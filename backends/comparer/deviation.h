#pragma once

#include <gp_Trsf.hxx>

#include "backends/comparer/face_matching.h"
#include "backends/comparer/face_set.h"
#include "backends/comparer/time_limit.h"

namespace comparer {

/// How far the two bodies are apart where they differ: the largest distance that a point of a
/// changed, added or removed face of either has from the other body, in millimetres. `motion` is
/// the one that the faces were matched under. Measured on samples that become denser where the
/// largest may still be, up to a few thousand for each body; then refined around the largest.
/// Throws OutOfTime.
double largestDeviationMm(const FaceSet& reference, const FaceSet& compare, const gp_Trsf& motion,
                          const FaceMatching& matching, const TimeLimit& limit = {});

}  // namespace comparer
