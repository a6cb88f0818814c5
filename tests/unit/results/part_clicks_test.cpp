#include "tests/unit/results/results_fixture.h"

namespace {

using extract::PartAttributes;

class PartClicks : public ResultsTest {
protected:
    void show(const std::vector<PartAttributes>& reference,
              const std::vector<PartAttributes>& compare) {
        create();
        dialog->SetPartAttributeData(reference, compare);
        dialog->ShowSection(results::ResultSection::Attributes);
        window().press(1314);
    }
    void click(int row) { window().clickRow(1309, row); }
    static PartAttributes equal(const std::wstring& name) { return part(name, {{L"k", L"v", {}}}); }
};

TEST_F(PartClicks, OneDifferentSideKeepsAPairOpenThoughTheOtherCountsAsClosed) {
    show({equal(L"P")}, {part(L"P", {{L"k", L"w", {}}}, true)});
    EXPECT_TRUE(dialog->folding().Collapsed(L"P"));
    EXPECT_EQ(cells(1309), (Cells{{L"P", L""}, {L"  k", L"v"}, {L"", L""}}));
    click(0);
    EXPECT_TRUE(dialog->folding().Collapsed(L"P"));
}

TEST_F(PartClicks, OfEqualNamesTheFirstPartDecidesWhetherAClickCounts) {
    show({equal(L"P"), part(L"P", {}, true)}, {equal(L"P")});
    ASSERT_EQ(cells(1309)[0][0], L"\u25b6 P");
    click(0);
    EXPECT_EQ(cells(1309)[0][0], L"\u25bc P");
}

TEST_F(PartClicks, OpeningAPartWidensTheColumns) {
    show({part(L"P", {{L"k", std::wstring(200, L'x'), {}}})},
         {part(L"P", {{L"k", std::wstring(200, L'x'), {}}})});
    const int closed = list(1309).columnWidthPx(1);
    click(0);
    EXPECT_GT(list(1309).columnWidthPx(1), closed);
}

TEST_F(PartClicks, DataInAssemblyModeLeavesTheListAlone) {
    create();
    dialog->SetAttributeData(rows({L"a"}, {L"b"}, {}, {}));
    dialog->SetPartAttributeData({equal(L"P")}, {equal(L"P")});
    EXPECT_EQ(cells(1309), (Cells{{L"a", L"b"}}));
    EXPECT_TRUE(dialog->folding().Collapsed(L"P"));
    const results::Texts many(200, L"a");
    dialog->SetAttributeData(rows(many, {}, many, {}));
    dialog->ShowSection(results::ResultSection::Attributes);
    list(1309).ensureVisible(150);
    const std::size_t top = list(1309).topIndex();
    ASSERT_GT(top, 0U);
    dialog->SetPartAttributeData({equal(L"P")}, {equal(L"P")});
    EXPECT_EQ(list(1309).topIndex(), top);
}

TEST_F(PartClicks, APartThatWasClosedAgainStaysClosedWithNewData) {
    show({equal(L"P")}, {equal(L"P")});
    click(0);
    click(0);
    EXPECT_TRUE(dialog->folding().expandedParts().empty());
    dialog->SetPartAttributeData({equal(L"P")}, {equal(L"P")});
    EXPECT_EQ(cells(1309).size(), 1U);
}

TEST_F(PartClicks, ANewRunShowsTheAssemblysAttributes) {
    show({equal(L"P")}, {equal(L"P")});
    dialog->SetAttributeData(rows({L"a"}, {L"b"}, {}, {}));
    EXPECT_EQ(cells(1309).size(), 1U);
    EXPECT_EQ(cells(1309)[0][0], L"\u25b6 P");
    dialog->RefreshResults();
    EXPECT_TRUE(window().checked(1313));
    EXPECT_FALSE(window().checked(1314));
    dialog->ShowSection(results::ResultSection::Attributes);
    EXPECT_EQ(cells(1309), (Cells{{L"a", L"b"}}));
}

TEST_F(PartClicks, ChangingTheModeFitsTheColumns) {
    show({part(L"P", {{L"k", std::wstring(200, L'x'), {}}}, true)}, {});
    const int wide = list(1309).columnWidthPx(1);
    EXPECT_GT(wide, 1000);
    window().press(1313);
    EXPECT_LT(list(1309).columnWidthPx(1), wide);
}

TEST_F(PartClicks, ComingBackShowsTheAssemblysAttributes) {
    create();
    dialog->SetAttributeData(rows({L"a"}, {L"b"}, {}, {}));
    dialog->SetPartAttributeData({equal(L"P")}, {equal(L"P")});
    dialog->ShowSection(results::ResultSection::Attributes);
    window().press(1314);
    dialog->ShowSection(results::ResultSection::Pmi);
    EXPECT_EQ(cells(1309)[0][0], L"\u25b6 P");
    dialog->ShowSection(results::ResultSection::Attributes);
    EXPECT_EQ(cells(1309), (Cells{{L"a", L"b"}}));
}

TEST_F(PartClicks, DifferentPartsNeverCountAsClosed) {
    show({part(L"P", {}, true), equal(L"R")}, {part(L"P", {}, true), equal(L"C")});
    EXPECT_TRUE(dialog->folding().collapsedParts().empty());
}

}  // namespace
