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

/// Whether bodies of identical content are taken as equal without looking at them. Off, every body
/// is looked at as if no other had its numbers: the answer must be the same.
enum class Shortcuts { On, Off };

}  // namespace comparer
