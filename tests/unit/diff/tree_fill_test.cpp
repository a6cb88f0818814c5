#include "platform/os/services.h"
#include "tests/unit/diff/compared_models.h"
#include "tests/unit/diff/recording_tree.h"

namespace {

using extract::AssemblyDiffState;
using support::occurrence;
using support::part;

class TreeFill : public ComparedModels {
protected:
    void populate() { engine_.PopulateTrees(referenceTree_, compareTree_); }
    RecordingTree referenceTree_, compareTree_;
};

TEST_F(TreeFill, RedrawsOnceAroundTheFill) {
    compare({part("a")}, {part("a")});
    populate();
    const Lines expected = {L"redraw off", L"delete all", L"insert", L"redraw on", L"invalidate"};
    EXPECT_EQ(referenceTree_.calls, expected);
    EXPECT_EQ(compareTree_.calls, expected);
}

TEST_F(TreeFill, NothingBuiltGivesEmptyTrees) {
    referenceTree_.insertLast(nullptr, {L"old", nullptr, false, false});
    populate();
    EXPECT_EQ(referenceTree_.itemCount(), 0U);
    EXPECT_EQ(compareTree_.itemCount(), 0U);
    EXPECT_EQ(referenceTree_.calls.back(), L"invalidate");
}

TEST_F(TreeFill, EmptyModelsGiveNoItems) {
    compare({}, {});
    populate();
    EXPECT_EQ(referenceTree_.itemCount(), 0U);
    EXPECT_EQ(compareTree_.itemCount(), 0U);
}

TEST_F(TreeFill, ItemsStandInCompareOrder) {
    compare({occurrence("t (1)", {part("a"), part("b"), part("gone")})},
            {occurrence("t (1)", {part("new"), part("b"), part("a")})});
    populate();
    EXPECT_EQ(referenceTree_.lines(), (Lines{L"0 t (1) - +", L"1 b -", L"1 a -", L"1 gone -"}));
    EXPECT_EQ(compareTree_.lines(), (Lines{L"0 t (1) - +", L"1 new -", L"1 b -", L"1 a -"}));
}

TEST_F(TreeFill, TheUpperTwoLevelsAreExpanded) {
    const Shapes model = {
        occurrence("a", {occurrence("b", {occurrence("c", {part("d"), part("e")})}), part("f")})};
    compare(model, model);
    populate();
    EXPECT_EQ(referenceTree_.lines(),
              (Lines{L"0 a - +", L"1 b - +", L"2 c +", L"3 d", L"3 e", L"1 f -"}));
}

TEST_F(TreeFill, ItemsAreMarkedWhenEitherSideHasChildren) {
    compare({occurrence("a"), part("z")}, {occurrence("a", {part("b")}), part("z")});
    populate();
    EXPECT_EQ(referenceTree_.lines(), (Lines{L"0 a - +", L"0 z -"}));
    EXPECT_EQ(compareTree_.lines(), (Lines{L"0 a - +", L"1 b -", L"0 z -"}));
}

TEST_F(TreeFill, DifferentlyNamedTopNodesStandOnTwoRows) {
    compare({occurrence("A", {part("x"), part("y")})}, {occurrence("B", {part("x"), part("y")})});
    populate();
    EXPECT_EQ(reference({0}).peerTreeItem, nullptr);
    EXPECT_EQ(compared({0}).peerTreeItem, nullptr);
    EXPECT_EQ(referenceTree_.lines(), (Lines{L"0 A - +", L"1 x -", L"1 y -"}));
    EXPECT_EQ(compareTree_.lines(), (Lines{L"0 B - +", L"1 x -", L"1 y -"}));
    EXPECT_EQ(reference({0, 0}).peerTreeItem, nullptr);
}

TEST_F(TreeFill, LeftOversFillNoGaps) {
    compare({part("a"), part("b")}, {part("x"), part("a")});
    populate();
    EXPECT_EQ(referenceTree_.lines(), (Lines{L"0 a -", L"0 b -"}));
    EXPECT_EQ(compareTree_.lines(), (Lines{L"0 x -", L"0 a -"}));
    EXPECT_EQ(reference({1}).peerTreeItem, nullptr);
}

TEST_F(TreeFill, NodesAndItemsKnowEachOther) {
    compare({occurrence("t", {part("a"), part("gone")})}, {occurrence("t", {part("a")})});
    populate();
    const auto& a = reference({0, 0});
    const auto& other = compared({0, 0});
    EXPECT_EQ(referenceTree_.item(a.ownTreeItem).data, &a);
    EXPECT_EQ(compareTree_.item(a.peerTreeItem).data, &other);
    EXPECT_EQ(other.ownTreeItem, a.peerTreeItem);
    EXPECT_EQ(other.peerTreeItem, a.ownTreeItem);
    EXPECT_NE(reference({0, 1}).ownTreeItem, nullptr);
    EXPECT_EQ(reference({0, 1}).peerTreeItem, nullptr);
}

TEST_F(TreeFill, FillingAgainRewritesTheItems) {
    compare({part("a")}, {part("a"), part("b")});
    populate();
    populate();
    EXPECT_EQ(referenceTree_.itemCount(), 1U);
    EXPECT_EQ(compareTree_.itemCount(), 2U);
    EXPECT_EQ(reference({0}).ownTreeItem, referenceTree_.firstChild(nullptr));
    EXPECT_EQ(reference({0}).peerTreeItem, compareTree_.firstChild(nullptr));
    EXPECT_EQ(compareStates(), (Lines{L"a: Same", L"b: Added"}));
}

class DebugLines : public os::DebugOutput {
public:
    void write(std::wstring_view text) override { lines.emplace_back(text); }
    std::vector<std::wstring> lines;
};

class Colours : public testing::Test {
protected:
    Colours() { os::services().debug = debug_; }
    ~Colours() override { os::services().debug = nullptr; }

    ui::ItemColours of(std::int32_t state) {
        node_.displayName = L"Bolt (2)";
        node_.state = static_cast<AssemblyDiffState>(state);
        return diff::AssemblyDiffEngine::ColourForState({L"text", &node_, false, false});
    }

    extract::AssemblyNode node_;
    std::shared_ptr<DebugLines> debug_ = std::make_shared<DebugLines>();
};

TEST_F(Colours, OfEachState) {
    struct Expected {
        std::int32_t state;
        std::uint32_t text;
    };
    for (const auto& expected : {Expected{1, 0x50A000}, Expected{2, 0x2828C8},
                                 Expected{3, 0x0080FF}, Expected{4, 0x0080FF}}) {
        const ui::ItemColours colours = of(expected.state);
        EXPECT_TRUE(colours.changed);
        EXPECT_EQ(colours.text, expected.text) << expected.state;
        EXPECT_EQ(colours.background, 0xFFFFFFU);
    }
    EXPECT_FALSE(of(0).changed);
    EXPECT_FALSE(of(5).changed);
    EXPECT_FALSE(of(-7).changed);
}

TEST_F(Colours, AreWrittenToTheDebugger) {
    of(1);
    of(3);
    EXPECT_EQ(debug_->lines,
              (std::vector<std::wstring>{L"CustomDraw: Bolt (2) -> color 0x50A000 (state=1)\n",
                                         L"CustomDraw: Bolt (2) -> color 0x0080FF (state=3)\n"}));
}

TEST_F(Colours, OfASameNodeIsWrittenToo) {
    of(0);
    EXPECT_EQ(debug_->lines,
              (std::vector<std::wstring>{L"CustomDraw: Bolt (2) -> color 0x000000 (state=0)\n"}));
}

TEST_F(Colours, OfAnItemWithoutNodeAreTheControlsOwn) {
    EXPECT_FALSE(diff::AssemblyDiffEngine::ColourForState({}).changed);
    EXPECT_EQ(debug_->lines, (std::vector<std::wstring>{L"CustomDraw: pNode is NULL\n"}));
}

TEST_F(Colours, NeedNoDebugOutput) {
    os::services().debug = nullptr;
    EXPECT_TRUE(of(2).changed);
    EXPECT_FALSE(diff::AssemblyDiffEngine::ColourForState({}).changed);
}

}  // namespace
