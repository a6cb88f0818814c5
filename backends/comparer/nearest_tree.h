#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include <Bnd_Box.hxx>
#include <gp_Pnt.hxx>

namespace comparer {

/// Numbered boxes as a hierarchy that answers how near the nearest of what they hold is.
class NearestTree {
public:
    explicit NearestTree(std::vector<Bnd_Box> boxes) : boxes_(std::move(boxes)) {
        for (std::uint32_t i = 0; i < boxes_.size(); ++i) {
            if (!boxes_[i].IsVoid()) order_.push_back(i);
        }
        if (!order_.empty()) build();
    }

    /// The least of `distanceOf(number)` over all numbers; those whose box is further away than
    /// what was found are not asked. Ends early with what it has once that is not above `enough`.
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
                    least = std::min(least, distanceOf(order_[i]));
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
        Bnd_Box box;
        std::uint32_t first = 0;  ///< of the order, or of the two halves
        std::uint32_t count = 0;  ///< 0 for a node with halves
    };

    static constexpr std::uint32_t kLeaf = 4;

    static double mmTo(const Bnd_Box& box, const gp_Pnt& point) {
        double x0 = 0.0, y0 = 0.0, z0 = 0.0, x1 = 0.0, y1 = 0.0, z1 = 0.0;
        box.Get(x0, y0, z0, x1, y1, z1);
        const double dx = std::max({x0 - point.X(), 0.0, point.X() - x1});
        const double dy = std::max({y0 - point.Y(), 0.0, point.Y() - y1});
        const double dz = std::max({z0 - point.Z(), 0.0, point.Z() - z1});
        return std::sqrt(dx * dx + dy * dy + dz * dz);
    }

    double middle(std::uint32_t number, int axis) const {
        const gp_XYZ sum = boxes_[number].CornerMin().XYZ() + boxes_[number].CornerMax().XYZ();
        return sum.Coord(axis);
    }

    Bnd_Box around(std::uint32_t first, std::uint32_t count) const {
        Bnd_Box box;
        for (std::uint32_t i = first; i < first + count; ++i) box.Add(boxes_[order_[i]]);
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
        const gp_XYZ size = nodes_[n].box.CornerMax().XYZ() - nodes_[n].box.CornerMin().XYZ();
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

    std::vector<Bnd_Box> boxes_;
    std::vector<std::uint32_t> order_;
    std::vector<Node> nodes_;
};

}  // namespace comparer
