#include "diff/assembly_diff_engine.h"
#include "diff/row_builder.h"
#include "platform/os/debug_output.h"
#include "platform/os/services.h"

namespace diff {

using extract::AssemblyDiffState;
using extract::AssemblyNode;

namespace {

constexpr int kExpandedDepth = 2;

// A line that waits to be inserted, with the items that it goes below.
struct WaitingRow {
    NodePair nodes;
    ui::TreeItem referenceParent = nullptr;
    ui::TreeItem compareParent = nullptr;
    int depth = 0;
};

ui::TreeItem insert(ui::TreeControl& tree, ui::TreeItem parent, AssemblyNode* node, bool expanded,
                    bool hasChildren) {
    if (!node) return nullptr;
    return tree.insertLast(parent, {node->displayName, node, expanded, hasChildren});
}

class TreeFill {
public:
    TreeFill(ui::TreeControl& referenceTree, ui::TreeControl& compareTree)
        : referenceTree_(referenceTree), compareTree_(compareTree) {}

    void run(const AssemblyNode* referenceRoot, const AssemblyNode* compareRoot);

private:
    void insertRow(const WaitingRow& row);
    void push(const std::vector<NodePair>& rows, const WaitingRow& shape);

    ui::TreeControl& referenceTree_;
    ui::TreeControl& compareTree_;
    RowBuilder builder_;
    std::vector<WaitingRow> waiting_;  // the next line on top
};

void TreeFill::run(const AssemblyNode* referenceRoot, const AssemblyNode* compareRoot) {
    push(builder_.Rows(ChildrenOf(referenceRoot), ChildrenOf(compareRoot), LeftOvers::Append),
         WaitingRow());
    while (!waiting_.empty()) {
        const WaitingRow row = waiting_.back();
        waiting_.pop_back();
        insertRow(row);
    }
}

void TreeFill::insertRow(const WaitingRow& row) {
    AssemblyNode* const reference = row.nodes.reference;
    AssemblyNode* const compare = row.nodes.compare;
    const bool hasChildren = row.nodes.hasChildren();
    const bool expanded = row.depth < kExpandedDepth;
    const ui::TreeItem referenceItem =
        insert(referenceTree_, row.referenceParent, reference, expanded, hasChildren);
    const ui::TreeItem compareItem =
        insert(compareTree_, row.compareParent, compare, expanded, hasChildren);
    if (reference) {
        reference->ownTreeItem = referenceItem;
        reference->peerTreeItem = compareItem;
    }
    if (compare) {
        compare->ownTreeItem = compareItem;
        compare->peerTreeItem = referenceItem;
    }
    if (hasChildren) {
        push(builder_.RowsBelow(row.nodes), {{}, referenceItem, compareItem, row.depth + 1});
    }
}

void TreeFill::push(const std::vector<NodePair>& rows, const WaitingRow& shape) {
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        waiting_.push_back(shape);
        waiting_.back().nodes = *row;
    }
}

constexpr std::uint32_t colourOf(int red, int green, int blue) {
    return static_cast<std::uint32_t>(red | (green << 8) | (blue << 16));
}

ui::ItemColours coloursOf(AssemblyDiffState state) {
    constexpr std::uint32_t kWhite = colourOf(255, 255, 255);
    switch (state) {
        case AssemblyDiffState::Added: return {true, colourOf(0, 160, 80), kWhite};
        case AssemblyDiffState::Deleted: return {true, colourOf(200, 40, 40), kWhite};
        case AssemblyDiffState::Modified:
        case AssemblyDiffState::Moved: return {true, colourOf(255, 128, 0), kWhite};
        case AssemblyDiffState::Same: break;
    }
    return {};
}

std::wstring hexadecimal(std::uint32_t value) {
    constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
    std::wstring text;
    for (int shift = 20; shift >= 0; shift -= 4) text += kDigits[(value >> shift) & 0xFU];
    return text;
}

void logColours(const AssemblyNode& node, const ui::ItemColours& colours) {
    if (!os::services().debug) return;
    os::debugOutput(L"CustomDraw: " + node.displayName + L" -> color 0x" +
                    hexadecimal(colours.text) + L" (state=" +
                    std::to_wstring(static_cast<std::int32_t>(node.state)) + L")\n");
}

}  // namespace

void AssemblyDiffEngine::PopulateTrees(ui::TreeControl& referenceTree,
                                       ui::TreeControl& compareTree) {
    for (ui::TreeControl* tree : {&referenceTree, &compareTree}) {
        tree->setRedraw(false);
        tree->deleteAllItems();
    }
    TreeFill(referenceTree, compareTree).run(referenceRoot_, compareRoot_);
    for (ui::TreeControl* tree : {&referenceTree, &compareTree}) {
        tree->setRedraw(true);
        tree->invalidate();
    }
}

ui::ItemColours AssemblyDiffEngine::ColourForState(const ui::TreeItemData& item) {
    const auto* const node = static_cast<const AssemblyNode*>(item.data);
    if (!node) {
        os::debugOutput(L"CustomDraw: pNode is NULL\n");
        return {};
    }
    const ui::ItemColours colours = coloursOf(node->state);
    logColours(*node, colours);
    return colours;
}

}  // namespace diff
