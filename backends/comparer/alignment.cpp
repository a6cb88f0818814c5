#include "backends/comparer/alignment.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include <gp_Ax3.hxx>

#include "backends/comparer/point_grid.h"

namespace comparer {
namespace {

constexpr std::size_t kMostLandmarks = 27;
constexpr int kMostTries = 200;
/// Faces that more others look like tell nothing.
constexpr std::size_t kMostTwins = 3;

/// What a patch looks like wherever it stands.
using Look = std::tuple<int, std::int64_t, std::int64_t>;

Look lookOf(const Patch& patch) {
    const auto step = [](double value) {
        return value > 0.0 ? std::llround(std::log(value) * 1e3) : 0;
    };
    return {static_cast<int>(patch.carrier.kind), step(patch.areaMm2), step(patch.perimeterMm)};
}

/// Numbers of the patches by their looks, but for those that many others look like.
std::map<Look, std::vector<std::uint32_t>> rareOnes(const FaceSet& set) {
    std::map<Look, std::vector<std::uint32_t>> rare;
    for (std::uint32_t i = 0; i < set.patches().size(); ++i) {
        rare[lookOf(set.patches()[i])].push_back(i);
    }
    std::erase_if(rare, [](const auto& entry) { return entry.second.size() > kMostTwins; });
    return rare;
}

struct Landmark {
    gp_Pnt from;
    gp_Pnt to;
    double areaMm2 = 0.0;
};

std::vector<Landmark> landmarks(const FaceSet& reference, const FaceSet& compare) {
    const auto there = rareOnes(compare);
    std::vector<Landmark> found;
    for (const auto& [look, numbers] : rareOnes(reference)) {
        const auto twins = there.find(look);
        if (twins == there.end()) continue;
        for (const std::uint32_t number : numbers) {
            const Patch& patch = reference.patches()[number];
            for (const std::uint32_t twin : twins->second) {
                found.push_back({patch.centre, compare.patches()[twin].centre, patch.areaMm2});
            }
        }
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto& a, const auto& b) { return a.areaMm2 > b.areaMm2; });
    if (found.size() > kMostLandmarks) found.resize(kMostLandmarks);
    return found;
}

class Aligner {
public:
    Aligner(const FaceSet& reference, const FaceSet& compare, double toleranceMm)
        : reference_(reference),
          compare_(compare),
          cellMm_(20.0 * toleranceMm),
          grid_(20.0 * toleranceMm) {
        for (std::uint32_t i = 0; i < compare.patches().size(); ++i) {
            grid_.add(compare.patches()[i].centre, i);
        }
    }

    gp_Trsf run(const std::vector<gp_Trsf>& guesses) {
        for (const gp_Trsf& guess : guesses) consider(guess);
        if (2 * most_ < static_cast<int>(reference_.patches().size())) tryLandmarks();
        return best_;
    }

private:
    void consider(const gp_Trsf& motion) {
        const int kept = facesKept(motion);
        if (kept <= most_) return;
        most_ = kept;
        best_ = motion;
    }

    int facesKept(const gp_Trsf& motion) const {
        int kept = 0;
        for (const Patch& patch : reference_.patches()) {
            const gp_Pnt place = patch.centre.Transformed(motion);
            if (hasTwin(patch, place)) ++kept;
        }
        return kept;
    }

    bool hasTwin(const Patch& patch, const gp_Pnt& place) const {
        for (const PointGrid::Cell* cell : grid_.near(place)) {
            for (const std::uint32_t c : *cell) {
                const Patch& other = compare_.patches()[c];
                if (other.carrier.kind != patch.carrier.kind) continue;
                if (other.centre.Distance(place) > cellMm_) continue;
                if (std::abs(other.areaMm2 - patch.areaMm2) <= 1e-2 * patch.areaMm2) return true;
            }
        }
        return false;
    }

    void tryLandmarks() {
        const std::vector<Landmark> marks = landmarks(reference_, compare_);
        int tries = 0;
        for (std::size_t i = 0; i < marks.size(); ++i) {
            for (std::size_t j = i + 1; j < marks.size(); ++j) {
                for (std::size_t k = j + 1; k < marks.size(); ++k) {
                    if (tries >= kMostTries) return;
                    if (tryThree(marks[i], marks[j], marks[k])) ++tries;
                }
            }
        }
    }

    bool tryThree(const Landmark& a, const Landmark& b, const Landmark& c) {
        const auto fits = [&](const Landmark& x, const Landmark& y) {
            return std::abs(x.from.Distance(y.from) - x.to.Distance(y.to)) <= cellMm_;
        };
        if (!fits(a, b) || !fits(b, c) || !fits(a, c)) return false;
        const gp_Vec alongFrom(a.from, b.from);
        const gp_Vec alongTo(a.to, b.to);
        const gp_Vec upFrom = alongFrom.Crossed(gp_Vec(a.from, c.from));
        const gp_Vec upTo = alongTo.Crossed(gp_Vec(a.to, c.to));
        const double least = 1e-3 * alongFrom.SquareMagnitude();
        if (!(upFrom.Magnitude() > least) || !(upTo.Magnitude() > least)) return false;
        gp_Trsf motion;
        motion.SetDisplacement(gp_Ax3(a.from, gp_Dir(upFrom), gp_Dir(alongFrom)),
                               gp_Ax3(a.to, gp_Dir(upTo), gp_Dir(alongTo)));
        consider(motion);
        return true;
    }

    const FaceSet& reference_;
    const FaceSet& compare_;
    double cellMm_;
    PointGrid grid_;
    gp_Trsf best_;
    int most_ = -1;
};

}  // namespace

gp_Trsf alignBodies(const FaceSet& reference, const FaceSet& compare,
                    const std::vector<gp_Trsf>& guesses, double toleranceMm) {
    return Aligner(reference, compare, toleranceMm).run(guesses);
}

}  // namespace comparer
