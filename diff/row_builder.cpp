#include "diff/row_builder.h"

namespace diff {

const std::vector<NodePair>& RowBuilder::Rows(const NodeList& reference, const NodeList& compare,
                                              LeftOvers leftOvers) {
    rows_.clear();
    leftOvers_.clear();
    addRowsByKey(reference, compare);
    if (leftOvers == LeftOvers::FillGaps) {
        fillGaps();
    } else {
        for (extract::AssemblyNode* node : leftOvers_) rows_.push_back({node, nullptr});
    }
    return rows_;
}

const std::vector<NodePair>& RowBuilder::RowsBelow(const NodePair& pair) {
    const NodeList& reference = ChildrenOf(pair.reference);
    const NodeList& compare = ChildrenOf(pair.compare);
    const bool matched = pair.reference && pair.reference->peer == pair.compare;
    if (!matched || !pair.compare) return Rows(reference, compare, LeftOvers::Append);
    rows_.clear();
    leftOvers_.clear();
    addRowsByPeer(reference, compare);
    for (extract::AssemblyNode* node : leftOvers_) rows_.push_back({node, nullptr});
    return rows_;
}

void RowBuilder::addRowsByKey(const NodeList& reference, const NodeList& compare) {
    rows_.reserve(compare.size());
    if (reference.empty() || compare.empty()) {
        for (extract::AssemblyNode* node : compare) rows_.push_back({nullptr, node});
        leftOvers_ = reference;
        return;
    }
    siblings_.Match(reference, compare);
    for (std::size_t i = 0; i < compare.size(); ++i) {
        const std::uint32_t partner = siblings_.PartnerOfCompare(i);
        const bool paired = partner != SiblingMatcher::kNone;
        rows_.push_back({paired ? reference[partner] : nullptr, compare[i]});
    }
    for (std::size_t i = 0; i < reference.size(); ++i) {
        if (!siblings_.ReferenceIsPaired(i)) leftOvers_.push_back(reference[i]);
    }
}

// The children of two peers have been matched by the same keys, in the same order: their own
// peers say what the keys would say again.
void RowBuilder::addRowsByPeer(const NodeList& reference, const NodeList& compare) {
    for (extract::AssemblyNode* node : compare) rows_.push_back({node->peer, node});
    for (extract::AssemblyNode* node : reference) {
        if (!node->peer) leftOvers_.push_back(node);
    }
}

void RowBuilder::fillGaps() {
    auto next = leftOvers_.begin();
    for (NodePair& row : rows_) {
        if (next == leftOvers_.end()) break;
        if (!row.reference) row.reference = *next++;
    }
    for (; next != leftOvers_.end(); ++next) rows_.push_back({*next, nullptr});
}

const NodeList& ChildrenOf(const extract::AssemblyNode* node) {
    static const NodeList kNone;
    return node ? node->children : kNone;
}

}  // namespace diff
