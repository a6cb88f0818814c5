#include "backends/occt/body_identity.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include <BRepAdaptor_Surface.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepGProp.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GProp_GProps.hxx>
#include <GProp_PrincipalProps.hxx>
#include <Geom2dAdaptor_Curve.hxx>
#include <Geom2d_BSplineCurve.hxx>
#include <Geom2d_BezierCurve.hxx>
#include <Geom2d_Curve.hxx>
#include <GeomAdaptor_Curve.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_BezierCurve.hxx>
#include <Geom_Curve.hxx>
#include <Geom_Surface.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <gp_Trsf.hxx>

#include "backends/mesh/bodies.h"
#include "backends/mesh/welder.h"

namespace occt {
namespace {

bool isMeshFace(const TopoDS_Face& face) {
    TopLoc_Location location;
    return BRep_Tool::Surface(face, location).IsNull();
}

/// Triangles of all faces, joined by position: several faces of one mesh share corners, not node
/// numbers.
class MeshSides {
public:
    void add(const TopoDS_Face& face) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& triangles = BRep_Tool::Triangulation(face, location);
        if (triangles.IsNull()) return;
        std::vector<std::uint32_t> corner;
        corner.reserve(static_cast<std::size_t>(triangles->NbNodes()));
        const gp_Trsf placement = location.Transformation();
        for (Standard_Integer i = 1; i <= triangles->NbNodes(); ++i) {
            const gp_Pnt point = triangles->Node(i).Transformed(placement);
            corner.push_back(points_.number(point.X(), point.Y(), point.Z()));
        }
        for (Standard_Integer i = 1; i <= triangles->NbTriangles(); ++i) {
            Standard_Integer n[3];
            triangles->Triangle(i).Get(n[0], n[1], n[2]);
            triangles_.push_back({corner[static_cast<std::size_t>(n[0] - 1)],
                                  corner[static_cast<std::size_t>(n[1] - 1)],
                                  corner[static_cast<std::size_t>(n[2] - 1)]});
        }
    }

    bool closed() const { return mesh::isClosed(triangles_, points_.points().size()); }

private:
    mesh::Welder<double> points_{0};
    std::vector<mesh::Triangle> triangles_;
};

/// The body where it can be measured well. Moments of a small body far from the origin would be
/// differences of huge numbers, and placing it elsewhere doesn't help: the integration starts from
/// where the geometry stands in the body's own coordinates. So such a body is copied.
struct AtHome {
    TopoDS_Shape body;
    gp_XYZ home = {0.0, 0.0, 0.0};  ///< what was taken from all coordinates
};

AtHome bringHome(const TopoDS_Shape& body) {
    constexpr double kFarInSizes = 100.0;
    Bnd_Box box;
    BRepBndLib::AddClose(body, box);
    if (box.IsVoid() || box.IsOpen()) return {body};
    const gp_XYZ middle = (box.CornerMin().XYZ() + box.CornerMax().XYZ()) / 2.0;
    const double size = box.CornerMin().Distance(box.CornerMax());
    if (!(middle.Modulus() > kFarInSizes * size) || !std::isfinite(size)) return {body};
    gp_Trsf home;
    home.SetTranslation(gp_Vec(middle.Reversed()));
    return {BRepBuilderAPI_Transform(body, home, Standard_True).Shape(), middle};
}

constexpr std::size_t kPlaneKind = 0;
constexpr std::size_t kOtherKind = 5;

std::size_t kindIndex(const TopoDS_Face& face) {
    if (isMeshFace(face)) return kOtherKind;
    switch (BRepAdaptor_Surface(face, Standard_False).GetType()) {
        case GeomAbs_Plane: return kPlaneKind;
        case GeomAbs_Cylinder: return 1;
        case GeomAbs_Cone: return 2;
        case GeomAbs_Sphere: return 3;
        case GeomAbs_Torus: return 4;
        default: return kOtherKind;
    }
}

void countFaces(const TopoDS_Shape& body, bxtexchange::BodyIdentity& identity) {
    for (TopExp_Explorer faces(body, TopAbs_FACE); faces.More(); faces.Next()) {
        ++identity.faceCount;
        ++identity.surfaceKinds[kindIndex(TopoDS::Face(faces.Current()))];
    }
}

/// Relative error that integrals may have where the plain way is not exact. Without a limit they
/// are off by up to a per cent. It takes ten times as long.
constexpr double kIntegrationError = 1e-6;

/// Whether the plain way integrates well along a curve: it takes few points for each span, which
/// is not enough for the quotients of a rational one.
template <typename Adaptor>
bool isPlain(const Adaptor& curve) {
    switch (curve.GetType()) {
        case GeomAbs_Line:
        case GeomAbs_Circle:
        case GeomAbs_Ellipse: return true;
        case GeomAbs_BezierCurve: return !curve.Bezier()->IsRational();
        case GeomAbs_BSplineCurve: return !curve.BSpline()->IsRational();
        default: return false;
    }
}

/// The same for an edge of a face. One that has no curve says nothing.
bool isPlain(const TopoDS_Edge& edge, const TopoDS_Face& face, bool isPlane) {
    Standard_Real first = 0.0;
    Standard_Real last = 0.0;
    if (isPlane) {
        const Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, first, last);
        return curve.IsNull() || isPlain(GeomAdaptor_Curve(curve));
    }
    const Handle(Geom2d_Curve) curve = BRep_Tool::CurveOnSurface(edge, face, first, last);
    return curve.IsNull() || isPlain(Geom2dAdaptor_Curve(curve));
}

/// Whether there are faces that need the limit and no triangles, which only the plain way
/// measures. The two ways add up differently: one is for all faces.
bool needsLimit(const TopoDS_Shape& body) {
    bool any = false;
    for (TopExp_Explorer faces(body, TopAbs_FACE); faces.More(); faces.Next()) {
        const TopoDS_Face& face = TopoDS::Face(faces.Current());
        if (isMeshFace(face)) return false;
        const std::size_t kind = kindIndex(face);
        any = any || kind == kOtherKind;
        for (TopExp_Explorer edge(face, TopAbs_EDGE); edge.More() && !any; edge.Next()) {
            any = !isPlain(TopoDS::Edge(edge.Current()), face, kind == kPlaneKind);
        }
    }
    return any;
}

/// False when the numbers are of no use.
bool takeMoments(const GProp_GProps& properties, const gp_XYZ& home,
                 bxtexchange::BodyIdentity& identity) {
    const gp_XYZ centre = properties.CentreOfMass().XYZ() + home;
    identity.centroidMm = {centre.X(), centre.Y(), centre.Z()};
    const double sign = properties.Mass() < 0.0 ? -1.0 : 1.0;
    auto& moments = identity.principalMoments;
    properties.PrincipalProperties().Moments(moments[0], moments[1], moments[2]);
    bool finite = true;
    for (std::size_t i = 0; i < 3; ++i) {
        moments[i] *= sign;
        finite = finite && std::isfinite(moments[i]) && std::isfinite(identity.centroidMm[i]);
    }
    std::sort(moments.begin(), moments.end());
    return finite;
}

std::optional<bxtexchange::BodyIdentity> measure(const TopoDS_Shape& body) {
    bxtexchange::BodyIdentity identity;
    countFaces(body, identity);
    if (identity.faceCount == 0) return std::nullopt;

    const AtHome atHome = bringHome(body);
    const bool limited = needsLimit(atHome.body);
    GProp_GProps surface;
    if (limited) {
        BRepGProp::SurfaceProperties(atHome.body, surface, kIntegrationError);
    } else {
        BRepGProp::SurfaceProperties(atHome.body, surface);
    }
    identity.areaMm2 = surface.Mass();
    if (!std::isfinite(identity.areaMm2) || identity.areaMm2 <= 0.0) return std::nullopt;

    if (!isClosedBody(body)) {
        if (!takeMoments(surface, atHome.home, identity)) return std::nullopt;
        return identity;
    }
    GProp_GProps volume;
    if (limited) {
        BRepGProp::VolumeProperties(atHome.body, volume, kIntegrationError);
    } else {
        BRepGProp::VolumeProperties(atHome.body, volume);
    }
    identity.volumeMm3 = std::abs(volume.Mass());
    const bool measured = std::isfinite(identity.volumeMm3) && identity.volumeMm3 > 0.0;
    if (!measured || !takeMoments(volume, atHome.home, identity)) return std::nullopt;
    return identity;
}

bool shellsAreClosed(const TopoDS_Shape& body) {
    bool anyShell = false;
    for (TopExp_Explorer shells(body, TopAbs_SHELL); shells.More(); shells.Next()) {
        anyShell = true;
        if (!BRep_Tool::IsClosed(shells.Current())) return false;
    }
    return anyShell && !TopExp_Explorer(body, TopAbs_FACE, TopAbs_SHELL).More();
}

}  // namespace

bool isClosedBody(const TopoDS_Shape& body) try {
    if (body.IsNull()) return false;
    MeshSides sides;
    bool anyMesh = false;
    bool anySurface = false;
    for (TopExp_Explorer faces(body, TopAbs_FACE); faces.More(); faces.Next()) {
        const TopoDS_Face& face = TopoDS::Face(faces.Current());
        const bool mesh = isMeshFace(face);
        anyMesh = anyMesh || mesh;
        anySurface = anySurface || !mesh;
        if (mesh) sides.add(face);
    }
    // Where triangles meet surfaces nobody can tell; such a body counts as open.
    if (anyMesh) return !anySurface && sides.closed();
    return shellsAreClosed(body);
} catch (const Standard_Failure&) {
    return false;
}

std::optional<bxtexchange::BodyIdentity> bodyIdentity(const TopoDS_Shape& body) try {
    if (body.IsNull()) return std::nullopt;
    return measure(body);
} catch (const Standard_Failure&) {
    return std::nullopt;
}

}  // namespace occt
