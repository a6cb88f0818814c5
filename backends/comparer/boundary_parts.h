#pragma once

#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepTopAdaptor_FClass2d.hxx>
#include <Bnd_Box.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <gp_Pnt.hxx>

namespace comparer {

/// A point of a curve or surface with its parameters; a curve leaves `v` alone.
struct BoundaryPoint {
    gp_Pnt point;
    double u = 0.0;
    double v = 0.0;
    double slackMm = 0.0;  ///< how far it may lie off where it is meant to
};

/// One edge of a body: its points, and how far others are from it. Where two surfaces meet, files
/// hold an approximation, in which systems and even revisions of one model differ. How far it is
/// off the surfaces is known, and that much is granted; the surfaces are held to the tolerance.
class BoundaryEdge {
public:
    explicit BoundaryEdge(const TopoDS_Edge& edge);

    /// Holds the edge with room to spare.
    Bnd_Box box() const;
    std::vector<BoundaryPoint> points() const;
    /// Whether a point of points() counts.
    bool counts(const BoundaryPoint& /*sample*/) const { return true; }
    /// `sample` is a point that another edge has at its parameter `u`: when both were written in
    /// the same form, this one has it there too, and no search is needed.
    bool isNear(const BoundaryPoint& sample, double toleranceMm) const;

    /// Distance of a point, in millimetres.
    double distanceMm(const gp_Pnt& point) const;
    gp_Pnt value(double parameter) const { return curve_.Value(parameter); }
    double firstParameter() const { return first_; }
    double lastParameter() const { return last_; }

private:
    std::vector<double> spans() const;
    double clamped(double parameter) const;
    const std::vector<BoundaryPoint>& raster() const;
    double circleParameter(const gp_Pnt& point) const;
    bool searchNear(const gp_Pnt& point, double toleranceMm) const;
    double refined(const gp_Pnt& point, double start) const;

    BRepAdaptor_Curve curve_;
    double first_ = 0.0;
    double last_ = 0.0;
    double slackMm_ = 0.0;
    mutable std::vector<BoundaryPoint> raster_;
};

/// One face of a body, the same way. Asks about its whole surface: that the edges agree is
/// somebody else's business.
class BoundaryFace {
public:
    explicit BoundaryFace(const TopoDS_Face& face);

    Bnd_Box box() const;
    /// Points of the surface around the face; none for planes, which their edges hold. Finding
    /// out which of them the face really has takes time, so they only count when they do.
    std::vector<BoundaryPoint> points() const;
    bool counts(const BoundaryPoint& sample) const;
    bool isNear(const BoundaryPoint& sample, double toleranceMm) const;

    /// The nearest point of the face off its edges; empty when it is nearer at them, or when no
    /// point is nearer than `mostMm`: whether a point lies within the edges takes time to find out.
    std::optional<BoundaryPoint> footOf(const gp_Pnt& point,
                                        double mostMm = std::numeric_limits<double>::max()) const;
    /// The point of the surface there, within the edges or not.
    gp_Pnt value(double u, double v) const { return surface_.Value(u, v); }
    /// The same when it lies within the edges.
    std::optional<BoundaryPoint> pointAt(double u, double v) const;
    double firstU() const { return u0_; }
    double lastU() const { return u1_; }
    double firstV() const { return v0_; }
    double lastV() const { return v1_; }

private:
    struct Spans {
        std::vector<double> u;
        std::vector<double> v;
    };

    Spans spans(int perSpan) const;
    bool nearestParameters(const gp_Pnt& point, double& u, double& v) const;
    std::optional<gp_Pnt> nearestOfElementary(const gp_Pnt& point) const;
    bool searchNear(const gp_Pnt& point, double toleranceMm) const;
    const std::vector<BoundaryPoint>& raster() const;
    /// From a point of the raster to one that is nearer; stops within the tolerance.
    BoundaryPoint refined(const gp_Pnt& point, const BoundaryPoint& start,
                          double toleranceMm) const;
    const BRepTopAdaptor_FClass2d& inside() const;

    TopoDS_Face face_;
    BRepAdaptor_Surface surface_;
    double u0_ = 0.0;
    double u1_ = 0.0;
    double v0_ = 0.0;
    double v1_ = 0.0;
    mutable std::vector<BoundaryPoint> raster_;
    mutable std::unique_ptr<BRepTopAdaptor_FClass2d> inside_;
};

}  // namespace comparer
