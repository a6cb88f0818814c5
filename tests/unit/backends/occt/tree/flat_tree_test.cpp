#include "backends/occt/tree/flat_tree.h"

#include <gtest/gtest.h>

#include "backends/occt/tree/occt_model.h"
#include "platform/hps/component.h"
#include "platform/hps/component_type.h"
#include "platform/hps/exception.h"

namespace {

namespace Type = HPS::ComponentType;
using occt::DescribedDefinition;
using occt::Description;
using occt::FlatTree;

occt::DescribedItem item(std::uint32_t type, const std::string& name) {
    occt::DescribedItem out;
    out.type = type;
    out.name = name;
    return out;
}

occt::Placement moved(double x) {
    return {1, 0, 0, x, 0, 1, 0, 0, 0, 0, 1, 0};
}

DescribedDefinition assembly(const std::string& name,
                             const std::vector<std::pair<std::uint32_t, double>>& children) {
    DescribedDefinition out;
    out.name = name;
    out.isAssembly = true;
    for (const auto& [child, x] : children) out.usages.push_back({child, moved(x), {}});
    return out;
}

/// top holds pair, gear, pair; pair holds gear twice; gear has a body, a mesh and a dimension.
Description gears() {
    Description description;
    DescribedDefinition gear;
    gear.name = "gear";
    gear.unitName = "Millimeter";
    gear.items = {item(Type::BrepModel, "body"), item(Type::PolyBrepModel, "mesh")};
    gear.pmi = {{Type::PmiDimension, "Radius", {{"Value", 2.0}}}};
    description.definitions = {gear, assembly("pair", {{0, 1}, {0, 2}}),
                               assembly("top", {{1, 10}, {0, 20}, {1, 30}})};
    description.root = 2;
    return description;
}

std::vector<std::uint32_t> types(const FlatTree& tree) {
    std::vector<std::uint32_t> out;
    for (HPS::ComponentId id = 0; id < tree.size(); ++id) out.push_back(tree.type(id));
    return out;
}

TEST(FlatTree, ComponentsStandInPreOrder) {
    const Description description = gears();
    const FlatTree tree(description);
    EXPECT_EQ(tree.size(), *unfoldedSize(description));
    const std::uint32_t O = Type::ProductOccurrence, P = Type::PartDefinition, B = Type::BrepModel,
                        M = Type::PolyBrepModel, D = Type::PmiDimension;
    EXPECT_EQ(types(tree), (std::vector<std::uint32_t>{Type::ModelFile,
                                                       O,
                                                       O,
                                                       O,
                                                       P,
                                                       B,
                                                       M,
                                                       D,
                                                       O,
                                                       P,
                                                       B,
                                                       M,
                                                       O,
                                                       P,
                                                       B,
                                                       M,
                                                       O,
                                                       O,
                                                       P,
                                                       B,
                                                       M,
                                                       O,
                                                       P,
                                                       B,
                                                       M}))
        << "PMI stands below the first instance alone";
}

TEST(FlatTree, TheModelFileHasTheRootAsItsOnlyChild) {
    const Description description = gears();
    const FlatTree tree(description);
    EXPECT_EQ(tree.childCount(0), 1U);
    EXPECT_EQ(tree.child(0, 0), 1U);
    EXPECT_EQ(tree.childCount(1), 3U);
    EXPECT_EQ(tree.child(1, 0), 2U);
    EXPECT_EQ(tree.child(1, 1), 12U);
    EXPECT_EQ(tree.child(1, 2), 16U);
    EXPECT_EQ(tree.node(12).parent, 1U);
    EXPECT_EQ(tree.node(12).local, 1U);
    EXPECT_EQ(tree.node(2).end, 12U);
}

TEST(FlatTree, CountingIncludesTheComponentItself) {
    const Description description = gears();
    const FlatTree tree(description);
    EXPECT_EQ(tree.countAll(0, Type::ProductOccurrence), 8U);
    EXPECT_EQ(tree.countAll(1, Type::ProductOccurrence), 8U);
    EXPECT_EQ(tree.countAll(2, Type::ProductOccurrence), 3U);
    EXPECT_EQ(tree.countAll(12, Type::ProductOccurrence), 1U) << "a leaf answers 1";
    EXPECT_EQ(tree.countAll(12, Type::BrepModel), 1U);
    EXPECT_EQ(tree.countAll(0, Type::ModelFile), 1U);
    EXPECT_EQ(tree.countAll(1, Type::ModelFile), 0U);
    EXPECT_EQ(tree.countAll(0, Type::PmiDimension), 1U);
    EXPECT_EQ(tree.countAll(0, Type::Curve), 0U);
}

TEST(FlatTree, MasksSelectEveryTypeWithTheirBits) {
    const Description description = gears();
    const FlatTree tree(description);
    EXPECT_EQ(tree.countAll(0, Type::RepresentationItemMask), 10U);
    EXPECT_EQ(tree.countAll(2, Type::RepresentationItemMask), 4U);
    EXPECT_EQ(tree.countAll(0, Type::PmiMask), 1U);
    // 0x1000 is in the bits of items and PMI too.
    EXPECT_EQ(tree.countAll(0, 0x1000), tree.size());
    std::vector<HPS::ComponentId> found;
    tree.collectAll(2, Type::RepresentationItemMask, found);
    EXPECT_EQ(found, (std::vector<HPS::ComponentId>{5, 6, 10, 11}));
}

TEST(FlatTree, CollectingGivesItselfFirstThenPreOrder) {
    const Description description = gears();
    const FlatTree tree(description);
    std::vector<HPS::ComponentId> found = {99};
    tree.collectAll(2, Type::ProductOccurrence, found);
    EXPECT_EQ(found, (std::vector<HPS::ComponentId>{99, 2, 3, 8})) << "appended";
    for (HPS::ComponentId id = 0; id < tree.size(); ++id) {
        for (const std::uint32_t type : {Type::ProductOccurrence, Type::BrepModel, Type::PmiMask}) {
            found.clear();
            tree.collectAll(id, type, found);
            EXPECT_EQ(found.size(), tree.countAll(id, type));
        }
    }
}

TEST(FlatTree, PlacementsMultiplyDownwards) {
    const Description description = gears();
    const FlatTree tree(description);
    EXPECT_EQ(tree.placement(0)[3], 0.0);
    EXPECT_EQ(tree.placement(1)[3], 0.0);
    EXPECT_EQ(tree.placement(3)[3], 11.0);
    EXPECT_EQ(tree.placement(5)[3], 11.0) << "an item stands where its occurrence does";
    EXPECT_EQ(tree.placement(8)[3], 12.0);
    EXPECT_EQ(tree.placement(21)[3], 32.0);
}

TEST(FlatTree, NumbersThatAreNoneThrow) {
    const Description description = gears();
    const FlatTree tree(description);
    const auto past = static_cast<HPS::ComponentId>(tree.size());
    EXPECT_THROW(tree.type(past), HPS::Exception);
    EXPECT_THROW((void)tree.childCount(past), HPS::Exception);
    EXPECT_THROW((void)tree.child(1, 3), HPS::Exception);
    EXPECT_THROW((void)tree.countAll(past, Type::BrepModel), HPS::Exception);
    EXPECT_THROW((void)tree.placement(past), HPS::Exception);
}

TEST(FlatTree, TwentyThousandLevelsUnfold) {
    Description description;
    DescribedDefinition part;
    part.items = {item(Type::BrepModel, "body")};
    description.definitions = {part};
    constexpr std::uint32_t levels = 20'000;
    for (std::uint32_t i = 0; i < levels; ++i) {
        description.definitions.push_back(assembly("level", {{i, 1}}));
    }
    description.root = levels;
    const FlatTree tree(description);
    EXPECT_EQ(tree.countAll(0, Type::ProductOccurrence), levels + 1);
    EXPECT_EQ(tree.placement(levels + 1)[3], levels);
    EXPECT_EQ(tree.node(levels + 1).kind, FlatTree::Kind::Occurrence);
    EXPECT_EQ(tree.type(levels + 3), Type::BrepModel);
}

TEST(OcctModel, OwnersGoThroughTheOccurrenceThatWasUsed) {
    const occt::OcctModel model(gears(), "");
    // The body of the gear in the second pair: two paths lead to the same definition.
    EXPECT_EQ(model.owners(23), (std::vector<HPS::ComponentId>{22, 21, 16, 1, 0}));
    EXPECT_EQ(model.owners(5), (std::vector<HPS::ComponentId>{4, 3, 2, 1, 0}));
    EXPECT_EQ(model.definition(23), model.definition(5));
    EXPECT_TRUE(model.owners(0).empty());
}

TEST(OcctModel, NamesAreThoseOfWhatAComponentShows) {
    const occt::OcctModel model(gears(), "");
    EXPECT_EQ(model.name(1), "top");
    EXPECT_EQ(model.name(3), "gear");
    EXPECT_EQ(model.name(4), "gear");
    EXPECT_EQ(model.name(5), "body");
    EXPECT_EQ(model.name(7), "Radius");
}

std::vector<std::string> keys(const occt::OcctModel& model, HPS::ComponentId id) {
    std::vector<std::string> out;
    for (const auto& value : model.metadata(id)) out.push_back(value->name);
    return out;
}

TEST(OcctModel, MetadataComeFromProductUsageAndFile) {
    Description description = gears();
    description.fileMetadata = {{"Header Author", std::string("A")}};
    description.definitions[0].metadata = {{"Material", std::string("steel")}};
    description.definitions[1].usages[1].metadata = {{"Position", std::int32_t{2}}};
    description.definitions[2].metadata = {{"Material", std::string("none")}};
    const occt::OcctModel model(std::move(description), "");
    using Keys = std::vector<std::string>;
    EXPECT_EQ(keys(model, 0), Keys{});
    EXPECT_EQ(keys(model, 1), (Keys{"Units", "Material", "Header Author"}));
    EXPECT_EQ(keys(model, 2), (Keys{"Units"}));
    EXPECT_EQ(keys(model, 3), (Keys{"Units", "Material"}));
    EXPECT_EQ(keys(model, 8), (Keys{"Units", "Material", "Position"}));
    EXPECT_EQ(keys(model, 4), Keys{});
    EXPECT_EQ(keys(model, 7), (Keys{"Value"}));
}

TEST(OcctModel, KeysOfAComponentAreUnique) {
    const std::string text = "x";
    Description description = gears();
    description.definitions[0].metadata = {{"Layer", text}, {"Layer", text}};
    description.definitions[1].usages[1].metadata = {{"Layer", text}, {"Position", text}};
    const occt::OcctModel model(std::move(description), "");
    using Keys = std::vector<std::string>;
    EXPECT_EQ(keys(model, 3), (Keys{"Units", "Layer", "Layer 2"}));
    EXPECT_EQ(keys(model, 8), (Keys{"Units", "Layer", "Layer 2", "Layer 3", "Position"}));
}

TEST(OcctModel, KeysOfTheRootAreUniqueBesideThoseOfTheFile) {
    const std::string text = "x";
    Description description = gears();
    description.fileMetadata = {{"Author", text}};
    description.definitions[description.root].metadata = {{"Author", text}, {"Units", text}};
    const occt::OcctModel model(std::move(description), "");
    EXPECT_EQ(keys(model, 1), (std::vector<std::string>{"Units", "Author", "Units 2", "Author 2"}));
    EXPECT_NE(std::get<std::string>(model.metadata(1)[0]->value), text) << "the product's unit";
}

TEST(OcctModel, ItemsWithoutAFolderHaveNoShape) {
    Description description = gears();
    description.definitions[0].items[0].label = "0:1:1:1";
    const occt::OcctModel model(std::move(description), "");
    EXPECT_TRUE(model.shape(5).IsNull());
    EXPECT_TRUE(model.shape(3).IsNull());
    EXPECT_EQ(model.identity(5), nullptr);
    EXPECT_EQ(model.contentDigest(3), "");
}

TEST(OcctModel, OnlyOneOfSeveralExactBodiesIsMultiBody) {
    Description description = gears();
    const occt::OcctModel one(description, "");
    EXPECT_FALSE(one.isMultiBody(5)) << "a mesh beside it does not count";
    description.definitions[0].items.push_back(item(Type::BrepModel, "second"));
    const occt::OcctModel two(description, "");
    EXPECT_TRUE(two.isMultiBody(5));
    EXPECT_FALSE(two.isMultiBody(6));
    EXPECT_FALSE(two.isMultiBody(4));
}

TEST(OcctModel, APlacementThatHasShrunkToNothingIsNone) {
    Description description = gears();
    for (auto& number : description.definitions[2].usages[0].placement) number = 0.0;
    const occt::OcctModel model(std::move(description), "");
    EXPECT_EQ(model.placement(2).TranslationPart().X(), 0.0);
    EXPECT_EQ(model.placement(12).TranslationPart().X(), 20.0);
}

}  // namespace
