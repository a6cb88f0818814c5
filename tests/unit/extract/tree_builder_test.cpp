#include "extract/tree_builder.h"

#include <gtest/gtest.h>

#include <deque>

#include "platform/exchange/services.h"
#include "platform/hps/exception.h"
#include "tests/support/memory_model.h"

namespace {

using extract::AssemblyNode;
using support::ComponentShape;
using support::item;
using support::occurrence;
using support::part;

namespace ComponentType = HPS::ComponentType;

class TreeBuilder : public testing::Test {
protected:
    AssemblyNode* build(const HPS::Component& component) {
        return extract::BuildTree(component, [this] { return &nodes_.emplace_back(); });
    }
    AssemblyNode* build(const std::vector<ComponentShape>& top) {
        return build(support::makeModel(top));
    }
    // One line per node: level, position and display name.
    static std::vector<std::wstring> lines(const AssemblyNode* root) {
        std::vector<std::wstring> lines;
        for (auto* node = root; node; node = extract::NextPreOrder(node, root)) {
            lines.push_back(std::to_wstring(node->level) + L"/" +
                            std::to_wstring(node->siblingIndex) + L" " + node->displayName);
        }
        return lines;
    }
    using Lines = std::vector<std::wstring>;

    support::ScopedMultiBody multiBody_;
    std::deque<AssemblyNode> nodes_;
};

TEST_F(TreeBuilder, EmptyModelYieldsARootWithoutChildren) {
    const AssemblyNode* const root = build(HPS::CADModel());
    EXPECT_EQ(root->name, L"__root__");
    EXPECT_EQ(root->displayName, L"__root__");
    EXPECT_EQ(root->level, -1);
    EXPECT_EQ(root->parent, nullptr);
    EXPECT_TRUE(root->children.empty());
    EXPECT_EQ(nodes_.size(), 1U);
}

TEST_F(TreeBuilder, LevelsGrowInStepsOfFive) {
    const auto* root =
        build({occurrence("a", {occurrence("b", {part("c"), part("d")}), part("e")})});
    EXPECT_EQ(lines(root),
              (Lines{L"-1/0 __root__", L"0/0 a", L"5/0 b", L"10/0 c", L"10/1 d", L"5/1 e"}));
}

TEST_F(TreeBuilder, NodesKnowTheirParents) {
    const auto* root = build({occurrence("Top (1)", {part("x"), part("y")})});
    const AssemblyNode* const top = root->children.at(0);
    EXPECT_EQ(top->parent, root);
    EXPECT_EQ(top->parentName, L"__root__");
    EXPECT_EQ(top->children.at(1)->parent, top);
    EXPECT_EQ(top->children.at(1)->parentName, L"Top");
}

TEST_F(TreeBuilder, SeveralTopComponentsShareOneNumbering) {
    const auto* root = build({part("a"), part("b"), part("c")});
    EXPECT_EQ(lines(root), (Lines{L"-1/0 __root__", L"0/0 a", L"0/1 b", L"0/2 c"}));
}

TEST_F(TreeBuilder, ComponentsOfOtherTypesAreTransparent) {
    const auto* root =
        build({occurrence("a", {part("b"),
                                item(ComponentType::PartDefinition, "named",
                                     {part("c"), item(ComponentType::Plane, "p", {part("d")})}),
                                part("e")})});
    EXPECT_EQ(lines(root),
              (Lines{L"-1/0 __root__", L"0/0 a", L"5/0 b", L"5/1 c", L"5/2 d", L"5/3 e"}));
}

TEST_F(TreeBuilder, UnnamedOccurrenceLeavesItsPlaceToItsChildren) {
    const auto* root =
        build({occurrence("a", {part("b"), occurrence("", {part("c"), part("d")}), part("e")})});
    EXPECT_EQ(lines(root),
              (Lines{L"-1/0 __root__", L"0/0 a", L"5/0 b", L"5/1 c", L"5/2 d", L"5/3 e"}));
    EXPECT_EQ(root->children[0]->children[1]->parentName, L"a");
}

TEST_F(TreeBuilder, OccurrenceWithoutSubcomponentsIsALeafThatSaysSo) {
    const auto* root = build({occurrence("a", {occurrence("bare"), part("b")})});
    const AssemblyNode* const bare = root->children[0]->children[0];
    EXPECT_FALSE(bare->hasSubcomponents);
    EXPECT_TRUE(bare->children.empty());
    EXPECT_TRUE(root->children[0]->children[1]->hasSubcomponents);
    EXPECT_TRUE(root->children[0]->hasSubcomponents);
    EXPECT_TRUE(root->hasSubcomponents);
}

// A provider whose components don't count themselves: one occurrence below counts 1.
class CountsBelowOnly : public support::MemoryModel {
public:
    std::size_t countAll(HPS::ComponentId id, std::uint32_t type) const override {
        const std::size_t all = MemoryModel::countAll(id, type);
        return ComponentType::selects(type, MemoryModel::type(id)) ? all - 1 : all;
    }
};

TEST_F(TreeBuilder, ACountOfOneGivesNoChildOccurrences) {
    support::MemoryModel::Builder builder(std::make_unique<CountsBelowOnly>());
    builder.addShape(0, occurrence("pair", {part("b"), part("c")}));
    builder.addShape(0, occurrence("single", {part("d")}));
    const auto* root = build(HPS::CADModel(builder.finish()));
    EXPECT_EQ(lines(root),
              (Lines{L"-1/0 __root__", L"0/0 pair", L"5/0 b", L"5/1 c", L"0/1 single"}));
}

TEST_F(TreeBuilder, AnUnnamedOccurrenceBelowStillMakesAnAssembly) {
    const auto* root = build({occurrence("a", {occurrence("")})});
    EXPECT_EQ(lines(root), (Lines{L"-1/0 __root__", L"0/0 a"}));
}

TEST_F(TreeBuilder, BodiesOfAPartBecomeChildren) {
    const auto* root = build({occurrence("a", {part("Case (1)", {"Lid", "Box (2)"}), part("b")})});
    EXPECT_EQ(lines(root), (Lines{L"-1/0 __root__", L"0/0 a", L"5/0 Case (1)", L"10/0 Lid",
                                  L"10/1 Box (2)", L"5/1 b"}));
    const AssemblyNode* const body = root->children[0]->children[0]->children[1];
    EXPECT_EQ(body->name, L"Box (2)");
    EXPECT_EQ(body->parentName, L"Case");
    EXPECT_EQ(body->parent, root->children[0]->children[0]);
    EXPECT_TRUE(body->hasSubcomponents);
    EXPECT_TRUE(body->children.empty());
}

TEST_F(TreeBuilder, PartWithOneBodyStaysALeaf) {
    EXPECT_EQ(build({part("a", {"Solid"})})->children[0]->children.size(), 0U);
}

TEST_F(TreeBuilder, EqualBodyNamesCountOnce) {
    EXPECT_EQ(build({part("a", {"S", "S"})})->children[0]->children.size(), 0U);
    const auto* root = build({part("a", {"S", "T", "S", "s", "T"})});
    EXPECT_EQ(lines(root), (Lines{L"-1/0 __root__", L"0/0 a", L"5/0 S", L"5/1 T", L"5/2 s"}));
}

TEST_F(TreeBuilder, BodiesWithoutANameAreSkipped) {
    EXPECT_EQ(build({part("a", {"", "S", ""})})->children[0]->children.size(), 0U);
    EXPECT_EQ(build({part("a", {"", "S", "T"})})->children[0]->children.size(), 2U);
}

TEST_F(TreeBuilder, OnlyBRepItemsAreBodies) {
    const auto* root = build({occurrence(
        "a", {item(ComponentType::PartDefinition, "",
                   {item(ComponentType::BrepModel, "S"), item(ComponentType::PolyBrepModel, "mesh"),
                    item(ComponentType::Curve, "c"), item(ComponentType::BrepModel, "T")})})});
    EXPECT_EQ(lines(root), (Lines{L"-1/0 __root__", L"0/0 a", L"5/0 S", L"5/1 T"}));
}

TEST_F(TreeBuilder, OnlyBodiesOfMultiBodyPartsCount) {
    const support::ScopedMultiBody notT(
        +[](const HPS::Exchange::Component& body) { return body.GetName().GetBytes() != "T"; });
    const auto* root = build({part("a", {"S", "T", "U"}), part("b", {"S", "T"})});
    EXPECT_EQ(lines(root), (Lines{L"-1/0 __root__", L"0/0 a", L"5/0 S", L"5/1 U", L"0/1 b"}));
}

TEST_F(TreeBuilder, BodiesOfAnAssemblyAreNotListed) {
    const auto* root = build({occurrence(
        "a", {item(ComponentType::PartDefinition, "",
                   {item(ComponentType::BrepModel, "S"), item(ComponentType::BrepModel, "T")}),
              part("b")})});
    EXPECT_EQ(lines(root), (Lines{L"-1/0 __root__", L"0/0 a", L"5/0 b"}));
}

TEST_F(TreeBuilder, NameIsTheFileStemThenTheDisplayNameWithoutSuffix) {
    const auto* root =
        build({part("Bolt (2)"),
               part("Bolt (3)").with("Filename", std::string("C:\\models\\gear.box.prt")),
               part("Bolt (4)").with("Filename", std::string("C:\\models\\")), part("(1)")});
    EXPECT_EQ(root->children[0]->name, L"Bolt");
    EXPECT_EQ(root->children[0]->displayName, L"Bolt (2)");
    EXPECT_EQ(root->children[1]->name, L"gear.box");
    EXPECT_EQ(root->children[1]->displayName, L"Bolt (3)");
    EXPECT_EQ(root->children[2]->name, L"Bolt");
    EXPECT_EQ(root->children[3]->name, L"(1)");
}

TEST_F(TreeBuilder, FoundNodesAreMadeInPreOrder) {
    const auto* root =
        build({occurrence("a", {part("b", {"S", "T"}), occurrence("c", {part("d")})})});
    std::size_t index = 0;
    for (auto* node = root; node; node = extract::NextPreOrder(node, root)) {
        EXPECT_EQ(node, &nodes_[index++]);
    }
    EXPECT_EQ(index, nodes_.size());
}

TEST_F(TreeBuilder, ExceptionsOfTheModelPassThrough) {
    class Unreadable : public support::MemoryModel {
    public:
        std::string name(HPS::ComponentId id) const override {
            if (id == 2) throw HPS::Exception("unreadable");
            return MemoryModel::name(id);
        }
    };
    support::MemoryModel::Builder builder(std::make_unique<Unreadable>());
    builder.addShape(0, occurrence("a", {part("b"), part("c")}));
    const HPS::CADModel model(builder.finish());
    EXPECT_THROW(build(model), HPS::Exception);
}

// The walk must ask for counts and never for the components behind them.
class NoWalks : public support::MemoryModel {
public:
    void collectAll(HPS::ComponentId, std::uint32_t,
                    std::vector<HPS::ComponentId>&) const override {
        ADD_FAILURE() << "walked a subtree";
    }
};

TEST_F(TreeBuilder, TwentyThousandLevelsTakeNeitherStackNorWalks) {
    constexpr std::size_t kDepth = 20000;
    support::MemoryModel::Builder builder(std::make_unique<NoWalks>());
    HPS::ComponentId end = 0;
    for (std::size_t i = 0; i < kDepth; ++i) end = builder.addOccurrence(end, "level");
    const auto* root = build(HPS::CADModel(builder.finish()));
    EXPECT_EQ(nodes_.size(), kDepth + 1);
    EXPECT_EQ(extract::FirstPostOrder(root)->level, static_cast<std::int32_t>(5 * (kDepth - 1)));
    EXPECT_FALSE(extract::FirstPostOrder(root)->hasSubcomponents);
}

TEST_F(TreeBuilder, TwentyThousandTransparentLevelsAreWalkedThrough) {
    support::MemoryModel::Builder builder;
    HPS::ComponentId end = 0;
    for (int i = 0; i < 20000; ++i) end = builder.addOccurrence(end, "");
    builder.addShape(end, part("deep"));
    EXPECT_EQ(lines(build(HPS::CADModel(builder.finish()))),
              (Lines{L"-1/0 __root__", L"0/0 deep"}));
}

}  // namespace
