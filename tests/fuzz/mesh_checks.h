#pragma once

#include <cstdint>
#include <string_view>

#include "backends/mesh/scene.h"

namespace fuzz {

/// Reads bytes as one format and requires what holds for every file: indices that are there,
/// finite points, definitions that end, counts that match what is in the scene, and a gap where
/// less was read than is declared.
void readAnyMesh(mesh::Format format, std::string_view bytes);

}  // namespace fuzz
