#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <TopoDS_Shape.hxx>
#include <gp_Trsf.hxx>

#include "backends/comparer/face_report.h"
#include "backends/comparer/instances.h"
#include "backends/comparer/matching.h"

namespace comparer {

/// One placed body.
struct SceneNode {
    std::string name;  ///< path of the instance, UTF-8
    std::uint32_t body = 0;
    gp_Trsf placement;
    /// Number of the scene's face colouring, or -1: all of the body has the group's colour.
    std::int32_t painting = -1;
};

/// Faces of a body that have another colour than the rest of it.
struct FacePainting {
    double red = 0.0;  ///< sRGB, each in [0, 1]
    double green = 0.0;
    double blue = 0.0;
    double restRed = 0.0;
    double restGreen = 0.0;
    double restBlue = 0.0;
    /// By their position in the order of exploration of the body's shape, ascending.
    std::vector<std::uint32_t> faces;
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
    std::vector<FacePainting> paintings;
};

/// Groups "Unchanged", "Only in reference", "Only in compare", "Changed" and "Moved" (each with
/// both states in groups of their own) and "Not compared". Where `faces`, which is of the same
/// matches or empty, knows the faces of a changed body that differ, the others are grey.
Scene buildScene(const Side& reference, const Side& compare, const Names& names,
                 const std::vector<Match>& matches, const FaceReport& faces = {});

}  // namespace comparer
