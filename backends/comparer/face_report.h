#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "backends/comparer/instances.h"
#include "backends/comparer/matching.h"
#include "backends/comparer/tolerances.h"

namespace comparer {

/// How two different bodies differ face by face.
struct BodyDifference {
    bxtexchange::FaceDifference numbers;  ///< without a summary, which depends on the placement
    /// Faces that differ, by their position in the order of exploration of each body's shape.
    std::vector<std::uint32_t> referenceFaces;
    std::vector<std::uint32_t> compareFaces;
};

/// What the face level found for the pairs of changed bodies.
struct FaceReport {
    static constexpr std::int32_t kNone = -1;

    std::vector<BodyDifference> bodies;
    std::vector<std::int32_t> ofMatch;   ///< number in `bodies`, or kNone, per match
    std::vector<std::string> summaries;  ///< per match, empty where there is none
};

/// Looks at the faces of every changed pair, each pair of bodies once. A pair whose faces are all
/// the same within the tolerance becomes unchanged or moved: another system may have split, merged
/// or converted them. Bodies whose faces can't be evaluated stay changed, with a note.
FaceReport compareFaces(const Side& reference, const Side& compare, const Tolerances& tolerances,
                        std::vector<Match>& matches,
                        const std::function<void(double fraction)>& progress);

}  // namespace comparer
