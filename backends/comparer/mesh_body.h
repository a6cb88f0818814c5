#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include <TopoDS_Shape.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>

#include "backends/comparer/nearest_tree.h"

namespace comparer {

/// What a shape's faces are made of.
struct FaceForms {
    bool surfaces = false;   ///< some have a surface
    bool triangles = false;  ///< some have triangles and no surface
};
FaceForms faceFormsOf(const TopoDS_Shape& shape);

/// A copy of a body of triangles, `factor` times as large around its frame's origin. Null for
/// shapes with surfaces.
TopoDS_Shape scaledTriangles(const TopoDS_Shape& shape, double factor);

/// The triangles of a body, and how far they may be off the shape that they stand for: corners lie
/// on it, and where neighbours meet at a small angle it is taken to be curved. A flat wall and a
/// sharp edge are what they are. Lengths in millimetres, in the frame of the body. May be asked by
/// several threads.
class MeshBody {
public:
    explicit MeshBody(const TopoDS_Shape& shape);

    using Triangle = std::array<std::uint32_t, 3>;
    const std::vector<gp_XYZ>& points() const { return points_; }
    const std::vector<Triangle>& triangles() const { return triangles_; }
    std::array<gp_XYZ, 3> corners(std::uint32_t triangle) const;

    /// How far the shape may bulge out over a triangle.
    double bowMm(std::uint32_t triangle) const { return bows_[triangle]; }
    /// The same for a corner: none, but where it divides a chord and so lies beside the shape.
    double bowAtPointMm(std::uint32_t point) const { return pointBows_[point]; }
    double largestBowMm() const { return largestBow_; }
    /// Coordinates of most mesh files have seven digits.
    double roundingMm() const { return rounding_; }

    struct Foot {
        double mm = 0.0;
        std::uint32_t triangle = 0;
    };
    /// The nearest triangle; any that is not further than `enough` will do.
    Foot nearest(const gp_Pnt& point, double enough) const;

private:
    void take(const TopoDS_Shape& shape);
    void estimateBows();
    void spreadBows(double most);
    std::vector<bool> turningPoints() const;
    std::vector<NearestTree::Extent> boxes() const;

    std::vector<gp_XYZ> points_;
    std::vector<Triangle> triangles_;
    std::vector<double> bows_;
    std::vector<double> pointBows_;
    double largestBow_ = 0.0;
    double rounding_ = 0.0;
    std::optional<NearestTree> tree_;
};

}  // namespace comparer
