#pragma once

#include <string>

#include "backends/comparer/instances.h"

namespace comparer {

/// Most files of triangles don't say in which unit they are, and count as millimetres. Where one
/// file holds a single body of triangles and the other a single one of surfaces, and the triangles
/// have exactly its size when they are taken as inches, centimetres or metres (or the other way
/// round), they are taken so: enlarges the body in `compare` or `reference`, and adds a sentence to
/// the gaps of its side. Files of the same size are left as they are.
void adoptUnits(Side& reference, Side& compare);

}  // namespace comparer
