#include "backends/comparer/pairing.h"

#include <algorithm>
#include <tuple>

namespace comparer {
namespace {

constexpr std::size_t kMostDistances = 1000000;

std::vector<Pair> inOrder(const std::vector<Candidate>& reference,
                          const std::vector<Candidate>& compare) {
    std::vector<Pair> pairs;
    const std::size_t count = std::min(reference.size(), compare.size());
    const bool choice = std::max(reference.size(), compare.size()) > 1;
    for (std::size_t i = 0; i < count; ++i) {
        pairs.push_back({reference[i].instance, compare[i].instance, choice});
    }
    return pairs;
}

struct Distance {
    double mm = 0.0;
    std::size_t reference = 0;
    std::size_t compare = 0;
};

/// Whether somebody who is still free lies as near to one of a pair as the other one does.
bool hasRival(const std::vector<Candidate>& others, const std::vector<bool>& taken,
              std::size_t chosen, const gp_Pnt& centre, double withinMm) {
    for (std::size_t i = 0; i < others.size(); ++i) {
        if (i != chosen && !taken[i] && centre.Distance(others[i].centre) <= withinMm) return true;
    }
    return false;
}

std::vector<Pair> nearestFirst(const std::vector<Candidate>& reference,
                               const std::vector<Candidate>& compare, double nearMm) {
    std::vector<Distance> distances;
    distances.reserve(reference.size() * compare.size());
    for (std::size_t r = 0; r < reference.size(); ++r) {
        for (std::size_t c = 0; c < compare.size(); ++c) {
            distances.push_back({reference[r].centre.Distance(compare[c].centre), r, c});
        }
    }
    std::sort(distances.begin(), distances.end(), [](const Distance& a, const Distance& b) {
        return std::tie(a.mm, a.reference, a.compare) < std::tie(b.mm, b.reference, b.compare);
    });
    std::vector<bool> referenceTaken(reference.size(), false);
    std::vector<bool> compareTaken(compare.size(), false);
    std::vector<Pair> pairs;
    for (const Distance& distance : distances) {
        if (referenceTaken[distance.reference] || compareTaken[distance.compare]) continue;
        const Candidate& r = reference[distance.reference];
        const Candidate& c = compare[distance.compare];
        const double within = distance.mm + nearMm;
        const bool rival =
            hasRival(compare, compareTaken, distance.compare, r.centre, within) ||
            hasRival(reference, referenceTaken, distance.reference, c.centre, within);
        referenceTaken[distance.reference] = true;
        compareTaken[distance.compare] = true;
        pairs.push_back({r.instance, c.instance, rival});
    }
    return pairs;
}

}  // namespace

std::vector<Pair> pairUp(const std::vector<Candidate>& reference,
                         const std::vector<Candidate>& compare, Preference preference,
                         double nearMm) {
    const bool manyDistances =
        !reference.empty() && compare.size() > kMostDistances / reference.size();
    const bool ordered = preference == Preference::Order && reference.size() == compare.size();
    if (ordered || manyDistances) return inOrder(reference, compare);
    return nearestFirst(reference, compare, nearMm);
}

}  // namespace comparer
