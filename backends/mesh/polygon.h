#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "backends/mesh/scene.h"

namespace mesh {

/// Adds the triangles of a polygon, `corners` positions in `points`. A convex one becomes a fan;
/// one with notches is cut corner by corner, so that no triangle lies outside it, up to
/// kMostNotchedCorners corners: cutting takes time with their square. Fewer than three corners add
/// nothing.
void addPolygon(std::span<const std::uint32_t> corners, std::span<const Point> points,
                std::vector<Triangle>& out);
constexpr std::size_t kMostNotchedCorners = 64;

}  // namespace mesh
