#include "extract/pmi_rows.h"

#include <gtest/gtest.h>

#include "tests/support/memory_model.h"
#include "tests/support/scoped_pmi.h"

namespace {

using extract::PMIRow;
using support::item;
using support::makeModel;
using support::occurrence;
using support::part;
using support::pmi;

namespace ComponentType = HPS::ComponentType;
using Lines = std::vector<std::wstring>;

class PmiRows : public testing::Test {
protected:
    static Lines rows(const HPS::Component& model) {
        std::vector<PMIRow> found;
        extract::LoadPMI(model, found);
        Lines lines;
        for (const PMIRow& row : found) lines.push_back(row.name + L"=" + row.value);
        return lines;
    }
    support::ScopedPmi texts_;
};

TEST_F(PmiRows, AModelWithoutPmiHasOneRowThatSaysSo) {
    EXPECT_EQ(rows(HPS::CADModel()), (Lines{L"No PMI=-"}));
    EXPECT_EQ(rows(makeModel({})), (Lines{L"No PMI=-"}));
    EXPECT_EQ(rows(makeModel({part("a")})), (Lines{L"No PMI=-"}));
}

TEST_F(PmiRows, ItemsOfAllPartsAndKindsAreOneSortedList) {
    const auto a = occurrence("a", {pmi("note", "as cast", ComponentType::PmiNote),
                                    pmi("Dim 2", "12", ComponentType::PmiDimension)});
    const auto b = occurrence("b", {item(ComponentType::PartDefinition, "",
                                         {pmi("Dim 1", "5", ComponentType::PmiDimension),
                                          pmi("A", "[A]", ComponentType::PmiDatum)})});
    EXPECT_EQ(rows(makeModel({occurrence("top", {a, b})})),
              (Lines{L"A=[A]", L"Dim 1=5", L"Dim 2=12", L"note=as cast"}));
}

TEST_F(PmiRows, RepresentationItemsAreNoPmi) {
    EXPECT_EQ(rows(makeModel({occurrence("a", {item(ComponentType::BrepModel, "S"),
                                               pmi("x", "1", ComponentType::PmiTolerance)})})),
              (Lines{L"x=1"}));
}

TEST_F(PmiRows, OnlyTheFirstComponentOfTheModelCounts) {
    EXPECT_EQ(rows(makeModel({occurrence("a"), occurrence("b", {pmi("x", "1")})})),
              (Lines{L"No PMI=-"}));
}

TEST_F(PmiRows, EmptyNamesAndTextsAreShownAsADash) {
    EXPECT_EQ(rows(makeModel({occurrence("a", {pmi("x", ""), pmi("", "1"), pmi("!", "2")})})),
              (Lines{L" - =1", L"!=2", L"x= - "}));
}

// A name that comes before what is shown: the order is that of the names themselves.
TEST_F(PmiRows, AreSortedBeforeTheDashIsPutIn) {
    EXPECT_EQ(rows(makeModel({occurrence("a", {pmi(" ", "1"), pmi("", "2")})})),
              (Lines{L" - =2", L" =1"}));
}

TEST_F(PmiRows, EqualNamesGiveOneRowEachInModelOrder) {
    EXPECT_EQ(rows(makeModel({occurrence("a", {pmi("x", "2"), pmi("X", "3"), pmi("x", "1")})})),
              (Lines{L"X=3", L"x=2", L"x=1"}));
}

// Long enough for a sort that does not keep the order to show it.
TEST_F(PmiRows, ManyEqualNamesKeepTheirOrder) {
    std::vector<support::ComponentShape> items;
    Lines expected;
    for (int i = 0; i < 100; ++i) {
        items.push_back(pmi("x", std::to_string(i)));
        expected.push_back(L"x=" + std::to_wstring(i));
    }
    EXPECT_EQ(rows(makeModel({occurrence("a", items)})), expected);
}

TEST_F(PmiRows, AnItemThatNobodyCanReadHasNoText) {
    const support::ScopedPmi nothing(
        +[](const HPS::Exchange::Component&, bxtexchange::PMIInfos&) { return false; });
    EXPECT_EQ(rows(makeModel({occurrence("a", {pmi("x", "1")})})), (Lines{L"x= - "}));
}

TEST_F(PmiRows, TheAnswerThatCameWithATextDoesNotMatter) {
    const support::ScopedPmi failing(
        +[](const HPS::Exchange::Component&, bxtexchange::PMIInfos& infos) {
            infos.text = L"text";
            return false;
        });
    EXPECT_EQ(rows(makeModel({occurrence("a", {pmi("x", "1")})})), (Lines{L"x=text"}));
}

TEST_F(PmiRows, AreAppended) {
    std::vector<PMIRow> found = {{L"z", L"before"}};
    extract::LoadPMI(makeModel({occurrence("a", {pmi("x", "1")})}), found);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].name, L"z");
    EXPECT_EQ(found[1].name, L"x");
}

TEST(PmiInfos, AreEmptyAtFirst) {
    EXPECT_EQ(bxtexchange::PMIInfos().text, L"");
}

TEST(PmiInfos, WithoutAnAnswerStayAsTheyWere) {
    const support::ScopedPmi none(nullptr);
    bxtexchange::PMIInfos infos{L"before"};
    const HPS::Exchange::Component component(makeModel({pmi("x", "1")}).GetSubcomponents()[0]);
    EXPECT_FALSE(bxtexchange::PMIInfoPopulator::getPMIInfo(component, infos));
    EXPECT_EQ(infos.text, L"before");
}

TEST(PmiInfos, AreNeverAskedForAnEmptyComponent) {
    const support::ScopedPmi asked(
        +[](const HPS::Exchange::Component& component, bxtexchange::PMIInfos&) {
            EXPECT_FALSE(component.Empty());
            return true;
        });
    bxtexchange::PMIInfos infos;
    EXPECT_FALSE(bxtexchange::PMIInfoPopulator::getPMIInfo(HPS::Exchange::Component(), infos));
}

}  // namespace
