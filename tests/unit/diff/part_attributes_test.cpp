#include "diff/part_attributes.h"

#include <gtest/gtest.h>

#include "tests/unit/diff/part_records.h"

namespace {

using extract::ItemDiffState;
using extract::PartAttributes;
using Parts = std::vector<PartAttributes>;
using Lines = std::vector<std::string>;

class PartComparison : public testing::Test {
protected:
    void compare(Parts reference, Parts compared) {
        reference_ = std::move(reference);
        compare_ = std::move(compared);
        diff::ComparePartAttributes(reference_, compare_);
    }
    Lines reference() const { return shownParts(reference_); }
    Lines compared() const { return shownParts(compare_); }
    Parts reference_;
    Parts compare_;
};

TEST_F(PartComparison, NoRecordsAreNoDifference) {
    compare({}, {});
    EXPECT_TRUE(reference_.empty());
    EXPECT_TRUE(compare_.empty());
}

TEST_F(PartComparison, EqualRecordsAreUnchanged) {
    compare({record("a", {{"k", "1"}}), record("b")}, {record("a", {{"k", "1"}}), record("b")});
    EXPECT_EQ(reference(), (Lines{"a 0 k0", "b 0"}));
    EXPECT_EQ(compared(), (Lines{"a 0 k0", "b 0"}));
}

TEST_F(PartComparison, WhatWasWrittenBeforeIsReset) {
    PartAttributes old = record("a", {{"k", "1"}});
    old.isDifferent = true;
    old.state = ItemDiffState::OnlyInReference;
    old.attributes[0].state = ItemDiffState::Different;
    compare({old}, {old});
    EXPECT_EQ(reference(), (Lines{"a 0 k0"}));
    EXPECT_EQ(compared(), (Lines{"a 0 k0"}));
}

TEST_F(PartComparison, NamesMatchWithoutRegardToCase) {
    compare({record("Bolt", {{"k", "1"}}), record("\u00C4xis")},
            {record("BOLT", {{"k", "1"}}), record("\u00E4XIS")});
    EXPECT_EQ(compared(), (Lines{"BOLT 0 k0", "\u00E4XIS 0"}));
}

TEST_F(PartComparison, NamesThatDifferOtherwiseDoNotMatch) {
    compare({record("Bolt ", {{"k", "1"}})}, {record("Bolt", {{"k", "1"}})});
    EXPECT_EQ(reference(), (Lines{"Bolt  1* k1"}));
    EXPECT_EQ(compared(), (Lines{"Bolt 2* k2"}));
}

TEST_F(PartComparison, InstancesPairInTheirOrder) {
    compare(
        {record("Bolt", {{"k", "1"}}), record("Bolt", {{"k", "2"}}), record("Bolt", {{"k", "3"}})},
        {record("Bolt", {{"k", "1"}}), record("bolt", {{"k", "3"}})});
    EXPECT_EQ(reference(), (Lines{"Bolt 0 k0", "Bolt 0* k3", "Bolt 1* k1"}));
    EXPECT_EQ(compared(), (Lines{"Bolt 0 k0", "bolt 0* k3"}));
}

TEST_F(PartComparison, MoreInstancesInTheCompareAreItsAlone) {
    compare({record("Bolt")}, {record("Bolt"), record("Bolt", {{"k", "1"}})});
    EXPECT_EQ(reference(), (Lines{"Bolt 0"}));
    EXPECT_EQ(compared(), (Lines{"Bolt 0", "Bolt 2* k2"}));
}

TEST_F(PartComparison, PartsOfOneSideCarryTheirStateOnEveryAttribute) {
    compare({record("a", {{"k", "1"}, {"l", "2"}})}, {record("b", {{"k", "1"}, {"m", "2"}})});
    EXPECT_EQ(reference(), (Lines{"a 1* k1 l1"}));
    EXPECT_EQ(compared(), (Lines{"b 2* k2 m2"}));
}

TEST_F(PartComparison, KeysMatchWithoutRegardToCaseAndValuesWithIt) {
    compare({record("a", {{"Mass", "1"}, {"Material", "steel"}})},
            {record("a", {{"MASS", "1"}, {"material", "Steel"}})});
    EXPECT_EQ(reference(), (Lines{"a 0* Mass0 Material3"}));
    EXPECT_EQ(compared(), (Lines{"a 0* MASS0 material3"}));
}

TEST_F(PartComparison, AttributesOfOneSideAreMarkedThere) {
    compare({record("a", {{"k", "1"}, {"r", "2"}})}, {record("a", {{"c", "3"}, {"k", "1"}})});
    EXPECT_EQ(reference(), (Lines{"a 0* k0 r1"}));
    EXPECT_EQ(compared(), (Lines{"a 0* c2 k0"}));
    compare({record("a", {{"k", "1"}})}, {record("a")});
    EXPECT_EQ(reference(), (Lines{"a 0* k1"}));
    EXPECT_EQ(compared(), (Lines{"a 0*"}));
}

TEST_F(PartComparison, TheOrderOfAttributesDoesNotMatter) {
    compare({record("a", {{"k", "1"}, {"l", "2"}})}, {record("a", {{"l", "2"}, {"k", "1"}})});
    EXPECT_EQ(reference(), (Lines{"a 0 k0 l0"}));
}

TEST_F(PartComparison, OnlyTheReferenceHasSubcomponents) {
    compare({record("a", {{"k", "1"}, {"l", "2"}}, true)}, {record("a", {{"k", "2"}}, false)});
    EXPECT_EQ(reference(), (Lines{"a 1* k1 l1"}));
    EXPECT_EQ(compared(), (Lines{"a 0 k0"}));
}

TEST_F(PartComparison, OnlyTheCompareHasSubcomponents) {
    compare({record("a", {{"k", "1"}}, false)}, {record("a", {{"k", "2"}, {"l", "2"}}, true)});
    EXPECT_EQ(reference(), (Lines{"a 0 k0"}));
    EXPECT_EQ(compared(), (Lines{"a 2* k2 l2"}));
}

TEST_F(PartComparison, NeitherHasSubcomponents) {
    compare({record("a", {{"k", "1"}}, false)}, {record("a", {{"k", "2"}}, false)});
    EXPECT_EQ(reference(), (Lines{"a 0* k3"}));
}

// The pair counts as taken although nothing in it was compared.
TEST_F(PartComparison, ARecordOfAnotherKindIsUsedUp) {
    compare({record("a", {}, true), record("a", {}, false)},
            {record("a", {}, false), record("a", {}, false)});
    EXPECT_EQ(reference(), (Lines{"a 1*", "a 0"}));
    EXPECT_EQ(compared(), (Lines{"a 0", "a 0"}));
}

TEST_F(PartComparison, FileNamesTakeNoPart) {
    PartAttributes reference = record("a", {{"k", "1"}});
    PartAttributes compared = reference;
    reference.fileName = L"one.prt";
    compared.fileName = L"other.prt";
    compare({reference}, {compared});
    EXPECT_FALSE(reference_[0].isDifferent);
    EXPECT_FALSE(compare_[0].isDifferent);
}

TEST_F(PartComparison, OfEqualKeysTheFirstIsComparedAndAllAreMet) {
    compare({record("a", {{"k", "1"}, {"K", "2"}})}, {record("a", {{"k", "1"}, {"K", "3"}})});
    EXPECT_EQ(reference(), (Lines{"a 0* k3 K0"}));
    EXPECT_EQ(compared(), (Lines{"a 0* k0 K3"}));
    compare({record("a", {{"k", "1"}, {"K", "2"}})}, {record("a", {{"x", "1"}})});
    EXPECT_EQ(reference(), (Lines{"a 0* k1 K1"}));
}

}  // namespace
