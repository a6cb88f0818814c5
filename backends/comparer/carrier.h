#pragma once

#include <optional>
#include <vector>

#include <BRepAdaptor_Surface.hxx>
#include <gp_Dir.hxx>
#include <gp_Pnt.hxx>
#include <gp_Trsf.hxx>

namespace comparer {

/// In the order of BodyIdentity::surfaceKinds.
enum class SurfaceKind { Plane, Cylinder, Cone, Sphere, Torus, Other };

/// "planar", "cylindrical", ..., "free-form".
const char* kindWord(SurfaceKind kind);

/// A point of a surface and a unit normal, whichever of the two.
struct SurfaceSample {
    gp_Pnt point;
    gp_Dir normal;
};

/// The unbounded surface that a face lies on, in millimetres. Two faces lie on one surface when
/// each is nowhere further from the other's carrier than the tolerance: how the surface is
/// parametrised, and in which form it was written, play no part.
struct Carrier {
    SurfaceKind kind = SurfaceKind::Other;
    gp_Pnt origin;           ///< plane: a point of it; cone: its apex; others: centre or axis point
    gp_Dir axis;             ///< plane: normal; cone: into its opening; unused for spheres
    double radiusMm = 0.0;   ///< cylinder, sphere; torus: of the circle of centres
    double minorMm = 0.0;    ///< torus only: of the tube
    double halfAngle = 0.0;  ///< cone only, in radians

    /// Not negative. Only for kinds other than Other.
    double distanceMm(const gp_Pnt& point) const;
    /// At the point of the surface nearest to `point`; either direction.
    gp_Dir normalAt(const gp_Pnt& point) const;
    Carrier moved(const gp_Trsf& motion) const;
};

/// The carrier of a face that is written as one of the five elementary surfaces.
std::optional<Carrier> elementaryCarrier(const BRepAdaptor_Surface& surface);

/// The elementary surface that all samples lie on within the tolerance, the simplest that fits:
/// writers turn planes and cylinders into free-form surfaces. Empty when there is none, or too few
/// samples to tell.
std::optional<Carrier> fitCarrier(const std::vector<SurfaceSample>& samples, double toleranceMm);

}  // namespace comparer
