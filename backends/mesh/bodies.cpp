#include "backends/mesh/bodies.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "backends/mesh/welder.h"

namespace mesh {
namespace {

bool isAbsurd(const Point& point) {
    return !std::all_of(point.begin(), point.end(),
                        [](double x) { return std::abs(x) <= kLargestCoordinateMm; });
}

/// Sets of points that hang together.
class Pieces {
public:
    explicit Pieces(std::size_t points) : parent_(points) {
        std::iota(parent_.begin(), parent_.end(), 0U);
    }
    std::uint32_t find(std::uint32_t point) {
        while (parent_[point] != point) {
            parent_[point] = parent_[parent_[point]];
            point = parent_[point];
        }
        return point;
    }
    void join(std::uint32_t a, std::uint32_t b) {
        a = find(a);
        b = find(b);
        // Towards the smaller number, so that the outcome does not depend on the order.
        if (a < b) parent_[b] = a;
        if (b < a) parent_[a] = b;
    }

private:
    std::vector<std::uint32_t> parent_;
};

/// Drops triangles that are flat or absurd; runs move along.
void clean(Soup& soup, LeftOut& leftOut) {
    std::vector<bool> absurd(soup.pointsMm.size());
    bool anyAbsurd = false;
    for (std::size_t i = 0; i < soup.pointsMm.size(); ++i) {
        if (!isAbsurd(soup.pointsMm[i])) continue;
        absurd[i] = true;
        anyAbsurd = true;
    }
    std::size_t kept = 0;
    std::size_t run = 0;
    for (std::size_t i = 0; i < soup.triangles.size(); ++i) {
        for (; run < soup.runs.size() && soup.runs[run].firstTriangle <= i; ++run) {
            soup.runs[run].firstTriangle = kept;
        }
        const auto [a, b, c] = soup.triangles[i];
        if (anyAbsurd && (absurd[a] || absurd[b] || absurd[c])) {
            ++leftOut.absurd;
        } else if (a == b || b == c || a == c) {
            ++leftOut.flat;
        } else {
            soup.triangles[kept++] = soup.triangles[i];
        }
    }
    for (; run < soup.runs.size(); ++run) soup.runs[run].firstTriangle = kept;
    soup.triangles.resize(kept);
}

std::string nameAt(const Soup& soup, std::size_t triangle) {
    const auto after = std::upper_bound(
        soup.runs.begin(), soup.runs.end(), triangle,
        [](std::size_t wanted, const Soup::Run& run) { return wanted < run.firstTriangle; });
    return after == soup.runs.begin() ? std::string() : std::prev(after)->name;
}

/// Numbers the pieces by their first triangles; `piece` gets each point's, or kNone.
constexpr std::uint32_t kNone = ~0U;
std::vector<std::size_t> numberPieces(const Soup& soup, std::vector<std::uint32_t>& piece) {
    Pieces pieces(soup.pointsMm.size());
    for (const auto& [a, b, c] : soup.triangles) {
        pieces.join(a, b);
        pieces.join(a, c);
    }
    std::vector<std::size_t> firstTriangle;
    piece.assign(soup.pointsMm.size(), kNone);
    for (std::size_t i = 0; i < soup.triangles.size(); ++i) {
        const std::uint32_t root = pieces.find(soup.triangles[i][0]);
        if (piece[root] != kNone) continue;
        piece[root] = static_cast<std::uint32_t>(firstTriangle.size());
        firstTriangle.push_back(i);
    }
    for (const Triangle& triangle : soup.triangles) {
        for (const std::uint32_t corner : triangle) piece[corner] = piece[pieces.find(corner)];
    }
    return firstTriangle;
}

/// Whether all points are used, so that the soup is the body.
bool allUsed(const std::vector<std::uint32_t>& piece) {
    return std::find(piece.begin(), piece.end(), kNone) == piece.end();
}

}  // namespace

Soup welded(const Soup& soup) {
    Welder<double> welder(soup.pointsMm.size());
    std::vector<std::uint32_t> number;
    number.reserve(soup.pointsMm.size());
    for (const Point& point : soup.pointsMm) {
        number.push_back(welder.number(point[0], point[1], point[2]));
    }
    Soup out;
    out.runs = soup.runs;
    out.pointsMm = welder.points();
    out.triangles.reserve(soup.triangles.size());
    for (const auto& [a, b, c] : soup.triangles) {
        out.triangles.push_back({number[a], number[b], number[c]});
    }
    return out;
}

std::vector<Body> splitBodies(Soup soup, LeftOut& leftOut) {
    clean(soup, leftOut);
    std::vector<std::uint32_t> piece;
    const std::vector<std::size_t> firstTriangle = numberPieces(soup, piece);
    if (firstTriangle.empty()) return {};
    const bool oneBody = firstTriangle.size() == 1 || firstTriangle.size() > kMostPieces;
    std::vector<Body> bodies(oneBody ? 1 : firstTriangle.size());
    for (std::size_t i = 0; i < bodies.size(); ++i) bodies[i].name = nameAt(soup, firstTriangle[i]);
    if (oneBody && allUsed(piece)) {
        bodies[0].pointsMm = std::move(soup.pointsMm);
        bodies[0].triangles = std::move(soup.triangles);
        return bodies;
    }
    std::vector<std::uint32_t> place(soup.pointsMm.size());
    for (std::size_t i = 0; i < piece.size(); ++i) {
        if (piece[i] == kNone) continue;
        Body& body = bodies[oneBody ? 0 : piece[i]];
        place[i] = static_cast<std::uint32_t>(body.pointsMm.size());
        body.pointsMm.push_back(soup.pointsMm[i]);
    }
    for (const auto& [a, b, c] : soup.triangles) {
        bodies[oneBody ? 0 : piece[a]].triangles.push_back({place[a], place[b], place[c]});
    }
    return bodies;
}

bool isClosed(std::span<const Triangle> triangles, std::size_t pointCount) {
    if (triangles.empty()) return false;
    // Sides stand at their smaller point: where each point's begin, then the other ends.
    std::vector<std::uint32_t> begin(pointCount + 1);
    for (const Triangle& t : triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            const auto [low, high] = std::minmax(t[i], t[(i + 1) % 3]);
            if (low != high) ++begin[low + 1];
        }
    }
    std::partial_sum(begin.begin(), begin.end(), begin.begin());
    std::vector<std::uint32_t> fill(begin.begin(), begin.end() - 1);
    std::vector<std::uint32_t> other(triangles.size() * 3);
    for (const Triangle& t : triangles) {
        for (std::size_t i = 0; i < 3; ++i) {
            const auto [low, high] = std::minmax(t[i], t[(i + 1) % 3]);
            if (low != high) other[fill[low]++] = high;
        }
    }
    for (std::size_t point = 0; point < pointCount; ++point) {
        const auto first = other.begin() + begin[point];
        const auto last = other.begin() + begin[point + 1];
        std::sort(first, last);
        if ((last - first) % 2 != 0) return false;
        for (auto it = first; it != last; it += 2) {
            const bool pair = it[0] == it[1] && (it + 2 == last || it[2] != it[0]);
            if (!pair) return false;
        }
    }
    return begin.back() > 0;
}

}  // namespace mesh
