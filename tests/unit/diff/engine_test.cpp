#include <set>

#include "platform/hps/exception.h"
#include "tests/unit/diff/compared_models.h"

namespace {

using support::occurrence;
using support::part;

using Engine = ComparedModels;

TEST_F(Engine, HasNoRootsBeforeItIsBuilt) {
    EXPECT_EQ(engine_.referenceRoot(), nullptr);
    EXPECT_EQ(engine_.compareRoot(), nullptr);
    EXPECT_TRUE(rows().empty());
    EXPECT_TRUE(engine_.AlignedRows().empty());
}

TEST_F(Engine, CreatedNodesAreDistinctAndKeepTheirPlace) {
    std::vector<extract::AssemblyNode*> nodes;
    for (int i = 0; i < 10000; ++i) {
        nodes.push_back(engine_.CreateNode());
        EXPECT_EQ(nodes.back()->level, -1);
        nodes.back()->level = i;
    }
    for (int i = 0; i < 10000; ++i) EXPECT_EQ(nodes[static_cast<std::size_t>(i)]->level, i);
    EXPECT_EQ(std::set<void*>(nodes.begin(), nodes.end()).size(), 10000U);
}

TEST_F(Engine, BuildTreeGivesATreeWithoutComparing) {
    const auto* root = engine_.BuildTree(support::makeModel({part("a")}));
    EXPECT_EQ(states(root), (Lines{L"a: Same"}));
    EXPECT_EQ(engine_.referenceRoot(), nullptr);
    EXPECT_EQ(root->children[0]->referenceGroupCount, 0);
}

TEST_F(Engine, BuildsTheReferenceFirst) {
    compare({part("a"), part("b")}, {part("c")});
    EXPECT_EQ(reference({}).children.size(), 2U);
    EXPECT_EQ(compared({}).children.size(), 1U);
    EXPECT_EQ(engine_.referenceRoot()->displayName, L"__root__");
    EXPECT_EQ(engine_.compareRoot()->level, -1);
}

TEST_F(Engine, BuildingAgainStartsFromNothing) {
    compare({part("a")}, {part("a"), part("b")});
    compare({part("x")}, {part("x")});
    EXPECT_EQ(rows(), (Lines{L"x Same | x Same"}));
}

TEST_F(Engine, ResetForgetsBothTrees) {
    compare({part("a")}, {part("b")});
    engine_.Reset();
    EXPECT_EQ(engine_.referenceRoot(), nullptr);
    EXPECT_EQ(engine_.compareRoot(), nullptr);
    EXPECT_TRUE(rows().empty());
    compare({part("a")}, {part("a")});
    EXPECT_EQ(rows(), (Lines{L"a Same | a Same"}));
}

TEST_F(Engine, BothModelsEmptyHaveRootsAndNothingElse) {
    compare({}, {});
    ASSERT_NE(engine_.referenceRoot(), nullptr);
    ASSERT_NE(engine_.compareRoot(), nullptr);
    EXPECT_EQ(engine_.referenceRoot()->state, extract::AssemblyDiffState::Same);
    EXPECT_TRUE(rows().empty());
}

TEST_F(Engine, OneEmptyModelMarksTheOtherAltogether) {
    compare({}, {occurrence("a", {part("b"), occurrence("c", {part("d")})})});
    EXPECT_EQ(compareStates(), (Lines{L"a: Added", L"b: Added", L"c: Added", L"d: Added"}));
    EXPECT_EQ(rows(),
              (Lines{L"  | a Added", L"  |   b Added", L"  |   c Added", L"  |     d Added"}));
    compare({occurrence("a", {part("b"), part("c")})}, {});
    EXPECT_EQ(referenceStates(), (Lines{L"a: Deleted", L"b: Deleted", L"c: Deleted"}));
    EXPECT_EQ(rows(), (Lines{L"a Deleted |  ", L"  b Deleted |  ", L"  c Deleted |  "}));
}

TEST_F(Engine, AnUnreadableModelPassesItsExceptionOn) {
    class Unreadable : public support::MemoryModel {
    public:
        std::string name(HPS::ComponentId) const override { throw HPS::Exception("unreadable"); }
    };
    support::MemoryModel::Builder builder(std::make_unique<Unreadable>());
    builder.addOccurrence(0, "a");
    const HPS::CADModel bad(builder.finish());
    const HPS::CADModel good = support::makeModel({part("a")});
    EXPECT_THROW(engine_.BuildAndDiff(good, bad), HPS::Exception);
    EXPECT_NE(engine_.referenceRoot(), nullptr);
    EXPECT_EQ(engine_.compareRoot(), nullptr);
    EXPECT_EQ(rows(), (Lines{L"a Same |  "}));  // what stands can still be shown
    EXPECT_THROW(engine_.BuildAndDiff(bad, good), HPS::Exception);
    EXPECT_EQ(engine_.referenceRoot(), nullptr);
}

TEST_F(Engine, PathsLeaveTheRootOut) {
    compare({occurrence("a", {occurrence("b.c", {part("d (2)")})})}, {});
    EXPECT_EQ(diff::AssemblyDiffEngine::GetNodePath(&reference({0, 0, 0})), L"a.b.c.d (2)");
    EXPECT_EQ(diff::AssemblyDiffEngine::GetNodePath(engine_.referenceRoot()), L"");
}

}  // namespace
