#include <algorithm>

#include "diff/assembly_diff_engine.h"

namespace diff {

using extract::AssemblyDiffState;
using extract::AssemblyNode;
using extract::NextPreOrder;

namespace {

bool isSame(const AssemblyNode* node) {
    return node->state == AssemblyDiffState::Same;
}

bool allChildrenSame(const AssemblyNode& node) {
    return std::all_of(node.children.begin(), node.children.end(), isSame);
}

bool allChildrenSameOrAdded(const AssemblyNode& node) {
    return std::all_of(node.children.begin(), node.children.end(), [](const AssemblyNode* child) {
        return isSame(child) || child->state == AssemblyDiffState::Added;
    });
}

// The tree below and including a root, a node before its children. The passes go through it
// forwards, or backwards where children come before their parent.
NodeList inPreOrder(AssemblyNode* root) {
    NodeList tree;
    for (AssemblyNode* node = root; node; node = NextPreOrder(node, root)) tree.push_back(node);
    return tree;
}

enum class Side { Reference, Compare };

void setMovedPathsOfSide(const NodeList& tree, const NameMap& otherMap, Side side) {
    for (AssemblyNode* node : tree) {
        if (node->state != AssemblyDiffState::Moved) continue;
        // The first node of that name, not the peer: the path leads to where the part is found
        // by its name.
        const AssemblyNode* const other = otherMap.First(node->name);
        if (!other) continue;
        std::wstring ownPath = extract::GetNodePath(node);
        std::wstring otherPath = extract::GetNodePath(other);
        if (side == Side::Compare) ownPath.swap(otherPath);
        node->movedFromPath = std::move(ownPath);
        node->movedToPath = std::move(otherPath);
    }
}

// Only moved nodes look names up, and only in the other tree.
void wantNamesOfMoved(const NodeList& tree, NameMap& otherMap) {
    for (const AssemblyNode* node : tree) {
        if (node->state == AssemblyDiffState::Moved) otherMap.Want(node->name);
    }
}

}  // namespace

void AssemblyDiffEngine::DiffTrees(AssemblyNode* referenceRoot, AssemblyNode* compareRoot) {
    if (!referenceRoot || !compareRoot) return;
    const bool anyMoved = MatchTopLevel(referenceRoot, compareRoot);
    const NodeList reference = inPreOrder(referenceRoot);
    const NodeList compare = inPreOrder(compareRoot);
    if (anyMoved) {
        NameMap referenceMap;
        NameMap compareMap;
        wantNamesOfMoved(compare, referenceMap);
        wantNamesOfMoved(reference, compareMap);
        FlattenToMap(reference, referenceMap);
        FlattenToMap(compare, compareMap);
        SetMovedPaths(reference, compare, referenceMap, compareMap);
    }
    PropagateModified(reference);
    PropagateModified(compare);
    SyncPeerModified(reference);
    SyncPeerModified(compare);
    DemoteUnchanged(reference);
    DemoteUnchanged(compare);
}

void AssemblyDiffEngine::FlattenToMap(const NodeList& tree, NameMap& map) {
    for (const AssemblyNode* node : tree) {
        if (node->level >= 0 && !node->name.empty()) map.Append(node);
    }
}

void AssemblyDiffEngine::SetMovedPaths(const NodeList& reference, const NodeList& compare,
                                       const NameMap& referenceMap, const NameMap& compareMap) {
    setMovedPathsOfSide(reference, compareMap, Side::Reference);
    setMovedPathsOfSide(compare, referenceMap, Side::Compare);
}

void AssemblyDiffEngine::PropagateModified(const NodeList& tree) {
    for (auto node = tree.rbegin(); node != tree.rend(); ++node) {
        AssemblyNode* const parent = (*node)->parent;
        if (isSame(*node) || !parent || parent->level < 0) continue;
        if (isSame(parent)) parent->state = AssemblyDiffState::Modified;
    }
}

void AssemblyDiffEngine::SyncPeerModified(const NodeList& tree) {
    for (const AssemblyNode* node : tree) {
        if (node->state != AssemblyDiffState::Modified || node->level < 0) continue;
        AssemblyNode* const peer = node->peer;
        if (!peer || !isSame(peer)) continue;
        if (!allChildrenSameOrAdded(*node) && !allChildrenSame(*peer)) {
            peer->state = AssemblyDiffState::Modified;
        }
    }
}

void AssemblyDiffEngine::DemoteUnchanged(const NodeList& tree) {
    for (auto step = tree.rbegin(); step != tree.rend(); ++step) {
        AssemblyNode* const node = *step;
        if (node->state != AssemblyDiffState::Modified || node->level < 0) continue;
        if (allChildrenSame(*node)) node->state = AssemblyDiffState::Same;
    }
}

}  // namespace diff
