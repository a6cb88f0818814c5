#pragma once

#include <vector>

#include <gp_Trsf.hxx>

#include "backends/comparer/face_set.h"

namespace comparer {

/// The motion from the reference body's frame to the compare body's that leaves most faces where
/// they are: one of the `guesses`, the first of those that are as good, or one that follows from
/// faces that each body has few of, where the guesses leave less than half of the faces in place.
gp_Trsf alignBodies(const FaceSet& reference, const FaceSet& compare,
                    const std::vector<gp_Trsf>& guesses, double toleranceMm);

}  // namespace comparer
