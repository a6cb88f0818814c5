#pragma once

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS_Shape.hxx>
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
