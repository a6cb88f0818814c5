#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>
#include <gp_Trsf.hxx>

#include "backends/comparer/instances.h"
#include "backends/comparer/matching.h"

namespace comparer {

/// One placed body.
struct SceneNode {
    std::string name;  ///< path of the instance, UTF-8
    std::uint32_t body = 0;
    gp_Trsf placement;
};

/// Nodes of one colour that are shown and hidden together.
struct SceneGroup {
    std::string name;
    double red = 0.0;  ///< sRGB, each in [0, 1]
    double green = 0.0;
    double blue = 0.0;
    std::vector<SceneNode> nodes;
    std::vector<SceneGroup> groups;
};

/// What a comparison looks like, whatever file it is written to.
struct Scene {
    std::vector<TopoDS_Shape> bodies;
    std::vector<SceneGroup> groups;  ///< those that have nodes
};

/// Groups "Unchanged", "Only in reference", "Only in compare", "Changed" and "Moved" (each with
/// both states in groups of their own) and "Not compared".
Scene buildScene(const Side& reference, const Side& compare, const Names& names,
                 const std::vector<Match>& matches);

}  // namespace comparer
