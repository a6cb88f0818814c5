#pragma once

#include <string_view>

#include "backends/mesh/scene.h"

namespace mesh {

/// Faces and triangle strips, as text or binary of either byte order. One part without a name.
Outcome readPly(std::string_view bytes);

}  // namespace mesh
