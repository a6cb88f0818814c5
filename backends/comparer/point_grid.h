#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include <gp_Pnt.hxx>

namespace comparer {

/// Numbered points by place. Finding the neighbours of a point takes constant time as long as few
/// share a cell.
class PointGrid {
public:
    /// Points up to `cellMm` apart are neighbours; further ones may be reported too.
    explicit PointGrid(double cellMm) : cellMm_(cellMm) {}

    using Cell = std::vector<std::uint32_t>;

    void add(const gp_Pnt& point, std::uint32_t number) { cells_[keyOf(point)].push_back(number); }

    void remove(const gp_Pnt& point, std::uint32_t number) {
        const auto cell = cells_.find(keyOf(point));
        if (cell == cells_.end()) return;
        const auto at = std::find(cell->second.begin(), cell->second.end(), number);
        if (at != cell->second.end()) cell->second.erase(at);
    }

    /// The filled cells around a point, each once; the numbers in a cell in the order in which
    /// they were added. Good until the next change.
    std::vector<const Cell*> near(const gp_Pnt& point) const {
        std::vector<const Cell*> found;
        for (int i = 0; i < 27; ++i) {
            const auto cell =
                cells_.find(key(steps(point.X()) + i % 3 - 1, steps(point.Y()) + i / 3 % 3 - 1,
                                steps(point.Z()) + i / 9 - 1));
            if (cell == cells_.end() || cell->second.empty()) continue;
            // Two places may share a key.
            if (std::find(found.begin(), found.end(), &cell->second) != found.end()) continue;
            found.push_back(&cell->second);
        }
        return found;
    }

private:
    std::int64_t steps(double value) const {
        const double cells = std::floor(value / cellMm_);
        constexpr double kFar = 4e18;
        return std::isfinite(cells) ? std::llround(std::clamp(cells, -kFar, kFar)) : 0;
    }
    std::uint64_t keyOf(const gp_Pnt& point) const {
        return key(steps(point.X()), steps(point.Y()), steps(point.Z()));
    }
    static std::uint64_t key(std::int64_t x, std::int64_t y, std::int64_t z) {
        return static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15ULL ^
               static_cast<std::uint64_t>(y) * 0xC2B2AE3D27D4EB4FULL ^
               static_cast<std::uint64_t>(z) * 0x165667B19E3779F9ULL;
    }

    double cellMm_;
    std::unordered_map<std::uint64_t, Cell> cells_;
};

}  // namespace comparer
