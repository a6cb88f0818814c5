#pragma once

#include <string_view>

#include "backends/mesh/scene.h"

namespace mesh {

/// Objects ("o"), or groups ("g") in a file without objects, become parts by their names.
Outcome readObj(std::string_view bytes);

}  // namespace mesh
