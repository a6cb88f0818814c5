#pragma once

#include <string_view>

#include "backends/mesh/scene.h"

namespace mesh {

/// True for text whose first statements are ones of OBJ.
bool isObj(std::string_view bytes);

/// Objects ("o"), or groups ("g") in a file without objects, become parts by their names.
Outcome readObj(std::string_view bytes);

}  // namespace mesh
