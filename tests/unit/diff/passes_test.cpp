#include "tests/unit/diff/compared_models.h"

namespace {

using support::occurrence;
using support::part;

using Passes = ComparedModels;

TEST_F(Passes, MovedNodesKnowBothPaths) {
    compare({occurrence("top", {part("A (1)"), part("B")})},
            {occurrence("top", {part("B"), part("A (2)")})});
    const auto& moved = reference({0, 0});
    EXPECT_EQ(moved.movedFromPath, L"top.A (1)");
    EXPECT_EQ(moved.movedToPath, L"top.A (2)");
    EXPECT_EQ(moved.peer->movedFromPath, L"top.A (1)");
    EXPECT_EQ(moved.peer->movedToPath, L"top.A (2)");
}

TEST_F(Passes, OtherPathLeadsToTheFirstNodeOfThatName) {
    compare({part("x"), part("A"), part("B")},
            {occurrence("x", {part("A")}), part("B"), part("A")});
    EXPECT_EQ(reference({1}).peer, &compared({2}));
    EXPECT_EQ(reference({1}).movedToPath, L"x.A");
    EXPECT_EQ(compared({2}).movedFromPath, L"A");
    EXPECT_EQ(compared({2}).movedToPath, L"A");
}

TEST_F(Passes, FirstOfANameIsFirstInPreOrder) {
    compare({part("q"), part("A"), part("B")},
            {occurrence("q", {occurrence("r", {part("A")}), part("A")}), part("B"), part("A")});
    EXPECT_EQ(reference({1}).movedToPath, L"q.r.A");
}

TEST_F(Passes, PathsStayEmptyWithoutANodeOfThatName) {
    compare({part("A").with("Filename", std::string("one.prt")), part("B")},
            {part("B"), part("A").with("Filename", std::string("two.prt"))});
    EXPECT_EQ(reference({0}).state, extract::AssemblyDiffState::Moved);
    EXPECT_EQ(reference({0}).movedFromPath, L"");
    EXPECT_EQ(reference({0}).movedToPath, L"");
    EXPECT_EQ(compared({1}).movedFromPath, L"");
    EXPECT_EQ(reference({1}).movedToPath, L"B");
}

TEST_F(Passes, NamesAreLookedUpExactly) {
    compare({part("a"), part("B")}, {part("B"), part("A")});
    EXPECT_EQ(reference({0}).state, extract::AssemblyDiffState::Moved);
    EXPECT_EQ(reference({0}).movedToPath, L"");
}

TEST_F(Passes, OnlyMovedNodesHavePaths) {
    compare({part("a"), part("b"), part("c"), part("d")}, {part("a"), part("c"), part("b")});
    EXPECT_EQ(reference({0}).movedFromPath, L"");
    EXPECT_EQ(reference({3}).movedFromPath, L"");
    EXPECT_EQ(reference({1}).movedFromPath, L"b");
}

TEST_F(Passes, ChangesReachEveryParent) {
    compare(
        {occurrence("a", {occurrence("b", {occurrence("c", {part("x"), part("y")})}), part("d")})},
        {occurrence("a", {occurrence("b", {occurrence("c", {part("y"), part("x")})}), part("d")})});
    EXPECT_EQ(referenceStates(), (Lines{L"a: Modified", L"b: Modified", L"c: Modified", L"x: Moved",
                                        L"y: Moved", L"d: Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"a: Modified", L"b: Modified", L"c: Modified", L"y: Moved",
                                      L"x: Moved", L"d: Same"}));
}

TEST_F(Passes, RootsKeepTheirState) {
    compare({part("a")}, {part("b"), part("c")});
    EXPECT_EQ(engine_.referenceRoot()->state, extract::AssemblyDiffState::Same);
    EXPECT_EQ(engine_.compareRoot()->state, extract::AssemblyDiffState::Same);
}

TEST_F(Passes, PeerOfAParentThatOnlyLostAChildStaysSame) {
    compare({occurrence("p", {part("x"), part("y")}), part("z")},
            {occurrence("p", {part("x")}), part("z")});
    EXPECT_EQ(referenceStates(), (Lines{L"p: Modified", L"x: Same", L"y: Deleted", L"z: Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"p: Same", L"x: Same", L"z: Same"}));
}

TEST_F(Passes, PeerOfAParentThatOnlyGainedAChildStaysSame) {
    compare({occurrence("p", {part("x")}), part("z")},
            {occurrence("p", {part("x"), part("y")}), part("z")});
    EXPECT_EQ(referenceStates(), (Lines{L"p: Same", L"x: Same", L"z: Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"p: Modified", L"x: Same", L"y: Added", L"z: Same"}));
}

// One child became a leaf, another stopped being one: each parent then has a changed child of
// its own, and the numbers of children are equal.
TEST_F(Passes, PeerWithAChangeOfItsOwnIsModifiedToo) {
    compare({occurrence("p", {occurrence("x", {part("u")}), occurrence("y")}), part("z")},
            {occurrence("p", {occurrence("x"), occurrence("y", {part("v")})}), part("z")});
    EXPECT_EQ(referenceStates(),
              (Lines{L"p: Modified", L"x: Deleted", L"u: Deleted", L"y: Same", L"z: Same"}));
    EXPECT_EQ(compareStates(),
              (Lines{L"p: Modified", L"x: Same", L"y: Added", L"v: Added", L"z: Same"}));
}

// A deep deletion leaves a Modified chain in the reference whose peers are all Same: the peer
// of each is Same as long as nothing below the peer changed.
TEST_F(Passes, ChainsOfParentsStayOneSided) {
    compare({occurrence("p", {occurrence("q", {part("x"), part("y")})}), part("z")},
            {occurrence("p", {occurrence("q", {part("x")})}), part("z")});
    EXPECT_EQ(referenceStates(),
              (Lines{L"p: Modified", L"q: Modified", L"x: Same", L"y: Deleted", L"z: Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"p: Same", L"q: Same", L"x: Same", L"z: Same"}));
}

TEST_F(Passes, NameOnlyDifferenceOfALeafEndsAsSame) {
    compare({part("Bolt (1)"), part("x")}, {part("Bolt (2)"), part("x")});
    EXPECT_EQ(referenceStates(), (Lines{L"Bolt (1): Same", L"x: Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"Bolt (2): Same", L"x: Same"}));
}

TEST_F(Passes, SwappedInstanceNumbersEndAsSame) {
    compare({part("Rad (1)"), part("Rad (2)")}, {part("Rad (2)"), part("Rad (1)")});
    EXPECT_EQ(reference({0}).peer, &compared({0}));
    EXPECT_EQ(referenceStates(), (Lines{L"Rad (1): Same", L"Rad (2): Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"Rad (2): Same", L"Rad (1): Same"}));
}

TEST_F(Passes, NameOnlyDifferencesAllTheWayUpEndAsSame) {
    compare({occurrence("P (1)", {occurrence("Q (1)", {part("R (1)"), part("s")})}), part("z")},
            {occurrence("P (2)", {occurrence("Q (2)", {part("R (2)"), part("s")})}), part("z")});
    for (const auto& line : referenceStates()) EXPECT_NE(line.find(L": Same"), line.npos);
    for (const auto& line : compareStates()) EXPECT_NE(line.find(L": Same"), line.npos);
}

}  // namespace
