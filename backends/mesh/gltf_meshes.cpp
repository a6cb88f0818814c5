#include "backends/mesh/gltf_meshes.h"

#include <algorithm>

#include "backends/mesh/build.h"
#include "backends/mesh/gltf_accessor.h"
#include "backends/mesh/text.h"

namespace mesh {
namespace {

constexpr std::uint64_t kTriangles = 4;
constexpr std::uint64_t kStrip = 5;
constexpr std::uint64_t kFan = 6;

constexpr double kMmPerMetre = 1000.0;

std::uint64_t triangleCount(std::uint64_t mode, std::uint64_t corners) {
    if (mode == kTriangles) return corners / 3;
    return corners < 3 ? 0 : corners - 2;
}

bool isCompressed(const Json& primitive) {
    return member(member(primitive, "extensions"), "KHR_draco_mesh_compression").is_object();
}

}  // namespace

std::vector<Body> GltfMeshes::bodiesOf(std::uint64_t mesh) {
    const Json& json = element(file_.root(), "meshes", mesh);
    soup_ = {};
    ranges_.clear();
    ++scene_.counts.meshes.declared;
    for (std::size_t i = 0; i < sizeOfList(json, "primitives") && !isTooLarge(); ++i) {
        addPrimitive(element(json, "primitives", i));
    }
    if (!soup_.triangles.empty()) ++scene_.counts.meshes.read;
    LeftOut leftOut;
    std::vector<Body> bodies = splitBodies(welded(soup_), leftOut);
    addLeftOut(leftOut, scene_);
    return bodies;
}

void GltfMeshes::addPrimitive(const Json& primitive) {
    const std::uint64_t mode = whole(primitive, "mode").value_or(kTriangles);
    if (mode < kTriangles || mode > kFan) {
        ++notTriangles_;
        return;
    }
    if (isCompressed(primitive)) {
        ++compressed_;
        return;
    }
    const auto position = whole(member(primitive, "attributes"), "POSITION");
    const auto indices = whole(primitive, "indices");
    const std::uint64_t declared =
        triangleCount(mode, indices ? declaredCount(file_, *indices)
                                    : declaredCount(file_, position.value_or(~0ULL)));
    scene_.counts.triangles.declared += declared;
    std::uint32_t count = 0;
    const auto begin = position ? addPoints(*position, count) : std::nullopt;
    if (!begin) {
        ++damaged_;
        return;
    }
    std::vector<std::uint32_t> corners;
    if (indices) {
        auto read = readIndices(file_, *indices);
        if (!read) {
            ++damaged_;
            return;
        }
        corners = std::move(*read);
    } else {
        corners.resize(count);
        for (std::uint32_t i = 0; i < count; ++i) corners[i] = i;
    }
    corners_ += corners.size();
    addTriangles(mode, corners, *begin, count);
}

std::optional<std::uint32_t> GltfMeshes::addPoints(std::uint64_t accessor, std::uint32_t& count) {
    // Primitives of one mesh often share their points.
    const auto found = ranges_.find(accessor);
    if (found != ranges_.end()) {
        count = found->second.count;
        return found->second.begin;
    }
    const auto points = readPoints(file_, accessor);
    if (!points) return std::nullopt;
    const Range range = {static_cast<std::uint32_t>(soup_.pointsMm.size()),
                         static_cast<std::uint32_t>(points->size())};
    for (const auto& [x, y, z] : *points) {
        soup_.pointsMm.push_back({x * kMmPerMetre, -z * kMmPerMetre, y * kMmPerMetre});
    }
    points_ += points->size();
    scene_.counts.vertices.declared += declaredCount(file_, accessor);
    scene_.counts.vertices.read += points->size();
    ranges_.emplace(accessor, range);
    count = range.count;
    return range.begin;
}

void GltfMeshes::addTriangles(std::uint64_t mode, const std::vector<std::uint32_t>& corners,
                              std::uint32_t begin, std::uint32_t count) {
    const std::uint64_t triangles = triangleCount(mode, corners.size());
    for (std::uint64_t i = 0; i < triangles; ++i) {
        Triangle triangle{};
        if (mode == kTriangles) {
            triangle = {corners[3 * i], corners[3 * i + 1], corners[3 * i + 2]};
        } else if (mode == kStrip) {
            // Every second triangle of a strip runs the other way round.
            triangle = {corners[i], corners[i + 1 + i % 2], corners[i + 2 - i % 2]};
        } else {
            triangle = {corners[0], corners[i + 1], corners[i + 2]};
        }
        if (std::any_of(triangle.begin(), triangle.end(), [&](auto c) { return c >= count; })) {
            ++badTriangles_;
            continue;
        }
        for (std::uint32_t& corner : triangle) corner += begin;
        soup_.triangles.push_back(triangle);
        ++scene_.counts.triangles.read;
    }
}

void GltfMeshes::sayWhatIsMissing() {
    addShortfall(scene_.counts.triangles, "triangle", scene_);
    auto& gaps = scene_.gaps;
    if (damaged_ > 0) {
        gaps.push_back(counted(damaged_, "primitive") +
                       " not read: its points or indices are "
                       "damaged or missing.");
    }
    if (badTriangles_ > 0) {
        gaps.push_back(counted(badTriangles_, "triangle") +
                       " left out: corners name points that are not there.");
    }
    if (compressed_ > 0) {
        gaps.push_back(counted(compressed_, "primitive") +
                       " not read: compressed by KHR_draco_mesh_compression.");
    }
    if (notTriangles_ > 0) {
        gaps.push_back(counted(notTriangles_, "primitive") + " not read: points or lines.");
    }
}

}  // namespace mesh
