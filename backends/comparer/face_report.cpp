#include "backends/comparer/face_report.h"

#include <algorithm>
#include <map>
#include <numbers>

#include <gp_Quaternion.hxx>

#include "backends/comparer/body_classes.h"
#include "backends/comparer/face_summary.h"
#include "backends/comparer/motion_text.h"
#include "backends/comparer/parallel.h"

namespace comparer {
namespace {

using bxtexchange::GeometryState;
using bxtexchange::MatchEvidence;

class FaceReporter {
public:
    FaceReporter(const Side& reference, const Side& compare, const Tolerances& tolerances,
                 const Effort& effort)
        : reference_(reference), compare_(compare), tolerances_(tolerances), effort_(effort) {}

    FaceReport run(std::vector<Match>& matches, const std::function<void(double)>& progress) {
        report_.ofMatch.assign(matches.size(), FaceReport::kNone);
        report_.summaries.resize(matches.size());
        report_.allowancesMm.resize(matches.size());
        collectPairs(matches);
        comparePairs(progress);
        numberDifferences();
        for (std::size_t i = 0; i < matches.size(); ++i) {
            if (matches[i].state == GeometryState::Changed) look(matches[i], i);
        }
        return std::move(report_);
    }

private:
    using Key = std::pair<std::uint32_t, std::uint32_t>;
    struct Task {
        const Instance* reference = nullptr;  ///< of the first pair of instances
        const Instance* compare = nullptr;
        BodyPair pair;
        std::int32_t number = FaceReport::kNone;
    };

    const Instance& referenceOf(const Match& match) const {
        return reference_.instances[static_cast<std::size_t>(match.reference)];
    }
    const Instance& compareOf(const Match& match) const {
        return compare_.instances[static_cast<std::size_t>(match.compare)];
    }

    void collectPairs(const std::vector<Match>& matches) {
        for (const Match& match : matches) {
            if (match.state != GeometryState::Changed) continue;
            const Instance& a = referenceOf(match);
            const Instance& b = compareOf(match);
            if (!numbers_.try_emplace({a.body, b.body}, tasks_.size()).second) continue;
            tasks_.push_back({&a, &b, {}, FaceReport::kNone});
        }
    }

    void comparePairs(const std::function<void(double)>& progress) {
        std::vector<std::vector<TopoDS_Shape>> shapes;
        for (const Task& task : tasks_) {
            shapes.push_back({reference_.bodies[task.reference->body].shape,
                              compare_.bodies[task.compare->body].shape});
        }
        runInParallel(
            independentTasks(shapes), effort_.threads,
            [&](std::size_t number) {
                Task& task = tasks_[number];
                task.pair = compareBodies(
                    reference_.bodies[task.reference->body], compare_.bodies[task.compare->body],
                    task.compare->placement.Inverted() * task.reference->placement, tolerances_,
                    effort_.bodyTimeLimitS);
            },
            progress);
    }

    /// In the order of the matches, whichever thread was done first.
    void numberDifferences() {
        for (Task& task : tasks_) {
            if (task.pair.state != BodyPair::State::Compared || task.pair.same) continue;
            task.number = static_cast<std::int32_t>(report_.bodies.size());
            report_.bodies.push_back(std::move(task.pair.difference));
        }
    }

    void look(Match& match, std::size_t number) {
        const Instance& a = referenceOf(match);
        const Instance& b = compareOf(match);
        const Task& task = tasks_[numbers_.at({a.body, b.body})];
        const BodyPair& pair = task.pair;
        report_.allowancesMm[number] = pair.allowanceMm;
        switch (pair.state) {
            case BodyPair::State::Impossible:
                match.note = "its faces could not be compared";
                return;
            case BodyPair::State::OutOfTime:
                match.state = GeometryState::NotCompared;
                match.note = "comparing its faces took longer than " +
                             numberText(effort_.bodyTimeLimitS) + " s";
                return;
            case BodyPair::State::Compared: break;
        }
        if (pair.same) {
            settle(match, a, b, pair);
            return;
        }
        report_.ofMatch[number] = task.number;
        report_.summaries[number] = pair.whole.empty()
                                        ? describeChanges(*pair.reference, *pair.compare,
                                                          pair.motion, pair.matching, b.placement)
                                        : pair.whole;
    }

    /// All faces are the same: at most the body stands elsewhere.
    void settle(Match& match, const Instance& a, const Instance& b, const BodyPair& pair) const {
        const Body& body = reference_.bodies[a.body];
        const gp_Trsf moved = a.placement.Inverted() * b.placement * pair.motion;
        match.evidence = MatchEvidence::Faces;
        match.displacementMm = {};
        if (pair.allowanceMm > 0.0) {
            match.note = "compared by points; triangles count as accurate to " +
                         numberText(tolerances_.lengthMm + pair.allowanceMm) + " mm";
        }
        if (largestDisplacementMm(moved, body) <= bodyToleranceMm(body, tolerances_)) {
            match.state = GeometryState::Unchanged;
            return;
        }
        match.state = GeometryState::Moved;
        const gp_Pnt from = body.centre.Transformed(a.placement);
        const gp_Pnt to = body.centre.Transformed(pair.motion).Transformed(b.placement);
        match.displacementMm = {to.X() - from.X(), to.Y() - from.Y(), to.Z() - from.Z()};
        setRotation(b.placement * pair.motion * a.placement.Inverted(), match);
    }

    const Side& reference_;
    const Side& compare_;
    Tolerances tolerances_;
    Effort effort_;
    FaceReport report_;
    std::map<Key, std::size_t> numbers_;
    std::vector<Task> tasks_;
};

}  // namespace

FaceReport compareFaces(const Side& reference, const Side& compare, const Tolerances& tolerances,
                        std::vector<Match>& matches, const std::function<void(double)>& progress,
                        const Effort& effort) {
    return FaceReporter(reference, compare, tolerances, effort).run(matches, progress);
}

}  // namespace comparer
