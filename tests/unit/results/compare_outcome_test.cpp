#include "results/compare_outcome.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "platform/hps/component.h"
#include "tests/support/scripted_host_services.h"

namespace {

using bxtsg::OutcomeNode;
using bxtsg::ProductStructureOutcome;
using results::CompareOutcome;
using results::StructureOf;

HPS::CADModel model(const std::vector<std::string>& parts) {
    return HPS::CADModel(support::flatModel(parts));
}

TEST(OutcomeStructure, UnbuiltEngineIsEmpty) {
    const diff::AssemblyDiffEngine engine;
    const ProductStructureOutcome outcome = StructureOf(engine);
    EXPECT_TRUE(outcome.reference.empty());
    EXPECT_TRUE(outcome.compare.empty());
    EXPECT_TRUE(outcome.rows.empty());
}

TEST(OutcomeStructure, NodesComeInPreOrderWithoutTheRoots) {
    diff::AssemblyDiffEngine engine;
    engine.BuildAndDiff(model({"Bolt", "Nut"}), model({"Bolt", "Nut"}));
    const ProductStructureOutcome outcome = StructureOf(engine);
    ASSERT_EQ(outcome.reference.size(), 3U);
    EXPECT_EQ(outcome.reference[0].displayName, L"Top");
    EXPECT_EQ(outcome.reference[1].displayName, L"Bolt");
    EXPECT_EQ(outcome.reference[2].displayName, L"Nut");
    EXPECT_EQ(outcome.reference[0].level, 0);
    EXPECT_EQ(outcome.reference[2].level, 5);
    EXPECT_EQ(outcome.reference[2].siblingIndex, 1);
    EXPECT_TRUE(outcome.reference[0].hasSubcomponents);
    EXPECT_FALSE(outcome.reference[1].hasSubcomponents);
}

TEST(OutcomeStructure, ParentsAndPeersAreIndices) {
    diff::AssemblyDiffEngine engine;
    engine.BuildAndDiff(model({"Bolt", "Nut"}), model({"Washer", "Bolt", "Nut"}));
    const ProductStructureOutcome outcome = StructureOf(engine);
    const std::vector<std::int32_t> referenceParents = {-1, 0, 0};
    const std::vector<std::int32_t> compareParents = {-1, 0, 0, 0};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(outcome.reference[i].parent, referenceParents[i]);
    }
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(outcome.compare[i].parent, compareParents[i]);
    EXPECT_EQ(outcome.reference[0].peer, 0);
    EXPECT_EQ(outcome.reference[1].peer, 2);
    EXPECT_EQ(outcome.reference[2].peer, 3);
    EXPECT_EQ(outcome.compare[1].peer, -1);
    EXPECT_EQ(outcome.compare[3].peer, 2);
}

TEST(OutcomeStructure, EveryFieldOfANodeIsCopied) {
    diff::AssemblyDiffEngine engine;
    engine.BuildAndDiff(model({"Bolt", "Nut"}), model({"Nut", "Bolt"}));
    extract::AssemblyNode* node = engine.referenceRoot()->children[0]->children[1];
    const OutcomeNode copy = StructureOf(engine).reference[2];
    EXPECT_EQ(copy.name, node->name);
    EXPECT_EQ(copy.displayName, node->displayName);
    EXPECT_EQ(copy.level, node->level);
    EXPECT_EQ(copy.siblingIndex, node->siblingIndex);
    EXPECT_EQ(copy.state, 4);
    EXPECT_EQ(copy.referenceGroupCount, 1);
    EXPECT_EQ(copy.compareGroupCount, 1);
    EXPECT_EQ(copy.hasSubcomponents, node->hasSubcomponents);
    EXPECT_EQ(copy.movedFromPath, node->movedFromPath);
    EXPECT_EQ(copy.movedToPath, L"Top.Nut");
}

TEST(OutcomeStructure, RowsHaveGapsWhereASideHasNoNode) {
    diff::AssemblyDiffEngine engine;
    engine.BuildAndDiff(model({"Bolt", "Pin"}), model({"Bolt", "Washer"}));
    const ProductStructureOutcome outcome = StructureOf(engine);
    std::vector<std::pair<std::int32_t, std::int32_t>> rows;
    for (const auto& row : outcome.rows) rows.emplace_back(row.reference, row.compare);
    const std::vector<std::pair<std::int32_t, std::int32_t>> expected = {
        {0, 0}, {1, 1}, {-1, 2}, {2, -1}};
    EXPECT_EQ(rows, expected);
}

TEST(OutcomeStructure, OneEmptyModelGivesOneSide) {
    diff::AssemblyDiffEngine engine;
    engine.BuildAndDiff(model({"Bolt"}), HPS::CADModel());
    const ProductStructureOutcome outcome = StructureOf(engine);
    EXPECT_EQ(outcome.reference.size(), 2U);
    EXPECT_TRUE(outcome.compare.empty());
    for (const auto& row : outcome.rows) EXPECT_EQ(row.compare, -1);
}

ProductStructureOutcome someStructure() {
    ProductStructureOutcome structure;
    structure.rows.push_back({0, 0});
    return structure;
}

TEST(Outcome, AsksItsSourceOnceOnFirstNeed) {
    int asked = 0;
    CompareOutcome outcome(L"/r", L"/c", [&] {
        ++asked;
        return someStructure();
    });
    EXPECT_EQ(outcome.referencePath(), L"/r");
    EXPECT_EQ(outcome.comparePath(), L"/c");
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(outcome.productStructure().rows.size(), 1U);
    EXPECT_EQ(outcome.productStructure().rows.size(), 1U);
    EXPECT_EQ(asked, 1);
}

TEST(Outcome, StaysEmptyWhenReleasedBeforeTheFirstNeed) {
    CompareOutcome outcome(L"", L"", someStructure);
    outcome.Release();
    EXPECT_TRUE(outcome.productStructure().rows.empty());
}

TEST(Outcome, KeepsWhatItHasWhenReleasedLater) {
    CompareOutcome outcome(L"", L"", someStructure);
    const auto* rows = &outcome.productStructure().rows;
    outcome.Release();
    EXPECT_EQ(&outcome.productStructure().rows, rows);
    EXPECT_EQ(rows->size(), 1U);
}

TEST(OutcomeSections, EveryFieldIsCopied) {
    results::ResultData data;
    data.bom.referenceNames = {L"Bolt"};
    data.bom.referenceValues = {L"2"};
    data.bom.compareNames = {L"Nut"};
    data.bom.compareValues = {L"3"};
    data.bom.referenceStates = {extract::ItemDiffState::OnlyInReference};
    data.bom.compareStates = {extract::ItemDiffState::OnlyInCompare};
    data.fileInfo.referenceNames = {L"File Path"};
    data.attributes.compareValues = {L"x"};
    data.pmi.referenceStates = {extract::ItemDiffState::Different};
    data.referenceParts.resize(1);
    data.referenceParts[0].name = L"Bolt";
    data.referenceParts[0].attributes = {{L"k", L"v", extract::ItemDiffState::Different}};
    data.referenceParts[0].isDifferent = true;
    data.compareParts.resize(2);
    data.compareParts[0].name = L"Nut";
    data.compareParts[1].name = L"BOLT";
    data.compareParts[0].state = extract::ItemDiffState::OnlyInCompare;
    data.referenceVolume = 2;
    data.compareVolume = 3;
    data.referenceUnit = L"mm";
    data.compareUnit = L"in";
    const bxtsg::SectionsOutcome outcome = results::SectionsOf(data);
    EXPECT_EQ(outcome.billOfMaterials.referenceNames[0], L"Bolt");
    EXPECT_EQ(outcome.billOfMaterials.referenceValues[0], L"2");
    EXPECT_EQ(outcome.billOfMaterials.compareNames[0], L"Nut");
    EXPECT_EQ(outcome.billOfMaterials.compareValues[0], L"3");
    EXPECT_EQ(outcome.billOfMaterials.referenceStates[0], 1);
    EXPECT_EQ(outcome.billOfMaterials.compareStates[0], 2);
    EXPECT_EQ(outcome.fileInformation.referenceNames[0], L"File Path");
    EXPECT_EQ(outcome.attributes.compareValues[0], L"x");
    EXPECT_EQ(outcome.pmi.referenceStates[0], 3);
    EXPECT_EQ(outcome.referenceParts[0].attributes[0].key, L"k");
    EXPECT_EQ(outcome.referenceParts[0].attributes[0].value, L"v");
    EXPECT_EQ(outcome.referenceParts[0].attributes[0].state, 3);
    EXPECT_TRUE(outcome.referenceParts[0].isDifferent);
    EXPECT_EQ(outcome.compareParts[0].state, 2);
    ASSERT_EQ(outcome.partRows.size(), 2U);
    EXPECT_EQ(outcome.partRows[0].reference, -1);
    EXPECT_EQ(outcome.partRows[1].reference, 0);
    EXPECT_EQ(outcome.referenceVolume, 2);
    EXPECT_EQ(outcome.compareVolume, 3);
    EXPECT_EQ(outcome.referenceUnit, L"mm");
    EXPECT_EQ(outcome.compareUnit, L"in");
}

bxtsg::SectionsOutcome someSections() {
    bxtsg::SectionsOutcome sections;
    sections.order = {0};
    return sections;
}

TEST(Outcome, RowsAreAskedForOnceAndKeptWhenReleasedLater) {
    int asked = 0;
    CompareOutcome outcome(L"", L"", someStructure, [&] {
        ++asked;
        return someSections();
    });
    EXPECT_EQ(outcome.sections().order.size(), 1U);
    outcome.Release();
    EXPECT_EQ(outcome.sections().order.size(), 1U);
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(outcome.productStructure().rows.empty());
}

TEST(Outcome, RowsStayEmptyWhenReleasedOrWithoutASource) {
    CompareOutcome released(L"", L"", someStructure, someSections);
    released.Release();
    EXPECT_TRUE(released.sections().order.empty());
    CompareOutcome without(L"", L"", someStructure);
    EXPECT_TRUE(without.sections().order.empty());
}

TEST(Outcome, AModelThatCannotBeWalkedGivesAnEmptyStructure) {
    support::TestServices services;
    int asked = 0;
    CompareOutcome outcome(L"", L"", [&]() -> ProductStructureOutcome {
        ++asked;
        throw std::runtime_error("model is gone");
    });
    EXPECT_TRUE(outcome.productStructure().rows.empty());
    EXPECT_TRUE(outcome.productStructure().rows.empty());
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(services.log->entries(), std::vector<std::string>{"debug model is gone"});
}

}  // namespace
