#pragma once

#include <TopoDS_Shape.hxx>

#include "backends/mesh/scene.h"

namespace occt {

/// A compound of one face without a surface that holds the triangles of a body.
TopoDS_Shape shapeOf(const mesh::Body& body);

}  // namespace occt
