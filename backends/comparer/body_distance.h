#pragma once

#include <limits>
#include <vector>

#include "backends/comparer/face_set.h"
#include "backends/comparer/nearest_tree.h"

namespace comparer {

/// Distances from a body, its faces and edges as one hierarchy of boxes. The faces have to live as
/// long. Not for several threads: faces remember what was found out about them.
class BodyDistance {
public:
    explicit BodyDistance(const FaceSet& set) : set_(set), tree_(boxesOf(set)) {}

    /// Of a point, in millimetres; any distance that is not above `enough` will do.
    double mm(const gp_Pnt& point, double enough) const {
        return tree_.nearest(point, enough, [&](std::uint32_t number, double most) {
            if (number >= set_.faceCount()) {
                return set_.edges().list[number - set_.faceCount()].distanceMm(point);
            }
            const auto foot = set_.boundary(number).footOf(point, most);
            return foot ? foot->point.Distance(point) : std::numeric_limits<double>::max();
        });
    }

private:
    static NearestTree::Extent extentOf(const Bnd_Box& box) {
        NearestTree::Extent extent;
        if (box.IsVoid()) return extent;
        extent.add(box.CornerMin().XYZ());
        extent.add(box.CornerMax().XYZ());
        return extent;
    }

    static std::vector<NearestTree::Extent> boxesOf(const FaceSet& set) {
        std::vector<NearestTree::Extent> boxes;
        for (std::uint32_t f = 0; f < set.faceCount(); ++f) {
            boxes.push_back(extentOf(set.boundary(f).box()));
        }
        for (const BoundaryEdge& edge : set.edges().list) boxes.push_back(extentOf(edge.box()));
        return boxes;
    }

    const FaceSet& set_;
    NearestTree tree_;
};

}  // namespace comparer
