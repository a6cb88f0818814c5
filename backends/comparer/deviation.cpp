#include "backends/comparer/deviation.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <queue>
#include <vector>

#include "backends/comparer/body_distance.h"

namespace comparer {
namespace {

/// A place on a face or an edge, and its distance from the other body.
struct Probe {
    double mm = 0.0;
    std::uint32_t part = 0;
    bool onEdge = false;
    double u = 0.0;
    double v = 0.0;
};

/// A rectangle of a face's parameters, around a point whose distance is known. Going from one
/// point to another changes the distance by no more than the way: that bounds it for all of them.
struct Cell {
    double mostMm = 0.0;  ///< no point of the cell is further from the other body
    std::uint32_t number = 0;
    std::uint32_t face = 0;
    double u = 0.0;
    double v = 0.0;
    double halfU = 0.0;
    double halfV = 0.0;

    bool operator<(const Cell& other) const {
        return mostMm != other.mostMm ? mostMm < other.mostMm : number > other.number;
    }
};

/// Only what may still become the largest is measured to the end.
constexpr double kPromising = 0.8;
constexpr double kCloseEnough = 1.002;

class OneWay {
public:
    OneWay(const FaceSet& own, const FaceSet& other, const BodyDistance& distance,
           const gp_Trsf& motion, const TimeLimit& limit)
        : own_(own), other_(other), distance_(distance), motion_(motion), limit_(limit) {}

    double run(const std::vector<std::uint32_t>& changed, const std::vector<bool>& edgeKept,
               const std::vector<std::uint32_t>& otherChanged,
               const std::vector<bool>& otherEdgeKept) {
        const std::vector<gp_Pnt> targets = middlesOfOutlines(otherChanged, otherEdgeKept);
        for (const std::uint32_t p : changed) {
            const Patch& patch = own_.patches()[p];
            for (const std::uint32_t edge : patch.edges) {
                if (!edgeKept[edge]) probeEdge(edge);
            }
            for (const gp_Pnt& target : targets) probeTarget(patch, target);
        }
        for (const std::uint32_t p : changed) {
            for (const std::uint32_t face : own_.patches()[p].faces) {
                const BoundaryFace& part = own_.boundary(face);
                const double halfU = (part.lastU() - part.firstU()) / 2.0;
                const double halfV = (part.lastV() - part.firstV()) / 2.0;
                addCell({0.0, 0, face, part.firstU() + halfU, part.firstV() + halfV, halfU, halfV});
            }
        }
        probeCells();
        return refine();
    }

private:
    /// Beyond one per face.
    static constexpr int kMostCells = 4000;
    static constexpr int kPatience = 256;
    static constexpr std::size_t kSeeds = 4;

    double mmAt(const gp_Pnt& point, double enough) const {
        limit_.check();
        return distance_.mm(point.Transformed(motion_), enough);
    }

    void offer(Probe probe, const gp_Pnt& point) {
        probe.mm = mmAt(point, kPromising * most_);
        take(probe);
    }

    void take(const Probe& probe) {
        if (probe.mm > kPromising * most_) seeds_.push_back(probe);
        most_ = std::max(most_, probe.mm);
    }

    void addCell(Cell cell) {
        // Curves between the corners reach out a little further than those.
        constexpr double kRoom = 1.1;
        const BoundaryFace& face = own_.boundary(cell.face);
        const gp_Pnt middle = face.value(cell.u, cell.v);
        double reach = 0.0;
        for (int i = 0; i < 9; ++i) {
            const gp_Pnt rim =
                face.value(cell.u + (i % 3 - 1) * cell.halfU, cell.v + (i / 3 - 1) * cell.halfV);
            reach = std::max(reach, kRoom * middle.Distance(rim));
        }
        const double mm = mmAt(middle, std::max(kPromising * most_, most_ - reach));
        cell.mostMm = mm + reach;
        cell.number = ++cells_;
        // Whether a point is within the edges takes longer than its distance.
        if (mm > kPromising * most_ && face.pointAt(cell.u, cell.v)) {
            take({mm, cell.face, false, cell.u, cell.v});
        }
        if (cell.mostMm > kCloseEnough * most_) open_.push(cell);
    }

    /// Goes where the largest may still be, until it can't be much larger than what was found. Two
    /// faces at one distance all along could go on for ever: no progress for a while is an end too.
    void probeCells() {
        double goal = kCloseEnough * most_;
        int idle = 0;
        for (int i = 0; i < kMostCells && idle < kPatience && !open_.empty(); i += 4, idle += 4) {
            const Cell cell = open_.top();
            open_.pop();
            if (cell.mostMm <= kCloseEnough * most_) break;
            if (most_ > goal) {
                goal = kCloseEnough * most_;
                idle = 0;
            }
            const double u = cell.halfU / 2.0;
            const double v = cell.halfV / 2.0;
            for (const double du : {-u, u}) {
                for (const double dv : {-v, v}) {
                    addCell({0.0, 0, cell.face, cell.u + du, cell.v + dv, u, v});
                }
            }
        }
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
    const TimeLimit& limit_;
    double most_ = 0.0;
    std::vector<Probe> seeds_;
    std::priority_queue<Cell> open_;
    std::uint32_t cells_ = 0;
};

}  // namespace

double largestDeviationMm(const FaceSet& reference, const FaceSet& compare, const gp_Trsf& motion,
                          const FaceMatching& matching, const TimeLimit& limit) {
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
        OneWay(reference, compare, toCompare, motion, limit)
            .run(ofReference, matching.referenceEdgeKept, ofCompare, matching.compareEdgeKept);
    const double back =
        OneWay(compare, reference, toReference, motion.Inverted(), limit)
            .run(ofCompare, matching.compareEdgeKept, ofReference, matching.referenceEdgeKept);
    return std::max(there, back);
}

}  // namespace comparer
