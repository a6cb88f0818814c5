#pragma once

#include <gp_Trsf.hxx>

#include "backends/comparer/face_matching.h"
#include "backends/comparer/face_set.h"

namespace comparer {

/// How far the two bodies are apart where they differ: the largest distance that a point of a
/// changed, added or removed face of either has from the other body, in millimetres. `motion` is
/// the one that the faces were matched under. Measured on samples that are refined around the
/// largest; what lies between two samples of a free-form face may be off by a little more.
double largestDeviationMm(const FaceSet& reference, const FaceSet& compare, const gp_Trsf& motion,
                          const FaceMatching& matching);

}  // namespace comparer
