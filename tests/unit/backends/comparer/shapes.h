#pragma once

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <Geom_BSplineSurface.hxx>
#include <TColStd_Array1OfInteger.hxx>
#include <TColStd_Array1OfReal.hxx>
#include <TColgp_Array2OfPnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Ax1.hxx>
#include <gp_Ax2.hxx>
#include <gp_Trsf.hxx>

/// Bodies and placements for tests, in millimetres.
namespace shapes {

inline gp_Trsf at(double x, double y, double z) {
    gp_Trsf placement;
    placement.SetTranslation(gp_Vec(x, y, z));
    return placement;
}

inline gp_Trsf turnedZ(double degrees) {
    gp_Trsf placement;
    placement.SetRotation(gp_Ax1(gp::Origin(), gp::DZ()), degrees * 0.017453292519943295);
    return placement;
}

inline TopoDS_Shape box(double x, double y, double z) {
    return BRepPrimAPI_MakeBox(x, y, z).Solid();
}

inline TopoDS_Shape cylinder(double radius, double height) {
    return BRepPrimAPI_MakeCylinder(radius, height).Solid();
}

inline TopoDS_Shape onlySolid(const TopoDS_Shape& shape) {
    return TopExp_Explorer(shape, TopAbs_SOLID).Current();
}

/// Plate of 100 x 60 x 10 with a hole of radius 4 at (x, y).
inline TopoDS_Shape plate(double x, double y, double radius = 4.0) {
    const gp_Ax2 axis({x, y, -1.0}, gp::DZ());
    const TopoDS_Shape hole = BRepPrimAPI_MakeCylinder(axis, radius, 12.0).Shape();
    return onlySolid(BRepAlgoAPI_Cut(box(100, 60, 10), hole).Shape());
}

/// Three different arms along the axes: a body that is not its own mirror image.
inline TopoDS_Shape handed() {
    const TopoDS_Shape xy = BRepAlgoAPI_Fuse(box(40, 10, 10), box(10, 30, 10)).Shape();
    return onlySolid(BRepAlgoAPI_Fuse(xy, box(10, 10, 20)).Shape());
}

/// Tube of 500 x 50 with a wall of 2 and one small hole through it, at a height and straight out.
inline TopoDS_Shape crossTube(double z, double radius = 2.0) {
    const TopoDS_Shape bore =
        BRepPrimAPI_MakeCylinder(gp_Ax2({0, 0, -1.0}, gp::DZ()), 48.0, 502.0).Shape();
    const TopoDS_Shape tube = BRepAlgoAPI_Cut(cylinder(50, 500), bore).Shape();
    const TopoDS_Shape hole =
        BRepPrimAPI_MakeCylinder(gp_Ax2({0, 0, z}, gp::DX()), radius, 60.0).Shape();
    return onlySolid(BRepAlgoAPI_Cut(tube, hole).Shape());
}

/// Free-form face of 200 x 200, 40 high at one corner, with one of its 20 x 20 poles pulled up.
inline TopoDS_Shape hood(double pullMm, double heightMm = 40.0) {
    constexpr int kPoles = 20;
    constexpr int kSpans = kPoles - 3;
    TColgp_Array2OfPnt poles(1, kPoles, 1, kPoles);
    TColStd_Array1OfReal knots(1, kSpans + 1);
    TColStd_Array1OfInteger multiplicities(1, kSpans + 1);
    multiplicities.Init(1);
    multiplicities(1) = multiplicities(kSpans + 1) = 4;
    for (int i = 0; i <= kSpans; ++i) knots(i + 1) = i;
    for (int u = 1; u <= kPoles; ++u) {
        for (int v = 1; v <= kPoles; ++v) {
            const double x = 200.0 * (u - 1) / (kPoles - 1);
            const double y = 200.0 * (v - 1) / (kPoles - 1);
            const double pull = u == 7 && v == 9 ? pullMm : 0.0;
            poles(u, v) = gp_Pnt(x, y, x * (200.0 - y) / 40000.0 * heightMm + pull);
        }
    }
    const Handle(Geom_BSplineSurface) surface =
        new Geom_BSplineSurface(poles, knots, knots, multiplicities, multiplicities, 3, 3);
    return BRepBuilderAPI_MakeFace(surface, 1e-6).Face();
}

/// Two straight edges at a right angle, the first of that length.
inline TopoDS_Shape bentWire(double lengthMm) {
    const gp_Pnt corner(lengthMm, 0, 0);
    return BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(gp::Origin(), corner).Edge(),
                                   BRepBuilderAPI_MakeEdge(corner, gp_Pnt(lengthMm, 20, 0)).Edge())
        .Wire();
}

/// The geometry itself is moved, not only placed elsewhere.
inline TopoDS_Shape baked(const TopoDS_Shape& shape, const gp_Trsf& motion) {
    return BRepBuilderAPI_Transform(shape, motion, Standard_True).Shape();
}

inline TopoDS_Shape mirrored(const TopoDS_Shape& shape) {
    gp_Trsf mirror;
    mirror.SetMirror(gp_Ax2(gp::Origin(), gp::DX()));
    return baked(shape, mirror);
}

inline TopoDS_Shape scaled(const TopoDS_Shape& shape, double factor) {
    gp_Trsf scale;
    scale.SetScale(gp::Origin(), factor);
    return baked(shape, scale);
}

}  // namespace shapes
