#pragma once

namespace comparer {

/// What counts as equal.
struct Tolerances {
    /// Points closer than this are one, in millimetres.
    double lengthMm = 1e-3;
    /// Volumes, areas and moments whose relative difference is smaller are equal.
    double relative = 1e-5;
};

}  // namespace comparer
