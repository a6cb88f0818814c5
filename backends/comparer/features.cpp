#include "backends/comparer/features.h"

#include <cmath>

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRep_Tool.hxx>
#include <Geom_Surface.hxx>
#include <NCollection_IndexedDataMap.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_MapOfShape.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Lin.hxx>
#include <gp_Torus.hxx>

#include "backends/comparer/point_grid.h"
#include "backends/comparer/rims.h"
#include "backends/comparer/slack.h"

namespace comparer {
namespace {

constexpr double kFractions[] = {0.25, 0.5, 0.75};
/// Two edges that meet at less than this run on smoothly.
constexpr double kSmoothRad = 0.01;
/// Features closer than this are one, found twice: arcs of one circle, faces of one sphere.
constexpr double kSameMm = 1e-4;

class FeatureFinder {
public:
    std::vector<Feature> run(const TopoDS_Shape& shape) {
        TopTools_IndexedMapOfShape faces;
        TopExp::MapShapes(shape, TopAbs_FACE, faces);
        for (Standard_Integer i = 1; i <= faces.Extent(); ++i) addFace(TopoDS::Face(faces(i)));
        TopTools_IndexedMapOfShape edges;
        TopExp::MapShapes(shape, TopAbs_EDGE, edges);
        for (Standard_Integer i = 1; i <= edges.Extent(); ++i) addEdge(TopoDS::Edge(edges(i)));
        for (Standard_Integer i = 1; i <= ends_.Extent(); ++i) {
            addCorner(TopoDS::Vertex(ends_.FindKey(i)), ends_(i));
        }
        for (const Rim& rim : rims_.rims()) {
            add(Feature::Kind::RimCentre, rim.centre, rim.lengthMm, rim.slackMm);
        }
        for (TopExp_Explorer it(shape, TopAbs_VERTEX, TopAbs_EDGE); it.More(); it.Next()) {
            add(Feature::Kind::Corner, BRep_Tool::Pnt(TopoDS::Vertex(it.Current())));
        }
        return std::move(features_);
    }

private:
    /// An edge that leaves a vertex.
    struct End {
        std::size_t edge = 0;
        gp_Vec direction;
    };
    using Ends = std::vector<End>;

    void add(Feature::Kind kind, const gp_Pnt& point, double sizeMm = 0.0, double slackMm = 0.0) {
        const Feature feature{kind, point, sizeMm, slackMm};
        for (const PointGrid::Cell* cell : grid_.near(point)) {
            for (const std::uint32_t other : *cell) {
                const bool same = sameSort(features_[other], feature, kSameMm) &&
                                  features_[other].point.Distance(point) <= kSameMm;
                if (same) return;
            }
        }
        grid_.add(point, static_cast<std::uint32_t>(features_.size()));
        features_.push_back(feature);
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
            case GeomAbs_Cone: add(Feature::Kind::ConeApex, adaptor.Cone().Apex()); break;
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
        if (curve.GetType() == GeomAbs_Circle) {
            add(Feature::Kind::CircleCentre, curve.Circle().Location(), curve.Circle().Radius());
        } else if (curve.GetType() == GeomAbs_Ellipse) {
            add(Feature::Kind::CircleCentre, curve.Ellipse().Location(),
                curve.Ellipse().MajorRadius());
        }
        rims_.addEdge(curve, slackOf(edge));
        addEnd(TopExp::FirstVertex(edge), curve, curve.FirstParameter(), 1.0);
        addEnd(TopExp::LastVertex(edge), curve, curve.LastParameter(), -1.0);
        ++edges_;
    }

    /// Remembers in which direction the last edge leaves one of its vertices.
    void addEnd(const TopoDS_Vertex& vertex, const BRepAdaptor_Curve& curve, double parameter,
                double sign) {
        if (vertex.IsNull()) return;
        gp_Pnt point;
        gp_Vec tangent;
        curve.D1(parameter, point, tangent);
        const TopoDS_Shape plain = vertex.Oriented(TopAbs_FORWARD);
        const Standard_Integer known = ends_.FindIndex(plain);
        const Standard_Integer number = known > 0 ? known : ends_.Add(plain, Ends());
        ends_.ChangeFromIndex(number).push_back({edges_, tangent * sign});
    }

    void addCorner(const TopoDS_Vertex& vertex, const Ends& ends) {
        if (ends.size() == 2) {
            const gp_Vec& a = ends[0].direction;
            const gp_Vec& b = ends[1].direction;
            const double tiny = 1e-12;
            const bool smooth =
                a.Magnitude() > tiny && b.Magnitude() > tiny && a.Angle(b.Reversed()) < kSmoothRad;
            if (smooth) return rims_.join(ends[0].edge, ends[1].edge);
        }
        add(Feature::Kind::Corner, BRep_Tool::Pnt(vertex));
    }

    std::vector<Feature> features_;
    PointGrid grid_{4.0 * kSameMm};
    TopTools_MapOfShape seams_;
    std::size_t edges_ = 0;
    RimFinder rims_;
    /// Edges that leave a vertex.
    NCollection_IndexedDataMap<TopoDS_Shape, Ends, TopTools_ShapeMapHasher> ends_;
};

}  // namespace

bool isOfForm(const Feature& feature) {
    switch (feature.kind) {
        case Feature::Kind::CircleCentre:
        case Feature::Kind::ConeApex:
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

bool sameFeature(const Feature& a, const gp_Pnt& place, const Feature& b, double toleranceMm) {
    const double allowedMm = withSlack(toleranceMm, a.slackMm + b.slackMm);
    return sameSort(a, b, allowedMm) && place.Distance(b.point) <= allowedMm;
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
