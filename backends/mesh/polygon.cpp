#include "backends/mesh/polygon.h"

#include <algorithm>
#include <cmath>

namespace mesh {
namespace {

using Flat = std::array<double, 2>;

/// Twice the polygon's area as a vector across it.
Point normalOf(std::span<const std::uint32_t> corners, std::span<const Point> points) {
    Point normal{};
    const Point& origin = points[corners[0]];
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        Point a{};
        Point b{};
        for (std::size_t c = 0; c < 3; ++c) {
            a[c] = points[corners[i]][c] - origin[c];
            b[c] = points[corners[i + 1]][c] - origin[c];
        }
        for (std::size_t c = 0; c < 3; ++c) {
            normal[c] += a[(c + 1) % 3] * b[(c + 2) % 3] - a[(c + 2) % 3] * b[(c + 1) % 3];
        }
    }
    return normal;
}

/// The polygon seen along the axis that it faces most, counter-clockwise.
std::vector<Flat> flattened(std::span<const std::uint32_t> corners, std::span<const Point> points) {
    const Point normal = normalOf(corners, points);
    std::size_t axis = 0;
    for (std::size_t c = 1; c < 3; ++c) {
        if (std::abs(normal[c]) > std::abs(normal[axis])) axis = c;
    }
    const double sign = normal[axis] < 0.0 ? -1.0 : 1.0;
    std::vector<Flat> out;
    for (const std::uint32_t corner : corners) {
        out.push_back({points[corner][(axis + 1) % 3], sign * points[corner][(axis + 2) % 3]});
    }
    return out;
}

double turn(const Flat& a, const Flat& b, const Flat& c) {
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

bool isConvex(const std::vector<Flat>& polygon) {
    const std::size_t n = polygon.size();
    for (std::size_t i = 0; i < n; ++i) {
        if (turn(polygon[i], polygon[(i + 1) % n], polygon[(i + 2) % n]) < 0.0) return false;
    }
    return true;
}

/// Whether the corner at `at` can be cut off: it points outwards and nothing stands in it.
bool isEar(const std::vector<Flat>& polygon, const std::vector<std::size_t>& left, std::size_t at) {
    const std::size_t n = left.size();
    const std::size_t before = left[(at + n - 1) % n];
    const std::size_t after = left[(at + 1) % n];
    const Flat& a = polygon[before];
    const Flat& b = polygon[left[at]];
    const Flat& c = polygon[after];
    if (turn(a, b, c) <= 0.0) return false;
    return std::none_of(left.begin(), left.end(), [&](std::size_t other) {
        const Flat& p = polygon[other];
        if (p == a || p == b || p == c) return false;
        return turn(a, b, p) >= 0.0 && turn(b, c, p) >= 0.0 && turn(c, a, p) >= 0.0;
    });
}

void addFan(std::span<const std::uint32_t> corners, std::vector<Triangle>& out) {
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        out.push_back({corners[0], corners[i], corners[i + 1]});
    }
}

}  // namespace

void addPolygon(std::span<const std::uint32_t> corners, std::span<const Point> points,
                std::vector<Triangle>& out) {
    if (corners.size() <= 3 || corners.size() > kMostNotchedCorners) return addFan(corners, out);
    const std::vector<Flat> polygon = flattened(corners, points);
    if (isConvex(polygon)) return addFan(corners, out);
    std::vector<std::size_t> left(corners.size());
    for (std::size_t i = 0; i < left.size(); ++i) left[i] = i;
    while (left.size() > 3) {
        std::size_t ear = 0;
        while (ear < left.size() && !isEar(polygon, left, ear)) ++ear;
        // One that crosses itself has none; any corner will do then.
        if (ear == left.size()) ear = 0;
        const std::size_t n = left.size();
        out.push_back(
            {corners[left[(ear + n - 1) % n]], corners[left[ear]], corners[left[(ear + 1) % n]]});
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(ear));
    }
    out.push_back({corners[left[0]], corners[left[1]], corners[left[2]]});
}

}  // namespace mesh
