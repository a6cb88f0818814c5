#pragma once

#include <string_view>

#include "backends/mesh/scene.h"

namespace mesh {

/// True for a header and exactly as many triangles as it declares, whatever the header says.
bool isBinaryStl(std::string_view bytes);

/// True for text that begins with "solid" and goes on with "facet" or "endsolid".
bool isTextStl(std::string_view bytes);

Outcome readStl(std::string_view bytes);

}  // namespace mesh
