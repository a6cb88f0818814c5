#pragma once

#include <vector>

#include "diff/sibling_matcher.h"
#include "extract/assembly_node.h"

namespace diff {

/// Two nodes on one line; at most one is null.
struct NodePair {
    extract::AssemblyNode* reference = nullptr;
    extract::AssemblyNode* compare = nullptr;

    bool hasChildren() const {
        return (reference && !reference->children.empty()) ||
               (compare && !compare->children.empty());
    }
};

/// What happens to reference siblings without a partner.
enum class LeftOvers {
    FillGaps,  ///< they go to the lines without a reference node first
    Append,    ///< each gets a line at the end
};

/// Lays two sibling lists of matched trees out as lines, in the order of the compare side.
class RowBuilder {
public:
    /// The lines of two lists by their keys; the result lasts until the next call.
    const std::vector<NodePair>& Rows(const NodeList& reference, const NodeList& compare,
                                      LeftOvers leftOvers);

    /// The lines below one line.
    const std::vector<NodePair>& RowsBelow(const NodePair& pair);

private:
    void addRowsByKey(const NodeList& reference, const NodeList& compare);
    void addRowsByPeer(const NodeList& reference, const NodeList& compare);
    void fillGaps();

    SiblingMatcher siblings_;
    std::vector<NodePair> rows_;
    NodeList leftOvers_;
};

/// Children of the node; none for null.
const NodeList& ChildrenOf(const extract::AssemblyNode* node);

}  // namespace diff
