#include "backends/comparer/features.h"

#include <cmath>
#include <numbers>

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRep_Tool.hxx>
#include <GCPnts_AbscissaPoint.hxx>
#include <Geom_Surface.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_MapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Lin.hxx>
#include <gp_Torus.hxx>

namespace comparer {
namespace {

constexpr double kFractions[] = {0.25, 0.5, 0.75};

class FeatureFinder {
public:
    std::vector<Feature> run(const TopoDS_Shape& shape) {
        TopTools_IndexedMapOfShape faces;
        TopExp::MapShapes(shape, TopAbs_FACE, faces);
        for (Standard_Integer i = 1; i <= faces.Extent(); ++i) addFace(TopoDS::Face(faces(i)));
        TopTools_IndexedMapOfShape edges;
        TopExp::MapShapes(shape, TopAbs_EDGE, edges);
        for (Standard_Integer i = 1; i <= edges.Extent(); ++i) addEdge(TopoDS::Edge(edges(i)));
        for (TopExp_Explorer it(shape, TopAbs_VERTEX, TopAbs_EDGE); it.More(); it.Next()) {
            addCorner(TopoDS::Vertex(it.Current()));
        }
        return std::move(features_);
    }

private:
    void add(Feature::Kind kind, const gp_Pnt& point, double sizeMm = 0.0) {
        features_.push_back({kind, point, sizeMm});
    }

    void addFace(const TopoDS_Face& face) {
        TopLoc_Location location;
        const Handle(Geom_Surface)& surface = BRep_Tool::Surface(face, location);
        if (surface.IsNull()) return addMesh(face);
        for (TopExp_Explorer it(face, TopAbs_EDGE); it.More(); it.Next()) {
            const TopoDS_Edge& edge = TopoDS::Edge(it.Current());
            if (BRep_Tool::IsClosed(edge, surface, location)) seams_.Add(edge);
        }
        const BRepAdaptor_Surface adaptor(face, Standard_False);
        switch (adaptor.GetType()) {
            case GeomAbs_Sphere:
                add(Feature::Kind::SphereCentre, adaptor.Sphere().Location(),
                    adaptor.Sphere().Radius());
                break;
            case GeomAbs_Torus: addTorus(adaptor.Torus()); break;
            case GeomAbs_SurfaceOfRevolution: addTurnedProfile(adaptor); break;
            case GeomAbs_BSplineSurface:
            case GeomAbs_BezierSurface: addGrid(adaptor); break;
            default: break;
        }
    }

    void addTorus(const gp_Torus& torus) {
        const gp_XYZ arm = torus.Axis().Direction().XYZ() * torus.MajorRadius();
        const gp_XYZ centre = torus.Location().XYZ();
        add(Feature::Kind::TorusAxis, gp_Pnt(centre + arm), torus.MinorRadius());
        add(Feature::Kind::TorusAxis, gp_Pnt(centre - arm), torus.MinorRadius());
    }

    /// Circles that points of the profile draw about the axis.
    void addTurnedProfile(const BRepAdaptor_Surface& surface) {
        const gp_Lin axis(surface.AxeOfRevolution());
        const double first = surface.FirstVParameter();
        const double length = surface.LastVParameter() - first;
        for (const double fraction : kFractions) {
            const gp_Pnt point =
                surface.Value(surface.FirstUParameter(), first + fraction * length);
            const double along = gp_Vec(axis.Location(), point).Dot(gp_Vec(axis.Direction()));
            const gp_Pnt centre = axis.Location().Translated(gp_Vec(axis.Direction()) * along);
            add(Feature::Kind::TurnedProfile, centre, centre.Distance(point));
        }
    }

    /// Points that don't depend on which way the parameters run.
    void addGrid(const BRepAdaptor_Surface& surface) {
        const double u0 = surface.FirstUParameter();
        const double v0 = surface.FirstVParameter();
        const double du = surface.LastUParameter() - u0;
        const double dv = surface.LastVParameter() - v0;
        for (const double u : kFractions) {
            for (const double v : kFractions) {
                add(Feature::Kind::SurfacePoint, surface.Value(u0 + u * du, v0 + v * dv));
            }
        }
    }

    void addMesh(const TopoDS_Face& face) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
        if (mesh.IsNull()) return;
        for (Standard_Integer i = 1; i <= mesh->NbNodes(); ++i) {
            add(Feature::Kind::MeshNode, mesh->Node(i).Transformed(location.Transformation()));
        }
    }

    void addEdge(const TopoDS_Edge& edge) {
        if (BRep_Tool::Degenerated(edge) || seams_.Contains(edge)) return;
        const BRepAdaptor_Curve curve(edge);
        if (addWholeConic(curve)) return;
        for (TopExp_Explorer it(edge, TopAbs_VERTEX); it.More(); it.Next()) {
            addCorner(TopoDS::Vertex(it.Current()));
        }
        const double from = curve.FirstParameter();
        const double length = GCPnts_AbscissaPoint::Length(curve);
        for (const double fraction : kFractions) {
            const GCPnts_AbscissaPoint at(curve, fraction * length, from);
            if (at.IsDone()) add(Feature::Kind::EdgePoint, curve.Value(at.Parameter()));
        }
    }

    /// The vertex of a closed circle may stand anywhere on it.
    bool addWholeConic(const BRepAdaptor_Curve& curve) {
        const bool conic = curve.GetType() == GeomAbs_Circle || curve.GetType() == GeomAbs_Ellipse;
        if (!conic) return false;
        const double turn = curve.LastParameter() - curve.FirstParameter();
        if (std::abs(turn - 2.0 * std::numbers::pi) > 1e-6) return false;
        if (curve.GetType() == GeomAbs_Circle) {
            add(Feature::Kind::CircleCentre, curve.Circle().Location(), curve.Circle().Radius());
        } else {
            add(Feature::Kind::CircleCentre, curve.Ellipse().Location(),
                curve.Ellipse().MajorRadius());
        }
        return true;
    }

    void addCorner(const TopoDS_Vertex& vertex) {
        const TopoDS_Shape plain = vertex.Oriented(TopAbs_FORWARD);
        if (corners_.Add(plain)) add(Feature::Kind::Corner, BRep_Tool::Pnt(vertex));
    }

    std::vector<Feature> features_;
    TopTools_MapOfShape seams_;
    TopTools_MapOfShape corners_;
};

}  // namespace

bool isOfSurface(const Feature& feature) {
    switch (feature.kind) {
        case Feature::Kind::SphereCentre:
        case Feature::Kind::TorusAxis:
        case Feature::Kind::TurnedProfile:
        case Feature::Kind::SurfacePoint: return true;
        default: return false;
    }
}

bool sameSort(const Feature& a, const Feature& b, double toleranceMm) {
    return a.kind == b.kind && std::abs(a.sizeMm - b.sizeMm) <= toleranceMm;
}

std::optional<std::vector<Feature>> featuresOf(const TopoDS_Shape& shape) try {
    if (shape.IsNull()) return std::nullopt;
    std::vector<Feature> features = FeatureFinder().run(shape);
    for (const Feature& feature : features) {
        const gp_Pnt& p = feature.point;
        if (!std::isfinite(p.X() + p.Y() + p.Z() + feature.sizeMm)) return std::nullopt;
    }
    if (features.empty()) return std::nullopt;
    return features;
} catch (const Standard_Failure&) {
    return std::nullopt;
}

}  // namespace comparer
