#include "backends/comparer/body_classes.h"

#include <algorithm>
#include <cmath>

namespace comparer {
namespace {

/// Areas of one class fall into one bucket of this relative width or into neighbours.
constexpr double kAreaBucket = 1e-3;
/// Large bodies carry more rounding in their files.
constexpr double kToleranceOfSize = 1e-8;

bool near(double a, double b, double relative) {
    return std::abs(a - b) <= relative * std::max(std::abs(a), std::abs(b));
}

std::pair<std::int32_t, std::int64_t> identityKey(const bxtexchange::BodyIdentity& identity,
                                                  int neighbour) {
    const double bucket = std::floor(std::log(identity.areaMm2) / kAreaBucket);
    return {identity.faceCount, std::llround(bucket) + neighbour};
}

/// Equal, but for surfaces that one of the two has in free form.
bool sameSurfaces(const std::array<std::int32_t, 6>& a, const std::array<std::int32_t, 6>& b) {
    bool fewer = false;
    bool more = false;
    for (std::size_t kind = 0; kind < 5; ++kind) {
        fewer = fewer || b[kind] < a[kind];
        more = more || b[kind] > a[kind];
    }
    return !(fewer && more);
}

/// Features don't always hold a body fast: a cone's lie on its axis. Centroids are integrated, so
/// they only have to agree roughly.
bool keepsCentre(const Body& from, const Body& to, const gp_Trsf& motion) {
    constexpr double kRoughly = 1e-3;
    const double distance = from.centre.Transformed(motion).Distance(to.centre);
    return distance <= kRoughly * std::max(from.radiusMm, to.radiusMm);
}

}  // namespace

bool sameIdentity(const bxtexchange::BodyIdentity& a, const bxtexchange::BodyIdentity& b,
                  double relativeTolerance) {
    if (a.faceCount != b.faceCount || !sameSurfaces(a.surfaceKinds, b.surfaceKinds)) {
        return false;
    }
    if (!near(a.volumeMm3, b.volumeMm3, relativeTolerance)) return false;
    if (!near(a.areaMm2, b.areaMm2, relativeTolerance)) return false;
    // Moments go with the fifth power of a length where volumes go with the third.
    const double largest = std::max(a.principalMoments[2], b.principalMoments[2]);
    for (std::size_t i = 0; i < 3; ++i) {
        const double difference = std::abs(a.principalMoments[i] - b.principalMoments[i]);
        if (difference > 2.0 * relativeTolerance * largest) return false;
    }
    return true;
}

double largestDisplacementMm(const gp_Trsf& motion, const Body& body) {
    const gp_Pnt& centre = body.centre;
    const double r = body.radiusMm;
    double largest = centre.Distance(centre.Transformed(motion));
    for (const gp_Vec& arm : {gp_Vec(r, 0, 0), gp_Vec(0, r, 0), gp_Vec(0, 0, r)}) {
        const gp_Pnt end = centre.Translated(arm);
        largest = std::max(largest, end.Distance(end.Transformed(motion)));
    }
    return largest;
}

BodyClasses::BodyClasses(const Side& reference, const Side& compare, const Tolerances& tolerances,
                         Shortcuts shortcuts)
    : tolerances_(tolerances), shortcuts_(shortcuts) {
    for (const Body& body : reference.bodies) reference_.push_back(classify(body));
    for (const Body& body : compare.bodies) compare_.push_back(classify(body));
}

BodyClasses::~BodyClasses() = default;

BodyClasses::Membership BodyClasses::classify(const Body& body) {
    const bool knownByDigest = shortcuts_ == Shortcuts::On && !body.digest.empty();
    if (knownByDigest) {
        const auto known = byDigest_.find(body.digest);
        if (known != byDigest_.end()) return known->second;
    }
    const std::optional<Membership> equal =
        body.identity ? findEqual(body) : findEqualUnmeasured(body);
    const Membership membership = equal ? *equal : newClass(body);
    if (knownByDigest) byDigest_.emplace(body.digest, membership);
    return membership;
}

BodyClasses::Membership BodyClasses::newClass(const Body& body) {
    const auto number = static_cast<std::uint32_t>(firsts_.size());
    firsts_.push_back(&body);
    symmetries_.emplace_back();
    if (body.identity) {
        byIdentity_[identityKey(*body.identity, 0)].push_back(number);
    } else if (const FeatureCloud* const features = cloud(body, Sort::Lasting)) {
        unmeasured_[features->features().size()].push_back(number);
    }
    return {number, gp_Trsf()};
}

std::optional<BodyClasses::Membership> BodyClasses::findEqual(const Body& body) {
    for (int neighbour = -1; neighbour <= 1; ++neighbour) {
        const auto bucket = byIdentity_.find(identityKey(*body.identity, neighbour));
        if (bucket == byIdentity_.end()) continue;
        for (const std::uint32_t number : bucket->second) {
            if (!sameIdentity(*first(number).identity, *body.identity, tolerances_.relative)) {
                continue;
            }
            if (const auto equal = equalTo(number, body)) return equal;
        }
    }
    return std::nullopt;
}

std::optional<BodyClasses::Membership> BodyClasses::findEqualUnmeasured(const Body& body) {
    const FeatureCloud* const features = cloud(body, Sort::Lasting);
    if (features == nullptr) return std::nullopt;
    const auto bucket = unmeasured_.find(features->features().size());
    if (bucket == unmeasured_.end()) return std::nullopt;
    for (const std::uint32_t number : bucket->second) {
        if (const auto equal = equalTo(number, body)) return equal;
    }
    return std::nullopt;
}

std::optional<BodyClasses::Membership> BodyClasses::equalTo(std::uint32_t bodyClass,
                                                            const Body& body) {
    const Body& model = first(bodyClass);
    const auto fits = [&](const gp_Trsf& motion) {
        return keepsCentre(model, body, motion) &&
               coincide(boundary(model), boundary(body), motion);
    };
    for (const Sort sort : {Sort::All, Sort::Lasting}) {
        const FeatureCloud* const from = cloud(model, sort);
        const FeatureCloud* const to = cloud(body, sort);
        if (from == nullptr || to == nullptr) continue;
        const auto motion = findMotion(*from, *to, toleranceMm(body.radiusMm), fits);
        if (motion) return Membership{bodyClass, *motion};
    }
    return std::nullopt;
}

const FeatureCloud* BodyClasses::cloud(const Body& body, Sort sort) {
    const auto entry = clouds_.try_emplace({&body, sort});
    if (entry.second) {
        auto features = featuresOf(body.shape);
        if (features && sort == Sort::Lasting) std::erase_if(*features, isOfForm);
        if (features && !features->empty()) {
            entry.first->second = std::make_unique<FeatureCloud>(std::move(*features),
                                                                 4.0 * toleranceMm(body.radiusMm));
        }
    }
    return entry.first->second.get();
}

const Boundary& BodyClasses::boundary(const Body& body) {
    auto& entry = boundaries_[&body];
    if (!entry) entry = std::make_unique<Boundary>(body.shape, toleranceMm(body.radiusMm));
    return *entry;
}

double BodyClasses::toleranceMm(double radiusMm) const {
    return std::max(tolerances_.lengthMm, kToleranceOfSize * radiusMm);
}

bool BodyClasses::staysInPlace(std::uint32_t bodyClass, const gp_Trsf& motion) {
    const Body& body = first(bodyClass);
    const double tolerance = toleranceMm(body.radiusMm);
    if (largestDisplacementMm(motion, body) <= tolerance) return true;
    if (body.centre.Distance(body.centre.Transformed(motion)) > tolerance) return false;
    // Repeated instances are turned the same way again and again.
    auto& known = symmetries_[bodyClass];
    const bool seen = std::any_of(known.begin(), known.end(), [&](const gp_Trsf& symmetry) {
        return largestDisplacementMm(symmetry.Inverted() * motion, body) <= 0.1 * tolerance;
    });
    if (seen) return true;
    const FeatureCloud* const features = cloud(body, Sort::All);
    if (features == nullptr || !coincide(*features, *features, motion, tolerance)) return false;
    if (!coincide(boundary(body), boundary(body), motion)) return false;
    known.push_back(motion);
    return true;
}

}  // namespace comparer
