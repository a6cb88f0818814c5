#include "tests/edits/base_parts.h"

#include <cmath>
#include <numbers>

#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <GeomAPI_PointsToBSpline.hxx>
#include <Geom_BSplineCurve.hxx>
#include <TColgp_Array1OfPnt.hxx>
#include <TopExp_Explorer.hxx>
#include <gp_Ax2.hxx>

namespace edits {
namespace {

using comparer::Carrier;
using comparer::SurfaceKind;

struct Outline {
    const char* name;
    std::vector<gp_Pnt2d> corners;
    std::vector<gp_Pnt2d> spots;  ///< for holes of up to 5 in radius
    gp_Pnt2d boss;                ///< for one of up to 8 in radius
    Boss kind;
};

std::vector<Outline> outlines() {
    return {
        {"Plate",
         {{0, 0}, {100, 0}, {100, 60}, {0, 60}},
         {{15, 15}, {85, 13}, {17, 45}, {70, 48}},
         {48, 30},
         Boss::Cylinder},
        {"Angle",
         {{0, 0}, {90, 0}, {90, 30}, {30, 30}, {30, 80}, {0, 80}},
         {{75, 12}, {52, 18}, {12, 66}, {18, 40}},
         {15, 15},
         Boss::Dome},
        {"Channel",
         {{0, 0}, {90, 0}, {90, 70}, {65, 70}, {65, 25}, {25, 25}, {25, 70}, {0, 70}},
         {{12, 55}, {78, 58}, {14, 12}, {45, 12}},
         {76, 14},
         Boss::Cone},
        {"Hexagon",
         {{50, 0}, {93, 25}, {93, 75}, {50, 100}, {7, 75}, {7, 25}},
         {{50, 20}, {70, 35}, {30, 68}, {50, 82}},
         {45, 48},
         Boss::Ring},
        {"Tee",
         {{30, 0}, {60, 0}, {60, 50}, {90, 50}, {90, 80}, {0, 80}, {0, 50}, {30, 50}},
         {{44, 15}, {14, 66}, {76, 63}, {60, 68}},
         {36, 64},
         Boss::Block},
        {"Wedge",
         {{0, 0}, {110, 0}, {30, 80}},
         {{20, 10}, {85, 9}, {33, 60}, {60, 12}},
         {38, 30},
         Boss::Dome},
        {"Cover",
         {{0, 0}, {80, 0}, {80, 80}, {0, 80}},
         {{10, 10}, {70, 12}, {68, 70}, {11, 66}},
         {36, 42},
         Boss::FreeForm},
        {"Trapezium",
         {{0, 0}, {120, 0}, {90, 50}, {30, 50}},
         {{20, 10}, {100, 11}, {80, 38}, {36, 36}},
         {60, 22},
         Boss::Cone},
        {"Cross",
         {{30, 0},
          {60, 0},
          {60, 30},
          {90, 30},
          {90, 60},
          {60, 60},
          {60, 90},
          {30, 90},
          {30, 60},
          {0, 60},
          {0, 30},
          {30, 30}},
         {{45, 12}, {77, 45}, {46, 78}, {12, 44}},
         {44, 47},
         Boss::Ring},
        {"Octagon",
         {{30, 0}, {70, 0}, {100, 30}, {100, 70}, {70, 100}, {30, 100}, {0, 70}, {0, 30}},
         {{50, 15}, {84, 52}, {48, 86}, {16, 47}},
         {52, 54},
         Boss::Cylinder},
        {"Bar",
         {{0, 0}, {160, 0}, {160, 22}, {0, 22}},
         {{12, 11}, {50, 10}, {110, 12}, {147, 11}},
         {80, 11},
         Boss::Block},
        {"Fin",
         {{0, 0}, {70, 0}, {70, 30}, {20, 70}, {0, 70}},
         {{12, 12}, {57, 11}, {11, 57}, {36, 16}},
         {28, 38},
         Boss::FreeForm},
    };
}

/// A pad with a free-form wall around it.
TopoDS_Shape freeFormBoss(const gp_Pnt& foot, double size) {
    constexpr int kPoints = 7;
    TColgp_Array1OfPnt points(1, kPoints);
    for (int i = 0; i < kPoints; ++i) {
        const double angle = std::numbers::pi * i / (kPoints - 1);
        const double radius = size * (1.0 + 0.12 * std::sin(3.0 * angle + 0.4));
        points(i + 1) =
            foot.Translated(gp_Vec(radius * std::cos(angle), radius * std::sin(angle), 0.0));
    }
    const Handle(Geom_BSplineCurve) curve = GeomAPI_PointsToBSpline(points, 3, 5).Curve();
    BRepBuilderAPI_MakeWire wire(BRepBuilderAPI_MakeEdge(curve).Edge(),
                                 BRepBuilderAPI_MakeEdge(points(kPoints), points(1)).Edge());
    return BRepPrimAPI_MakePrism(BRepBuilderAPI_MakeFace(wire.Wire()).Face(),
                                 gp_Vec(0, 0, 0.6 * size))
        .Shape();
}

TopoDS_Shape bossShape(Boss boss, const gp_Pnt& foot, double size) {
    const gp_Ax2 axes(foot, gp::DZ());
    switch (boss) {
        case Boss::Cylinder: return BRepPrimAPI_MakeCylinder(axes, size, 0.9 * size).Shape();
        case Boss::Dome: return BRepPrimAPI_MakeSphere(axes, size, 0.0, M_PI / 2.0).Shape();
        case Boss::Cone: return BRepPrimAPI_MakeCone(axes, size, 0.6 * size, size).Shape();
        case Boss::Ring: return BRepPrimAPI_MakeTorus(axes, 0.7 * size, 0.25 * size).Shape();
        case Boss::Block:
            return BRepPrimAPI_MakeBox(foot.Translated(gp_Vec(-0.6 * size, -0.5 * size, 0)),
                                       1.1 * size, 0.9 * size, 0.7 * size)
                .Shape();
        case Boss::FreeForm: return freeFormBoss(foot, size);
        case Boss::None: break;
    }
    return {};
}

TopoDS_Shape onlySolid(const TopoDS_Shape& shape) {
    TopExp_Explorer it(shape, TopAbs_SOLID);
    return it.More() ? it.Current() : shape;
}

}  // namespace

TopoDS_Shape Part::build() const {
    BRepBuilderAPI_MakePolygon polygon;
    for (const gp_Pnt2d& corner : corners) polygon.Add(gp_Pnt(corner.X(), corner.Y(), 0.0));
    polygon.Close();
    TopoDS_Shape shape = BRepPrimAPI_MakePrism(BRepBuilderAPI_MakeFace(polygon.Wire()).Face(),
                                               gp_Vec(0, 0, heightMm))
                             .Shape();
    for (const Hole& hole : holes) {
        const gp_Ax2 axes(gp_Pnt(hole.x, hole.y, -1.0), gp::DZ());
        shape = BRepAlgoAPI_Cut(
                    shape, BRepPrimAPI_MakeCylinder(axes, hole.radiusMm, heightMm + 2.0).Shape())
                    .Shape();
    }
    if (boss != Boss::None) {
        const gp_Pnt foot(bossAt.X(), bossAt.Y(), heightMm);
        shape = BRepAlgoAPI_Fuse(shape, bossShape(boss, foot, bossSizeMm)).Shape();
    }
    return onlySolid(shape);
}

Carrier Part::top() const {
    Carrier plane = bottom();
    plane.origin = gp_Pnt(0, 0, heightMm);
    return plane;
}

Carrier Part::bottom() const {
    Carrier plane;
    plane.kind = SurfaceKind::Plane;
    plane.axis = gp::DZ();
    return plane;
}

Carrier Part::side(std::size_t number) const {
    const gp_Pnt2d& from = corners[number];
    const gp_Pnt2d& to = corners[(number + 1) % corners.size()];
    Carrier plane;
    plane.kind = SurfaceKind::Plane;
    plane.origin = gp_Pnt((from.X() + to.X()) / 2.0, (from.Y() + to.Y()) / 2.0, 0.0);
    plane.axis = gp_Dir(to.Y() - from.Y(), from.X() - to.X(), 0.0);
    return plane;
}

Carrier Part::wall(const Hole& hole) const {
    Carrier cylinder;
    cylinder.kind = SurfaceKind::Cylinder;
    cylinder.origin = gp_Pnt(hole.x, hole.y, 0.0);
    cylinder.axis = gp::DZ();
    cylinder.radiusMm = hole.radiusMm;
    return cylinder;
}

double Part::angleAt(std::size_t corner) const {
    const std::size_t count = corners.size();
    const gp_Vec2d in(corners[corner], corners[(corner + count - 1) % count]);
    const gp_Vec2d out(corners[corner], corners[(corner + 1) % count]);
    const double angle = out.Angle(in);
    return angle < 0.0 ? angle + 2.0 * std::numbers::pi : angle;
}

std::vector<Part> baseParts(double scale, double heightMm) {
    std::vector<Part> parts;
    for (const Outline& outline : outlines()) {
        Part part;
        part.name = outline.name;
        part.heightMm = heightMm;
        part.bossAt = outline.boss.Scaled(gp_Pnt2d(), scale);
        part.boss = outline.kind;
        part.bossSizeMm = 7.0 * scale;
        for (const gp_Pnt2d& corner : outline.corners) {
            part.corners.push_back(corner.Scaled(gp_Pnt2d(), scale));
        }
        double radius = 2.0;
        for (const gp_Pnt2d& spot : outline.spots) {
            part.holes.push_back({spot.X() * scale, spot.Y() * scale, radius * scale});
            radius += 0.6;
        }
        parts.push_back(part);
    }
    return parts;
}

}  // namespace edits
