#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "backends/mesh/gltf_file.h"

namespace mesh {

/// Points of an accessor of three numbers each: floats, or whole numbers as quantised meshes have
/// them; sparse changes included. Stops where the bytes end, so that fewer may come than are
/// declared. Nothing when the accessor is none of points.
std::optional<std::vector<Point>> readPoints(const GltfFile& file, std::uint64_t accessor);

/// The same for an accessor of indices.
std::optional<std::vector<std::uint32_t>> readIndices(const GltfFile& file, std::uint64_t accessor);

/// What an accessor declares.
std::uint64_t declaredCount(const GltfFile& file, std::uint64_t accessor);

}  // namespace mesh
