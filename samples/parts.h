#pragma once

#include <cstdint>

#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>

namespace samples {

/// Solids of the samples, in millimetres. All stand on the plane z = 0 and around the z axis
/// unless they say otherwise.

/// Straight-toothed wheel with a bore.
TopoDS_Shape gear(int teeth, double moduleMm, double widthMm, double boreRadiusMm);
/// Shaft with three steps.
TopoDS_Shape shaft(double lengthMm, double radiusMm);
/// Two rings, one within the other: a part of two bodies.
TopoDS_Shape bearing(double innerRadiusMm, double outerRadiusMm, double widthMm);
TopoDS_Shape bolt(double threadRadiusMm, double lengthMm);
TopoDS_Shape pin(double radiusMm, double lengthMm);
/// Tapered plug with a square head.
TopoDS_Shape plug(double radiusMm, double lengthMm);
/// Parallel key with round ends, lying along x.
TopoDS_Shape key(double lengthMm, double widthMm, double heightMm);
/// Open tray with two bores for shafts, from the origin to (x, y, z).
TopoDS_Shape housing(double xMm, double yMm, double zMm, double boreRadiusMm);
TopoDS_Shape cover(double xMm, double yMm, double thicknessMm);
TopoDS_Shape sightGlass(double radiusMm, double thicknessMm);

/// Plate with a free-form edge and holes; every `seed` gives another one, the same each time.
TopoDS_Shape seededPlate(std::uint32_t seed, int holes);
/// The same plate with its first hole larger by `growMm` in radius.
TopoDS_Shape seededPlate(std::uint32_t seed, int holes, double growMm);

/// Plane face of a shape whose outer normal is closest to +z and that lies highest.
TopoDS_Face topFace(const TopoDS_Shape& shape);
/// First cylindrical face with that radius; null when there is none.
TopoDS_Face cylinderFace(const TopoDS_Shape& shape, double radiusMm);

}  // namespace samples
