#pragma once

#include <vector>

#include <TopoDS_Shape.hxx>

namespace comparer {

/// Gives shapes without triangles a triangulation that is fit to be looked at: within a
/// thousandth of a shape's size and 20 degrees of its surfaces. Shapes are meshed in parallel,
/// those that share edges by the same thread. A shape that can't be meshed stays bare.
void meshShapes(const std::vector<TopoDS_Shape>& shapes);

}  // namespace comparer
