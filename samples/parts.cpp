#include "samples/parts.h"

#include <cmath>
#include <numbers>
#include <vector>

#include <BRepAdaptor_Surface.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRep_Builder.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <GeomAPI_Interpolate.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <TColgp_HArray1OfPnt.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Ax2.hxx>
#include <gp_Circ.hxx>
#include <gp_Pln.hxx>

namespace samples {
namespace {

constexpr double kPi = std::numbers::pi;

TopoDS_Shape cylinder(double x, double y, double z, double radius, double height) {
    return BRepPrimAPI_MakeCylinder(gp_Ax2({x, y, z}, gp::DZ()), radius, height).Shape();
}

TopoDS_Shape cut(const TopoDS_Shape& body, const TopoDS_Shape& tool) {
    return TopExp_Explorer(BRepAlgoAPI_Cut(body, tool).Shape(), TopAbs_SOLID).Current();
}

TopoDS_Shape fuse(const TopoDS_Shape& a, const TopoDS_Shape& b) {
    return TopExp_Explorer(BRepAlgoAPI_Fuse(a, b).Shape(), TopAbs_SOLID).Current();
}

TopoDS_Wire circle(double x, double y, double radius) {
    const gp_Circ round(gp_Ax2({x, y, 0.0}, gp::DZ()), radius);
    return BRepBuilderAPI_MakeWire(BRepBuilderAPI_MakeEdge(round).Edge()).Wire();
}

TopoDS_Shape prism(BRepBuilderAPI_MakeFace& profile, double height) {
    return BRepPrimAPI_MakePrism(profile.Face(), gp_Vec(0.0, 0.0, height)).Shape();
}

/// Numbers that are the same with every standard library.
class Random {
public:
    explicit Random(std::uint32_t seed) : state_(seed * 2654435761U + 12345U) {}
    /// In [low, high).
    double between(double low, double high) {
        state_ = state_ * 1664525U + 1013904223U;
        return low + (high - low) * (static_cast<double>(state_ >> 8) / 16777216.0);
    }

private:
    std::uint32_t state_;
};

/// Closed outline: three straight sides and a free-form one.
TopoDS_Wire plateOutline(Random& random, double x, double y) {
    constexpr int kPoints = 9;
    Handle(TColgp_HArray1OfPnt) points = new TColgp_HArray1OfPnt(1, kPoints);
    for (int i = 0; i < kPoints; ++i) {
        const bool end = i == 0 || i == kPoints - 1;
        const double bulge = end ? 0.0 : random.between(2.0, 12.0);
        points->SetValue(i + 1, gp_Pnt(x - x * i / (kPoints - 1), y + bulge, 0.0));
    }
    GeomAPI_Interpolate interpolation(points, Standard_False, 1e-6);
    interpolation.Perform();
    const Handle(Geom_BSplineCurve) curve = interpolation.Curve();
    const gp_Pnt a(0, 0, 0);
    const gp_Pnt b(x, 0, 0);
    const gp_Pnt c = curve->StartPoint();
    const gp_Pnt d = curve->EndPoint();
    BRepBuilderAPI_MakeWire wire;
    wire.Add(BRepBuilderAPI_MakeEdge(a, b).Edge());
    wire.Add(BRepBuilderAPI_MakeEdge(b, c).Edge());
    wire.Add(BRepBuilderAPI_MakeEdge(curve).Edge());
    wire.Add(BRepBuilderAPI_MakeEdge(d, a).Edge());
    return wire.Wire();
}

}  // namespace

TopoDS_Shape gear(int teeth, double moduleMm, double widthMm, double boreRadiusMm) {
    const double root = moduleMm * (teeth / 2.0 - 1.25);
    const double tip = moduleMm * (teeth / 2.0 + 1.0);
    const double pitch = 2.0 * kPi / teeth;
    BRepBuilderAPI_MakePolygon outline;
    for (int i = 0; i < teeth; ++i) {
        const double at = i * pitch;
        const auto corner = [&](double radius, double fraction) {
            const double angle = at + fraction * pitch;
            outline.Add(gp_Pnt(radius * std::cos(angle), radius * std::sin(angle), 0.0));
        };
        corner(root, 0.0);
        corner(root, 0.40);
        corner(tip, 0.58);
        corner(tip, 0.82);
    }
    outline.Close();
    BRepBuilderAPI_MakeFace profile(gp_Pln(gp::XOY()), outline.Wire());
    profile.Add(TopoDS::Wire(circle(0, 0, boreRadiusMm).Reversed()));
    return prism(profile, widthMm);
}

TopoDS_Shape shaft(double lengthMm, double radiusMm) {
    const TopoDS_Shape middle = cylinder(0, 0, 0.3 * lengthMm, radiusMm, 0.4 * lengthMm);
    const TopoDS_Shape foot = cylinder(0, 0, 0, 0.8 * radiusMm, 0.3 * lengthMm);
    const TopoDS_Shape head = cylinder(0, 0, 0.7 * lengthMm, 0.7 * radiusMm, 0.3 * lengthMm);
    return fuse(fuse(middle, foot), head);
}

TopoDS_Shape bearing(double innerRadiusMm, double outerRadiusMm, double widthMm) {
    const double wall = (outerRadiusMm - innerRadiusMm) / 4.0;
    const auto ring = [&](double inner, double outer) {
        BRepBuilderAPI_MakeFace profile(gp_Pln(gp::XOY()), circle(0, 0, outer));
        profile.Add(TopoDS::Wire(circle(0, 0, inner).Reversed()));
        return prism(profile, widthMm);
    };
    TopoDS_Compound rings;
    BRep_Builder builder;
    builder.MakeCompound(rings);
    builder.Add(rings, ring(innerRadiusMm, innerRadiusMm + wall));
    builder.Add(rings, ring(outerRadiusMm - wall, outerRadiusMm));
    return rings;
}

TopoDS_Shape bolt(double threadRadiusMm, double lengthMm) {
    BRepBuilderAPI_MakePolygon hexagon;
    for (int i = 0; i < 6; ++i) {
        const double angle = i * kPi / 3.0;
        hexagon.Add(gp_Pnt(1.9 * threadRadiusMm * std::cos(angle),
                           1.9 * threadRadiusMm * std::sin(angle), 0.0));
    }
    hexagon.Close();
    BRepBuilderAPI_MakeFace profile(gp_Pln(gp::XOY()), hexagon.Wire());
    return fuse(prism(profile, 1.3 * threadRadiusMm),
                cylinder(0, 0, -lengthMm, threadRadiusMm, lengthMm));
}

TopoDS_Shape pin(double radiusMm, double lengthMm) {
    return cylinder(0, 0, 0, radiusMm, lengthMm);
}

TopoDS_Shape plug(double radiusMm, double lengthMm) {
    const TopoDS_Shape cone =
        BRepPrimAPI_MakeCone(gp::XOY(), 0.9 * radiusMm, radiusMm, lengthMm).Shape();
    const double half = 0.6 * radiusMm;
    const TopoDS_Shape head =
        BRepPrimAPI_MakeBox(gp_Pnt(-half, -half, lengthMm), 2 * half, 2 * half, radiusMm).Shape();
    return fuse(cone, head);
}

TopoDS_Shape key(double lengthMm, double widthMm, double heightMm) {
    const double r = widthMm / 2.0;
    const double l = lengthMm / 2.0 - r;
    const auto arc = [](const gp_Pnt& from, const gp_Pnt& over, const gp_Pnt& to) {
        return BRepBuilderAPI_MakeEdge(GC_MakeArcOfCircle(from, over, to).Value()).Edge();
    };
    BRepBuilderAPI_MakeWire outline;
    outline.Add(BRepBuilderAPI_MakeEdge(gp_Pnt(-l, -r, 0), gp_Pnt(l, -r, 0)).Edge());
    outline.Add(arc({l, -r, 0}, {l + r, 0, 0}, {l, r, 0}));
    outline.Add(BRepBuilderAPI_MakeEdge(gp_Pnt(l, r, 0), gp_Pnt(-l, r, 0)).Edge());
    outline.Add(arc({-l, r, 0}, {-l - r, 0, 0}, {-l, -r, 0}));
    BRepBuilderAPI_MakeFace profile(gp_Pln(gp::XOY()), outline.Wire());
    return prism(profile, heightMm);
}

TopoDS_Shape housing(double xMm, double yMm, double zMm, double boreRadiusMm) {
    constexpr double kWall = 8.0;
    TopoDS_Shape body = BRepPrimAPI_MakeBox(xMm, yMm, zMm).Shape();
    body = cut(body, BRepPrimAPI_MakeBox(gp_Pnt(kWall, kWall, kWall), xMm - 2 * kWall,
                                         yMm - 2 * kWall, zMm)
                         .Shape());
    for (const double x : {xMm * 0.3, xMm * 0.7}) {
        const gp_Ax2 axis({x, -1.0, zMm * 0.55}, gp::DY());
        body = cut(body, BRepPrimAPI_MakeCylinder(axis, boreRadiusMm, yMm + 2.0).Shape());
    }
    return body;
}

TopoDS_Shape cover(double xMm, double yMm, double thicknessMm) {
    BRepBuilderAPI_MakePolygon outline({0, 0, 0}, {xMm, 0, 0}, {xMm, yMm, 0}, {0, yMm, 0},
                                       Standard_True);
    BRepBuilderAPI_MakeFace profile(gp_Pln(gp::XOY()), outline.Wire());
    profile.Add(TopoDS::Wire(circle(xMm / 2, yMm / 2, 12.0).Reversed()));
    return prism(profile, thicknessMm);
}

TopoDS_Shape sightGlass(double radiusMm, double thicknessMm) {
    return fuse(cylinder(0, 0, 0, radiusMm, thicknessMm),
                cylinder(0, 0, thicknessMm, 0.7 * radiusMm, thicknessMm));
}

TopoDS_Shape seededPlate(std::uint32_t seed, int holes) {
    return seededPlate(seed, holes, 0.0);
}

TopoDS_Shape seededPlate(std::uint32_t seed, int holes, double growMm) {
    Random random(seed);
    const double cell = 12.0;
    const int columns = std::max(1, static_cast<int>(std::ceil(std::sqrt(holes))));
    const int rows = (holes + columns - 1) / columns;
    const double x = cell * (columns + 1) + random.between(0.0, 5.0);
    const double y = cell * (rows + 1) + random.between(0.0, 5.0);
    const double thickness = random.between(3.0, 15.0);
    BRepBuilderAPI_MakeFace profile(gp_Pln(gp::XOY()), plateOutline(random, x, y));
    for (int i = 0; i < holes; ++i) {
        const double radius = random.between(1.0, 3.0) + (i == 0 ? growMm : 0.0);
        const int column = i % columns + 1;
        const int row = i / columns + 1;
        const double cx = cell * column + random.between(-1.0, 1.0);
        const double cy = cell * row + random.between(-1.0, 1.0);
        profile.Add(TopoDS::Wire(circle(cx, cy, radius).Reversed()));
    }
    return prism(profile, thickness);
}

TopoDS_Face topFace(const TopoDS_Shape& shape) {
    TopoDS_Face best;
    double highest = -1e300;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        const TopoDS_Face& face = TopoDS::Face(faces.Current());
        const BRepAdaptor_Surface surface(face);
        if (surface.GetType() != GeomAbs_Plane) continue;
        const gp_Ax1 normal = surface.Plane().Axis();
        const double z = surface.Plane().Location().Z();
        if (std::abs(normal.Direction().Z()) < 0.999 || z <= highest) continue;
        highest = z;
        best = face;
    }
    return best;
}

TopoDS_Face cylinderFace(const TopoDS_Shape& shape, double radiusMm) {
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next()) {
        const TopoDS_Face& face = TopoDS::Face(faces.Current());
        const BRepAdaptor_Surface surface(face);
        if (surface.GetType() != GeomAbs_Cylinder) continue;
        if (std::abs(surface.Cylinder().Radius() - radiusMm) < 1e-6) return face;
    }
    return {};
}

}  // namespace samples
