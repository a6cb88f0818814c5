#include "backends/headless/tree.h"

#include <gtest/gtest.h>

namespace {

using headless::Tree;

TEST(HeadlessTree, KeepsChildrenInTheOrderOfInsertion) {
    Tree tree;
    const ui::TreeItem first = tree.insertLast(nullptr, {L"first", nullptr, true, true});
    const ui::TreeItem second = tree.insertLast(nullptr, {L"second"});
    const ui::TreeItem below = tree.insertLast(first, {L"below"});
    EXPECT_EQ(tree.itemCount(), 3U);
    EXPECT_EQ(tree.firstChild(nullptr), first);
    EXPECT_EQ(tree.nextSibling(first), second);
    EXPECT_EQ(tree.nextSibling(second), nullptr);
    EXPECT_EQ(tree.firstChild(first), below);
    EXPECT_EQ(tree.firstChild(second), nullptr);
    EXPECT_EQ(tree.item(first).text, L"first");
    EXPECT_TRUE(tree.item(first).expanded);
    EXPECT_TRUE(tree.item(first).hasChildren);
}

TEST(HeadlessTree, DeletingEmptiesItAndItCanBeFilledAgain) {
    Tree tree;
    tree.insertLast(tree.insertLast(nullptr, {L"a"}), {L"b"});
    tree.deleteAllItems();
    EXPECT_EQ(tree.itemCount(), 0U);
    EXPECT_EQ(tree.firstChild(nullptr), nullptr);
    const ui::TreeItem again = tree.insertLast(nullptr, {L"c"});
    EXPECT_EQ(tree.firstChild(nullptr), again);
}

TEST(HeadlessTree, RemembersRedrawAndRepaints) {
    Tree tree;
    EXPECT_TRUE(tree.redraws());
    tree.setRedraw(false);
    EXPECT_FALSE(tree.redraws());
    tree.setRedraw(true);
    tree.invalidate();
    EXPECT_TRUE(tree.redraws());
    EXPECT_EQ(tree.invalidations(), 1);
}

TEST(HeadlessTree, ChainOfAHundredThousandLevelsComesAndGoes) {
    Tree tree;
    ui::TreeItem at = nullptr;
    for (int level = 0; level < 100000; ++level) at = tree.insertLast(at, {L"x"});
    EXPECT_EQ(tree.itemCount(), 100000U);
    tree.deleteAllItems();
    EXPECT_EQ(tree.itemCount(), 0U);
}

}  // namespace
