#include "tests/unit/diff/compared_models.h"

namespace {

using extract::AssemblyDiffState;
using support::occurrence;
using support::part;

using Matching = ComparedModels;

TEST_F(Matching, UnchangedModelsAreTheSameEverywhere) {
    const Shapes model = {occurrence("a", {part("b"), occurrence("c", {part("d"), part("e")})})};
    compare(model, model);
    EXPECT_EQ(referenceStates(), compareStates());
    EXPECT_EQ(rows(), (Lines{L"a Same | a Same", L"  b Same |   b Same", L"  c Same |   c Same",
                             L"    d Same |     d Same", L"    e Same |     e Same"}));
    EXPECT_EQ(reference({0, 1, 0}).peer, &compared({0, 1, 0}));
    EXPECT_EQ(compared({0, 1, 0}).peer, &reference({0, 1, 0}));
}

TEST_F(Matching, GroupCountsStandOnEveryNodeOfAGroup) {
    compare({part("Bolt (1)"), part("Bolt (2)"), part("bolt"), part("x")},
            {part("BOLT"), part("y"), part("y.")});
    for (const std::size_t i : {0U, 1U, 2U}) {
        EXPECT_EQ(reference({i}).referenceGroupCount, 3) << i;
        EXPECT_EQ(reference({i}).compareGroupCount, 1) << i;
    }
    EXPECT_EQ(compared({0}).referenceGroupCount, 3);
    EXPECT_EQ(compared({0}).compareGroupCount, 1);
    EXPECT_EQ(reference({3}).referenceGroupCount, 1);
    EXPECT_EQ(reference({3}).compareGroupCount, 0);
    EXPECT_EQ(compared({1}).referenceGroupCount, 0);
    EXPECT_EQ(compared({2}).compareGroupCount, 2);
}

TEST_F(Matching, InstancesPairByTheirOrder) {
    compare({part("Bolt"), part("Bolt"), part("Bolt")}, {part("Bolt"), part("Bolt")});
    EXPECT_EQ(referenceStates(), (Lines{L"Bolt: Same", L"Bolt: Same", L"Bolt: Deleted"}));
    EXPECT_EQ(compareStates(), (Lines{L"Bolt: Same", L"Bolt: Same"}));
    EXPECT_EQ(reference({1}).peer, &compared({1}));
    EXPECT_EQ(reference({2}).peer, nullptr);
}

TEST_F(Matching, ChangedNumberOfInstancesIsNoMove) {
    compare({part("Bolt"), part("x"), part("Bolt"), part("Bolt")},
            {part("Bolt"), part("Bolt"), part("x")});
    EXPECT_EQ(referenceStates(),
              (Lines{L"Bolt: Same", L"x: Moved", L"Bolt: Same", L"Bolt: Deleted"}));
    EXPECT_EQ(compareStates(), (Lines{L"Bolt: Same", L"Bolt: Same", L"x: Moved"}));
    EXPECT_EQ(reference({2}).peer, &compared({1}));
}

TEST_F(Matching, ChangedOrderIsAMove) {
    compare({occurrence("top", {part("A"), part("B")}), part("z")},
            {occurrence("top", {part("B"), part("A")}), part("z")});
    EXPECT_EQ(referenceStates(), (Lines{L"top: Modified", L"A: Moved", L"B: Moved", L"z: Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"top: Modified", L"B: Moved", L"A: Moved", L"z: Same"}));
}

TEST_F(Matching, OneInsertedSiblingMovesThoseBehindIt) {
    compare({part("a"), part("b"), part("c")}, {part("a"), part("new"), part("b"), part("c")});
    EXPECT_EQ(compareStates(), (Lines{L"a: Same", L"new: Added", L"b: Moved", L"c: Moved"}));
    EXPECT_EQ(referenceStates(), (Lines{L"a: Same", L"b: Moved", L"c: Moved"}));
}

TEST_F(Matching, NamesWithoutKeyPairByPosition) {
    compare({part("\xD0\x91"), part("x"), part("\xD0\x92")},
            {part("\xD0\x93"), part("x"), part("\xD0\x94"), part("\xD0\x95")});
    EXPECT_EQ(reference({0}).peer, &compared({0}));
    EXPECT_EQ(reference({2}).peer, &compared({2}));
    EXPECT_EQ(compared({3}).state, AssemblyDiffState::Added);
    EXPECT_EQ(reference({0}).referenceGroupCount, 2);
    EXPECT_EQ(reference({0}).compareGroupCount, 3);
}

// Table of decisions, first match wins. Leaves with and without subcomponents stand for the
// flags; a second sibling keeps the pair away from the top-level rule.
struct Decision {
    const char* what;
    support::ComponentShape reference;
    support::ComponentShape compare;
    bool swapped;  // the pair changes places with its sibling
    AssemblyDiffState referenceState;
    AssemblyDiffState compareState;
};
void PrintTo(const Decision& decision, std::ostream* out) {
    *out << decision.what;
}

class Decisions : public ComparedModels, public testing::WithParamInterface<Decision> {};

TEST_P(Decisions, OnAPair) {
    const Decision& given = GetParam();
    // In front of the pair or behind it: two neighbours that are alike on both sides.
    const auto sibling = part("sibling");
    compare({given.reference, sibling},
            given.swapped ? Shapes{sibling, given.compare} : Shapes{given.compare, sibling});
    const auto& node = reference({0});
    ASSERT_NE(node.peer, nullptr);
    EXPECT_EQ(node.state, given.referenceState);
    EXPECT_EQ(node.peer->state, given.compareState);
    EXPECT_EQ(node.peer->peer, &node);
}

// What is Modified by name or by count alone is Same in the end; the count makes one of the two
// parents have a child that is not Same.
INSTANTIATE_TEST_SUITE_P(
    Matching, Decisions,
    testing::Values(Decision{"subcomponents went", part("a"), occurrence("a"), false,
                             AssemblyDiffState::Deleted, AssemblyDiffState::Same},
                    Decision{"subcomponents came", occurrence("a"), part("a"), false,
                             AssemblyDiffState::Same, AssemblyDiffState::Added},
                    Decision{"subcomponents went, before moved", part("a"), occurrence("a"), true,
                             AssemblyDiffState::Deleted, AssemblyDiffState::Same},
                    Decision{"subcomponents came, before moved and name", occurrence("a"),
                             part("A"), true, AssemblyDiffState::Same, AssemblyDiffState::Added},
                    Decision{"moved", part("a"), part("a"), true, AssemblyDiffState::Moved,
                             AssemblyDiffState::Moved},
                    Decision{"moved, before name and count", part("a"), part("A", {"S", "T"}), true,
                             AssemblyDiffState::Moved, AssemblyDiffState::Moved},
                    Decision{"both without subcomponents", occurrence("a"), occurrence("a"), false,
                             AssemblyDiffState::Same, AssemblyDiffState::Same},
                    Decision{"name alone, demoted", part("a"), part("A"), false,
                             AssemblyDiffState::Same, AssemblyDiffState::Same},
                    Decision{"more children", occurrence("a", {part("x")}),
                             occurrence("a", {part("x"), part("y")}), false,
                             AssemblyDiffState::Same, AssemblyDiffState::Modified},
                    Decision{"fewer children", occurrence("a", {part("x"), part("y")}),
                             occurrence("a", {part("x")}), false, AssemblyDiffState::Modified,
                             AssemblyDiffState::Same},
                    Decision{"equal", part("a"), part("a"), false, AssemblyDiffState::Same,
                             AssemblyDiffState::Same}));

TEST_F(Matching, ParentOfNameOnlyChangesIsTheSame) {
    compare({occurrence("top", {part("Bolt (1)"), part("x")})},
            {occurrence("top", {part("Bolt (2)"), part("x")})});
    EXPECT_EQ(referenceStates(), (Lines{L"top: Same", L"Bolt (1): Same", L"x: Same"}));
}

TEST_F(Matching, LeafThatBecameAnAssemblyIsAddedWithAllBelowIt) {
    compare({occurrence("a"), part("z")},
            {occurrence("a", {part("b"), occurrence("c", {part("d")})}), part("z")});
    EXPECT_EQ(referenceStates(), (Lines{L"a: Same", L"z: Same"}));
    EXPECT_EQ(compareStates(),
              (Lines{L"a: Added", L"b: Added", L"c: Added", L"d: Added", L"z: Same"}));
    EXPECT_EQ(reference({0}).peer, &compared({0}));
    EXPECT_EQ(compared({0, 0}).referenceGroupCount, 0);
    EXPECT_EQ(compared({0, 0}).compareGroupCount, 1);
    EXPECT_EQ(compared({0, 1, 0}).compareGroupCount, 0);  // nobody matched that deep
}

TEST_F(Matching, AssemblyThatBecameALeafIsDeletedWithAllBelowIt) {
    compare({occurrence("a", {part("b"), occurrence("c", {part("d")})}), part("z")},
            {occurrence("a"), part("z")});
    EXPECT_EQ(referenceStates(),
              (Lines{L"a: Deleted", L"b: Deleted", L"c: Deleted", L"d: Deleted", L"z: Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"a: Same", L"z: Same"}));
}

TEST_F(Matching, UnpairedNodesMarkTheirSubtrees) {
    compare({occurrence("gone", {occurrence("b", {part("c")})}), part("z")},
            {part("z"), occurrence("new", {part("d")})});
    EXPECT_EQ(referenceStates(),
              (Lines{L"gone: Deleted", L"b: Deleted", L"c: Deleted", L"z: Moved"}));
    EXPECT_EQ(compareStates(), (Lines{L"z: Moved", L"new: Added", L"d: Added"}));
}

TEST_F(Matching, SingleTopNodesPairWhateverTheirNames) {
    compare({occurrence("A", {part("x"), part("y")})}, {occurrence("B", {part("x"), part("y")})});
    EXPECT_EQ(reference({0}).peer, &compared({0}));
    EXPECT_EQ(referenceStates(), (Lines{L"A: Same", L"x: Same", L"y: Same"}));
    EXPECT_EQ(compareStates(), (Lines{L"B: Same", L"x: Same", L"y: Same"}));
    EXPECT_EQ(reference({0}).referenceGroupCount, 0);
    EXPECT_EQ(compared({0}).compareGroupCount, 0);
}

TEST_F(Matching, SingleTopNodesOfDifferentKindsStillPair) {
    compare({occurrence("A")}, {occurrence("A", {part("x")})});
    EXPECT_EQ(compareStates(), (Lines{L"A: Modified", L"x: Added"}));
    EXPECT_EQ(referenceStates(), (Lines{L"A: Same"}));
}

TEST_F(Matching, SeveralTopNodesMatchByName) {
    compare({part("A")}, {part("B"), part("A")});
    EXPECT_EQ(reference({0}).peer, &compared({1}));
    EXPECT_EQ(compareStates(), (Lines{L"B: Added", L"A: Moved"}));
}

TEST_F(Matching, LongListsMatchAsShortOnesDo) {
    Shapes before, after;
    for (int i = 0; i < 2000; ++i) {
        before.push_back(part("Part " + std::to_string(i)));
        if (i % 100 != 0) after.push_back(part("PART  " + std::to_string(i) + " (7)"));
    }
    compare({occurrence("top", before)}, {occurrence("top", after)});
    for (std::size_t i = 0, j = 0; i < 2000; ++i) {
        const auto& node = reference({0, i});
        if (i % 100 == 0) {
            EXPECT_EQ(node.state, AssemblyDiffState::Deleted);
            EXPECT_EQ(node.compareGroupCount, 0);
        } else {
            EXPECT_EQ(node.peer, &compared({0, j++}));
            EXPECT_EQ(node.state, AssemblyDiffState::Moved);
        }
    }
}

}  // namespace
