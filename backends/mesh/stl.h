#pragma once

#include <string_view>

#include "backends/mesh/scene.h"

namespace mesh {

Outcome readStl(std::string_view bytes);

}  // namespace mesh
