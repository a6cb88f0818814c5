#include "diff/assembly_diff_engine.h"

namespace diff {

using extract::AssemblyDiffState;
using extract::AssemblyNode;

namespace {

struct PairStates {
    AssemblyDiffState reference = AssemblyDiffState::Same;
    AssemblyDiffState compare = AssemblyDiffState::Same;
};

PairStates decide(const AssemblyNode& reference, const AssemblyNode& compare,
                  bool sameNumberInGroup) {
    if (reference.hasSubcomponents && !compare.hasSubcomponents) {
        return {AssemblyDiffState::Deleted, AssemblyDiffState::Same};
    }
    if (compare.hasSubcomponents && !reference.hasSubcomponents) {
        return {AssemblyDiffState::Same, AssemblyDiffState::Added};
    }
    // Instances that came or went shift the others: that is no move.
    if (sameNumberInGroup && reference.siblingIndex != compare.siblingIndex) {
        return {AssemblyDiffState::Moved, AssemblyDiffState::Moved};
    }
    const bool differs = reference.children.size() != compare.children.size() ||
                         reference.displayName != compare.displayName;
    const auto state = differs ? AssemblyDiffState::Modified : AssemblyDiffState::Same;
    return {state, state};
}

void setCounts(AssemblyNode& node, const SiblingMatcher::GroupCounts& counts) {
    node.referenceGroupCount = counts.reference;
    node.compareGroupCount = counts.compare;
}

void MarkSubtree(AssemblyNode* top) {
    for (AssemblyNode* node = NextPreOrder(top, top); node; node = NextPreOrder(node, top)) {
        node->state = top->state;
    }
}

// Matches two sibling lists and everything below their pairs. The lists that wait for their turn
// stand in a list of their own; the decision on a pair needs nothing from below it, so any order
// of the lists gives the same states. Marking of subtrees overrides and therefore comes last.
class TreeMatcher {
public:
    void run(const NodeList& referenceList, const NodeList& compareList);
    bool anyMoved() const { return anyMoved_; }

private:
    struct ListPair {
        const NodeList* reference = nullptr;
        const NodeList* compare = nullptr;
    };

    void matchLists(const NodeList& referenceList, const NodeList& compareList);
    void linkPair(AssemblyNode& reference, AssemblyNode& compare,
                  const SiblingMatcher::GroupCounts& counts);
    void markLater(AssemblyNode& node);

    SiblingMatcher siblings_;
    std::vector<ListPair> waiting_;
    NodeList subtreesToMark_;
    bool anyMoved_ = false;
};

void TreeMatcher::run(const NodeList& referenceList, const NodeList& compareList) {
    waiting_.push_back({&referenceList, &compareList});
    while (!waiting_.empty()) {
        const ListPair lists = waiting_.back();
        waiting_.pop_back();
        matchLists(*lists.reference, *lists.compare);
    }
    for (AssemblyNode* top : subtreesToMark_) MarkSubtree(top);
}

void TreeMatcher::matchLists(const NodeList& referenceList, const NodeList& compareList) {
    siblings_.Match(referenceList, compareList);
    for (std::size_t i = 0; i < compareList.size(); ++i) {
        AssemblyNode& compare = *compareList[i];
        const std::uint32_t partner = siblings_.PartnerOfCompare(i);
        const SiblingMatcher::GroupCounts counts = siblings_.CountsOfCompare(i);
        if (partner != SiblingMatcher::kNone) {
            linkPair(*referenceList[partner], compare, counts);
        } else {
            setCounts(compare, counts);
            compare.state = AssemblyDiffState::Added;
            markLater(compare);
        }
    }
    for (std::size_t i = 0; i < referenceList.size(); ++i) {
        if (siblings_.ReferenceIsPaired(i)) continue;
        AssemblyNode& reference = *referenceList[i];
        setCounts(reference, siblings_.CountsOfReference(i));
        reference.state = AssemblyDiffState::Deleted;
        markLater(reference);
    }
}

void TreeMatcher::linkPair(AssemblyNode& reference, AssemblyNode& compare,
                           const SiblingMatcher::GroupCounts& counts) {
    setCounts(reference, counts);
    setCounts(compare, counts);
    reference.peer = &compare;
    compare.peer = &reference;
    const PairStates states = decide(reference, compare, counts.reference == counts.compare);
    reference.state = states.reference;
    compare.state = states.compare;
    anyMoved_ = anyMoved_ || states.reference == AssemblyDiffState::Moved;
    if (states.reference == AssemblyDiffState::Deleted) markLater(reference);
    if (states.compare == AssemblyDiffState::Added) markLater(compare);
    if (!reference.children.empty() || !compare.children.empty()) {
        waiting_.push_back({&reference.children, &compare.children});
    }
}

void TreeMatcher::markLater(AssemblyNode& node) {
    if (!node.children.empty()) subtreesToMark_.push_back(&node);
}

}  // namespace

bool AssemblyDiffEngine::MatchChildren(const NodeList& referenceList, const NodeList& compareList) {
    TreeMatcher matcher;
    matcher.run(referenceList, compareList);
    return matcher.anyMoved();
}

bool AssemblyDiffEngine::MatchTopLevel(AssemblyNode* reference, AssemblyNode* compare) {
    if (reference->children.size() != 1 || compare->children.size() != 1) {
        return MatchChildren(reference->children, compare->children);
    }
    AssemblyNode& top = *reference->children.front();
    AssemblyNode& compareTop = *compare->children.front();
    top.peer = &compareTop;
    compareTop.peer = &top;
    const bool anyMoved = MatchChildren(top.children, compareTop.children);
    const bool sameName = top.displayName == compareTop.displayName;
    top.state = sameName ? AssemblyDiffState::Same : AssemblyDiffState::Modified;
    compareTop.state = top.state;
    return anyMoved;
}

}  // namespace diff
