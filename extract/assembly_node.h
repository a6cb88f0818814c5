#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/tree_control.h"

namespace extract {

/// Result of a comparison of two product structures for one node. The numbers are stored and
/// published, so they never change.
enum class AssemblyDiffState : std::int32_t {
    Same = 0,
    Added = 1,    ///< only in the compare model
    Deleted = 2,  ///< only in the reference model
    Modified = 3,
    Moved = 4,
};

/// One named product occurrence, or one body of a part with several bodies.
///
/// Nodes belong to an AssemblyDiffEngine; all links between them are plain pointers, valid until
/// the engine is reset or builds again. They live on the user-interface thread. Destroying a
/// node destroys nothing else, so the depth of a model never becomes depth of the call stack.
struct AssemblyNode {
    /// Stem of the occurrence's source file, or displayName without its instance suffix.
    std::wstring name;
    /// Name as the model gives it. Siblings are matched by a key that is made from it.
    std::wstring displayName;
    /// The parent's name.
    std::wstring parentName;
    /// -1 for a root, 0 for the root's children, 5 for theirs, and so on in steps of 5.
    std::int32_t level = -1;
    /// Position in the parent's children.
    std::int32_t siblingIndex = 0;
    std::vector<AssemblyNode*> children;
    /// Null on a root only.
    AssemblyNode* parent = nullptr;
    AssemblyDiffState state = AssemblyDiffState::Same;
    /// Paths in the reference and in the compare tree; only on Moved nodes.
    std::wstring movedFromPath;
    std::wstring movedToPath;
    /// Number of siblings of the same matching key on each side.
    std::int32_t referenceGroupCount = 0;
    std::int32_t compareGroupCount = 0;
    /// False only for an occurrence whose component has nothing below it.
    bool hasSubcomponents = true;
    /// The matched node of the other tree, which points back.
    AssemblyNode* peer = nullptr;
    /// Items that show this node's row in the tree control of its side and in the other one.
    ui::TreeItem ownTreeItem = nullptr;
    ui::TreeItem peerTreeItem = nullptr;
};

/// Name and display name of every root.
constexpr std::wstring_view kRootName = L"__root__";

/// "Same", "Added", "Deleted", "Modified" or "Moved"; "Same" for a number outside the enumeration.
std::wstring_view StateText(AssemblyDiffState state);

/// Text of the node's state; empty for null.
std::wstring_view StateText(const AssemblyNode* node);

/// Display names from below the root down to the node, joined by full stops. Empty for null and
/// for a root. Not unique: display names may hold full stops themselves.
std::wstring GetNodePath(const AssemblyNode* node);

/// Steps through the tree below and including `top`, a node before its children and children in
/// order; null after the last one. Needs no memory whatever the depth. Works on const and
/// non-const nodes; relies on siblingIndex.
template <typename Node>
Node* NextPreOrder(Node* node, const AssemblyNode* top) {
    if (!node->children.empty()) return node->children.front();
    while (node != top) {
        Node* const parent = node->parent;
        const auto next = static_cast<std::size_t>(node->siblingIndex) + 1;
        if (next < parent->children.size()) return parent->children[next];
        node = parent;
    }
    return nullptr;
}

/// First node of a walk that visits children before their parent: start here, go on with
/// NextPostOrder().
template <typename Node>
Node* FirstPostOrder(Node* top) {
    while (!top->children.empty()) top = top->children.front();
    return top;
}

/// The node after `node` in that walk; null after `top`.
template <typename Node>
Node* NextPostOrder(Node* node, const AssemblyNode* top) {
    if (node == top) return nullptr;
    Node* const parent = node->parent;
    const auto next = static_cast<std::size_t>(node->siblingIndex) + 1;
    if (next < parent->children.size()) {
        Node* const sibling = parent->children[next];
        return FirstPostOrder(sibling);
    }
    return parent;
}

}  // namespace extract
