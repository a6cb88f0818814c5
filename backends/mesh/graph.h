#pragma once

#include "backends/mesh/scene.h"

namespace mesh {

/// Turns definitions whose usages have any placement into ones whose placements are rotations and
/// translations. A scale, mirror or shear goes into the points below it: a definition that is used
/// at two sizes becomes two. Usages that lead back into their own definition, or whose placement
/// is no numbers, are left out with a gap. The root's own placement goes into its usages or points.
/// Refuses with "too-large" what would become kMostMore more of them or of their usages than the
/// file has, or more than kMostPoints points.
Outcome placed(Scene scene, const Matrix& rootPlacement);
constexpr std::size_t kMostMore = 100'000;
constexpr std::uint64_t kMostPoints = 100'000'000;

/// First `inner`, then `outer`.
Matrix product(const Matrix& outer, const Matrix& inner);

}  // namespace mesh
