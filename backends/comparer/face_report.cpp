#include "backends/comparer/face_report.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <numbers>

#include <BRepBuilderAPI_Transform.hxx>
#include <Standard_Failure.hxx>
#include <gp_Ax2.hxx>
#include <gp_Quaternion.hxx>

#include "backends/comparer/alignment.h"
#include "backends/comparer/body_classes.h"
#include "backends/comparer/deviation.h"
#include "backends/comparer/face_matching.h"
#include "backends/comparer/face_summary.h"

namespace comparer {
namespace {

using bxtexchange::GeometryState;
using bxtexchange::MatchEvidence;

constexpr double kToleranceOfSize = 1e-8;

/// What is known of a pair of bodies; several pairs of instances may share it.
struct BodyPair {
    std::unique_ptr<FaceSet> reference;
    std::unique_ptr<FaceSet> compare;
    gp_Trsf motion;
    FaceMatching matching;
    std::string whole;  ///< a sentence for the whole body, which makes those of faces needless
    std::int32_t number = FaceReport::kNone;
    bool evaluated = false;
};

/// The factor when one body is the other one enlarged; 1 when it isn't.
double scaleBetween(const bxtexchange::BodyIdentity& a, const bxtexchange::BodyIdentity& b,
                    double relative) {
    if (a.faceCount != b.faceCount || !(a.areaMm2 > 0.0) || !(a.volumeMm3 > 0.0)) return 1.0;
    const double factor = std::sqrt(b.areaMm2 / a.areaMm2);
    const auto fits = [&](double from, double to, double power) {
        const double expected = from * std::pow(factor, power);
        return std::abs(expected - to) <= 10.0 * relative * std::max(expected, to);
    };
    bool all = std::abs(factor - 1.0) > 10.0 * relative && fits(a.volumeMm3, b.volumeMm3, 3.0);
    for (std::size_t i = 0; i < 3; ++i) {
        all = all && fits(a.principalMoments[i], b.principalMoments[i], 5.0);
    }
    return all ? factor : 1.0;
}

class FaceReporter {
public:
    FaceReporter(const Side& reference, const Side& compare, const Tolerances& tolerances)
        : reference_(reference), compare_(compare), tolerances_(tolerances) {}

    FaceReport run(std::vector<Match>& matches, const std::function<void(double)>& progress) {
        report_.ofMatch.assign(matches.size(), FaceReport::kNone);
        report_.summaries.resize(matches.size());
        std::size_t total = 0;
        for (const Match& match : matches) total += match.state == GeometryState::Changed;
        std::size_t done = 0;
        for (std::size_t i = 0; i < matches.size(); ++i) {
            if (matches[i].state != GeometryState::Changed) continue;
            look(matches[i], i);
            progress(static_cast<double>(++done) / static_cast<double>(total));
        }
        return std::move(report_);
    }

private:
    void look(Match& match, std::size_t number) {
        const Instance& a = reference_.instances[static_cast<std::size_t>(match.reference)];
        const Instance& b = compare_.instances[static_cast<std::size_t>(match.compare)];
        const auto entry = pairs_.try_emplace({a.body, b.body});
        BodyPair& pair = entry.first->second;
        if (entry.second) evaluate(a, b, pair);
        if (!pair.evaluated) {
            match.note = "its faces could not be compared";
            return;
        }
        if (pair.matching.same()) {
            settle(match, a, b, pair.motion);
            return;
        }
        report_.ofMatch[number] = pair.number;
        report_.summaries[number] = pair.whole.empty()
                                        ? describeChanges(*pair.reference, *pair.compare,
                                                          pair.motion, pair.matching, b.placement)
                                        : pair.whole;
    }

    double toleranceMm(const Body& body) const {
        return std::max(tolerances_.lengthMm, kToleranceOfSize * body.radiusMm);
    }

    void evaluate(const Instance& a, const Instance& b, BodyPair& pair) try {
        const Body& before = reference_.bodies[a.body];
        const Body& after = compare_.bodies[b.body];
        Tolerances tolerances = tolerances_;
        tolerances.lengthMm = std::max(toleranceMm(before), toleranceMm(after));
        pair.reference = std::make_unique<FaceSet>(before.shape, tolerances.lengthMm);
        pair.compare = std::make_unique<FaceSet>(after.shape, tolerances.lengthMm);
        if (pair.reference->faceCount() == 0 || pair.compare->faceCount() == 0) return;
        const gp_Trsf world = b.placement.Inverted() * a.placement;
        pair.motion =
            alignBodies(*pair.reference, *pair.compare, {gp_Trsf(), world}, tolerances.lengthMm);
        pair.matching = matchFaces(*pair.reference, *pair.compare, pair.motion, tolerances);
        if (!pair.matching.same()) {
            pair.whole = wholeBody(before, after, pair, tolerances);
            pair.number = static_cast<std::int32_t>(report_.bodies.size());
            report_.bodies.push_back(differenceOf(pair));
        }
        pair.evaluated = true;
    } catch (const Standard_Failure&) {
        pair.evaluated = false;
    }

    static BodyDifference differenceOf(const BodyPair& pair) {
        const FaceMatching& matching = pair.matching;
        BodyDifference difference;
        difference.numbers.unchangedFaces = static_cast<std::int32_t>(matching.unchanged);
        difference.numbers.changedFaces = static_cast<std::int32_t>(matching.changed.size());
        difference.numbers.addedFaces = static_cast<std::int32_t>(matching.added.size());
        difference.numbers.removedFaces = static_cast<std::int32_t>(matching.removed.size());
        difference.numbers.largestDeviationMm =
            largestDeviationMm(*pair.reference, *pair.compare, pair.motion, matching);
        const auto collect = [](const FaceSet& set, std::uint32_t patch, auto& faces) {
            for (const std::uint32_t face : set.patches()[patch].faces) {
                faces.push_back(set.ordinal(face));
            }
        };
        for (const std::uint32_t p : matching.removed) {
            collect(*pair.reference, p, difference.referenceFaces);
        }
        for (const std::uint32_t p : matching.added) {
            collect(*pair.compare, p, difference.compareFaces);
        }
        for (const FacePair& changed : matching.changed) {
            collect(*pair.reference, changed.reference, difference.referenceFaces);
            collect(*pair.compare, changed.compare, difference.compareFaces);
        }
        std::sort(difference.referenceFaces.begin(), difference.referenceFaces.end());
        std::sort(difference.compareFaces.begin(), difference.compareFaces.end());
        return difference;
    }

    std::string wholeBody(const Body& before, const Body& after, const BodyPair& pair,
                          const Tolerances& tolerances) const {
        if (!before.identity || !after.identity) return {};
        const double factor = scaleBetween(*before.identity, *after.identity, tolerances_.relative);
        if (factor != 1.0) return "scaled to " + numberText(100.0 * factor) + " %";
        if (!sameIdentity(*before.identity, *after.identity, tolerances_.relative)) return {};
        gp_Trsf mirror;
        mirror.SetMirror(gp_Ax2(before.centre, gp::DX()));
        FaceSet image(BRepBuilderAPI_Transform(before.shape, mirror, Standard_True).Shape(),
                      tolerances.lengthMm);
        const gp_Trsf motion = alignBodies(image, *pair.compare, {gp_Trsf()}, tolerances.lengthMm);
        return matchFaces(image, *pair.compare, motion, tolerances).same() ? "mirrored"
                                                                           : std::string();
    }

    /// All faces are the same: at most the body stands elsewhere.
    void settle(Match& match, const Instance& a, const Instance& b, const gp_Trsf& motion) {
        const Body& body = reference_.bodies[a.body];
        const gp_Trsf moved = a.placement.Inverted() * b.placement * motion;
        match.evidence = MatchEvidence::Faces;
        match.displacementMm = {};
        if (largestDisplacementMm(moved, body) <= toleranceMm(body)) {
            match.state = GeometryState::Unchanged;
            return;
        }
        match.state = GeometryState::Moved;
        const gp_Pnt from = body.centre.Transformed(a.placement);
        const gp_Pnt to = body.centre.Transformed(motion).Transformed(b.placement);
        match.displacementMm = {to.X() - from.X(), to.Y() - from.Y(), to.Z() - from.Z()};
        match.rotationDeg = moved.GetRotation().GetRotationAngle() * 180.0 / std::numbers::pi;
    }

    const Side& reference_;
    const Side& compare_;
    Tolerances tolerances_;
    FaceReport report_;
    std::map<std::pair<std::uint32_t, std::uint32_t>, BodyPair> pairs_;
};

}  // namespace

FaceReport compareFaces(const Side& reference, const Side& compare, const Tolerances& tolerances,
                        std::vector<Match>& matches, const std::function<void(double)>& progress) {
    return FaceReporter(reference, compare, tolerances).run(matches, progress);
}

}  // namespace comparer
