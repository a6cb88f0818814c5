#include "backends/comparer/deviation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>
#include <vector>

#include "backends/comparer/nearest_tree.h"

namespace comparer {
namespace {

/// Distances from a body, its faces and edges as one hierarchy of boxes.
class BodyDistance {
public:
    explicit BodyDistance(const FaceSet& set) : set_(set), tree_(boxesOf(set)) {}

    double mm(const gp_Pnt& point, double enough) const {
        return tree_.nearest(point, enough, [&](std::uint32_t number) {
            if (number >= set_.faceCount()) {
                return set_.edges().list[number - set_.faceCount()].distanceMm(point);
            }
            const auto foot = set_.boundary(number).footOf(point);
            return foot ? foot->point.Distance(point) : std::numeric_limits<double>::max();
        });
    }

private:
    static std::vector<Bnd_Box> boxesOf(const FaceSet& set) {
        std::vector<Bnd_Box> boxes;
        for (std::uint32_t f = 0; f < set.faceCount(); ++f) {
            boxes.push_back(set.boundary(f).box());
        }
        for (const BoundaryEdge& edge : set.edges().list) boxes.push_back(edge.box());
        return boxes;
    }

    const FaceSet& set_;
    NearestTree tree_;
};

/// A place on a face or an edge, and its distance from the other body.
struct Probe {
    double mm = 0.0;
    std::uint32_t part = 0;
    bool onEdge = false;
    double u = 0.0;
    double v = 0.0;
};

class OneWay {
public:
    OneWay(const FaceSet& own, const FaceSet& other, const BodyDistance& distance,
           const gp_Trsf& motion)
        : own_(own), other_(other), distance_(distance), motion_(motion) {}

    double run(const std::vector<std::uint32_t>& changed, const std::vector<bool>& edgeKept,
               const std::vector<std::uint32_t>& otherChanged,
               const std::vector<bool>& otherEdgeKept) {
        const std::vector<gp_Pnt> targets = middlesOfOutlines(otherChanged, otherEdgeKept);
        std::size_t faces = 0;
        for (const std::uint32_t p : changed) faces += own_.patches()[p].faces.size();
        const double share = kMostProbes / std::max<double>(static_cast<double>(faces), 1.0);
        const int perDirection = std::clamp(static_cast<int>(std::sqrt(share)), 2, 7);
        for (const std::uint32_t p : changed) {
            const Patch& patch = own_.patches()[p];
            for (const std::uint32_t edge : patch.edges) {
                if (!edgeKept[edge]) probeEdge(edge);
            }
            for (const std::uint32_t face : patch.faces) probeFace(face, perDirection);
            for (const gp_Pnt& target : targets) probeTarget(patch, target);
        }
        return refine();
    }

private:
    static constexpr double kMostProbes = 20000.0;
    static constexpr std::size_t kSeeds = 4;

    double mmAt(const gp_Pnt& point, double enough) const {
        return distance_.mm(point.Transformed(motion_), enough);
    }

    void offer(Probe probe, const gp_Pnt& point) {
        // Only what may still become the largest is measured to the end.
        constexpr double kPromising = 0.8;
        probe.mm = mmAt(point, kPromising * most_);
        if (probe.mm > kPromising * most_) seeds_.push_back(probe);
        most_ = std::max(most_, probe.mm);
    }

    void probeEdge(std::uint32_t number) {
        constexpr int kPerEdge = 16;
        const BoundaryEdge& edge = own_.edges().list[number];
        const double first = edge.firstParameter();
        const double last = edge.lastParameter();
        for (int i = 0; i <= kPerEdge; ++i) {
            const double u = first + (last - first) * i / kPerEdge;
            offer({0.0, number, true, u, 0.0}, edge.value(u));
        }
    }

    void probeFace(std::uint32_t number, int perDirection) {
        const BoundaryFace& face = own_.boundary(number);
        for (int i = 0; i < perDirection * perDirection; ++i) {
            const double s = (i % perDirection + 0.5) / perDirection;
            const double t = (i / perDirection + 0.5) / perDirection;
            const auto point = face.pointAt(face.firstU() + s * (face.lastU() - face.firstU()),
                                            face.firstV() + t * (face.lastV() - face.firstV()));
            if (point) offer({0.0, number, false, point->u, point->v}, point->point);
        }
    }

    /// Middles of what the other body's changed outlines enclose, in this body's frame: a face
    /// that closed a hole is furthest from the other body there, and no raster hits it.
    std::vector<gp_Pnt> middlesOfOutlines(const std::vector<std::uint32_t>& changed,
                                          const std::vector<bool>& edgeKept) const {
        constexpr std::size_t kMostEdges = 400;
        std::vector<std::uint32_t> edges;
        for (const std::uint32_t p : changed) {
            for (const std::uint32_t edge : other_.patches()[p].edges) {
                if (!edgeKept[edge]) edges.push_back(edge);
            }
        }
        std::sort(edges.begin(), edges.end());
        edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
        if (edges.size() > kMostEdges) edges.resize(kMostEdges);
        std::vector<gp_Pnt> middles;
        for (const auto& loop : loops(edges)) addMiddle(loop, middles);
        return middles;
    }

    std::vector<std::vector<std::uint32_t>> loops(const std::vector<std::uint32_t>& edges) const {
        constexpr double kTouchMm = 1e-3;
        std::vector<std::size_t> leader(edges.size());
        std::iota(leader.begin(), leader.end(), std::size_t{0});
        const auto find = [&](std::size_t i) {
            while (leader[i] != i) i = leader[i] = leader[leader[i]];
            return i;
        };
        const auto ends = [&](std::size_t i) {
            const BoundaryEdge& edge = other_.edges().list[edges[i]];
            return std::pair(edge.value(edge.firstParameter()), edge.value(edge.lastParameter()));
        };
        for (std::size_t i = 0; i < edges.size(); ++i) {
            const auto [a, b] = ends(i);
            for (std::size_t j = 0; j < i; ++j) {
                const auto [c, d] = ends(j);
                const double mm =
                    std::min({a.Distance(c), a.Distance(d), b.Distance(c), b.Distance(d)});
                if (mm <= kTouchMm) leader[find(i)] = find(j);
            }
        }
        std::vector<std::vector<std::uint32_t>> groups(edges.size());
        for (std::size_t i = 0; i < edges.size(); ++i) groups[find(i)].push_back(edges[i]);
        std::erase_if(groups, [](const auto& group) { return group.empty(); });
        return groups;
    }

    void addMiddle(const std::vector<std::uint32_t>& loop, std::vector<gp_Pnt>& middles) const {
        constexpr int kPerEdge = 8;
        std::vector<gp_Pnt> points;
        for (const std::uint32_t number : loop) {
            const BoundaryEdge& edge = other_.edges().list[number];
            const double first = edge.firstParameter();
            const double step = (edge.lastParameter() - first) / kPerEdge;
            for (int i = 0; i < kPerEdge; ++i) points.push_back(edge.value(first + i * step));
        }
        gp_XYZ sum;
        for (const gp_Pnt& point : points) sum += point.XYZ();
        const gp_Pnt middle(sum / static_cast<double>(points.size()));
        const gp_Trsf back = motion_.Inverted();
        middles.push_back(middle.Transformed(back));
        for (std::size_t i = 0; i < points.size(); i += kPerEdge / 2) {
            middles.push_back(gp_Pnt((middle.XYZ() + points[i].XYZ()) / 2.0).Transformed(back));
        }
    }

    void probeTarget(const Patch& patch, const gp_Pnt& target) {
        if (patch.carrier.kind == SurfaceKind::Other ||
            patch.carrier.distanceMm(target) > 1e-3 * patch.sizeMm) {
            return;
        }
        for (const std::uint32_t face : patch.faces) {
            const auto foot = own_.boundary(face).footOf(target);
            if (foot) offer({0.0, face, false, foot->u, foot->v}, foot->point);
        }
    }

    double refine() {
        std::stable_sort(seeds_.begin(), seeds_.end(),
                         [](const Probe& a, const Probe& b) { return a.mm > b.mm; });
        if (seeds_.size() > kSeeds) seeds_.resize(kSeeds);
        for (const Probe& seed : seeds_) most_ = std::max(most_, climb(seed));
        return most_;
    }

    /// Uphill in steps that get shorter.
    double climb(Probe probe) const {
        constexpr int kSteps = 14;
        double stepU = 0.0;
        double stepV = 0.0;
        if (probe.onEdge) {
            const BoundaryEdge& edge = own_.edges().list[probe.part];
            stepU = (edge.lastParameter() - edge.firstParameter()) / 32.0;
        } else {
            const BoundaryFace& face = own_.boundary(probe.part);
            stepU = (face.lastU() - face.firstU()) / 16.0;
            stepV = (face.lastV() - face.firstV()) / 16.0;
        }
        for (int step = 0; step < kSteps; ++step) {
            Probe best = probe;
            for (int i = 0; i < 9; ++i) {
                if (probe.onEdge && i / 3 != 1) continue;
                const double u = probe.u + (i % 3 - 1) * stepU;
                const double v = probe.v + (i / 3 - 1) * stepV;
                const auto point = pointOf(probe, u, v);
                if (!point) continue;
                const double mm = mmAt(*point, best.mm);
                if (mm > best.mm) best = {mm, probe.part, probe.onEdge, u, v};
            }
            if (!(best.mm > probe.mm)) {
                stepU /= 2.0;
                stepV /= 2.0;
            }
            probe = best;
        }
        return probe.mm;
    }

    std::optional<gp_Pnt> pointOf(const Probe& probe, double u, double v) const {
        if (probe.onEdge) {
            const BoundaryEdge& edge = own_.edges().list[probe.part];
            if (u < edge.firstParameter() || u > edge.lastParameter()) return std::nullopt;
            return edge.value(u);
        }
        const auto point = own_.boundary(probe.part).pointAt(u, v);
        if (!point) return std::nullopt;
        return point->point;
    }

    const FaceSet& own_;
    const FaceSet& other_;
    const BodyDistance& distance_;
    gp_Trsf motion_;
    double most_ = 0.0;
    std::vector<Probe> seeds_;
};

}  // namespace

double largestDeviationMm(const FaceSet& reference, const FaceSet& compare, const gp_Trsf& motion,
                          const FaceMatching& matching) {
    if (matching.same()) return 0.0;
    std::vector<std::uint32_t> ofReference = matching.removed;
    std::vector<std::uint32_t> ofCompare = matching.added;
    for (const FacePair& pair : matching.changed) {
        ofReference.push_back(pair.reference);
        ofCompare.push_back(pair.compare);
    }
    std::sort(ofReference.begin(), ofReference.end());
    std::sort(ofCompare.begin(), ofCompare.end());
    const BodyDistance toReference(reference);
    const BodyDistance toCompare(compare);
    const double there =
        OneWay(reference, compare, toCompare, motion)
            .run(ofReference, matching.referenceEdgeKept, ofCompare, matching.compareEdgeKept);
    const double back =
        OneWay(compare, reference, toReference, motion.Inverted())
            .run(ofCompare, matching.compareEdgeKept, ofReference, matching.referenceEdgeKept);
    return std::max(there, back);
}

}  // namespace comparer
