#include "backends/comparer/face_matching.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>

#include "backends/comparer/point_grid.h"

namespace comparer {
namespace {

/// Pairs of left-over patches that are looked at one by one; more than that are left apart.
constexpr std::size_t kMostPairs = 4000000;
constexpr std::int32_t kFree = -1;

bool near(double a, double b, double relative, double absolute) {
    return std::abs(a - b) <= absolute + relative * std::max(std::abs(a), std::abs(b));
}

bool hasAxis(SurfaceKind kind) {
    return kind != SurfaceKind::Sphere && kind != SurfaceKind::Other;
}

/// One body while its patches are being matched.
struct Half {
    FaceSet* set = nullptr;
    std::vector<std::int32_t> partner;  ///< kFree, or the patch of the other body
    std::vector<bool> edgeKept;

    explicit Half(FaceSet& faces)
        : set(&faces), partner(faces.patches().size(), kFree), edgeKept() {}

    const Patch& patch(std::uint32_t number) const { return set->patches()[number]; }
    bool keepsEdges(std::uint32_t number) const {
        const auto& edges = patch(number).edges;
        return std::all_of(edges.begin(), edges.end(),
                           [&](std::uint32_t edge) { return edgeKept[edge]; });
    }
};

std::vector<bool> keptEdges(PartIndex<BoundaryEdge>& own, const PartIndex<BoundaryEdge>& other,
                            const gp_Trsf& motion, double toleranceMm, const TimeLimit& limit) {
    std::vector<bool> kept(own.list.size());
    for (std::size_t i = 0; i < own.list.size(); ++i) {
        limit.check();
        const auto& points = own.pointsOf(i);
        kept[i] = std::all_of(points.begin(), points.end(), [&](BoundaryPoint point) {
            point.point.Transform(motion);
            return other.anyNear(point, toleranceMm);
        });
    }
    return kept;
}

class FaceMatcher {
public:
    FaceMatcher(FaceSet& reference, FaceSet& compare, const gp_Trsf& motion,
                const Tolerances& tolerances, const TimeLimit& limit)
        : tolerances_(tolerances),
          limit_(limit),
          motion_(motion),
          back_(motion.Inverted()),
          reference_(reference),
          compare_(compare) {}

    FaceMatching run() {
        PartIndex<BoundaryEdge>& a = reference_.set->edges();
        PartIndex<BoundaryEdge>& b = compare_.set->edges();
        reference_.edgeKept = keptEdges(a, b, motion_, tolerances_.lengthMm, limit_);
        compare_.edgeKept = keptEdges(b, a, back_, tolerances_.lengthMm, limit_);
        pairSame();
        pairChanged();
        return finish();
    }

private:
    // Stage 1: what did not change.

    void pairSame() {
        double largest = 0.0;
        for (const Patch& patch : reference_.set->patches()) {
            largest = std::max(largest, patch.sizeMm);
        }
        // Centroids are integrated: a long thin face's may be off by more than its edges are.
        PointGrid grid(std::max(20.0 * tolerances_.lengthMm, 1e-3 * largest));
        for (std::uint32_t c = 0; c < compare_.partner.size(); ++c) {
            if (compare_.keepsEdges(c)) grid.add(compare_.patch(c).centre, c);
        }
        for (std::uint32_t r = 0; r < reference_.partner.size(); ++r) {
            limit_.check();
            if (!reference_.keepsEdges(r)) continue;
            const gp_Pnt place = reference_.patch(r).centre.Transformed(motion_);
            std::vector<std::pair<double, std::uint32_t>> candidates;
            for (const PointGrid::Cell* cell : grid.near(place)) {
                for (const std::uint32_t c : *cell) {
                    candidates.emplace_back(compare_.patch(c).centre.Distance(place), c);
                }
            }
            std::sort(candidates.begin(), candidates.end());
            for (const auto& [mm, c] : candidates) {
                if (compare_.partner[c] != kFree || !same(r, c)) continue;
                reference_.partner[r] = static_cast<std::int32_t>(c);
                compare_.partner[c] = static_cast<std::int32_t>(r);
                ++unchanged_;
                break;
            }
        }
    }

    bool same(std::uint32_t r, std::uint32_t c) const {
        const Patch& a = reference_.patch(r);
        const Patch& b = compare_.patch(c);
        const double reach = 2.0 * tolerances_.lengthMm * std::max(a.perimeterMm, b.perimeterMm);
        // The same edges may go around what is left of the surface. No more is asked of the area:
        // that of a free-form face is integrated to a few parts in a thousand.
        return near(a.areaMm2, b.areaMm2, 1e-2, reach) && onSameSurface(r, c);
    }

    bool onSameSurface(std::uint32_t r, std::uint32_t c) const {
        const Patch& a = reference_.patch(r);
        const Patch& b = compare_.patch(c);
        if (a.carrier.kind != b.carrier.kind && a.carrier.kind != SurfaceKind::Other &&
            b.carrier.kind != SurfaceKind::Other) {
            return false;
        }
        return sameWay(a, b) && anglesAgree(a, b) && liesOn(reference_, a, compare_, b, motion_) &&
               liesOn(compare_, b, reference_, a, back_);
    }

    bool liesOn(const Half& own, const Patch& patch, const Half& other, const Patch& target,
                const gp_Trsf& motion) const {
        return std::all_of(
            patch.samples.begin(), patch.samples.end(), [&](const PatchSample& sample) {
                const gp_Pnt point = sample.at.point.Transformed(motion);
                if (other.set->isOnSurface(target, sample, point, tolerances_.lengthMm)) {
                    return true;
                }
                // A free-form surface ends somewhere, often not far from the edges.
                const bool endless = target.carrier.kind != SurfaceKind::Other && !patch.fitted &&
                                     patch.carrier.kind != SurfaceKind::Other;
                return !endless && !own.set->isInside(sample);
            });
    }

    /// The material is on the same side.
    bool sameWay(const Patch& a, const Patch& b) const {
        if (!reference_.set->isSolid() || !compare_.set->isSolid()) return true;
        if (a.samples.empty() || b.samples.empty()) return true;
        const PatchSample& mine = a.samples[a.samples.size() / 2];
        const gp_Pnt place = mine.at.point.Transformed(motion_);
        const auto nearest =
            std::min_element(b.samples.begin(), b.samples.end(), [&](auto& x, auto& y) {
                return x.at.point.SquareDistance(place) < y.at.point.SquareDistance(place);
            });
        const gp_Dir normal = mine.at.normal.Transformed(motion_);
        if (a.carrier.kind == SurfaceKind::Other || b.carrier.kind == SurfaceKind::Other) {
            return normal.Dot(nearest->at.normal) > -0.2;
        }
        const double own = b.carrier.normalAt(nearest->at.point).Dot(nearest->at.normal);
        return b.carrier.normalAt(place).Dot(normal) * own > 0.0;
    }

    /// Between the planes or axes, or the opening angles when those differ more.
    double angleRad(const Patch& a, const Patch& b) const {
        const double opening = std::abs(a.carrier.halfAngle - b.carrier.halfAngle);
        if (!hasAxis(a.carrier.kind)) return opening;
        const gp_Vec axis(a.carrier.axis.Transformed(motion_));
        const double turn = std::min(axis.Crossed(gp_Vec(b.carrier.axis)).Magnitude(), 1.0);
        return std::max(opening, std::asin(turn));
    }

    bool anglesAgree(const Patch& a, const Patch& b) const {
        if (a.carrier.kind != b.carrier.kind || a.fitted || b.fitted) return true;
        const double angle = angleRad(a, b);
        if (angle <= tolerances_.angleDeg * std::numbers::pi / 180.0) return true;
        return angle * std::max(a.sizeMm, b.sizeMm) < 0.1 * tolerances_.lengthMm;
    }

    // Stage 2: what changed.

    struct Candidate {
        int rank = 0;
        double mm = 0.0;
        std::uint32_t reference = 0;
        std::uint32_t compare = 0;
        FaceChange change = FaceChange::Outline;
    };

    static std::vector<std::uint32_t> freeOnes(const Half& half) {
        std::vector<std::uint32_t> free;
        for (std::uint32_t i = 0; i < half.partner.size(); ++i) {
            if (half.partner[i] == kFree) free.push_back(i);
        }
        return free;
    }

    void pairChanged() {
        const std::vector<std::uint32_t> references = freeOnes(reference_);
        const std::vector<std::uint32_t> compares = freeOnes(compare_);
        if (references.size() > kMostPairs / std::max<std::size_t>(compares.size(), 1)) return;
        std::vector<Candidate> candidates;
        for (const std::uint32_t r : references) {
            limit_.check();
            for (const std::uint32_t c : compares) addCandidate(r, c, candidates);
        }
        std::sort(candidates.begin(), candidates.end(), [](const auto& x, const auto& y) {
            return std::tie(x.rank, x.mm, x.reference, x.compare) <
                   std::tie(y.rank, y.mm, y.reference, y.compare);
        });
        for (const Candidate& candidate : candidates) {
            auto& r = reference_.partner[candidate.reference];
            auto& c = compare_.partner[candidate.compare];
            if (r != kFree || c != kFree) continue;
            r = static_cast<std::int32_t>(candidate.compare);
            c = static_cast<std::int32_t>(candidate.reference);
            changed_.push_back({candidate.reference, candidate.compare, candidate.change});
        }
    }

    void addCandidate(std::uint32_t r, std::uint32_t c, std::vector<Candidate>& all) const {
        const Patch& a = reference_.patch(r);
        const Patch& b = compare_.patch(c);
        const double mm = a.centre.Transformed(motion_).Distance(b.centre);
        const bool close = mm <= std::max(a.sizeMm, b.sizeMm);
        if (close && onSameSurface(r, c)) {
            all.push_back({0, mm, r, c, FaceChange::Outline});
            return;
        }
        if (a.carrier.kind != b.carrier.kind) return;
        if (sameShape(a, b)) {
            all.push_back({1, mm, r, c, FaceChange::Moved});
            return;
        }
        const bool alike = std::max(a.sizeMm, b.sizeMm) <= 3.0 * std::min(a.sizeMm, b.sizeMm);
        if (!alike || mm > 0.75 * std::min(a.sizeMm, b.sizeMm) || !sameWay(a, b)) return;
        const bool flat = a.carrier.kind == SurfaceKind::Plane;
        // A wall that became another one beside it is no wall that turned.
        if (flat && angleRad(a, b) > std::numbers::pi / 6.0) return;
        all.push_back({2, mm, r, c, flat ? FaceChange::Moved : FaceChange::Resized});
    }

    bool sameShape(const Patch& a, const Patch& b) const {
        const double mm = 2.0 * tolerances_.lengthMm;
        const double reach = mm * std::max(a.perimeterMm, b.perimeterMm);
        return near(a.areaMm2, b.areaMm2, 1e-4, reach) &&
               near(a.perimeterMm, b.perimeterMm, 1e-4, mm) &&
               near(a.carrier.radiusMm, b.carrier.radiusMm, 0.0, mm) &&
               near(a.carrier.minorMm, b.carrier.minorMm, 0.0, mm) &&
               near(a.carrier.halfAngle, b.carrier.halfAngle, 0.0, 1e-4) &&
               near(a.sizeMm, b.sizeMm, 1e-3, mm);
    }

    FaceMatching finish() {
        FaceMatching matching;
        matching.unchanged = unchanged_;
        std::sort(changed_.begin(), changed_.end(),
                  [](const auto& x, const auto& y) { return x.reference < y.reference; });
        matching.changed = std::move(changed_);
        matching.removed = freeOnes(reference_);
        matching.added = freeOnes(compare_);
        matching.referenceEdgeKept = std::move(reference_.edgeKept);
        matching.compareEdgeKept = std::move(compare_.edgeKept);
        return matching;
    }

    Tolerances tolerances_;
    const TimeLimit& limit_;
    gp_Trsf motion_;
    gp_Trsf back_;
    Half reference_;
    Half compare_;
    std::uint32_t unchanged_ = 0;
    std::vector<FacePair> changed_;
};

}  // namespace

FaceMatching matchFaces(FaceSet& reference, FaceSet& compare, const gp_Trsf& motion,
                        const Tolerances& tolerances, const TimeLimit& limit) {
    return FaceMatcher(reference, compare, motion, tolerances, limit).run();
}

}  // namespace comparer
