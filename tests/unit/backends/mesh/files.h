#pragma once

#include <array>
#include <bit>
#include <cstring>
#include <string>
#include <vector>

#include "backends/mesh/bodies.h"
#include "backends/mesh/scene.h"

namespace meshtest {

/// Bytes of a number as they stand in memory, or the other way round.
template <typename Number>
std::string bytesOf(Number number, bool reversed = false) {
    std::string out(sizeof number, '\0');
    std::memcpy(out.data(), &number, sizeof number);
    return reversed ? std::string(out.rbegin(), out.rend()) : out;
}

using Corners = std::array<std::array<float, 3>, 3>;

/// A tetrahedron with edges of that length along the axes, moved along X; facing outwards.
inline std::vector<Corners> tetrahedron(float size = 1.0F, float x = 0.0F) {
    const std::array<float, 3> o = {x, 0, 0};
    const std::array<float, 3> a = {x + size, 0, 0};
    const std::array<float, 3> b = {x, size, 0};
    const std::array<float, 3> c = {x, 0, size};
    return {{o, b, a}, {o, a, c}, {o, c, b}, {a, b, c}};
}

/// A binary STL file. `declared` replaces the number of triangles when it is not negative.
inline std::string binaryStl(const std::vector<Corners>& triangles, const std::string& header = {},
                             long long declared = -1) {
    std::string out = header;
    out.resize(80, '\0');
    const long long count = declared < 0 ? static_cast<long long>(triangles.size()) : declared;
    out += bytesOf(static_cast<std::uint32_t>(count));
    for (const Corners& triangle : triangles) {
        out += std::string(12, '\0');
        for (const auto& corner : triangle) {
            for (const float c : corner) out += bytesOf(c);
        }
        out += std::string(2, '\0');
    }
    return out;
}

inline mesh::Outcome read(mesh::Format format, const std::string& bytes) {
    return mesh::read(format, bytes, {});
}

/// Six times the volume within the triangles of a body, with the sign of their turn.
inline double sixVolumes(const mesh::Body& body) {
    double sum = 0.0;
    for (const auto& t : body.triangles) {
        const auto& a = body.pointsMm[t[0]];
        const auto& b = body.pointsMm[t[1]];
        const auto& c = body.pointsMm[t[2]];
        sum += a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0]) +
               a[2] * (b[0] * c[1] - b[1] * c[0]);
    }
    return sum;
}

inline bool isClosed(const mesh::Body& body) {
    return mesh::isClosed(body.triangles, body.pointsMm.size());
}

/// Everything that any definition of the scene holds.
inline std::size_t trianglesIn(const mesh::Scene& scene) {
    std::size_t count = 0;
    for (const auto& definition : scene.definitions) {
        for (const auto& body : definition.bodies) count += body.triangles.size();
    }
    return count;
}

}  // namespace meshtest
