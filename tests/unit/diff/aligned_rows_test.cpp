#include "tests/unit/diff/compared_models.h"

namespace {

using support::occurrence;
using support::part;

using AlignedRows = ComparedModels;

TEST_F(AlignedRows, FollowTheCompareOrder) {
    compare({occurrence("t", {part("a"), part("b"), part("c")})},
            {occurrence("t", {part("c"), part("a"), part("b")})});
    EXPECT_EQ(rows(), (Lines{L"t Modified | t Modified", L"  c Moved |   c Moved",
                             L"  a Moved |   a Moved", L"  b Moved |   b Moved"}));
}

TEST_F(AlignedRows, InstancesTakeTheFirstFreePartner) {
    compare({occurrence("t", {part("Bolt (1)"), part("Bolt (2)"), part("Bolt (3)")})},
            {occurrence("t", {part("bolt"), part("x"), part("bolt")})});
    EXPECT_EQ(rows(),
              (Lines{L"t Modified | t Modified", L"  Bolt (1) Same |   bolt Same", L"  |   x Added",
                     L"  Bolt (2) Same |   bolt Same", L"  Bolt (3) Deleted |  "}));
}

TEST_F(AlignedRows, LeftOversFillGapsAtTheTopLevel) {
    compare({part("a"), part("b"), part("c")}, {part("x"), part("a"), part("y")});
    EXPECT_EQ(rows(),
              (Lines{L"b Deleted | x Added", L"a Moved | a Moved", L"c Deleted | y Added"}));
}

TEST_F(AlignedRows, LeftOversBeyondTheGapsComeLast) {
    compare({part("a"), part("b"), part("c")}, {part("x")});
    EXPECT_EQ(rows(), (Lines{L"a Deleted | x Added", L"b Deleted |  ", L"c Deleted |  "}));
}

TEST_F(AlignedRows, GapsBeyondTheLeftOversStay) {
    compare({part("a")}, {part("x"), part("y")});
    EXPECT_EQ(rows(), (Lines{L"a Deleted | x Added", L"  | y Added"}));
}

TEST_F(AlignedRows, LeftOversBelowTheTopStandAlone) {
    compare({occurrence("t", {part("a"), part("b")})}, {occurrence("t", {part("x"), part("a")})});
    EXPECT_EQ(rows(), (Lines{L"t Modified | t Modified", L"  |   x Added", L"  a Moved |   a Moved",
                             L"  b Deleted |  "}));
}

TEST_F(AlignedRows, DifferentlyNamedTopNodesShareALine) {
    compare({occurrence("A", {part("x"), part("y")})}, {occurrence("B", {part("x"), part("y")})});
    EXPECT_EQ(rows(), (Lines{L"A Same | B Same", L"  x Same |   x Same", L"  y Same |   y Same"}));
}

TEST_F(AlignedRows, ChildrenOfAFilledLineAreAligned) {
    compare({occurrence("A", {part("x"), part("u"), part("y")}), part("z")},
            {occurrence("B", {part("y"), part("v"), part("x")}), part("z")});
    EXPECT_EQ(rows(), (Lines{L"A Deleted | B Added", L"  y Deleted |   y Added", L"  |   v Added",
                             L"  x Deleted |   x Added", L"  u Deleted |  ", L"z Same | z Same"}));
    const auto lines = engine_.AlignedRows();
    EXPECT_EQ(lines[1].reference, &reference({0, 2}));
    EXPECT_EQ(lines[1].reference->peer, nullptr);
}

TEST_F(AlignedRows, IndentIsTwoSpacesPerLevel) {
    compare({occurrence("a", {occurrence("b", {occurrence("c", {part("d"), part("e")})})})}, {});
    const auto lines = engine_.AlignedRows();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0].indent, 0U);
    EXPECT_EQ(lines[1].indent, 2U);
    EXPECT_EQ(lines[2].indent, 4U);
    EXPECT_EQ(lines[3].indent, 6U);
    EXPECT_EQ(rows()[3], L"      d Deleted |  ");
    EXPECT_EQ(lines[3].reference, &reference({0, 0, 0, 0}));
    EXPECT_EQ(lines[3].compare, nullptr);
}

TEST_F(AlignedRows, AreAppendedToWhatTheListsHold) {
    compare({part("a")}, {part("a")});
    std::vector<std::wstring> names = {L"before"}, states = {L"-"}, compareNames, compareStates;
    engine_.FlattenPSTreeAligned(names, states, compareNames, compareStates);
    EXPECT_EQ(names, (Lines{L"before", L"a"}));
    EXPECT_EQ(states, (Lines{L"-", L"Same"}));
    EXPECT_EQ(compareNames, (Lines{L"a"}));
}

TEST_F(AlignedRows, ChangeNothing) {
    compare({part("a"), part("b")}, {part("b"), part("c")});
    const Lines first = rows();
    const Lines statesBefore = referenceStates();
    EXPECT_EQ(rows(), first);
    EXPECT_EQ(referenceStates(), statesBefore);
}

TEST_F(AlignedRows, MissingSideGivesTextsWithoutIndent) {
    compare({occurrence("t", {part("a"), part("b")})}, {occurrence("t", {part("a")})});
    std::vector<std::wstring> names, states, compareNames, compareStates;
    engine_.FlattenPSTreeAligned(names, states, compareNames, compareStates);
    EXPECT_EQ(names.at(2), L"  b");
    EXPECT_EQ(compareNames.at(2), L"");
    EXPECT_EQ(compareStates.at(2), L"");
}

TEST_F(AlignedRows, PeersWithoutCommonChildrenKeepTheirOwnLines) {
    compare({occurrence("a"), part("z")}, {occurrence("a", {part("b"), part("c")}), part("z")});
    EXPECT_EQ(rows(),
              (Lines{L"a Same | a Added", L"  |   b Added", L"  |   c Added", L"z Same | z Same"}));
}

}  // namespace
