#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "backends/mesh/scene.h"

namespace mesh {

/// Coordinates of more than this are no lengths of anything; with numbers like 1e300 no area or
/// volume comes out.
constexpr double kLargestCoordinateMm = 1e12;

/// Triangles of one object as its file lists them.
struct Soup {
    std::vector<Point> pointsMm;
    std::vector<Triangle> triangles;  ///< corners are positions in pointsMm
    /// Names of runs of triangles: from that triangle on, until the next. May be empty.
    struct Run {
        std::size_t firstTriangle = 0;
        std::string name;
    };
    std::vector<Run> runs;
};

/// Makes points with the same coordinates one point.
Soup welded(const Soup& soup);

/// What was left out on the way from a soup to bodies.
struct LeftOut {
    std::uint64_t flat = 0;    ///< triangles with two corners in one point
    std::uint64_t absurd = 0;  ///< triangles with a corner that is no number or too far away
};

/// Splits a welded soup into its connected pieces: what shares a point belongs together. Pieces
/// come in the order of their first triangles and are named by the run of that triangle. A soup of
/// more than kMostPieces pieces stays one body: it is no set of bodies but loose triangles.
std::vector<Body> splitBodies(Soup soup, LeftOut& leftOut);
constexpr std::size_t kMostPieces = 4096;

/// True when every side of every triangle meets exactly one other triangle. A side between two
/// corners in one point is none. A body without triangles is open. `pointCount` is above every
/// corner.
bool isClosed(std::span<const Triangle> triangles, std::size_t pointCount);

}  // namespace mesh
