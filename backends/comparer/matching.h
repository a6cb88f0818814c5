#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "backends/comparer/body_classes.h"
#include "backends/comparer/instances.h"
#include "backends/comparer/tolerances.h"

namespace comparer {

/// What was found for one instance, or for a pair of them.
struct Match {
    static constexpr std::int32_t kNone = -1;

    std::int32_t reference = kNone;  ///< number of the instance in its side
    std::int32_t compare = kNone;
    bxtexchange::GeometryState state = bxtexchange::GeometryState::Unchanged;
    bxtexchange::MatchEvidence evidence = bxtexchange::MatchEvidence::None;
    std::array<double, 3> displacementMm = {};
    double rotationDeg = 0.0;
    std::array<double, 3> rotationAxis = {};  ///< unit vector in world space; 0 without rotation
    bool ambiguous = false;
    std::string note;
};

/// Pairs the instances of two files, each at most once, in this order:
///   1. equal bodies at the same place (unchanged);
///   2. equal bodies at different places (moved): first under the same path, then under the same
///      product name, then under any;
///   3. different bodies (changed): first under the same path, then under the same product name,
///      then at nearly the same place. Names that writers give to what has none don't count;
///   4. what is left is in one file only, or could not be compared.
/// Where several partners are equally good by these rules the nearest go first, equally near ones
/// in model order; only moved ones, when there are as many on one side as on the other, are paired
/// in model order, since they mostly moved together. Such a pair is marked ambiguous when another
/// was as good. The result of A against B is that of B
/// against A with the sides exchanged, but where a pair is ambiguous.
/// Takes time in proportion to the instances, unless more than a thousand share a path and a body.
/// In the order of the reference, then of what only the compare file has.
std::vector<Match> matchInstances(const Side& reference, const Side& compare, const Names& names,
                                  BodyClasses& classes, const Tolerances& tolerances,
                                  const std::function<void(double fraction)>& progress);

}  // namespace comparer
