#include "diff/pmi_data_loader.h"

#include <gtest/gtest.h>

#include "tests/support/memory_model.h"
#include "tests/support/scoped_pmi.h"
#include "tests/unit/diff/unreadable_names.h"

namespace {

using diff::PMIDataLoader;
using extract::ItemDiffState;
using extract::PMIRow;
using support::pmi;

using Names = std::vector<std::wstring>;
using States = std::vector<ItemDiffState>;
using Items = std::vector<std::pair<const char*, const char*>>;

constexpr auto kSame = ItemDiffState::Unchanged;
constexpr auto kReference = ItemDiffState::OnlyInReference;
constexpr auto kCompare = ItemDiffState::OnlyInCompare;
constexpr auto kDifferent = ItemDiffState::Different;

HPS::CADModel model(const Items& items) {
    std::vector<support::ComponentShape> shapes;
    for (const auto& [name, text] : items) shapes.push_back(pmi(name, text));
    return support::makeModel({support::occurrence("part", shapes)});
}

class PmiLoader : public testing::Test {
protected:
    void load(const Items& reference, const Items& compare) {
        loader_.LoadAndComparePMI(model(reference), model(compare));
    }
    support::ScopedPmi texts_;
    PMIDataLoader loader_;
};

TEST_F(PmiLoader, ModelsWithoutPmiHaveOneUnchangedRowEach) {
    load({}, {});
    ASSERT_EQ(loader_.referenceRows.size(), 1U);
    EXPECT_EQ(loader_.referenceRows[0].name, L"No PMI");
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
    loader_.LoadAndComparePMI(HPS::CADModel(), HPS::CADModel());
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

TEST_F(PmiLoader, PmiOfTheCompareAloneIsItsAlone) {
    load({}, {{"a", "1"}, {"b", "2"}});
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kCompare, kCompare}));
}

TEST_F(PmiLoader, PmiOfTheReferenceAloneIsItsAlone) {
    load({{"a", "1"}}, {});
    EXPECT_EQ(loader_.referenceStates, (States{kReference}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

TEST_F(PmiLoader, AnotherTextIsADifferenceOnBothSides) {
    load({{"a", "12 +0.1"}, {"b", "5"}}, {{"a", "12 +0.2"}, {"b", "5"}});
    EXPECT_EQ(loader_.referenceStates, (States{kDifferent, kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kDifferent, kSame}));
}

TEST_F(PmiLoader, NamesThatDifferInCaseMatchAndTextsDoNot) {
    load({{"Flatness", "a"}, {"Note", "x"}}, {{"FLATNESS", "a"}, {"NOTE", "X"}});
    EXPECT_EQ(loader_.referenceStates, (States{kSame, kDifferent}));
    EXPECT_EQ(loader_.compareStates, (States{kSame, kDifferent}));
}

TEST_F(PmiLoader, NamesOfMixedCaseCanCountAsOneSided) {
    const Items items = {{"a", "1"}, {"B", "2"}, {"C", "3"}};
    load(items, items);
    EXPECT_EQ(loader_.referenceStates, (States{kSame, kSame, kReference}));
    EXPECT_EQ(loader_.compareStates, (States{kSame, kSame, kCompare}));
}

TEST_F(PmiLoader, RowsOfOneNameAreComparedToWhicheverIsMet) {
    load({{"a", "1"}, {"a", "2"}}, {{"a", "2"}});
    EXPECT_EQ(loader_.referenceStates, (States{kDifferent, kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kDifferent}));
}

TEST_F(PmiLoader, RowsNamedNoPmiAreNeverADifference) {
    std::vector<PMIRow> reference = {{L"No PMI", L"-"}, {L"no pmi", L"-"}};
    std::vector<PMIRow> compare;
    States referenceStates(7, kDifferent), compareStates(7, kDifferent);
    PMIDataLoader::ComparePMI(reference, compare, referenceStates, compareStates);
    EXPECT_EQ(referenceStates, (States{kSame, kReference}));
    EXPECT_TRUE(compareStates.empty());
    PMIDataLoader::ComparePMI(compare, reference, compareStates, referenceStates);
    EXPECT_EQ(referenceStates, (States{kSame, kCompare}));
}

TEST_F(PmiLoader, LoadingAgainReplacesEverything) {
    load({{"a", "1"}, {"b", "1"}}, {{"c", "1"}});
    load({{"d", "1"}}, {{"d", "1"}});
    EXPECT_EQ(loader_.referenceRows.size(), 1U);
    EXPECT_EQ(loader_.compareRows.size(), 1U);
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
}

HPS::CADModel unreadable(const char* cause) {
    return withUnreadableNames(support::occurrence("part", {pmi("x", "1")}), cause);
}

TEST_F(PmiLoader, AnUnreadableReferenceLeavesNothingOfTheModelsBefore) {
    load({{"a", "1"}}, {{"b", "2"}});
    try {
        loader_.LoadAndComparePMI(unreadable("reference"), unreadable("compare"));
        FAIL() << "no exception";
    } catch (const HPS::Exception& exception) {
        EXPECT_STREQ(exception.what(), "reference");
    }
    EXPECT_TRUE(loader_.referenceRows.empty());
    EXPECT_TRUE(loader_.compareRows.empty());
    EXPECT_TRUE(loader_.referenceStates.empty());
    EXPECT_TRUE(loader_.compareStates.empty());
}

TEST_F(PmiLoader, BothSidesCanBeCopied) {
    load({{"a", "1"}}, {{"b", "2"}, {"c", ""}});
    Names names = {L"old"}, values = {L"old"};
    States states;
    loader_.ReadReference(names, values, states);
    EXPECT_EQ(names, (Names{L"a"}));
    EXPECT_EQ(values, (Names{L"1"}));
    EXPECT_EQ(states, (States{kReference}));
    loader_.ReadCompare(names, values, states);
    EXPECT_EQ(names, (Names{L"b", L"c"}));
    EXPECT_EQ(values, (Names{L"2", L" - "}));
    EXPECT_EQ(states, (States{kCompare, kCompare}));
}

}  // namespace
