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

class ScrollingTree : public testing::Test {
protected:
    ScrollingTree() {
        for (int i = 0; i < 10; ++i) {
            tops.push_back(tree.insertLast(nullptr, {L"top", nullptr, false, true}));
            tree.insertLast(tops.back(), {L"below"});
        }
        tree.resize(4 * 16);
        tree.onScrolled = [this](ui::ScrollBy by) { scrolls.push_back(by); };
        tree.onExpanded = [this](ui::TreeItem item, bool open) { opened.emplace_back(item, open); };
    }
    Tree tree;
    std::vector<ui::TreeItem> tops;
    std::vector<ui::ScrollBy> scrolls;
    std::vector<std::pair<ui::TreeItem, bool>> opened;
};

TEST_F(ScrollingTree, CountsWhatNoClosedItemHides) {
    EXPECT_EQ(tree.visibleItems(), 10U);
    tree.expand(tops[0], true);
    EXPECT_EQ(tree.visibleItems(), 11U);
    EXPECT_EQ(opened, (std::vector<std::pair<ui::TreeItem, bool>>{{tops[0], true}}));
    tree.expand(tops[0], true);
    tree.expand(nullptr, true);
    EXPECT_EQ(opened.size(), 1U);
    tree.expand(tops[0], false);
    EXPECT_EQ(tree.visibleItems(), 10U);
}

TEST_F(ScrollingTree, HasABarOnlyWhileItemsDoNotFit) {
    const auto range = tree.verticalScroll();
    ASSERT_TRUE(range);
    EXPECT_EQ(range->position, 0);
    EXPECT_EQ(range->last, 6);
    EXPECT_EQ(range->page, 4);
    tree.resize(10 * 16);
    EXPECT_FALSE(tree.verticalScroll());
    tree.dragVertically(3);
    EXPECT_EQ(tree.topItem(), 0);
}

TEST_F(ScrollingTree, ThumbAloneLeavesTheItemsWhereTheyAre) {
    tree.setScrollPosition(5);
    EXPECT_EQ(tree.verticalScroll()->position, 5);
    EXPECT_EQ(tree.topItem(), 0);
    EXPECT_TRUE(scrolls.empty());
    tree.dropThumb(5);
    EXPECT_EQ(tree.topItem(), 5);
    tree.dropThumb(60);
    EXPECT_EQ(tree.topItem(), 6);
    EXPECT_EQ(scrolls.size(), 2U);
}

TEST_F(ScrollingTree, WheelAndKeysScrollAndAreReported) {
    tree.turnWheel(1);
    EXPECT_EQ(tree.topItem(), 3);
    tree.pressKey(1);
    EXPECT_EQ(tree.topItem(), 4);
    tree.pressKey(-9);
    EXPECT_EQ(tree.topItem(), 0);
    EXPECT_EQ(scrolls, (std::vector<ui::ScrollBy>{ui::ScrollBy::Wheel, ui::ScrollBy::Key,
                                                  ui::ScrollBy::Key}));
}

TEST_F(ScrollingTree, ClosingAboveThePositionBringsItBackIntoRange) {
    for (const ui::TreeItem top : tops) tree.expand(top, true);
    tree.dragVertically(16);
    EXPECT_EQ(tree.topItem(), 16);
    for (const ui::TreeItem top : tops) tree.expand(top, false);
    EXPECT_EQ(tree.topItem(), 6);
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
