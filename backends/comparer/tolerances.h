#pragma once

namespace comparer {

/// What counts as equal.
struct Tolerances {
    /// Points closer than this are one, in millimetres.
    double lengthMm = 1e-3;
    /// Volumes, areas and moments whose relative difference is smaller are equal.
    double relative = 1e-5;
    /// Planes and axes of faces that make a smaller angle point the same way, in degrees.
    double angleDeg = 0.05;
};

}  // namespace comparer
