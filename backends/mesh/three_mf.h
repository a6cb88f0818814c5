#pragma once

#include <string_view>

#include "backends/mesh/scene.h"

namespace mesh {

/// Reads what is to be built: build items, objects of components, meshes; of all model files of a
/// package. Lengths come in the model's unit, microns as millimetres' thousandths.
Outcome readThreeMf(std::string_view bytes);

}  // namespace mesh
