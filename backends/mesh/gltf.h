#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "backends/mesh/scene.h"

namespace mesh {

/// Reads glTF 2.0 and GLB: triangles, strips and fans of the file's scene. Metres become
/// millimetres and Y upwards becomes Z upwards, in every part's own frame too, as CAD systems
/// have it. Colours, textures, cameras and animations play no part.
Outcome readGltf(std::string_view bytes, const Beside& beside);

std::vector<std::string> gltfFilesBeside(std::string_view bytes);

}  // namespace mesh
