#include "backends/comparer/carrier.h"

#include <algorithm>
#include <cmath>

#include <gp_Cone.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Pln.hxx>
#include <gp_Sphere.hxx>
#include <gp_Torus.hxx>
#include <gp_Vec.hxx>

namespace comparer {
namespace {

constexpr double kNothing = 1e-12;

/// A point as an axis sees it.
struct Polar {
    double height = 0.0;  ///< along the axis
    double radius = 0.0;  ///< away from it
    gp_Vec outward;       ///< unit, from the axis to the point; zero on the axis
};

Polar polar(const gp_Pnt& origin, const gp_Dir& axis, const gp_Pnt& point) {
    const gp_Vec arm(origin, point);
    Polar seen;
    seen.height = arm.Dot(gp_Vec(axis));
    gp_Vec away = arm - gp_Vec(axis) * seen.height;
    seen.radius = away.Magnitude();
    if (seen.radius > kNothing) seen.outward = away / seen.radius;
    return seen;
}

gp_Dir directionOr(const gp_Vec& vector, const gp_Dir& otherwise) {
    return vector.Magnitude() > kNothing ? gp_Dir(vector) : otherwise;
}

}  // namespace

const char* kindWord(SurfaceKind kind) {
    switch (kind) {
        case SurfaceKind::Plane: return "planar";
        case SurfaceKind::Cylinder: return "cylindrical";
        case SurfaceKind::Cone: return "conical";
        case SurfaceKind::Sphere: return "spherical";
        case SurfaceKind::Torus: return "toroidal";
        case SurfaceKind::Other: break;
    }
    return "free-form";
}

double Carrier::distanceMm(const gp_Pnt& point) const {
    if (kind == SurfaceKind::Plane) return std::abs(gp_Vec(origin, point).Dot(gp_Vec(axis)));
    if (kind == SurfaceKind::Sphere) return std::abs(origin.Distance(point) - radiusMm);
    const Polar seen = polar(origin, axis, point);
    if (kind == SurfaceKind::Cylinder) return std::abs(seen.radius - radiusMm);
    if (kind == SurfaceKind::Torus) {
        return std::abs(std::hypot(seen.radius - radiusMm, seen.height) - minorMm);
    }
    const double along = seen.height * std::cos(halfAngle) + seen.radius * std::sin(halfAngle);
    if (along < 0.0) return origin.Distance(point);
    return std::abs(seen.radius * std::cos(halfAngle) - seen.height * std::sin(halfAngle));
}

gp_Dir Carrier::normalAt(const gp_Pnt& point) const {
    if (kind == SurfaceKind::Plane) return axis;
    if (kind == SurfaceKind::Sphere) return directionOr(gp_Vec(origin, point), gp::DZ());
    const Polar seen = polar(origin, axis, point);
    const gp_Vec along(axis);
    if (kind == SurfaceKind::Cylinder) return directionOr(seen.outward, axis);
    if (kind == SurfaceKind::Torus) {
        return directionOr(gp_Vec(origin.Translated(seen.outward * radiusMm), point), axis);
    }
    return directionOr(seen.outward * std::cos(halfAngle) - along * std::sin(halfAngle), axis);
}

Carrier Carrier::moved(const gp_Trsf& motion) const {
    Carrier other = *this;
    other.origin.Transform(motion);
    other.axis.Transform(motion);
    return other;
}

std::optional<Carrier> elementaryCarrier(const BRepAdaptor_Surface& surface) {
    Carrier carrier;
    switch (surface.GetType()) {
        case GeomAbs_Plane:
            carrier.kind = SurfaceKind::Plane;
            carrier.origin = surface.Plane().Location();
            carrier.axis = surface.Plane().Axis().Direction();
            return carrier;
        case GeomAbs_Cylinder:
            carrier.kind = SurfaceKind::Cylinder;
            carrier.origin = surface.Cylinder().Location();
            carrier.axis = surface.Cylinder().Axis().Direction();
            carrier.radiusMm = surface.Cylinder().Radius();
            return carrier;
        case GeomAbs_Cone: {
            const gp_Cone cone = surface.Cone();
            carrier.kind = SurfaceKind::Cone;
            carrier.origin = cone.Apex();
            carrier.halfAngle = std::abs(cone.SemiAngle());
            carrier.axis = cone.Axis().Direction();
            if (cone.SemiAngle() < 0.0) carrier.axis.Reverse();
            return carrier;
        }
        case GeomAbs_Sphere:
            carrier.kind = SurfaceKind::Sphere;
            carrier.origin = surface.Sphere().Location();
            carrier.radiusMm = surface.Sphere().Radius();
            return carrier;
        case GeomAbs_Torus:
            carrier.kind = SurfaceKind::Torus;
            carrier.origin = surface.Torus().Location();
            carrier.axis = surface.Torus().Axis().Direction();
            carrier.radiusMm = surface.Torus().MajorRadius();
            carrier.minorMm = surface.Torus().MinorRadius();
            return carrier;
        default: return std::nullopt;
    }
}

}  // namespace comparer
