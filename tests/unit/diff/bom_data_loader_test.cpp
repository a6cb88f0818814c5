#include "diff/bom_data_loader.h"

#include <gtest/gtest.h>

#include "tests/support/memory_model.h"
#include "tests/unit/diff/unreadable_names.h"

namespace {

using diff::BOMDataLoader;
using extract::BOMRow;
using extract::ItemDiffState;

using Names = std::vector<std::wstring>;
using States = std::vector<ItemDiffState>;

constexpr auto kSame = ItemDiffState::Unchanged;
constexpr auto kReference = ItemDiffState::OnlyInReference;
constexpr auto kCompare = ItemDiffState::OnlyInCompare;

HPS::CADModel model(const std::vector<const char*>& parts) {
    std::vector<support::ComponentShape> shapes;
    for (const char* name : parts) shapes.push_back(support::part(name));
    return support::makeModel({support::occurrence("top", shapes)});
}

class BomLoader : public testing::Test {
protected:
    void load(const std::vector<const char*>& reference, const std::vector<const char*>& compare) {
        loader_.LoadAndCompareBOM(model(reference), model(compare));
    }
    static Names names(const std::vector<BOMRow>& rows) {
        Names out;
        for (const BOMRow& row : rows) out.push_back(row.partName);
        return out;
    }
    BOMDataLoader loader_;
};

TEST_F(BomLoader, EmptyModelsHaveNoRows) {
    loader_.LoadAndCompareBOM(HPS::CADModel(), HPS::CADModel());
    EXPECT_TRUE(loader_.referenceRows.empty());
    EXPECT_TRUE(loader_.compareRows.empty());
    EXPECT_TRUE(loader_.referenceStates.empty());
    EXPECT_TRUE(loader_.compareStates.empty());
}

TEST_F(BomLoader, AnEmptyCompareLeavesTheReferenceOnItsOwn) {
    loader_.LoadAndCompareBOM(model({"a", "b"}), HPS::CADModel());
    EXPECT_EQ(loader_.referenceStates, (States{kReference, kReference}));
    EXPECT_TRUE(loader_.compareRows.empty());
    EXPECT_TRUE(loader_.compareStates.empty());
    loader_.LoadAndCompareBOM(HPS::CADModel(), model({"a"}));
    EXPECT_EQ(loader_.compareStates, (States{kCompare}));
}

TEST_F(BomLoader, QuantitiesTakeNoPart) {
    load({"Bolt", "Bolt", "Bolt", "Bolt"}, {"Bolt", "Bolt"});
    EXPECT_EQ(loader_.referenceRows[0].quantity, 4);
    EXPECT_EQ(loader_.compareRows[0].quantity, 2);
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

TEST_F(BomLoader, FileNamesTakeNoPart) {
    const auto from = [](const char* file) {
        return support::makeModel({support::part("Bolt").with("Filename", std::string(file))});
    };
    loader_.LoadAndCompareBOM(from("a.prt"), from("b.prt"));
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

TEST_F(BomLoader, NamesMatchWithoutRegardToCase) {
    load({"NUT", "\xC3\x84xis"}, {"nut", "\xC3\xA4XIS"});
    EXPECT_EQ(loader_.referenceStates, (States{kSame, kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame, kSame}));
}

TEST_F(BomLoader, RowsAreSortedWithoutRegardToCaseAndStable) {
    load({"b", "C", "a", "B", "_", "A", "D"}, {"c", "E", "a"});
    EXPECT_EQ(names(loader_.referenceRows), (Names{L"_", L"a", L"A", L"b", L"B", L"C", L"D"}));
    EXPECT_EQ(loader_.referenceStates,
              (States{kReference, kSame, kSame, kReference, kReference, kSame, kReference}));
    EXPECT_EQ(names(loader_.compareRows), (Names{L"a", L"c", L"E"}));
    EXPECT_EQ(loader_.compareStates, (States{kSame, kSame, kCompare}));
}

// Long enough for a sort that does not keep the order to show it.
TEST_F(BomLoader, ManyEqualNamesKeepTheirOrder) {
    std::vector<support::ComponentShape> shapes;
    for (int i = 100; i < 200; ++i) {
        shapes.push_back(support::part("Bolt").with("Filename", std::to_string(299 - i)));
    }
    loader_.LoadAndCompareBOM(support::makeModel(shapes), HPS::CADModel());
    ASSERT_EQ(loader_.referenceRows.size(), 100U);
    for (std::size_t i = 0; i < 100; ++i) {
        EXPECT_EQ(loader_.referenceRows[i].fileName, std::to_wstring(199 - i));
    }
}

TEST_F(BomLoader, ComparingWritesOneStatePerRow) {
    const std::vector<BOMRow> reference = {{L"a", L"", 1}, {L"b", L"", 1}};
    const std::vector<BOMRow> compare = {{L"B", L"x", 7}};
    States referenceStates(5, ItemDiffState::Different), compareStates;
    BOMDataLoader::CompareBOM(reference, compare, referenceStates, compareStates);
    EXPECT_EQ(referenceStates, (States{kReference, kSame}));
    EXPECT_EQ(compareStates, (States{kSame}));
}

TEST_F(BomLoader, LoadingAgainReplacesEverything) {
    load({"a", "b"}, {"c"});
    load({"d"}, {"d"});
    EXPECT_EQ(names(loader_.referenceRows), (Names{L"d"}));
    EXPECT_EQ(names(loader_.compareRows), (Names{L"d"}));
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

HPS::CADModel unreadable(const char* cause) {
    return withUnreadableNames(support::part("x"), cause);
}

TEST_F(BomLoader, AnUnreadableReferenceLeavesNothingOfTheModelsBefore) {
    load({"a"}, {"b"});
    try {
        loader_.LoadAndCompareBOM(unreadable("reference"), unreadable("compare"));
        FAIL() << "no exception";
    } catch (const HPS::Exception& exception) {
        EXPECT_STREQ(exception.what(), "reference");
    }
    EXPECT_TRUE(loader_.referenceRows.empty());
    EXPECT_TRUE(loader_.compareRows.empty());
    EXPECT_TRUE(loader_.referenceStates.empty());
    EXPECT_TRUE(loader_.compareStates.empty());
}

TEST_F(BomLoader, BothSidesCanBeCopied) {
    load({"", "a", "a"}, {"b"});
    Names names = {L"old"}, quantities = {L"old"};
    States states;
    loader_.ReadReference(names, quantities, states);
    EXPECT_EQ(names, (Names{L" - ", L"a"}));
    EXPECT_EQ(quantities, (Names{L"1", L"2"}));
    EXPECT_EQ(states, (States{kReference, kReference}));
    loader_.ReadCompare(names, quantities, states);
    EXPECT_EQ(names, (Names{L"b"}));
    EXPECT_EQ(quantities, (Names{L"1"}));
    EXPECT_EQ(states, (States{kCompare}));
}

}  // namespace
