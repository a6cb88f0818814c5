#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <gp_Pnt.hxx>
#include <gp_XYZ.hxx>

namespace comparer {

/// Numbered boxes as a hierarchy that answers how near the nearest of what they hold is.
class NearestTree {
    static constexpr double kFar = std::numeric_limits<double>::max();

public:
    /// Corners of a box; void when the lower lies above the upper.
    struct Extent {
        gp_XYZ low = gp_XYZ(kFar, kFar, kFar);
        gp_XYZ high = gp_XYZ(-kFar, -kFar, -kFar);

        void add(const gp_XYZ& point) {
            for (int axis = 1; axis <= 3; ++axis) {
                low.SetCoord(axis, std::min(low.Coord(axis), point.Coord(axis)));
                high.SetCoord(axis, std::max(high.Coord(axis), point.Coord(axis)));
            }
        }
        bool isVoid() const { return low.X() > high.X(); }
    };

    explicit NearestTree(std::vector<Extent> boxes) : boxes_(std::move(boxes)) {
        for (std::uint32_t i = 0; i < boxes_.size(); ++i) {
            if (!boxes_[i].isVoid()) order_.push_back(i);
        }
        if (!order_.empty()) build();
    }

    /// The least of `distanceOf(number, most)` over all numbers; those whose box is further away
    /// than what was found are not asked, and nobody has to tell distances above `most` apart. Ends
    /// early with what it has once that is not above `enough`.
    template <typename Distance>
    double nearest(const gp_Pnt& point, double enough, Distance distanceOf) const {
        double least = std::numeric_limits<double>::max();
        std::vector<std::pair<double, std::uint32_t>> open;
        if (!nodes_.empty()) open.emplace_back(mmTo(nodes_[0].box, point), 0U);
        while (!open.empty() && least > enough) {
            const auto [mm, number] = open.back();
            open.pop_back();
            if (mm >= least) continue;
            const Node& node = nodes_[number];
            if (node.count > 0) {
                for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
                    if (mmTo(boxes_[order_[i]], point) >= least) continue;
                    least = std::min(least, distanceOf(order_[i], least));
                }
                continue;
            }
            const double a = mmTo(nodes_[node.first].box, point);
            const double b = mmTo(nodes_[node.first + 1].box, point);
            // The nearer half comes off the stack first.
            const std::uint32_t nearer = a <= b ? node.first : node.first + 1;
            const std::uint32_t further = a <= b ? node.first + 1 : node.first;
            open.emplace_back(std::max(a, b), further);
            open.emplace_back(std::min(a, b), nearer);
        }
        return least;
    }

private:
    struct Node {
        Extent box;
        std::uint32_t first = 0;  ///< of the order, or of the two halves
        std::uint32_t count = 0;  ///< 0 for a node with halves
    };

    static constexpr std::uint32_t kLeaf = 4;

    static double mmTo(const Extent& box, const gp_Pnt& point) {
        const auto beyond = [](double low, double value, double high) {
            return std::max({low - value, 0.0, value - high});
        };
        const double dx = beyond(box.low.X(), point.X(), box.high.X());
        const double dy = beyond(box.low.Y(), point.Y(), box.high.Y());
        const double dz = beyond(box.low.Z(), point.Z(), box.high.Z());
        return std::sqrt(dx * dx + dy * dy + dz * dz);
    }

    double middle(std::uint32_t number, int axis) const {
        return boxes_[number].low.Coord(axis) + boxes_[number].high.Coord(axis);
    }

    Extent around(std::uint32_t first, std::uint32_t count) const {
        Extent box;
        for (std::uint32_t i = first; i < first + count; ++i) {
            box.add(boxes_[order_[i]].low);
            box.add(boxes_[order_[i]].high);
        }
        return box;
    }

    void build() {
        const auto total = static_cast<std::uint32_t>(order_.size());
        nodes_.push_back({around(0, total), 0, total});
        for (std::size_t n = 0; n < nodes_.size(); ++n) {
            if (nodes_[n].count > kLeaf) split(n);
        }
    }

    void split(std::size_t n) {
        const std::uint32_t first = nodes_[n].first;
        const std::uint32_t count = nodes_[n].count;
        const gp_XYZ size = nodes_[n].box.high - nodes_[n].box.low;
        int axis = 1;
        for (int i = 2; i <= 3; ++i) {
            if (size.Coord(i) > size.Coord(axis)) axis = i;
        }
        const auto begin = order_.begin() + first;
        std::nth_element(begin, begin + count / 2, begin + count,
                         [&](std::uint32_t a, std::uint32_t b) {
                             const double atA = middle(a, axis);
                             const double atB = middle(b, axis);
                             return atA != atB ? atA < atB : a < b;
                         });
        nodes_[n].first = static_cast<std::uint32_t>(nodes_.size());
        nodes_[n].count = 0;
        nodes_.push_back({around(first, count / 2), first, count / 2});
        nodes_.push_back(
            {around(first + count / 2, count - count / 2), first + count / 2, count - count / 2});
    }

    std::vector<Extent> boxes_;
    std::vector<std::uint32_t> order_;
    std::vector<Node> nodes_;
};

}  // namespace comparer
