#pragma once

#include <cstdint>
#include <vector>

#include <gp_Pnt.hxx>

namespace comparer {

/// One partner that may be paired.
struct Candidate {
    std::int32_t instance = 0;
    gp_Pnt centre;  ///< in world space
};

struct Pair {
    std::int32_t reference = 0;
    std::int32_t compare = 0;
    bool ambiguous = false;
};

/// How equally good partners find each other.
enum class Preference {
    Order,    ///< in order when there are as many on both sides, as after a common motion
    Nearest,  ///< what was changed stayed where it is
};

/// Pairs two lists in which everybody could go with everybody: in order if that is preferred and
/// both are equally long, else the nearest first. Lists whose product is beyond a million pairs
/// go in order too.
/// Ambiguous: paired by order with others in the list, or with a second choice within `nearMm`
/// of the first.
std::vector<Pair> pairUp(const std::vector<Candidate>& reference,
                         const std::vector<Candidate>& compare, Preference preference,
                         double nearMm);

}  // namespace comparer
