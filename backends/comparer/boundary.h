#pragma once

#include <memory>

#include <TopoDS_Shape.hxx>
#include <gp_Trsf.hxx>

namespace comparer {

class BoundaryIndex;

/// Edges and faces of a body, with points spread over them: closely enough that no span of a
/// free-form curve or surface can bend unnoticed. Features say where a body can lie; this says
/// whether it is the same all along.
class Boundary {
public:
    /// Points are near when they are no further than `toleranceMm`. Keeps the shape.
    Boundary(const TopoDS_Shape& shape, double toleranceMm);
    ~Boundary();

    /// Whether `motion` puts the edges of `other` on edges of this one and its faces on faces.
    /// How edges are split, where closed surfaces have their seams, and in which form a curve or
    /// surface is written play no part. Triangles are left out: features hold all their nodes.
    /// False as well for geometry that can't be evaluated. Doesn't throw.
    bool holds(const Boundary& other, const gp_Trsf& motion) const;

private:
    std::unique_ptr<BoundaryIndex> index_;  ///< null when the shape can't be evaluated
};

/// Whether `motion` takes the one boundary to the other, and nothing is left over in either.
bool coincide(const Boundary& a, const Boundary& b, const gp_Trsf& motion);

}  // namespace comparer
