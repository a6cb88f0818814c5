#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "diff/name_map.h"
#include "diff/node_store.h"
#include "diff/sibling_matcher.h"
#include "extract/assembly_node.h"
#include "platform/hps/component.h"
#include "platform/ui/tree_control.h"

namespace diff {

/// One line of the two trees side by side. At least one node is set.
struct AlignedRow {
    const extract::AssemblyNode* reference = nullptr;
    const extract::AssemblyNode* compare = nullptr;
    /// Spaces in front of either name.
    std::size_t indent = 0;
};

/// Compares the product structures of two models by the names of siblings, and owns both trees.
/// Geometry, placement and attributes take no part.
///
/// Belongs to the user-interface thread. Nothing here recurses into a model's depth. There are
/// no error returns: a missing side is an empty one.
class AssemblyDiffEngine {
public:
    AssemblyDiffEngine();
    ~AssemblyDiffEngine();
    AssemblyDiffEngine(const AssemblyDiffEngine&) = delete;
    AssemblyDiffEngine& operator=(const AssemblyDiffEngine&) = delete;

    /// A node with its defaults that lives until Reset() or BuildAndDiff(). Linking it is the
    /// caller's job.
    extract::AssemblyNode* CreateNode();

    /// Destroys all nodes, builds both trees and compares them. States, peers, paths and group
    /// counts are final afterwards. Tree items that still point to old nodes are the caller's to
    /// delete. Exceptions of the models' providers pass through.
    void BuildAndDiff(const HPS::Component& referenceComponent,
                      const HPS::Component& compareComponent);

    /// Builds the tree of one model from nodes of this engine and returns its root.
    extract::AssemblyNode* BuildTree(const HPS::Component& component);

    /// Destroys all nodes; both roots are null again.
    void Reset();

    /// Roots of the two trees; null until built.
    extract::AssemblyNode* referenceRoot() const { return referenceRoot_; }
    extract::AssemblyNode* compareRoot() const { return compareRoot_; }

    /// See extract::GetNodePath().
    static std::wstring GetNodePath(const extract::AssemblyNode* node);

    /// Key under which siblings are matched; see AppendMatchKey().
    static std::wstring MakeMatchKey(std::wstring_view text);

    /// Both trees as rows in display order. Nodes without a partner share lines at the top level
    /// and stand alone below it.
    std::vector<AlignedRow> AlignedRows() const;

    /// The same rows as text, appended to four lists of equal length: indented display names
    /// and the texts of the states; both empty where a side has no node.
    void FlattenPSTreeAligned(std::vector<std::wstring>& referenceNames,
                              std::vector<std::wstring>& referenceStates,
                              std::vector<std::wstring>& compareNames,
                              std::vector<std::wstring>& compareStates) const;

    /// Empties both controls and fills them with items that carry their node as data; nodes
    /// without a partner stand alone at every level. Writes the nodes' item handles, nothing
    /// else, and may be called any number of times.
    void PopulateTrees(ui::TreeControl& referenceTree, ui::TreeControl& compareTree);

    /// Colours for an item that PopulateTrees() made. A tree control asks for each item that it
    /// paints, in every paint cycle.
    static ui::ItemColours ColourForState(const ui::TreeItemData& item);

private:
    static void DiffTrees(extract::AssemblyNode* referenceRoot, extract::AssemblyNode* compareRoot);
    static bool MatchTopLevel(extract::AssemblyNode* reference, extract::AssemblyNode* compare);
    static bool MatchChildren(const NodeList& referenceList, const NodeList& compareList);

    // The passes after matching; a tree is given as its nodes in pre-order, root first.
    static void FlattenToMap(const NodeList& tree, NameMap& map);
    static void SetMovedPaths(const NodeList& reference, const NodeList& compare,
                              const NameMap& referenceMap, const NameMap& compareMap);
    static void PropagateModified(const NodeList& tree);
    static void SyncPeerModified(const NodeList& tree);
    static void DemoteUnchanged(const NodeList& tree);

    NodeStore nodes_;
    extract::AssemblyNode* referenceRoot_ = nullptr;
    extract::AssemblyNode* compareRoot_ = nullptr;
};

}  // namespace diff
