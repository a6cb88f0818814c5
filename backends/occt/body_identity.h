#pragma once

#include <optional>

#include <TopoDS_Shape.hxx>

#include "platform/exchange/geometry_result.h"

namespace occt {

/// True when the shape encloses a volume: it has faces, each belongs to a shell, and every edge of
/// a shell is shared by two of its faces. Mesh faces count as closed when every side of every
/// triangle meets exactly one other triangle.
bool isClosedBody(const TopoDS_Shape& body);

/// Geometric identity of a body in the frame of `body`, its location included. Lengths in
/// millimetres. An open body has the volume 0, and its moments and centroid are those of its
/// surface. The sign of the volume is dropped, since a body that is inside out is still the same.
/// Empty when there is nothing to measure: no faces, or an area, volume or moment that is not
/// finite. Never throws. Safe to call on different shapes from several threads.
std::optional<bxtexchange::BodyIdentity> bodyIdentity(const TopoDS_Shape& body);

}  // namespace occt
