#include "backends/comparer/matching.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>

#include "backends/comparer/motion_text.h"
#include "backends/comparer/pairing.h"
#include "backends/comparer/point_grid.h"

namespace comparer {
namespace {

using bxtexchange::GeometryState;
using bxtexchange::MatchEvidence;

/// A body whose centre moved by less than this part of its size stands at nearly the same place.
constexpr double kSamePlaceShare = 0.5;

/// Names that writers put where the author gave none: they say nothing about what a part is.
bool isFiller(const std::string& name) {
    static constexpr std::string_view kFillers[] = {"",      "Part",  "Assembly", "Body",
                                                    "SOLID", "Solid", "COMPOUND", "SHELL"};
    return std::find(std::begin(kFillers), std::end(kFillers), name) != std::end(kFillers);
}

/// One side while instances are being paired.
struct Pool {
    const Side* side = nullptr;
    std::vector<gp_Pnt> centres;  ///< world space
    std::vector<gp_Trsf> poses;   ///< of the class's first body, in world space
    std::vector<std::uint32_t> classes;
    std::vector<std::int32_t> partner;  ///< index of the match, or kNone while free
    std::vector<bool> comparable;

    std::size_t size() const { return centres.size(); }
    const Instance& instance(std::size_t i) const { return side->instances[i]; }
    const Body& body(std::size_t i) const { return side->bodies[instance(i).body]; }
    bool free(std::size_t i) const { return partner[i] == Match::kNone && comparable[i]; }
};

template <typename Membership>
Pool makePool(const Side& side, Membership membership) {
    Pool pool;
    pool.side = &side;
    for (const Instance& instance : side.instances) {
        const BodyClasses::Membership& member = membership(instance.body);
        pool.centres.push_back(worldCentre(side, instance));
        pool.poses.push_back(instance.placement * member.motion);
        pool.classes.push_back(member.bodyClass);
        pool.partner.push_back(Match::kNone);
        pool.comparable.push_back(instance.rigid && side.bodies[instance.body].comparable());
    }
    return pool;
}

class Matcher {
public:
    Matcher(const Side& reference, const Side& compare, const Names& names, BodyClasses& classes,
            const Tolerances& tolerances)
        : names_(names),
          classes_(classes),
          tolerances_(tolerances),
          reference_(makePool(reference, [&](auto body) { return classes.reference(body); })),
          compare_(makePool(compare, [&](auto body) { return classes.compare(body); })) {}

    std::vector<Match> run(const std::function<void(double)>& progress) {
        pairSamePlace();
        progress(0.5);
        const auto byPath = [](const Pool& pool, std::size_t i) { return pool.instance(i).path; };
        const auto byProduct = [](const Pool& pool, std::size_t i) {
            return pool.instance(i).product;
        };
        pairEqualBodies(byPath);
        pairEqualBodies(byProduct);
        pairEqualBodies([](const Pool&, std::size_t) { return 0U; });
        progress(0.7);
        pairNamesakes([&](const Pool& pool, std::size_t i) -> std::optional<std::uint32_t> {
            if (isFiller(names_.lastName(pool.instance(i).path))) return std::nullopt;
            return pool.instance(i).path;
        });
        pairNamesakes([&](const Pool& pool, std::size_t i) -> std::optional<std::uint32_t> {
            if (isFiller(names_.text(pool.instance(i).product))) return std::nullopt;
            return pool.instance(i).product;
        });
        pairNeighbours();
        pairOnlyOnes();
        pairIncomparable();
        addLeftOvers();
        progress(1.0);
        return inFinalOrder();
    }

private:
    using Key = std::pair<std::uint32_t, std::uint32_t>;
    struct Group {
        std::vector<Candidate> reference;
        std::vector<Candidate> compare;
    };

    // Stage 1: equal bodies at the same place.

    /// No motion within the tolerance of any body leads past a neighbouring cell.
    double placeCellMm() const {
        double largest = 0.0;
        for (const Body& body : reference_.side->bodies) largest = std::max(largest, body.radiusMm);
        return 4.0 * classes_.toleranceMm(largest);
    }

    void pairSamePlace() {
        PointGrid grid(placeCellMm());
        for (std::size_t i = 0; i < compare_.size(); ++i) {
            if (compare_.free(i)) grid.add(compare_.centres[i], static_cast<std::uint32_t>(i));
        }
        // Those with the same path choose first, so that a renamed twin can't take their partner.
        for (const bool samePath : {true, false}) {
            for (std::size_t i = 0; i < reference_.size(); ++i) {
                if (reference_.free(i)) pairAtPlace(grid, i, samePath);
            }
        }
    }

    void pairAtPlace(PointGrid& grid, std::size_t r, bool samePath) {
        std::vector<std::uint32_t> fits;
        for (const PointGrid::Cell* cell : grid.near(reference_.centres[r])) {
            std::size_t inCell = 0;
            for (const std::uint32_t c : *cell) {
                if (compare_.classes[c] != reference_.classes[r]) continue;
                if (samePath && compare_.instance(c).path != reference_.instance(r).path) continue;
                if (!standsWhere(r, c)) continue;
                fits.push_back(c);
                if (++inCell == 2) break;  // one to take, one to know that there was a choice
            }
        }
        if (fits.empty()) return;
        const std::size_t c = *std::min_element(fits.begin(), fits.end());
        grid.remove(compare_.centres[c], static_cast<std::uint32_t>(c));
        Match match;
        match.state = GeometryState::Unchanged;
        match.evidence = evidenceFor(r, c);
        match.ambiguous = fits.size() > 1;
        connect(match, r, c);
    }

    bool standsWhere(std::size_t r, std::size_t c) {
        const gp_Trsf motion = reference_.poses[r].Inverted() * compare_.poses[c];
        return classes_.staysInPlace(reference_.classes[r], motion);
    }

    MatchEvidence evidenceFor(std::size_t r, std::size_t c) const {
        const std::string& digest = reference_.body(r).digest;
        if (digest.empty() || digest != compare_.body(c).digest) return MatchEvidence::Identity;
        const gp_Trsf motion =
            reference_.instance(r).placement.Inverted() * compare_.instance(c).placement;
        const bool samePlacement =
            largestDisplacementMm(motion, reference_.body(r)) <= tolerances_.lengthMm;
        return samePlacement ? MatchEvidence::IdenticalContent : MatchEvidence::Identity;
    }

    // Stage 2: equal bodies elsewhere.

    template <typename KeyOf>
    void pairEqualBodies(KeyOf keyOf) {
        std::map<Key, Group> groups;
        const auto fill = [&](const Pool& pool, std::vector<Candidate> Group::*list) {
            for (std::size_t i = 0; i < pool.size(); ++i) {
                if (!pool.free(i)) continue;
                const Key key{pool.classes[i], keyOf(pool, i)};
                (groups[key].*list).push_back({static_cast<std::int32_t>(i), pool.centres[i]});
            }
        };
        fill(reference_, &Group::reference);
        fill(compare_, &Group::compare);
        for (const auto& [key, group] : groups) {
            pairGroup(group, GeometryState::Moved, MatchEvidence::Identity);
        }
    }

    void pairGroup(const Group& group, GeometryState state, MatchEvidence evidence) {
        const Preference preference =
            state == GeometryState::Moved ? Preference::Order : Preference::Nearest;
        for (const Pair& pair :
             pairUp(group.reference, group.compare, preference, tolerances_.lengthMm)) {
            Match match;
            match.state = state;
            match.evidence = evidence;
            match.ambiguous = pair.ambiguous;
            connect(match, static_cast<std::size_t>(pair.reference),
                    static_cast<std::size_t>(pair.compare));
        }
    }

    // Stage 3: different bodies that are the same part.

    template <typename KeyOf>
    void pairNamesakes(KeyOf keyOf) {
        std::map<std::uint32_t, Group> groups;
        const auto fill = [&](const Pool& pool, std::vector<Candidate> Group::*list) {
            for (std::size_t i = 0; i < pool.size(); ++i) {
                if (!pool.free(i)) continue;
                const std::optional<std::uint32_t> key = keyOf(pool, i);
                if (!key) continue;
                (groups[*key].*list).push_back({static_cast<std::int32_t>(i), pool.centres[i]});
            }
        };
        fill(reference_, &Group::reference);
        fill(compare_, &Group::compare);
        for (const auto& [key, group] : groups) {
            pairGroup(group, GeometryState::Changed, MatchEvidence::SamePlace);
        }
    }

    static double sizeMm(const Body& body) {
        return body.identity ? std::sqrt(body.identity->areaMm2) : body.radiusMm;
    }

    /// Bodies of about one size whose centres nearly coincide. One grid per power of two of size.
    void pairNeighbours() {
        std::map<int, PointGrid> grids;
        const auto octave = [](const Body& body) {
            return static_cast<int>(std::floor(std::log2(std::max(sizeMm(body), 1e-6))));
        };
        const auto grid = [&](int level) -> PointGrid& {
            return grids.try_emplace(level, kSamePlaceShare * std::exp2(level + 1)).first->second;
        };
        for (std::size_t i = 0; i < compare_.size(); ++i) {
            if (!compare_.free(i)) continue;
            grid(octave(compare_.body(i))).add(compare_.centres[i], static_cast<std::uint32_t>(i));
        }
        std::vector<Neighbours> all;
        for (std::size_t r = 0; r < reference_.size(); ++r) {
            if (!reference_.free(r)) continue;
            const int level = octave(reference_.body(r));
            for (int l = level - 1; l <= level + 1; ++l) {
                const auto found = grids.find(l);
                if (found != grids.end()) addNeighbours(found->second, r, all);
            }
        }
        std::sort(all.begin(), all.end(), [](const Neighbours& a, const Neighbours& b) {
            return std::tie(a.mm, a.reference, a.compare) < std::tie(b.mm, b.reference, b.compare);
        });
        for (std::size_t i = 0; i < all.size(); ++i) takeNeighbours(all, i);
    }

    struct Neighbours {
        double mm = 0.0;
        std::size_t reference = 0;
        std::size_t compare = 0;
    };

    void addNeighbours(const PointGrid& grid, std::size_t r, std::vector<Neighbours>& all) const {
        const double a = sizeMm(reference_.body(r));
        for (const PointGrid::Cell* cell : grid.near(reference_.centres[r])) {
            for (const std::uint32_t c : *cell) {
                const double b = sizeMm(compare_.body(c));
                const double mm = reference_.centres[r].Distance(compare_.centres[c]);
                const bool alike = std::max(a, b) <= 2.0 * std::min(a, b);
                if (alike && mm <= kSamePlaceShare * std::min(a, b)) all.push_back({mm, r, c});
            }
        }
    }

    void takeNeighbours(const std::vector<Neighbours>& all, std::size_t i) {
        const Neighbours& pair = all[i];
        if (!reference_.free(pair.reference) || !compare_.free(pair.compare)) return;
        Match match;
        match.state = GeometryState::Changed;
        match.evidence = MatchEvidence::SamePlace;
        for (std::size_t k = i + 1; k < all.size(); ++k) {
            if (all[k].mm > pair.mm + tolerances_.lengthMm) break;
            const bool sharesOne =
                (all[k].reference == pair.reference) != (all[k].compare == pair.compare);
            const bool bothFree =
                reference_.free(all[k].reference) && compare_.free(all[k].compare);
            match.ambiguous = match.ambiguous || (sharesOne && bothFree);
        }
        connect(match, pair.reference, pair.compare);
    }

    /// Two states of a file with one body: it changed, however far from where and what it was.
    void pairOnlyOnes() {
        if (reference_.size() != 1 || compare_.size() != 1) return;
        if (!reference_.free(0) || !compare_.free(0)) return;
        Match match;
        match.state = GeometryState::Changed;
        match.evidence = MatchEvidence::SamePlace;
        match.note = "the only body of each file";
        connect(match, 0, 0);
    }

    // Stage 4: the rest.

    static std::string obstacle(const Pool& pool, std::size_t i) {
        if (!pool.instance(i).rigid) return "placed with a scale or mirrored";
        if (pool.body(i).shape.IsNull()) return "has no geometry that could be read";
        return "could not be measured";
    }

    void pairIncomparable() {
        std::map<std::uint32_t, Group> groups;
        const auto fill = [&](const Pool& pool, std::vector<Candidate> Group::*list) {
            for (std::size_t i = 0; i < pool.size(); ++i) {
                if (pool.comparable[i]) continue;
                (groups[pool.instance(i).path].*list)
                    .push_back({static_cast<std::int32_t>(i), pool.centres[i]});
            }
        };
        fill(reference_, &Group::reference);
        fill(compare_, &Group::compare);
        for (auto& [path, group] : groups) {
            takeTwins(group);
            for (const Pair& pair :
                 pairUp(group.reference, group.compare, Preference::Order, 0.0)) {
                Match match;
                match.state = GeometryState::NotCompared;
                match.ambiguous = pair.ambiguous;
                match.note = obstacle(reference_, static_cast<std::size_t>(pair.reference));
                connect(match, static_cast<std::size_t>(pair.reference),
                        static_cast<std::size_t>(pair.compare));
            }
        }
    }

    /// However a body is placed: what has the same content and placement on both sides is equal.
    void takeTwins(Group& group) {
        const auto isTaken = [](const Pool& pool) {
            return [&](const Candidate& candidate) {
                return pool.partner[static_cast<std::size_t>(candidate.instance)] != Match::kNone;
            };
        };
        for (const Candidate& candidate : group.reference) {
            const auto r = static_cast<std::size_t>(candidate.instance);
            for (const Candidate& other : group.compare) {
                const auto c = static_cast<std::size_t>(other.instance);
                if (compare_.partner[c] != Match::kNone) continue;
                if (evidenceFor(r, c) != MatchEvidence::IdenticalContent) continue;
                Match match;
                match.state = GeometryState::Unchanged;
                match.evidence = MatchEvidence::IdenticalContent;
                connect(match, r, c);
                break;
            }
        }
        std::erase_if(group.reference, isTaken(reference_));
        std::erase_if(group.compare, isTaken(compare_));
    }

    void addLeftOvers() {
        const auto add = [&](Pool& pool, GeometryState state, std::int32_t Match::*number) {
            for (std::size_t i = 0; i < pool.size(); ++i) {
                if (pool.partner[i] != Match::kNone) continue;
                Match match;
                match.*number = static_cast<std::int32_t>(i);
                match.state = pool.comparable[i] ? state : GeometryState::NotCompared;
                if (!pool.comparable[i]) match.note = obstacle(pool, i);
                pool.partner[i] = static_cast<std::int32_t>(matches_.size());
                matches_.push_back(std::move(match));
            }
        };
        add(reference_, GeometryState::OnlyInReference, &Match::reference);
        add(compare_, GeometryState::OnlyInCompare, &Match::compare);
    }

    void connect(Match match, std::size_t r, std::size_t c) {
        match.reference = static_cast<std::int32_t>(r);
        match.compare = static_cast<std::int32_t>(c);
        if (match.state == GeometryState::Moved || match.state == GeometryState::Changed) {
            const gp_Vec way(reference_.centres[r], compare_.centres[c]);
            match.displacementMm = {way.X(), way.Y(), way.Z()};
        }
        if (match.state == GeometryState::Moved) findRotation(r, c, match);
        const auto number = static_cast<std::int32_t>(matches_.size());
        reference_.partner[r] = number;
        compare_.partner[c] = number;
        matches_.push_back(std::move(match));
    }

    void findRotation(std::size_t r, std::size_t c, Match& match) {
        const gp_Trsf motion = compare_.poses[c] * reference_.poses[r].Inverted();
        // A body that only slid may still be symmetric in the way that its frame turned.
        gp_Trsf slide;
        slide.SetTranslation(reference_.centres[r], compare_.centres[c]);
        const gp_Trsf rest = (slide * reference_.poses[r]).Inverted() * compare_.poses[c];
        if (!classes_.staysInPlace(reference_.classes[r], rest)) setRotation(motion, match);
    }

    std::vector<Match> inFinalOrder() {
        std::vector<Match> ordered;
        ordered.reserve(matches_.size());
        for (const std::int32_t number : reference_.partner) {
            ordered.push_back(matches_[static_cast<std::size_t>(number)]);
        }
        for (const std::int32_t number : compare_.partner) {
            const Match& match = matches_[static_cast<std::size_t>(number)];
            if (match.reference == Match::kNone) ordered.push_back(match);
        }
        return ordered;
    }

    const Names& names_;
    BodyClasses& classes_;
    Tolerances tolerances_;
    Pool reference_;
    Pool compare_;
    std::vector<Match> matches_;
};

}  // namespace

std::vector<Match> matchInstances(const Side& reference, const Side& compare, const Names& names,
                                  BodyClasses& classes, const Tolerances& tolerances,
                                  const std::function<void(double)>& progress) {
    return Matcher(reference, compare, names, classes, tolerances).run(progress);
}

}  // namespace comparer
