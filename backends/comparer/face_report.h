#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "backends/comparer/body_pair.h"
#include "backends/comparer/instances.h"
#include "backends/comparer/matching.h"
#include "backends/comparer/tolerances.h"

namespace comparer {

/// What a comparison may take.
struct Effort {
    /// A pair of bodies whose faces take longer is not compared.
    double bodyTimeLimitS = 120.0;
    /// At most that many; 0: as many as there are cores. The result doesn't depend on it.
    unsigned threads = 0;
};

/// What the face level found for the pairs of changed bodies.
struct FaceReport {
    static constexpr std::int32_t kNone = -1;

    std::vector<BodyDifference> bodies;
    std::vector<std::int32_t> ofMatch;   ///< number in `bodies`, or kNone, per match
    std::vector<std::string> summaries;  ///< per match, empty where there is none
    /// Per match: granted to triangles in addition to the length tolerance; 0 where none are.
    std::vector<double> allowancesMm;
};

/// Looks at the faces of every changed pair, each pair of bodies once. A pair whose faces are all
/// the same within the tolerance becomes unchanged or moved: another system may have split, merged
/// or converted them, or one of the files holds triangles. Bodies whose faces can't be evaluated
/// stay changed, with a note; those that take too long are not compared. `progress` is called on
/// the calling thread.
FaceReport compareFaces(const Side& reference, const Side& compare, const Tolerances& tolerances,
                        std::vector<Match>& matches,
                        const std::function<void(double fraction)>& progress,
                        const Effort& effort = {});

}  // namespace comparer
