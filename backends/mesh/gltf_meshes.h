#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "backends/mesh/bodies.h"
#include "backends/mesh/gltf_file.h"
#include "backends/mesh/scene.h"

namespace mesh {

/// Bodies of a glTF file's meshes, in millimetres and Z upwards. Counts what it can't read.
class GltfMeshes {
public:
    GltfMeshes(const GltfFile& file, Scene& scene) : file_(file), scene_(scene) {}

    /// Bodies of a mesh, all its primitives together.
    std::vector<Body> bodiesOf(std::uint64_t mesh);

    /// Adds the gaps of all meshes that were read.
    void sayWhatIsMissing();

    /// True once the meshes refer to so many points that the same bytes must stand for many.
    bool isTooLarge() const { return points_ > kMostPoints || corners_ > kMostPoints; }

private:
    static constexpr std::uint64_t kMostPoints = 100'000'000;

    void addPrimitive(const Json& primitive);
    /// Where the accessor's points begin in the soup; nothing when it has none.
    std::optional<std::uint32_t> addPoints(std::uint64_t accessor, std::uint32_t& count);
    void addTriangles(std::uint64_t mode, const std::vector<std::uint32_t>& corners,
                      std::uint32_t begin, std::uint32_t count);

    const GltfFile& file_;
    Scene& scene_;
    Soup soup_;
    struct Range {
        std::uint32_t begin = 0;
        std::uint32_t count = 0;
    };
    std::unordered_map<std::uint64_t, Range> ranges_;  ///< of accessors in the soup
    std::uint64_t points_ = 0;
    std::uint64_t corners_ = 0;
    std::size_t notTriangles_ = 0;
    std::size_t compressed_ = 0;
    std::size_t damaged_ = 0;
    std::size_t badTriangles_ = 0;
};

}  // namespace mesh
