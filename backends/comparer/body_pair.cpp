#include "backends/comparer/body_pair.h"

#include <algorithm>
#include <cmath>

#include <BRepBuilderAPI_Transform.hxx>
#include <Standard_Failure.hxx>
#include <gp_Ax2.hxx>

#include "backends/comparer/alignment.h"
#include "backends/comparer/body_classes.h"
#include "backends/comparer/deviation.h"
#include "backends/comparer/face_summary.h"
#include "backends/comparer/mesh_body.h"

namespace comparer {
namespace {

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

BodyDifference differenceOf(const BodyPair& pair, const TimeLimit& limit) {
    const FaceMatching& matching = pair.matching;
    BodyDifference difference;
    difference.numbers.unchangedFaces = static_cast<std::int32_t>(matching.unchanged);
    difference.numbers.changedFaces = static_cast<std::int32_t>(matching.changed.size());
    difference.numbers.addedFaces = static_cast<std::int32_t>(matching.added.size());
    difference.numbers.removedFaces = static_cast<std::int32_t>(matching.removed.size());
    difference.numbers.largestDeviationMm =
        largestDeviationMm(*pair.reference, *pair.compare, pair.motion, matching, limit);
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
                      const Tolerances& tolerances, const TimeLimit& limit) {
    if (!before.identity || !after.identity) return {};
    const double factor = scaleBetween(*before.identity, *after.identity, tolerances.relative);
    if (factor != 1.0) return "scaled to " + numberText(100.0 * factor) + " %";
    if (!sameIdentity(*before.identity, *after.identity, tolerances.relative)) return {};
    gp_Trsf mirror;
    mirror.SetMirror(gp_Ax2(before.centre, gp::DX()));
    FaceSet image(BRepBuilderAPI_Transform(before.shape, mirror, Standard_True).Shape(),
                  tolerances.lengthMm, limit);
    const gp_Trsf motion = alignBodies(image, *pair.compare, {gp_Trsf()}, tolerances.lengthMm);
    return matchFaces(image, *pair.compare, motion, tolerances, limit).same() ? "mirrored"
                                                                              : std::string();
}

void lookAtFaces(const Body& before, const Body& after, const gp_Trsf& world,
                 const Tolerances& tolerances, const TimeLimit& limit, BodyPair& pair) {
    pair.reference = std::make_unique<FaceSet>(before.shape, tolerances.lengthMm, limit);
    pair.compare = std::make_unique<FaceSet>(after.shape, tolerances.lengthMm, limit);
    if (pair.reference->faceCount() == 0 || pair.compare->faceCount() == 0) return;
    pair.motion =
        alignBodies(*pair.reference, *pair.compare, {gp_Trsf(), world}, tolerances.lengthMm);
    pair.matching = matchFaces(*pair.reference, *pair.compare, pair.motion, tolerances, limit);
    pair.same = pair.matching.same();
    if (!pair.same) {
        pair.whole = wholeBody(before, after, pair, tolerances, limit);
        pair.difference = differenceOf(pair, limit);
    }
    pair.state = BodyPair::State::Compared;
}

void lookAtTriangles(const Body& before, const Body& after, const gp_Trsf& world,
                     const Tolerances& tolerances, const TimeLimit& limit, BodyPair& pair) {
    const MeshDifference found =
        compareTriangles(before.shape, after.shape, {gp_Trsf(), world}, tolerances, limit);
    pair.motion = found.motion;
    pair.same = found.same;
    pair.allowanceMm = found.allowanceMm;
    pair.difference.knowsFaces = false;
    pair.difference.numbers.largestDeviationMm = found.largestMm;
    if (!pair.same) {
        pair.whole = "points differ by up to " + numberText(found.largestMm) +
                     " mm; triangles count as accurate to " +
                     numberText(tolerances.lengthMm + found.allowanceMm) + " mm";
    }
    pair.state = BodyPair::State::Compared;
}

}  // namespace

double bodyToleranceMm(const Body& body, const Tolerances& tolerances) {
    constexpr double kToleranceOfSize = 1e-8;
    return std::max(tolerances.lengthMm, kToleranceOfSize * body.radiusMm);
}

BodyPair compareBodies(const Body& before, const Body& after, const gp_Trsf& world,
                       const Tolerances& tolerances, double timeLimitS) {
    BodyPair pair;
    const TimeLimit limit(timeLimitS);
    Tolerances own = tolerances;
    own.lengthMm =
        std::max(bodyToleranceMm(before, tolerances), bodyToleranceMm(after, tolerances));
    try {
        const FaceForms a = faceFormsOf(before.shape);
        const FaceForms b = faceFormsOf(after.shape);
        // Nobody can tell where triangles meet surfaces.
        if ((a.triangles && a.surfaces) || (b.triangles && b.surfaces)) return pair;
        if (a.triangles || b.triangles) {
            lookAtTriangles(before, after, world, own, limit, pair);
        } else {
            lookAtFaces(before, after, world, own, limit, pair);
        }
    } catch (const OutOfTime&) {
        pair.state = BodyPair::State::OutOfTime;
    } catch (const Standard_Failure&) {
        pair.state = BodyPair::State::Impossible;
    }
    return pair;
}

}  // namespace comparer
