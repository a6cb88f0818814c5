#include <algorithm>

#include "diff/assembly_diff_engine.h"

namespace diff {

using extract::AssemblyDiffState;
using extract::AssemblyNode;
using extract::FirstPostOrder;
using extract::NextPostOrder;
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

enum class Side { Reference, Compare };

void setMovedPathsOfSide(AssemblyNode* root, const NameMap& otherMap, Side side) {
    for (AssemblyNode* node = root; node; node = NextPreOrder(node, root)) {
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

}  // namespace

void AssemblyDiffEngine::DiffTrees(AssemblyNode* reference, AssemblyNode* compare) {
    if (!reference || !compare) return;
    const bool anyMoved = MatchTopLevel(reference, compare);
    if (anyMoved) {
        // Only moved nodes look names up, and matching changes no name.
        NameMap referenceMap;
        NameMap compareMap;
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

void AssemblyDiffEngine::FlattenToMap(const AssemblyNode* root, NameMap& map) {
    for (const AssemblyNode* node = root; node; node = NextPreOrder(node, root)) {
        if (node->level >= 0 && !node->name.empty()) map.Append(node);
    }
}

void AssemblyDiffEngine::SetMovedPaths(AssemblyNode* referenceRoot, AssemblyNode* compareRoot,
                                       const NameMap& referenceMap, const NameMap& compareMap) {
    setMovedPathsOfSide(referenceRoot, compareMap, Side::Reference);
    setMovedPathsOfSide(compareRoot, referenceMap, Side::Compare);
}

void AssemblyDiffEngine::PropagateModified(AssemblyNode* root) {
    for (AssemblyNode* node = FirstPostOrder(root); node; node = NextPostOrder(node, root)) {
        if (node->level < 0 || !isSame(node)) continue;
        if (!allChildrenSame(*node)) node->state = AssemblyDiffState::Modified;
    }
}

void AssemblyDiffEngine::SyncPeerModified(AssemblyNode* root) {
    for (AssemblyNode* node = root; node; node = NextPreOrder(node, root)) {
        if (node->level < 0 || node->state != AssemblyDiffState::Modified) continue;
        AssemblyNode* const peer = node->peer;
        if (!peer || !isSame(peer)) continue;
        if (!allChildrenSameOrAdded(*node) && !allChildrenSame(*peer)) {
            peer->state = AssemblyDiffState::Modified;
        }
    }
}

void AssemblyDiffEngine::DemoteUnchanged(AssemblyNode* root) {
    for (AssemblyNode* node = FirstPostOrder(root); node; node = NextPostOrder(node, root)) {
        if (node->level < 0 || node->state != AssemblyDiffState::Modified) continue;
        if (allChildrenSame(*node)) node->state = AssemblyDiffState::Same;
    }
}

}  // namespace diff
