#include "backends/occt/content_digest.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <stdexcept>

#include <BRep_Tool.hxx>
#include <Geom_BSplineCurve.hxx>
#include <Geom_BSplineSurface.hxx>
#include <Geom_BezierCurve.hxx>
#include <Geom_BezierSurface.hxx>
#include <Geom_Circle.hxx>
#include <Geom_ConicalSurface.hxx>
#include <Geom_CylindricalSurface.hxx>
#include <Geom_Ellipse.hxx>
#include <Geom_Hyperbola.hxx>
#include <Geom_Line.hxx>
#include <Geom_OffsetCurve.hxx>
#include <Geom_OffsetSurface.hxx>
#include <Geom_Parabola.hxx>
#include <Geom_Plane.hxx>
#include <Geom_RectangularTrimmedSurface.hxx>
#include <Geom_SphericalSurface.hxx>
#include <Geom_SurfaceOfLinearExtrusion.hxx>
#include <Geom_SurfaceOfRevolution.hxx>
#include <Geom_ToroidalSurface.hxx>
#include <Geom_TrimmedCurve.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Vertex.hxx>

namespace occt {
namespace {

constexpr double kLengthQuantumMm = 1e-8;
constexpr double kDirectionQuantum = 1e-12;
constexpr double kParameterQuantum = 1e-10;

/// Marks that keep different things with the same numbers apart.
enum class Mark : std::uint64_t {
    Line = 1,
    Circle,
    Ellipse,
    Hyperbola,
    Parabola,
    BezierCurve,
    BSplineCurve,
    OffsetCurve,
    TrimmedCurve,
    Plane,
    Cylinder,
    Cone,
    Sphere,
    Torus,
    BezierSurface,
    BSplineSurface,
    Extrusion,
    Revolution,
    OffsetSurface,
    TrimmedSurface,
    Edge,
    DegenerateEdge,
    Vertex,
    Wire,
    Face,
    MeshFace,
    Shape,
};

struct UnknownGeometry : std::runtime_error {
    UnknownGeometry() : std::runtime_error("geometry of an unknown kind") {}
};

std::uint64_t mixed(std::uint64_t x) {
    x ^= x >> 32;
    x *= 0xD6E8FEB86659FD93ULL;
    x ^= x >> 29;
    x *= 0xA0761D6478BD642FULL;
    x ^= x >> 32;
    return x;
}

class Writer {
public:
    explicit Writer(Mark mark) { add(mark); }

    void add(Mark mark) { digest_.addWord(static_cast<std::uint64_t>(mark)); }
    void count(std::int64_t number) { digest_.addWord(static_cast<std::uint64_t>(number)); }
    void length(double mm) { digest_.addReal(mm, kLengthQuantumMm); }
    void parameter(double value) { digest_.addReal(value, kParameterQuantum); }
    void point(const gp_Pnt& p) {
        length(p.X());
        length(p.Y());
        length(p.Z());
    }
    void direction(const gp_Dir& d) {
        digest_.addReal(d.X(), kDirectionQuantum);
        digest_.addReal(d.Y(), kDirectionQuantum);
        digest_.addReal(d.Z(), kDirectionQuantum);
    }
    void frame(const gp_Ax2& axes) {
        point(axes.Location());
        direction(axes.Direction());
        direction(axes.XDirection());
    }
    void frame(const gp_Ax3& axes) {
        point(axes.Location());
        direction(axes.Direction());
        direction(axes.XDirection());
        count(axes.Direct() ? 1 : 0);
    }
    Digest128& digest() { return digest_; }
    Digest128::Value value() const { return digest_.value(); }

private:
    Digest128 digest_;
};

void writeSplineCurve(Writer& out, const Geom_BSplineCurve& spline) {
    out.count(spline.Degree());
    out.count(spline.IsPeriodic() ? 1 : 0);
    out.count(spline.NbPoles());
    for (Standard_Integer i = 1; i <= spline.NbPoles(); ++i) {
        out.point(spline.Pole(i));
        out.parameter(spline.Weight(i));
    }
    for (Standard_Integer i = 1; i <= spline.NbKnots(); ++i) {
        out.parameter(spline.Knot(i));
        out.count(spline.Multiplicity(i));
    }
}

void writeBezierCurve(Writer& out, const Geom_BezierCurve& bezier) {
    out.count(bezier.NbPoles());
    for (Standard_Integer i = 1; i <= bezier.NbPoles(); ++i) {
        out.point(bezier.Pole(i));
        out.parameter(bezier.Weight(i));
    }
}

bool writeConic(Writer& out, const Handle(Geom_Curve) & curve) {
    const auto conic = Handle(Geom_Conic)::DownCast(curve);
    if (conic.IsNull()) return false;
    if (const auto circle = Handle(Geom_Circle)::DownCast(curve); !circle.IsNull()) {
        out.add(Mark::Circle);
        out.length(circle->Radius());
    } else if (const auto ellipse = Handle(Geom_Ellipse)::DownCast(curve); !ellipse.IsNull()) {
        out.add(Mark::Ellipse);
        out.length(ellipse->MajorRadius());
        out.length(ellipse->MinorRadius());
    } else if (const auto hyperbola = Handle(Geom_Hyperbola)::DownCast(curve);
               !hyperbola.IsNull()) {
        out.add(Mark::Hyperbola);
        out.length(hyperbola->MajorRadius());
        out.length(hyperbola->MinorRadius());
    } else if (const auto parabola = Handle(Geom_Parabola)::DownCast(curve); !parabola.IsNull()) {
        out.add(Mark::Parabola);
        out.length(parabola->Focal());
    } else {
        return false;
    }
    out.frame(conic->Position());
    return true;
}

void writeCurve(Writer& out, Handle(Geom_Curve) curve) {
    // Trims and offsets may be nested; each says what it adds and leads on to what it stands on.
    for (;;) {
        if (const auto trim = Handle(Geom_TrimmedCurve)::DownCast(curve); !trim.IsNull()) {
            out.add(Mark::TrimmedCurve);
            out.parameter(trim->FirstParameter());
            out.parameter(trim->LastParameter());
            curve = trim->BasisCurve();
        } else if (const auto offset = Handle(Geom_OffsetCurve)::DownCast(curve);
                   !offset.IsNull()) {
            out.add(Mark::OffsetCurve);
            out.length(offset->Offset());
            out.direction(offset->Direction());
            curve = offset->BasisCurve();
        } else {
            break;
        }
    }
    if (writeConic(out, curve)) return;
    if (const auto line = Handle(Geom_Line)::DownCast(curve); !line.IsNull()) {
        out.add(Mark::Line);
        out.point(line->Position().Location());
        out.direction(line->Position().Direction());
    } else if (const auto spline = Handle(Geom_BSplineCurve)::DownCast(curve); !spline.IsNull()) {
        out.add(Mark::BSplineCurve);
        writeSplineCurve(out, *spline);
    } else if (const auto bezier = Handle(Geom_BezierCurve)::DownCast(curve); !bezier.IsNull()) {
        out.add(Mark::BezierCurve);
        writeBezierCurve(out, *bezier);
    } else {
        throw UnknownGeometry();
    }
}

void writeSplineSurface(Writer& out, const Geom_BSplineSurface& spline) {
    out.count(spline.UDegree());
    out.count(spline.VDegree());
    out.count((spline.IsUPeriodic() ? 1 : 0) + (spline.IsVPeriodic() ? 2 : 0));
    out.count(spline.NbUPoles());
    out.count(spline.NbVPoles());
    for (Standard_Integer u = 1; u <= spline.NbUPoles(); ++u) {
        for (Standard_Integer v = 1; v <= spline.NbVPoles(); ++v) {
            out.point(spline.Pole(u, v));
            out.parameter(spline.Weight(u, v));
        }
    }
    for (Standard_Integer i = 1; i <= spline.NbUKnots(); ++i) {
        out.parameter(spline.UKnot(i));
        out.count(spline.UMultiplicity(i));
    }
    for (Standard_Integer i = 1; i <= spline.NbVKnots(); ++i) {
        out.parameter(spline.VKnot(i));
        out.count(spline.VMultiplicity(i));
    }
}

void writeBezierSurface(Writer& out, const Geom_BezierSurface& bezier) {
    out.count(bezier.NbUPoles());
    out.count(bezier.NbVPoles());
    for (Standard_Integer u = 1; u <= bezier.NbUPoles(); ++u) {
        for (Standard_Integer v = 1; v <= bezier.NbVPoles(); ++v) {
            out.point(bezier.Pole(u, v));
            out.parameter(bezier.Weight(u, v));
        }
    }
}

bool writeElementary(Writer& out, const Handle(Geom_Surface) & surface) {
    const auto elementary = Handle(Geom_ElementarySurface)::DownCast(surface);
    if (elementary.IsNull()) return false;
    if (!Handle(Geom_Plane)::DownCast(surface).IsNull()) {
        out.add(Mark::Plane);
    } else if (const auto cylinder = Handle(Geom_CylindricalSurface)::DownCast(surface);
               !cylinder.IsNull()) {
        out.add(Mark::Cylinder);
        out.length(cylinder->Radius());
    } else if (const auto cone = Handle(Geom_ConicalSurface)::DownCast(surface); !cone.IsNull()) {
        out.add(Mark::Cone);
        out.length(cone->RefRadius());
        out.parameter(cone->SemiAngle());
    } else if (const auto sphere = Handle(Geom_SphericalSurface)::DownCast(surface);
               !sphere.IsNull()) {
        out.add(Mark::Sphere);
        out.length(sphere->Radius());
    } else if (const auto torus = Handle(Geom_ToroidalSurface)::DownCast(surface);
               !torus.IsNull()) {
        out.add(Mark::Torus);
        out.length(torus->MajorRadius());
        out.length(torus->MinorRadius());
    } else {
        return false;
    }
    out.frame(elementary->Position());
    return true;
}

bool writeSwept(Writer& out, const Handle(Geom_Surface) & surface) {
    if (const auto extrusion = Handle(Geom_SurfaceOfLinearExtrusion)::DownCast(surface);
        !extrusion.IsNull()) {
        out.add(Mark::Extrusion);
        out.direction(extrusion->Direction());
        writeCurve(out, extrusion->BasisCurve());
        return true;
    }
    if (const auto revolution = Handle(Geom_SurfaceOfRevolution)::DownCast(surface);
        !revolution.IsNull()) {
        out.add(Mark::Revolution);
        out.point(revolution->Location());
        out.direction(revolution->Direction());
        writeCurve(out, revolution->BasisCurve());
        return true;
    }
    return false;
}

Handle(Geom_Surface) writeWrappers(Writer& out, Handle(Geom_Surface) surface) {
    for (;;) {
        if (const auto trim = Handle(Geom_RectangularTrimmedSurface)::DownCast(surface);
            !trim.IsNull()) {
            Standard_Real bounds[4];
            trim->Bounds(bounds[0], bounds[1], bounds[2], bounds[3]);
            out.add(Mark::TrimmedSurface);
            for (const double bound : bounds) out.parameter(bound);
            surface = trim->BasisSurface();
        } else if (const auto offset = Handle(Geom_OffsetSurface)::DownCast(surface);
                   !offset.IsNull()) {
            out.add(Mark::OffsetSurface);
            out.length(offset->Offset());
            surface = offset->BasisSurface();
        } else {
            return surface;
        }
    }
}

void writeSurface(Writer& out, const Handle(Geom_Surface) & wrapped) {
    const Handle(Geom_Surface) surface = writeWrappers(out, wrapped);
    if (writeElementary(out, surface) || writeSwept(out, surface)) return;
    if (const auto spline = Handle(Geom_BSplineSurface)::DownCast(surface); !spline.IsNull()) {
        out.add(Mark::BSplineSurface);
        writeSplineSurface(out, *spline);
    } else if (const auto bezier = Handle(Geom_BezierSurface)::DownCast(surface);
               !bezier.IsNull()) {
        out.add(Mark::BezierSurface);
        writeBezierSurface(out, *bezier);
    } else {
        throw UnknownGeometry();
    }
}

Digest128::Value vertexValue(const TopoDS_Vertex& vertex) {
    Writer out(Mark::Vertex);
    out.count(vertex.Orientation());
    out.point(BRep_Tool::Pnt(vertex));
    return out.value();
}

Digest128::Value edgeValue(const TopoDS_Edge& edge) {
    Writer out(BRep_Tool::Degenerated(edge) ? Mark::DegenerateEdge : Mark::Edge);
    out.count(edge.Orientation());
    Standard_Real first = 0.0;
    Standard_Real last = 0.0;
    const Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, first, last);
    if (!curve.IsNull()) {
        out.parameter(first);
        out.parameter(last);
        writeCurve(out, curve);
    } else if (!BRep_Tool::Degenerated(edge)) {
        throw UnknownGeometry();
    }
    std::vector<Digest128::Value> vertices;
    for (TopExp_Explorer it(edge, TopAbs_VERTEX); it.More(); it.Next()) {
        vertices.push_back(vertexValue(TopoDS::Vertex(it.Current())));
    }
    out.digest().addUnordered(vertices);
    return out.value();
}

/// Edges of a wire, or the free edges of a shape when `avoid` is a wire.
std::vector<Digest128::Value> edgeValues(const TopoDS_Shape& shape,
                                         TopAbs_ShapeEnum avoid = TopAbs_SHAPE) {
    std::vector<Digest128::Value> values;
    for (TopExp_Explorer it(shape, TopAbs_EDGE, avoid); it.More(); it.Next()) {
        values.push_back(edgeValue(TopoDS::Edge(it.Current())));
    }
    return values;
}

/// The wires of a face, or the free wires of a shape when `avoid` is a face.
std::vector<Digest128::Value> wireValues(const TopoDS_Shape& shape,
                                         TopAbs_ShapeEnum avoid = TopAbs_SHAPE) {
    std::vector<Digest128::Value> values;
    for (TopExp_Explorer it(shape, TopAbs_WIRE, avoid); it.More(); it.Next()) {
        Writer out(Mark::Wire);
        std::vector<Digest128::Value> edges = edgeValues(it.Current());
        out.digest().addUnordered(edges);
        values.push_back(out.value());
    }
    return values;
}

Digest128::Value meshValue(const TopoDS_Face& face) {
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
    if (mesh.IsNull()) throw UnknownGeometry();
    std::vector<Digest128::Value> nodes;
    for (Standard_Integer i = 1; i <= mesh->NbNodes(); ++i) {
        Writer node(Mark::Vertex);
        node.point(mesh->Node(i).Transformed(location.Transformation()));
        nodes.push_back(node.value());
    }
    std::vector<Digest128::Value> triangles;
    for (Standard_Integer i = 1; i <= mesh->NbTriangles(); ++i) {
        Standard_Integer n[3];
        mesh->Triangle(i).Get(n[0], n[1], n[2]);
        std::array<Digest128::Value, 3> corners;
        for (std::size_t c = 0; c < 3; ++c) corners[c] = nodes[static_cast<std::size_t>(n[c] - 1)];
        // Any corner may come first, but the turn is the triangle's outside.
        std::rotate(corners.begin(), std::min_element(corners.begin(), corners.end()),
                    corners.end());
        Digest128 triangle;
        for (const Digest128::Value& corner : corners) triangle.addValue(corner);
        triangles.push_back(triangle.value());
    }
    Writer out(Mark::MeshFace);
    out.count(face.Orientation());
    out.digest().addUnordered(triangles);
    return out.value();
}

Digest128::Value faceValue(const TopoDS_Face& face) {
    const Handle(Geom_Surface) surface = BRep_Tool::Surface(face);
    if (surface.IsNull()) return meshValue(face);
    Writer out(Mark::Face);
    out.count(face.Orientation());
    writeSurface(out, surface);
    // Orientations inside the face are taken relative to the face itself, so that one turned
    // inside out differs in one place only.
    const TopoDS_Shape forward = face.Oriented(TopAbs_FORWARD);
    std::vector<Digest128::Value> wires = wireValues(forward);
    out.digest().addUnordered(wires);
    std::vector<Digest128::Value> loose = edgeValues(forward, TopAbs_WIRE);
    out.digest().addUnordered(loose);
    return out.value();
}

std::string digestOf(const TopoDS_Shape& shape) {
    std::vector<Digest128::Value> faces;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        faces.push_back(faceValue(TopoDS::Face(it.Current())));
    }
    std::vector<Digest128::Value> wires = wireValues(shape, TopAbs_FACE);
    std::vector<Digest128::Value> edges = edgeValues(shape, TopAbs_WIRE);
    std::vector<Digest128::Value> vertices;
    for (TopExp_Explorer it(shape, TopAbs_VERTEX, TopAbs_EDGE); it.More(); it.Next()) {
        vertices.push_back(vertexValue(TopoDS::Vertex(it.Current())));
    }
    if (faces.empty() && wires.empty() && edges.empty() && vertices.empty()) return {};
    Writer out(Mark::Shape);
    out.digest().addUnordered(faces);
    out.digest().addUnordered(wires);
    out.digest().addUnordered(edges);
    out.digest().addUnordered(vertices);
    return out.digest().text();
}

}  // namespace

void Digest128::addWord(std::uint64_t word) {
    state_[0] = mixed(state_[0] ^ (word * 0x9FB21C651E98DF25ULL));
    state_[1] = mixed(std::rotl(state_[1], 23) + (word ^ 0x8EBC6AF09C88C6E3ULL)) ^ state_[0];
    ++count_;
}

void Digest128::addReal(double value, double quantum) {
    constexpr double kExactIntegers = 4503599627370496.0;  // 2^52
    const double steps = value / quantum;
    if (std::abs(steps) < kExactIntegers) {
        addWord(static_cast<std::uint64_t>(std::llround(steps)));
    } else {
        // Too large to count in steps, where the number itself is coarser than a step; or none.
        addWord(std::isnan(value) ? ~0ULL : std::bit_cast<std::uint64_t>(value));
    }
}

void Digest128::addValue(const Value& value) {
    addWord(value[0]);
    addWord(value[1]);
}

void Digest128::addUnordered(std::vector<Value>& values) {
    std::sort(values.begin(), values.end());
    addWord(values.size());
    for (const Value& value : values) addValue(value);
}

Digest128::Value Digest128::value() const {
    return {mixed(state_[0] + count_), mixed(state_[1] ^ std::rotl(count_, 32))};
}

std::string Digest128::text() const {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string digits;
    for (const std::uint64_t word : value()) {
        for (int shift = 60; shift >= 0; shift -= 4) digits += kDigits[(word >> shift) & 0xF];
    }
    return digits;
}

std::string contentDigest(const TopoDS_Shape& shape) try {
    return shape.IsNull() ? std::string() : digestOf(shape);
} catch (const UnknownGeometry&) {
    return {};
} catch (const Standard_Failure&) {
    return {};
}

}  // namespace occt
