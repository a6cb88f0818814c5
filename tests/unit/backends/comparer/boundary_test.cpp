#include "backends/comparer/boundary.h"

#include <gtest/gtest.h>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <BRep_Builder.hxx>
#include <GeomAPI_Interpolate.hxx>
#include <Geom_BSplineCurve.hxx>
#include <TColgp_HArray1OfPnt.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>

#include "tests/unit/backends/comparer/shapes.h"

namespace {

using comparer::Boundary;
constexpr double kToleranceMm = 1e-3;

bool same(const TopoDS_Shape& a, const TopoDS_Shape& b, const gp_Trsf& motion) {
    return comparer::coincide(Boundary(a, kToleranceMm), Boundary(b, kToleranceMm), motion);
}

bool same(const TopoDS_Shape& a, const TopoDS_Shape& b) {
    return same(a, b, gp_Trsf());
}

gp_Trsf oddMotion() {
    return shapes::at(100, -20, 7) * shapes::turnedZ(33);
}

/// Prism of a closed spline through 24 points, one of them further out.
TopoDS_Shape cam(double outMm) {
    Handle(TColgp_HArray1OfPnt) points = new TColgp_HArray1OfPnt(1, 24);
    for (int i = 0; i < 24; ++i) {
        const double angle = 0.2617993877991494 * i;
        const double radius = 50 + 5 * std::cos(3 * angle) + (i == 7 ? outMm : 0.0);
        points->SetValue(i + 1, gp_Pnt(radius * std::cos(angle), radius * std::sin(angle), 0));
    }
    GeomAPI_Interpolate spline(points, Standard_True, 1e-7);
    spline.Perform();
    BRepBuilderAPI_MakeWire wire(BRepBuilderAPI_MakeEdge(spline.Curve()).Edge());
    return BRepPrimAPI_MakePrism(BRepBuilderAPI_MakeFace(wire.Wire(), true).Face(),
                                 gp_Vec(0, 0, 10))
        .Shape();
}

std::vector<TopoDS_Shape> manyShapes() {
    return {shapes::plate(30, 20),
            shapes::handed(),
            shapes::cylinder(4, 9),
            BRepPrimAPI_MakeSphere(4).Solid(),
            BRepPrimAPI_MakeCone(5, 2, 9).Solid(),
            BRepPrimAPI_MakeCone(5, 0, 9).Solid(),
            BRepPrimAPI_MakeTorus(8, 2).Solid(),
            BRepPrimAPI_MakeTorus(8, 2, 0.3, 1.2, 2.0).Solid(),
            BRepPrimAPI_MakeTorus(2.0, 6.0, -1.5, 1.5, 1.6).Solid(),
            BRepPrimAPI_MakeTorus(20, 6, -1.57, 1.57, 1.57).Solid(),
            shapes::crossTube(200),
            shapes::hood(3.0),
            shapes::bentWire(10),
            cam(1.0)};
}

TEST(Boundary, OfABodyHoldsItself) {
    for (const TopoDS_Shape& shape : manyShapes()) EXPECT_TRUE(same(shape, shape));
}

TEST(Boundary, FollowsAMotion) {
    for (const TopoDS_Shape& shape : manyShapes()) {
        const TopoDS_Shape moved = shapes::baked(shape, oddMotion());
        EXPECT_TRUE(same(shape, moved, oddMotion()));
        EXPECT_FALSE(same(shape, moved, shapes::at(0.01, 0.01, 0.01) * oddMotion()));
    }
}

TEST(Boundary, IsTheSameInAnotherForm) {
    for (const TopoDS_Shape& shape : manyShapes()) {
        EXPECT_TRUE(same(shape, BRepBuilderAPI_NurbsConvert(shape).Shape()));
    }
}

TEST(Boundary, DoesNotShowWhereSeamsAre) {
    for (const TopoDS_Shape& shape :
         {shapes::cylinder(4, 9), TopoDS_Shape(BRepPrimAPI_MakeTorus(8, 2).Solid()),
          TopoDS_Shape(BRepPrimAPI_MakeCone(5, 2, 9).Solid())}) {
        const TopoDS_Shape turned = shapes::baked(shape, shapes::turnedZ(77));
        EXPECT_TRUE(same(shape, turned));
        EXPECT_TRUE(same(shape, BRepBuilderAPI_NurbsConvert(turned).Shape()));
    }
}

TEST(Boundary, ShowsWhatIsOnOneSideOnly) {
    const TopoDS_Shape full = shapes::box(100, 60, 10);
    const TopoDS_Shape holed = shapes::plate(30, 20, 0.5);
    EXPECT_FALSE(same(full, holed));
    EXPECT_FALSE(same(holed, full));
}

TEST(Boundary, ShowsABendBetweenTheEndsOfACurve) {
    EXPECT_FALSE(same(cam(0), cam(0.005)));
    EXPECT_TRUE(same(cam(0), cam(0.0001)));
}

TEST(Boundary, ShowsABendInsideAFace) {
    EXPECT_FALSE(same(shapes::hood(0), shapes::hood(0.02)));
    EXPECT_TRUE(same(shapes::hood(0), shapes::hood(0.0001)));
}

/// Two caps of spheres over one and the same circle.
TEST(Boundary, ShowsADeeperCap) {
    const auto cap = [](double radius) {
        const double height = std::sqrt(radius * radius - 9.0);
        const gp_Ax2 axes({0, 0, -height}, gp::DZ());
        const double from = std::asin(height / radius);
        return TopoDS_Shape(BRepPrimAPI_MakeSphere(axes, radius, from, 1.5707963267948966).Solid());
    };
    EXPECT_TRUE(same(cap(5), cap(5)));
    EXPECT_FALSE(same(cap(5), cap(5.1)));
}

/// Where surfaces meet, edges are as good as the system that wrote them.
TEST(Boundary, GrantsEdgesWhatTheyAreOffTheirSurfacesButNotMuch) {
    const auto wire = [](double y, double offMm) {
        const TopoDS_Shape shape = shapes::baked(shapes::bentWire(10), shapes::at(0, y, 0));
        for (TopExp_Explorer it(shape, TopAbs_EDGE); it.More(); it.Next()) {
            BRep_Builder().UpdateEdge(TopoDS::Edge(it.Current()), offMm);
        }
        return shape;
    };
    EXPECT_FALSE(same(wire(0, 1e-7), wire(0.01, 1e-7)));
    EXPECT_TRUE(same(wire(0, 1e-7), wire(0.01, 0.006)));
    EXPECT_TRUE(same(wire(0, 0.006), wire(0.01, 1e-7)));
    EXPECT_FALSE(same(wire(0, 1e-7), wire(0.01, 0.004)));
    EXPECT_FALSE(same(wire(0, 1.0), wire(0.06, 1.0))) << "a bad file excuses 0.05 mm at most";
}

TEST(Boundary, OfNothingHoldsNothingElse) {
    EXPECT_FALSE(same(shapes::box(1, 2, 3), TopoDS_Shape()));
    EXPECT_FALSE(same(TopoDS_Shape(), shapes::box(1, 2, 3)));
}

}  // namespace
