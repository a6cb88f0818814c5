#include "diff/attrib_data_loader.h"

#include <gtest/gtest.h>

#include "platform/hps/exception.h"
#include "tests/support/memory_model.h"
#include "tests/support/scripted_host_services.h"

namespace {

using diff::AttribDataLoader;
using extract::ItemDiffState;
using support::ComponentShape;
using support::makeModel;
using support::occurrence;
using support::part;

using Names = std::vector<std::wstring>;
using States = std::vector<ItemDiffState>;
using Pairs = std::vector<std::pair<const char*, const char*>>;

constexpr auto kSame = ItemDiffState::Unchanged;
constexpr auto kReference = ItemDiffState::OnlyInReference;
constexpr auto kCompare = ItemDiffState::OnlyInCompare;
constexpr auto kDifferent = ItemDiffState::Different;

ComponentShape with(ComponentShape shape, const Pairs& pairs) {
    for (const auto& [key, value] : pairs) shape = shape.with(key, std::string(value));
    return shape;
}
HPS::CADModel file(const Pairs& pairs) {
    return makeModel({with(occurrence("top", {part("a")}), pairs)});
}

class AttribLoader : public testing::Test {
protected:
    void loadFiles(const Pairs& reference, const Pairs& compare) {
        loader_.LoadFileAttributes(file(reference), file(compare));
    }
    AttribDataLoader loader_;
};

TEST_F(AttribLoader, ModelsWithoutAttributesHaveNoRows) {
    loadFiles({}, {});
    EXPECT_TRUE(loader_.referenceNames.empty());
    EXPECT_TRUE(loader_.compareNames.empty());
    EXPECT_TRUE(loader_.referenceStates.empty());
    EXPECT_TRUE(loader_.compareStates.empty());
    loader_.LoadFileAttributes(HPS::CADModel(), HPS::CADModel());
    loader_.LoadPartAttributes(HPS::CADModel(), HPS::CADModel());
    EXPECT_TRUE(loader_.referenceNames.empty());
    EXPECT_TRUE(loader_.referenceParts.empty());
    EXPECT_TRUE(loader_.compareParts.empty());
}

TEST_F(AttribLoader, EqualRowsAreUnchangedOnBothSides) {
    loadFiles({{"Author", "A"}}, {{"Author", "A"}});
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

TEST_F(AttribLoader, ValuesThatDifferInCaseAreDifferentOnBothSides) {
    loadFiles({{"Author", "Ann"}}, {{"Author", "ANN"}});
    EXPECT_EQ(loader_.referenceStates, (States{kDifferent}));
    EXPECT_EQ(loader_.compareStates, (States{kDifferent}));
}

TEST_F(AttribLoader, NamesThatDifferInCaseMatch) {
    loadFiles({{"Mass", "1"}}, {{"mass", "1"}});
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
    loadFiles({{"Mass", "kg"}}, {{"mass", "KG"}});
    EXPECT_EQ(loader_.referenceStates, (States{kDifferent}));
    EXPECT_EQ(loader_.compareStates, (States{kDifferent}));
}

TEST_F(AttribLoader, RowsOfOneSideAreNotAligned) {
    loadFiles({{"a", "1"}, {"c", "3"}}, {{"b", "2"}, {"c", "3"}, {"d", "4"}});
    EXPECT_EQ(loader_.referenceNames, (Names{L"a", L"c"}));
    EXPECT_EQ(loader_.referenceStates, (States{kReference, kSame}));
    EXPECT_EQ(loader_.compareNames, (Names{L"b", L"c", L"d"}));
    EXPECT_EQ(loader_.compareStates, (States{kCompare, kSame, kCompare}));
}

// Both files are the same, and a still counts as one-sided: sorted after B, searched before it.
TEST_F(AttribLoader, NamesOfMixedCaseCanCountAsOneSided) {
    const Pairs pairs = {{"a", "1"}, {"B", "2"}, {"C", "3"}};
    loadFiles(pairs, pairs);
    EXPECT_EQ(loader_.referenceNames, (Names{L"B", L"C", L"a"}));
    EXPECT_EQ(loader_.referenceStates, (States{kSame, kSame, kReference}));
    EXPECT_EQ(loader_.compareStates, (States{kSame, kSame, kCompare}));
}

TEST_F(AttribLoader, RowsOfOneNameAreComparedToWhicheverIsMet) {
    loadFiles({{"k", "1"}, {"k", "2"}, {"k", "3"}}, {{"k", "2"}});
    EXPECT_EQ(loader_.referenceStates, (States{kDifferent, kSame, kDifferent}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

TEST_F(AttribLoader, NoAttributesIsNeverADifference) {
    loadFiles({{"No Attributes", "x"}}, {{"No attributes", "y"}, {"z", "1"}});
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kDifferent, kCompare}));
    loadFiles({{"No Attributes", "x"}}, {});
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    loadFiles({}, {{"No Attributes", "x"}});
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

TEST_F(AttribLoader, EmptyTextsAreComparedAsTheyAreShown) {
    loadFiles({{"", ""}}, {{" - ", " - "}});
    EXPECT_EQ(loader_.referenceStates, (States{kSame}));
    EXPECT_EQ(loader_.compareStates, (States{kSame}));
}

TEST_F(AttribLoader, LoadingAgainReplacesEverything) {
    loadFiles({{"a", "1"}, {"b", "1"}}, {{"c", "1"}});
    loadFiles({{"d", "1"}}, {});
    EXPECT_EQ(loader_.referenceNames, (Names{L"d"}));
    EXPECT_EQ(loader_.referenceValues, (Names{L"1"}));
    EXPECT_EQ(loader_.referenceStates, (States{kReference}));
    EXPECT_TRUE(loader_.compareNames.empty());
    EXPECT_TRUE(loader_.compareValues.empty());
    EXPECT_TRUE(loader_.compareStates.empty());
}

TEST_F(AttribLoader, BothSidesCanBeCopied) {
    loadFiles({{"a", "1"}}, {{"b", "2"}});
    Names names = {L"old"}, values = {L"old"};
    States states = {kDifferent, kDifferent};
    loader_.ReadReference(names, values, states);
    EXPECT_EQ(names, (Names{L"a"}));
    EXPECT_EQ(values, (Names{L"1"}));
    EXPECT_EQ(states, (States{kReference}));
    loader_.ReadCompare(names, values, states);
    EXPECT_EQ(names, (Names{L"b"}));
    EXPECT_EQ(values, (Names{L"2"}));
    EXPECT_EQ(states, (States{kCompare}));
    EXPECT_EQ(loader_.referenceNames, (Names{L"a"}));
}

TEST_F(AttribLoader, PartsAreReadAndCompared) {
    const auto model = [](const char* mass) {
        return makeModel({occurrence("top", {with(part("a"), {{"Mass", mass}}), part("b")})});
    };
    loader_.LoadPartAttributes(model("1"), model("2"));
    ASSERT_EQ(loader_.referenceParts.size(), 2U);
    ASSERT_EQ(loader_.compareParts.size(), 2U);
    EXPECT_TRUE(loader_.referenceParts[0].isDifferent);
    EXPECT_EQ(loader_.referenceParts[0].attributes[0].state, kDifferent);
    EXPECT_EQ(loader_.compareParts[0].attributes[0].state, kDifferent);
    EXPECT_FALSE(loader_.compareParts[1].isDifferent);
    loader_.LoadPartAttributes(model("1"), HPS::CADModel());
    EXPECT_EQ(loader_.referenceParts.size(), 2U);
    EXPECT_EQ(loader_.referenceParts[1].state, kReference);
    EXPECT_TRUE(loader_.compareParts.empty());
}

// A model in which nothing can be read.
HPS::CADModel unreadable(const char* cause = "gone") {
    class Unreadable : public support::MemoryModel {
    public:
        explicit Unreadable(const char* cause) : cause_(cause) {}
        std::vector<std::shared_ptr<const HPS::MetadataValue>> metadata(
            HPS::ComponentId) const override {
            throw HPS::InvalidObjectException(cause_);
        }

    private:
        const char* cause_;
    };
    support::MemoryModel::Builder builder(std::make_unique<Unreadable>(cause));
    builder.addShape(0, occurrence("top", {part("a")}));
    return HPS::CADModel(builder.finish());
}

TEST_F(AttribLoader, AnUnreadableModelLeavesTheOtherSidesParts) {
    const support::TestServices services;
    loader_.LoadPartAttributes(unreadable(), makeModel({occurrence("top", {part("a")})}));
    EXPECT_TRUE(loader_.referenceParts.empty());
    ASSERT_EQ(loader_.compareParts.size(), 1U);
    EXPECT_EQ(loader_.compareParts[0].state, kCompare);
    EXPECT_EQ(services.log->entries().size(), 2U);
}

TEST_F(AttribLoader, TheReferencesPartsAreReadFirst) {
    const support::TestServices services;
    loader_.LoadPartAttributes(unreadable("reference"), unreadable("compare"));
    ASSERT_EQ(services.log->entries().size(), 4U);
    EXPECT_EQ(services.log->entries()[1], "debug reference");
    EXPECT_EQ(services.log->entries()[3], "debug compare");
}

TEST_F(AttribLoader, AnUnreadableFilesExceptionPassesThrough) {
    loadFiles({{"a", "1"}}, {{"b", "2"}});
    try {
        loader_.LoadFileAttributes(unreadable("reference"), unreadable("compare"));
        FAIL() << "no exception";
    } catch (const HPS::InvalidObjectException& exception) {
        EXPECT_STREQ(exception.what(), "reference");
    }
    // Nothing of the files before is left.
    for (const Names* list : {&loader_.referenceNames, &loader_.referenceValues,
                              &loader_.compareNames, &loader_.compareValues}) {
        EXPECT_TRUE(list->empty());
    }
    EXPECT_TRUE(loader_.referenceStates.empty());
    EXPECT_TRUE(loader_.compareStates.empty());
}

}  // namespace
