#include "backends/comparer/mesh_comparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <queue>

#include "backends/comparer/body_distance.h"
#include "backends/comparer/mesh_body.h"

namespace comparer {
namespace {

/// Tells distances from one body, whatever it is made of.
class Target {
public:
    virtual ~Target() = default;
    struct Answer {
        double mm = 0.0;
        double bowMm = 0.0;  ///< granted there
    };
    /// Any distance that is not above `enough` will do.
    virtual Answer ask(const gp_Pnt& point, double enough) const = 0;
    virtual double roundingMm() const = 0;
};

class MeshTarget : public Target {
public:
    explicit MeshTarget(const MeshBody& body) : body_(body) {}
    Answer ask(const gp_Pnt& point, double enough) const override {
        const MeshBody::Foot foot = body_.nearest(point, enough);
        return {foot.mm, body_.bowMm(foot.triangle)};
    }
    double roundingMm() const override { return body_.roundingMm(); }

private:
    const MeshBody& body_;
};

class SurfaceTarget : public Target {
public:
    explicit SurfaceTarget(const FaceSet& set) : distance_(set) {}
    Answer ask(const gp_Pnt& point, double enough) const override {
        return {distance_.mm(point, enough), 0.0};
    }
    double roundingMm() const override { return 0.0; }

private:
    BodyDistance distance_;
};

/// The largest distance among points that are further away than granted.
class Probe {
public:
    Probe(const Target& target, const gp_Trsf& motion, double toleranceMm, const TimeLimit& limit)
        : target_(target), motion_(motion), toleranceMm_(toleranceMm), limit_(limit) {}

    /// `bowMm` is granted by the point's own body. Returns a bound of its distance.
    double ask(const gp_Pnt& point, double bowMm) {
        limit_.check();
        const auto answer =
            target_.ask(point.Transformed(motion_), std::max(toleranceMm_ + bowMm, 0.9 * most_));
        const bool differs = answer.mm > toleranceMm_ + bowMm + answer.bowMm;
        if (differs) most_ = std::max(most_, answer.mm);
        return answer.mm;
    }
    double mostMm() const { return most_; }
    double toleranceMm() const { return toleranceMm_; }

private:
    const Target& target_;
    gp_Trsf motion_;
    double toleranceMm_;
    const TimeLimit& limit_;
    double most_ = 0.0;
};

struct Piece {
    double mostMm = 0.0;  ///< no point of it is further away
    std::uint32_t number = 0;
    std::uint32_t triangle = 0;
    std::array<gp_XYZ, 3> corner;
    bool operator<(const Piece& other) const {
        return mostMm != other.mostMm ? mostMm < other.mostMm : number > other.number;
    }
};

gp_XYZ middleOf(const std::array<gp_XYZ, 3>& corner) {
    return (corner[0] + corner[1] + corner[2]) / 3.0;
}

/// Corners, then middles, then parts of the triangles that may still hold the largest distance.
class TriangleProbe {
public:
    TriangleProbe(const MeshBody& body, Probe& probe) : body_(body), probe_(probe) {}

    void run() {
        for (std::uint32_t p = 0; p < body_.points().size(); ++p) {
            probe_.ask(gp_Pnt(body_.points()[p]), body_.bowAtPointMm(p));
        }
        for (std::uint32_t t = 0; t < body_.triangles().size(); ++t) add(t, body_.corners(t));
        for (int i = 0; i < kMostPieces && !open_.empty(); i += 4) {
            const Piece piece = open_.top();
            if (piece.mostMm <= kCloseEnough * probe_.mostMm()) break;
            open_.pop();
            split(piece);
        }
    }

private:
    static constexpr int kMostPieces = 20000;
    static constexpr double kCloseEnough = 1.002;

    void add(std::uint32_t triangle, const std::array<gp_XYZ, 3>& corner) {
        const gp_XYZ middle = middleOf(corner);
        double reach = 0.0;
        for (const gp_XYZ& point : corner) reach = std::max(reach, (point - middle).Modulus());
        const double bow = body_.bowMm(triangle);
        const double mm = probe_.ask(gp_Pnt(middle), bow) + reach;
        if (mm <= std::max(kCloseEnough * probe_.mostMm(), probe_.toleranceMm() + bow)) return;
        open_.push({mm, ++pieces_, triangle, corner});
    }

    void split(const Piece& piece) {
        const auto& c = piece.corner;
        const std::array<gp_XYZ, 3> half = {(c[0] + c[1]) / 2.0, (c[1] + c[2]) / 2.0,
                                            (c[2] + c[0]) / 2.0};
        add(piece.triangle, {c[0], half[0], half[2]});
        add(piece.triangle, {half[0], c[1], half[1]});
        add(piece.triangle, {half[2], half[1], c[2]});
        add(piece.triangle, half);
    }

    const MeshBody& body_;
    Probe& probe_;
    std::priority_queue<Piece> open_;
    std::uint32_t pieces_ = 0;
};

void probeSurfaces(FaceSet& set, Probe& probe) {
    constexpr int kPerDirection = 7;
    for (std::size_t i = 0; i < set.edges().list.size(); ++i) {
        for (const BoundaryPoint& point : set.edges().pointsOf(i)) probe.ask(point.point, 0.0);
    }
    for (std::uint32_t f = 0; f < set.faceCount(); ++f) {
        const BoundaryFace& face = set.boundary(f);
        for (int i = 0; i < kPerDirection * kPerDirection; ++i) {
            const double s = (i % kPerDirection + 0.5) / kPerDirection;
            const double t = (i / kPerDirection + 0.5) / kPerDirection;
            const auto point = face.pointAt(face.firstU() + s * (face.lastU() - face.firstU()),
                                            face.firstV() + t * (face.lastV() - face.firstV()));
            if (point) probe.ask(point->point, 0.0);
        }
    }
}

/// One of the two bodies.
struct Half {
    Half(const TopoDS_Shape& shape, double toleranceMm, const TimeLimit& limit) {
        if (faceFormsOf(shape).triangles) {
            mesh = std::make_unique<MeshBody>(shape);
            target = std::make_unique<MeshTarget>(*mesh);
        } else {
            faces = std::make_unique<FaceSet>(shape, toleranceMm, limit);
            target = std::make_unique<SurfaceTarget>(*faces);
        }
    }

    void run(Probe& probe) {
        if (mesh) {
            TriangleProbe(*mesh, probe).run();
        } else {
            probeSurfaces(*faces, probe);
        }
    }

    /// A few points all over the body.
    std::vector<gp_Pnt> landmarks() const {
        constexpr std::size_t kMost = 200;
        std::vector<gp_Pnt> points;
        if (mesh) {
            const std::size_t stride = mesh->points().size() / kMost + 1;
            for (std::size_t i = 0; i < mesh->points().size(); i += stride) {
                points.emplace_back(mesh->points()[i]);
            }
            return points;
        }
        const auto& patches = faces->patches();
        const std::size_t stride = patches.size() / kMost + 1;
        for (std::size_t i = 0; i < patches.size(); i += stride) {
            for (const std::uint32_t edge : patches[i].edges) {
                points.push_back(
                    faces->edges().list[edge].value(faces->edges().list[edge].firstParameter()));
            }
        }
        return points;
    }

    std::unique_ptr<MeshBody> mesh;
    std::unique_ptr<FaceSet> faces;
    std::unique_ptr<Target> target;
};

gp_Trsf bestOf(const std::vector<gp_Trsf>& guesses, const Half& reference, const Half& compare,
               double toleranceMm) {
    const std::vector<gp_Pnt> points = reference.landmarks();
    gp_Trsf best;
    std::ptrdiff_t most = -1;
    for (const gp_Trsf& guess : guesses) {
        const auto fit = std::count_if(points.begin(), points.end(), [&](const gp_Pnt& point) {
            const auto answer = compare.target->ask(point.Transformed(guess), toleranceMm);
            return answer.mm <= toleranceMm + answer.bowMm;
        });
        if (fit <= most) continue;
        most = fit;
        best = guess;
    }
    return best;
}

}  // namespace

MeshDifference compareTriangles(const TopoDS_Shape& reference, const TopoDS_Shape& compare,
                                const std::vector<gp_Trsf>& guesses, const Tolerances& tolerances,
                                const TimeLimit& limit) {
    Half a(reference, tolerances.lengthMm, limit);
    Half b(compare, tolerances.lengthMm, limit);
    const double tolerance = tolerances.lengthMm + a.target->roundingMm() + b.target->roundingMm();
    MeshDifference difference;
    difference.motion = bestOf(guesses, a, b, tolerance);
    Probe there(*b.target, difference.motion, tolerance, limit);
    a.run(there);
    Probe back(*a.target, difference.motion.Inverted(), tolerance, limit);
    b.run(back);
    difference.largestMm = std::max(there.mostMm(), back.mostMm());
    difference.same = !(difference.largestMm > 0.0);
    difference.allowanceMm =
        tolerance - tolerances.lengthMm +
        std::max(a.mesh ? a.mesh->largestBowMm() : 0.0, b.mesh ? b.mesh->largestBowMm() : 0.0);
    return difference;
}

}  // namespace comparer
