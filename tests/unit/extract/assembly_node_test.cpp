#include "extract/assembly_node.h"

#include <gtest/gtest.h>

#include <deque>

namespace {

using extract::AssemblyDiffState;
using extract::AssemblyNode;

TEST(AssemblyNode, NewNodeHasItsDefaults) {
    const AssemblyNode node;
    EXPECT_EQ(node.name, L"");
    EXPECT_EQ(node.displayName, L"");
    EXPECT_EQ(node.parentName, L"");
    EXPECT_EQ(node.level, -1);
    EXPECT_EQ(node.siblingIndex, 0);
    EXPECT_TRUE(node.children.empty());
    EXPECT_EQ(node.parent, nullptr);
    EXPECT_EQ(node.state, AssemblyDiffState::Same);
    EXPECT_EQ(node.movedFromPath, L"");
    EXPECT_EQ(node.movedToPath, L"");
    EXPECT_EQ(node.referenceGroupCount, 0);
    EXPECT_EQ(node.compareGroupCount, 0);
    EXPECT_TRUE(node.hasSubcomponents);
    EXPECT_EQ(node.peer, nullptr);
    EXPECT_EQ(node.ownTreeItem, nullptr);
    EXPECT_EQ(node.peerTreeItem, nullptr);
}

TEST(AssemblyNode, IsAPlainRecord) {
    EXPECT_FALSE(std::is_polymorphic_v<AssemblyNode>);
    EXPECT_EQ(sizeof(AssemblyDiffState), 4U);
}

class StateText : public testing::TestWithParam<std::pair<std::int32_t, const wchar_t*>> {};

TEST_P(StateText, OfEachNumber) {
    const auto [number, text] = GetParam();
    AssemblyNode node;
    node.state = static_cast<AssemblyDiffState>(number);
    EXPECT_EQ(extract::StateText(node.state), text);
    EXPECT_EQ(extract::StateText(&node), text);
}

INSTANTIATE_TEST_SUITE_P(AssemblyNode, StateText,
                         testing::Values(std::pair(0, L"Same"), std::pair(1, L"Added"),
                                         std::pair(2, L"Deleted"), std::pair(3, L"Modified"),
                                         std::pair(4, L"Moved"), std::pair(5, L"Same"),
                                         std::pair(-1, L"Same"), std::pair(1000000, L"Same")));

TEST(AssemblyNode, StateTextOfNoNodeIsEmpty) {
    EXPECT_EQ(extract::StateText(nullptr), L"");
}

// root - assembly - sub.assembly - part
class NodePath : public testing::Test {
protected:
    NodePath() {
        AssemblyNode* above = nullptr;
        std::int32_t level = -1;
        for (const wchar_t* name : {L"__root__", L"assembly", L"sub.assembly", L"part"}) {
            AssemblyNode& node = nodes_.emplace_back();
            node.displayName = name;
            node.level = level;
            node.parent = above;
            if (above) above->children.push_back(&node);
            above = &node;
            level = level < 0 ? 0 : level + 5;
        }
    }
    std::deque<AssemblyNode> nodes_;
};

TEST_F(NodePath, JoinsDisplayNamesBelowTheRoot) {
    EXPECT_EQ(extract::GetNodePath(&nodes_[3]), L"assembly.sub.assembly.part");
    EXPECT_EQ(extract::GetNodePath(&nodes_[1]), L"assembly");
}

TEST_F(NodePath, IsEmptyForNoNodeAndForARoot) {
    EXPECT_EQ(extract::GetNodePath(nullptr), L"");
    EXPECT_EQ(extract::GetNodePath(&nodes_[0]), L"");
}

TEST_F(NodePath, OfANodeWithoutParentIsItsName) {
    nodes_[2].parent = nullptr;
    EXPECT_EQ(extract::GetNodePath(&nodes_[3]), L"sub.assembly.part");
}

TEST_F(NodePath, WalksVisitEveryNodeInTheirOrder) {
    AssemblyNode& second = nodes_.emplace_back();
    second.displayName = L"second";
    second.siblingIndex = 1;
    second.parent = &nodes_[1];
    nodes_[1].children.push_back(&second);
    std::wstring before, after;
    AssemblyNode* const root = &nodes_[0];
    for (auto* node = root; node; node = extract::NextPreOrder(node, root)) {
        before += node->displayName + L" ";
    }
    for (auto* node = extract::FirstPostOrder(root); node;
         node = extract::NextPostOrder(node, root)) {
        after += node->displayName + L" ";
    }
    EXPECT_EQ(before, L"__root__ assembly sub.assembly part second ");
    EXPECT_EQ(after, L"part sub.assembly second assembly __root__ ");
}

TEST_F(NodePath, WalkOfASubtreeStaysInside) {
    AssemblyNode* const top = &nodes_[2];
    AssemblyNode* const next = extract::NextPreOrder(top, top);
    EXPECT_EQ(next, &nodes_[3]);
    EXPECT_EQ(extract::NextPreOrder(next, top), nullptr);
    EXPECT_EQ(extract::NextPostOrder(top, top), nullptr);
}

}  // namespace
