#include "backends/comparer/mesh_body.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <tuple>
#include <unordered_map>

#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Face.hxx>

namespace comparer {
namespace {

/// A curved surface in triangles turns by less at an edge; what turns by more is a real edge.
constexpr double kSmoothRad = 30.0 * std::numbers::pi / 180.0;
/// Large flat walls that meet at a flat angle look like a coarse arc: no arc is that coarse.
constexpr double kMostBowOfSize = 1e-2;
constexpr double kMostUneven = 4.0;
/// Neighbours tell the curvature only roughly where it changes or triangles are irregular.
constexpr double kGenerous = 2.0;

bool isMeshFace(const TopoDS_Face& face) {
    TopLoc_Location location;
    return BRep_Tool::Surface(face, location).IsNull();
}

double mmToTriangle(const gp_XYZ& point, const std::array<gp_XYZ, 3>& corner) {
    const gp_XYZ ab = corner[1] - corner[0];
    const gp_XYZ ac = corner[2] - corner[0];
    const gp_XYZ normal = ab.Crossed(ac);
    const double area = normal.SquareModulus();
    if (area > 0.0) {
        const gp_XYZ ap = point - corner[0];
        const double s = ap.Crossed(ac).Dot(normal) / area;
        const double t = ab.Crossed(ap).Dot(normal) / area;
        if (s >= 0.0 && t >= 0.0 && s + t <= 1.0) {
            return std::abs(ap.Dot(normal)) / std::sqrt(area);
        }
    }
    double least = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < 3; ++i) {
        const gp_XYZ& from = corner[i];
        const gp_XYZ way = corner[(i + 1) % 3] - from;
        const double square = way.SquareModulus();
        const double at =
            square > 0.0 ? std::clamp((point - from).Dot(way) / square, 0.0, 1.0) : 0.0;
        least = std::min(least, (from + way * at - point).SquareModulus());
    }
    return std::sqrt(least);
}

/// A side of a triangle, to be found beside its neighbour's.
struct Side {
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    std::uint32_t triangle = 0;
    bool operator<(const Side& other) const {
        return std::tie(a, b, triangle) < std::tie(other.a, other.b, other.triangle);
    }
};

struct PointHash {
    std::size_t operator()(const std::array<double, 3>& point) const {
        std::size_t all = 0;
        for (const double value : point) {
            all = all * 1000003U ^ std::hash<double>()(value);
        }
        return all;
    }
};

}  // namespace

FaceForms faceFormsOf(const TopoDS_Shape& shape) {
    FaceForms forms;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        (isMeshFace(TopoDS::Face(it.Current())) ? forms.triangles : forms.surfaces) = true;
    }
    return forms;
}

TopoDS_Shape scaledTriangles(const TopoDS_Shape& shape, double factor) {
    BRep_Builder builder;
    TopoDS_Compound compound;
    builder.MakeCompound(compound);
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        const TopoDS_Face& face = TopoDS::Face(it.Current());
        if (!isMeshFace(face)) return {};
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
        if (mesh.IsNull()) continue;
        const Handle(Poly_Triangulation) copy = mesh->Copy();
        for (Standard_Integer i = 1; i <= copy->NbNodes(); ++i) {
            const gp_Pnt node = mesh->Node(i).Transformed(location.Transformation());
            copy->SetNode(i, gp_Pnt(node.XYZ() * factor));
        }
        TopoDS_Face made;
        builder.MakeFace(made);
        builder.UpdateFace(made, copy);
        made.Orientation(face.Orientation());
        builder.Add(compound, made);
    }
    return compound;
}

MeshBody::MeshBody(const TopoDS_Shape& shape) {
    take(shape);
    estimateBows();
    tree_.emplace(boxes());
}

void MeshBody::take(const TopoDS_Shape& shape) {
    // Files repeat a corner for every triangle, and the faces of a mesh share theirs.
    std::unordered_map<std::array<double, 3>, std::uint32_t, PointHash> known;
    double furthest = 0.0;
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& mesh =
            BRep_Tool::Triangulation(TopoDS::Face(it.Current()), location);
        if (mesh.IsNull()) continue;
        const gp_Trsf placement = location.Transformation();
        std::vector<std::uint32_t> numbers;
        for (Standard_Integer i = 1; i <= mesh->NbNodes(); ++i) {
            const gp_XYZ point = mesh->Node(i).Transformed(placement).XYZ();
            const auto fresh = static_cast<std::uint32_t>(points_.size());
            const auto entry = known.try_emplace({point.X(), point.Y(), point.Z()}, fresh);
            if (entry.second) points_.push_back(point);
            numbers.push_back(entry.first->second);
            furthest = std::max(furthest, point.Modulus());
        }
        for (Standard_Integer i = 1; i <= mesh->NbTriangles(); ++i) {
            Standard_Integer n[3];
            mesh->Triangle(i).Get(n[0], n[1], n[2]);
            Triangle triangle;
            for (std::size_t k = 0; k < 3; ++k) {
                triangle[k] = numbers[static_cast<std::size_t>(n[k] - 1)];
            }
            triangles_.push_back(triangle);
        }
    }
    constexpr double kOfSevenDigits = 2.4e-7;
    rounding_ = kOfSevenDigits * furthest;
}

std::array<gp_XYZ, 3> MeshBody::corners(std::uint32_t triangle) const {
    const Triangle& corner = triangles_[triangle];
    return {points_[corner[0]], points_[corner[1]], points_[corner[2]]};
}

void MeshBody::estimateBows() {
    bows_.assign(triangles_.size(), 0.0);
    std::vector<Side> sides;
    sides.reserve(3 * triangles_.size());
    NearestTree::Extent all;
    for (const gp_XYZ& point : points_) all.add(point);
    const double most = points_.empty() ? 0.0 : kMostBowOfSize * (all.high - all.low).Modulus();
    std::vector<gp_XYZ> normals;
    for (std::uint32_t t = 0; t < triangles_.size(); ++t) {
        const auto corner = corners(t);
        normals.push_back((corner[1] - corner[0]).Crossed(corner[2] - corner[0]));
        for (std::size_t k = 0; k < 3; ++k) {
            const auto [low, high] = std::minmax(triangles_[t][k], triangles_[t][(k + 1) % 3]);
            if (low != high) sides.push_back({low, high, t});
        }
    }
    std::sort(sides.begin(), sides.end());
    for (std::size_t i = 0; i + 1 < sides.size(); ++i) {
        const Side& one = sides[i];
        const Side& two = sides[i + 1];
        if (one.a != two.a || one.b != two.b) continue;
        const gp_XYZ& n1 = normals[one.triangle];
        const gp_XYZ& n2 = normals[two.triangle];
        const double sine = n1.Crossed(n2).Modulus();
        const double angle = std::atan2(sine, n1.Dot(n2));
        const double length = (points_[one.a] - points_[one.b]).Modulus();
        if (!(length > 0.0) || !(angle < kSmoothRad)) continue;
        // Heights over the common side are chords of an arc that turns by that much between their
        // middles.
        const double h1 = n1.Modulus() / length;
        const double h2 = n2.Modulus() / length;
        // A chamfer beside a wall is no arc: those are cut into parts of about one width.
        if (!(std::min(h1, h2) > std::max(h1, h2) / kMostUneven)) continue;
        bows_[one.triangle] += h1 / 2.0 * std::tan(angle * h1 / (h1 + h2) / 2.0);
        bows_[two.triangle] += h2 / 2.0 * std::tan(angle * h2 / (h1 + h2) / 2.0);
    }
    spreadBows(most);
}

void MeshBody::spreadBows(double most) {
    // An arc's chords are the rim of the flat triangles beside it too.
    pointBows_.assign(points_.size(), 0.0);
    for (std::uint32_t t = 0; t < triangles_.size(); ++t) {
        for (const std::uint32_t point : triangles_[t]) {
            pointBows_[point] = std::max(pointBows_[point], std::min(kGenerous * bows_[t], most));
        }
    }
    for (std::uint32_t t = 0; t < triangles_.size(); ++t) {
        double widest = 0.0;
        for (const std::uint32_t point : triangles_[t])
            widest = std::max(widest, pointBows_[point]);
        bows_[t] = widest;
        largestBow_ = std::max(largestBow_, widest);
    }
    const std::vector<bool> turning = turningPoints();
    for (std::size_t i = 0; i < pointBows_.size(); ++i) {
        if (turning[i]) pointBows_[i] = 0.0;
    }
}

/// Corners where triangles of three directions meet, as they do on every real corner of an arc.
std::vector<bool> MeshBody::turningPoints() const {
    constexpr double kOneDirection = 1e-6;  // of the sine's square
    struct Directions {
        std::array<std::uint32_t, 2> known;
        std::uint8_t count = 0;
    };
    std::vector<Directions> directions(points_.size());
    std::vector<bool> turning(points_.size(), false);
    const auto normalOf = [&](std::uint32_t triangle) {
        const auto corner = corners(triangle);
        return (corner[1] - corner[0]).Crossed(corner[2] - corner[0]);
    };
    for (std::uint32_t t = 0; t < triangles_.size(); ++t) {
        const gp_XYZ normal = normalOf(t);
        const double square = normal.SquareModulus();
        if (!(square > 0.0)) continue;
        for (const std::uint32_t point : triangles_[t]) {
            Directions& there = directions[point];
            bool known = false;
            for (std::uint8_t i = 0; i < there.count; ++i) {
                const gp_XYZ other = normalOf(there.known[i]);
                const double sine = normal.Crossed(other).SquareModulus();
                known = known || sine <= kOneDirection * square * other.SquareModulus();
            }
            if (known) continue;
            if (there.count == there.known.size()) {
                turning[point] = true;
            } else {
                there.known[there.count++] = t;
            }
        }
    }
    return turning;
}

std::vector<NearestTree::Extent> MeshBody::boxes() const {
    std::vector<NearestTree::Extent> boxes(triangles_.size());
    for (std::uint32_t t = 0; t < triangles_.size(); ++t) {
        for (const gp_XYZ& corner : corners(t)) boxes[t].add(corner);
    }
    return boxes;
}

MeshBody::Foot MeshBody::nearest(const gp_Pnt& point, double enough) const {
    Foot foot{std::numeric_limits<double>::max(), 0};
    tree_->nearest(point, enough, [&](std::uint32_t triangle, double) {
        const double mm = mmToTriangle(point.XYZ(), corners(triangle));
        if (mm < foot.mm) foot = {mm, triangle};
        return mm;
    });
    return foot;
}

}  // namespace comparer
