#include <cfloat>

#include "results/volume_rows.h"
#include "tests/unit/results/results_fixture.h"

namespace {

using extract::ItemDiffState;
using results::ResultSection;
using Captions = std::vector<std::wstring>;

class Population : public ResultsTest {
protected:
    Captions captions() {
        Captions all;
        for (std::size_t i = 0; i < 5; ++i) all.push_back(window().listBox(1301)->text(i));
        return all;
    }
    void showVolumes(double reference, double compare) {
        dialog->SetFileInfoData(fileInfo());
        dialog->SetVolumeData(reference, L"mm", compare, L"mm");
    }
};

TEST_F(Population, IndexedListsNumberTheirRows) {
    create();
    for (const int left : {1305, 1315}) {
        const auto data = rows({L"Pin", L"Bolt"}, {L"1"}, {L"Nut"}, {L"2", L"never"}, {1, 0}, {2});
        left == 1305 ? dialog->SetBomData(data) : dialog->SetPmiData(data);
        EXPECT_EQ(cells(left), (Cells{{L"1", L"Pin", L"1"}, {L"2", L"Bolt", L""}}));
        EXPECT_EQ(cells(left + 1), (Cells{{L"1", L"Nut", L"2"}}));
        EXPECT_EQ(numbers(left), (Numbers{1, 0}));
        EXPECT_EQ(numbers(left + 1), Numbers{2});
    }
}

TEST_F(Population, StatesBeyondTheirEndAreUnchangedAndRowsAreReplaced) {
    create();
    dialog->SetAttributeData(rows({L"a", L"b", L"c"}, {L"1", L"2", L"3"}, {}, {}, {3}, {}));
    EXPECT_EQ(numbers(1309), (Numbers{3, 0, 0}));
    dialog->SetAttributeData(rows({L"d"}, {}, {L"e"}, {}, {}, {}));
    EXPECT_EQ(cells(1309), (Cells{{L"d", L""}}));
    EXPECT_EQ(cells(1310), (Cells{{L"e", L""}}));
}

TEST_F(Population, RowsTakeTheColoursOfTheirNumbers) {
    create();
    dialog->SetBomData(rows({L"a", L"b", L"c", L"d", L"e", L"f"}, {}, {}, {}, {0, 1, 2, 3, 4, 9}));
    const ui::Colour text[] = {ui::rgb(34, 34, 34),   ui::rgb(229, 57, 53), ui::rgb(67, 160, 71),
                               ui::rgb(249, 168, 37), ui::rgb(26, 26, 26),  ui::rgb(34, 34, 34)};
    for (std::size_t row = 0; row < 6; ++row) {
        const ui::ItemColours colours = window().paintedRowColours(1305, row);
        EXPECT_TRUE(colours.changed);
        EXPECT_EQ(colours.text, text[row]) << row;
        EXPECT_EQ(colours.background, row == 4 ? ui::rgb(240, 240, 240) : ui::rgb(255, 255, 255));
    }
}

TEST_F(Population, VolumesAreWrittenWithTwoDecimalsAndACube) {
    EXPECT_EQ(results::FormatVolume(1234.5, L"mm"), L"1234.50 mm\u00b3");
    EXPECT_EQ(results::FormatVolume(0.004, L"in"), L"0.00 in\u00b3");
    EXPECT_EQ(results::FormatVolume(0, L"mm"), L"-");
    EXPECT_EQ(results::FormatVolume(-1, L"mm"), L"-");
    EXPECT_EQ(results::FormatVolume(1, L""), L"-");
    EXPECT_EQ(results::FormatVolume(DBL_MAX, L"m").size(), 309U + 3 + 3);
}

TEST_F(Population, VolumeRowsShowBothVolumesAndTheChange) {
    create();
    showVolumes(100, 150);
    EXPECT_EQ(cells(1319), (Cells{{L"File Path", L"/a"},
                                  {L"File Name", L"a.stp"},
                                  {L"Volume", L"100.00 mm\u00b3"},
                                  {L"Difference", L"-"}}));
    EXPECT_EQ(cells(1320)[2], (Captions{L"Volume", L"150.00 mm\u00b3"}));
    EXPECT_EQ(cells(1320)[3], (Captions{L"Difference", L"+ 50.00 %"}));
    EXPECT_EQ(numbers(1319), (Numbers{3, 3, 3, 3}));
    EXPECT_EQ(numbers(1320), (Numbers{3, 3, 3, 3}));
    const results::SectionRows& kept = dialog->data().fileInfo;
    EXPECT_EQ(kept.referenceValues, (Captions{L"/a", L"a.stp", L"100.00 mm\u00b3", L"-"}));
    EXPECT_EQ(kept.compareValues, (Captions{L"/b", L"b.stp", L"150.00 mm\u00b3", L"+ 50.00 %"}));
    EXPECT_EQ(kept.referenceStates[3], ItemDiffState::Different);
    EXPECT_EQ(kept.compareStates[2], ItemDiffState::Different);
}

TEST_F(Population, EqualVolumesHaveNoSignAndNoState) {
    create();
    showVolumes(100, 100);
    EXPECT_EQ(cells(1320)[3][1], L"0.00 %");
    EXPECT_EQ(numbers(1319), (Numbers{3, 3, 0, 0}));
    EXPECT_EQ(numbers(1320), (Numbers{3, 3, 0, 0}));
}

TEST_F(Population, WithoutAReferenceVolumeThereIsNoChange) {
    create();
    showVolumes(0, 100);
    EXPECT_EQ(cells(1319)[3][1], L"-");
    EXPECT_EQ(cells(1320)[3][1], L"-");
    EXPECT_EQ(cells(1320)[2][1], L"100.00 mm\u00b3");
    EXPECT_EQ(numbers(1320), (Numbers{3, 3, 0, 0}));
}

TEST_F(Population, ACompareVolumeOfZeroIsAHundredPerCentLess) {
    create();
    showVolumes(100, 0);
    EXPECT_EQ(cells(1320)[2][1], L"-");
    EXPECT_EQ(cells(1320)[3][1], L"- 100.00 %");
    EXPECT_EQ(numbers(1320), (Numbers{3, 3, 0, 3}));
}

TEST_F(Population, TheTildeNeedsAPercentageOfExactlyNothing) {
    EXPECT_EQ(results::ChangeText(1, 0), L"+ ~0.00 %");
    EXPECT_EQ(results::ChangeText(-DBL_TRUE_MIN, 0), L"- ~0.00 %");
    EXPECT_EQ(results::ChangeText(0, 0), L"0.00 %");
    EXPECT_EQ(results::ChangeText(1, DBL_TRUE_MIN), L"+ 0.00 %");
    EXPECT_EQ(results::DifferenceOfVolumes(1e9, 1e9 + 1).text, L"+ 0.00 %");
    EXPECT_EQ(results::DifferenceOfVolumes(1e9, 1e9 + 1).state, ItemDiffState::Different);
    EXPECT_EQ(results::DifferenceOfVolumes(DBL_TRUE_MIN, 2 * DBL_TRUE_MIN).text, L"+ 100.00 %");
}

TEST_F(Population, WithoutAKnownVolumeThereIsNoChange) {
    EXPECT_EQ(results::DifferenceOfVolumes(-1, 5).text, L"-");
    EXPECT_EQ(results::DifferenceOfVolumes(5, -1).text, L"-");
}

TEST_F(Population, ShortFileInformationIsLeftAlone) {
    create();
    dialog->SetVolumeData(1, L"mm", 2, L"mm");
    dialog->SetFileInfoData(rows({L"a", L"b", L"c", L"d"}, {}, {L"a", L"b", L"c"}, {}));
    EXPECT_EQ(cells(1319)[2][1], L"1.00 mm\u00b3");
    EXPECT_EQ(cells(1319)[3][1], L"-");
    EXPECT_EQ(numbers(1319), (Numbers{0, 0, 3, 0}));
    EXPECT_EQ(cells(1320)[2][1], L"2.00 mm\u00b3");
    EXPECT_TRUE(dialog->data().fileInfo.compareValues.empty());
}

TEST_F(Population, SidesOfDifferentLengthKeepTheirOwnRows) {
    create();
    dialog->SetFileInfoData(rows({L"a", L"b", L"c"}, {L"1", L"2", L"3"}, {L"a", L"b", L"c", L"d"},
                                 {L"1", L"2", L"3", L"4"}, {0, 0, 0, 0}, {0, 0, 0}));
    dialog->SetVolumeData(1, L"mm", 2, L"mm");
    EXPECT_EQ(cells(1319)[2][1], L"1.00 mm\u00b3");
    EXPECT_EQ(cells(1320)[3][1], L"+ 100.00 %");
    EXPECT_EQ(numbers(1319), (Numbers{0, 0, 3}));
    EXPECT_EQ(numbers(1320), (Numbers{0, 0, 3, 3}));
    EXPECT_EQ(dialog->data().fileInfo.referenceStates[3], ItemDiffState::Different);
    EXPECT_EQ(dialog->data().fileInfo.referenceValues.size(), 3U);
    dialog->SetFileInfoData(rows({L"a", L"b"}, {L"1", L"2"}, {L"a"}, {L"1"}, {3, 0}, {3}));
    EXPECT_EQ(cells(1319), (Cells{{L"a", L"1"}, {L"b", L"2"}}));
    EXPECT_EQ(numbers(1319), (Numbers{3, 0}));
}

TEST_F(Population, StatesOfRowsThatAreNotThereStayAndMissingOnesAreShown) {
    create();
    const results::Texts three = {L"a", L"b", L"c"};
    const results::Texts four = {L"a", L"b", L"c", L"d"};
    dialog->SetVolumeData(1, L"mm", 2, L"mm");
    dialog->SetFileInfoData(rows(four, four, three, four, {0, 0, 0, 0}, {0, 0, 0, 0}));
    EXPECT_EQ(dialog->data().fileInfo.compareStates[3], ItemDiffState::Unchanged);
    EXPECT_EQ(dialog->data().fileInfo.compareValues[3], L"d");
    EXPECT_EQ(dialog->data().fileInfo.referenceValues[3], L"-");
    EXPECT_EQ(numbers(1319), (Numbers{0, 0, 3, 0}));
    dialog->SetFileInfoData(rows(four, four, four, four));
    EXPECT_EQ(numbers(1319), (Numbers{0, 0, 3, 3}));
    EXPECT_EQ(numbers(1320), (Numbers{0, 0, 3, 3}));
}

TEST_F(Population, CountsGoByTheReferenceButForBillsOfMaterials) {
    create();
    const auto data = rows({L"a", L"b"}, {}, {L"c"}, {}, {1, 3}, {2});
    dialog->SetBomData(data);
    dialog->SetAttributeData(data);
    dialog->SetPmiData(rows({L"a"}, {}, {L"c"}, {}, {0}, {2}));
    dialog->SetFileInfoData(fileInfo());
    EXPECT_EQ(captions()[1], L"Bill of Materials");  // counted with the next refresh
    dialog->RefreshResults();
    EXPECT_EQ(captions(), (Captions{L"File Information (2)", L"Bill of Materials (3)",
                                    L"Attributes (2)", L"PMI", L"Product Structure"}));
    EXPECT_EQ(window().listBox(1301)->selected(), 0);
}

TEST_F(Population, TheStructuresCountIsNoughtAtRefreshAndCountsBothSidesLater) {
    create();
    setModels({"Bolt", "Pin"}, {"Bolt", "Nut"});
    dialog->RefreshResults();
    EXPECT_EQ(dialog->CountPSTreeDiffs(), 0);
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_EQ(dialog->sectionCounts()[4], 0);
    // Pin deleted, Nut added, and both tops modified.
    EXPECT_EQ(dialog->CountPSTreeDiffs(), 4);
}

TEST_F(Population, EveryKindOfChangeCounts) {
    create();
    setModels({"Bolt", "Nut"}, {"Nut", "Bolt"});
    dialog->EnsureTrees();
    int moved = 0;
    const auto* const top = dialog->engine().referenceRoot()->children[0];
    for (const auto* node : top->children) {
        moved += node->state == extract::AssemblyDiffState::Moved ? 1 : 0;
    }
    ASSERT_GT(moved, 0);
    const int topChanged = top->state == extract::AssemblyDiffState::Same ? 0 : 1;
    EXPECT_EQ(dialog->CountPSTreeDiffs(), 2 * (moved + topChanged));
}

TEST_F(Population, CountingRepaintsTheTabsAndKeepsTheSelection) {
    create();
    dialog->ShowSection(ResultSection::Pmi);
    const std::size_t before = window().invalidated().size();
    dialog->RefreshResults();
    const auto& areas = window().invalidated();
    const int width = window().clientSize().width;
    ASSERT_EQ(areas.size(), before + 2);
    EXPECT_EQ(areas[before], ui::rectAt(0, 0, width, 38));
    EXPECT_EQ(window().listBox(1301)->selected(), 3);  // counted before the first section is shown
    EXPECT_EQ(window().listBox(1301)->itemHeightPx(), 26);
}

TEST_F(Population, RefillingForgetsWhereTheListStood) {
    create();
    results::Texts names(200, L"a");
    dialog->ShowSection(ResultSection::BillOfMaterials);
    dialog->SetBomData(rows(names, {}, names, {}));
    list(1305).ensureVisible(150);
    ASSERT_GT(list(1305).topIndex(), 0U);
    dialog->SetBomData(rows(names, {}, names, {}));
    EXPECT_EQ(list(1305).topIndex(), 0U);
}

TEST_F(Population, ClosedTopItemsAreClosedAgain) {
    create();
    setModels({"Bolt"}, {"Bolt"});
    dialog->ShowSection(ResultSection::ProductStructure);
    headless::Tree& left = *window().tree(1360);
    headless::Tree& right = *window().tree(1361);
    EXPECT_TRUE(left.item(left.firstChild(nullptr)).expanded);
    window().openItem(1360, left.firstChild(nullptr), false);
    dialog->PopulateTreePair();
    EXPECT_FALSE(left.item(left.firstChild(nullptr)).expanded);
    EXPECT_TRUE(right.item(right.firstChild(nullptr)).expanded);
    EXPECT_EQ(left.itemCount(), 2U);
    window().openItem(1361, right.firstChild(nullptr), false);
    window().openItem(1360, left.firstChild(nullptr), true);
    dialog->PopulateTreePair();
    EXPECT_TRUE(left.item(left.firstChild(nullptr)).expanded);
    EXPECT_FALSE(right.item(right.firstChild(nullptr)).expanded);
}

TEST_F(Population, TreesAreFilledOnceAndPaintedByState) {
    create();
    setModels({"Bolt"}, {"Nut"});
    dialog->ShowSection(ResultSection::ProductStructure);
    headless::Tree& left = *window().tree(1360);
    const int fills = left.invalidations();
    dialog->ShowSection(ResultSection::Pmi);
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_EQ(left.invalidations(), fills);
    const ui::TreeItem bolt = left.firstChild(left.firstChild(nullptr));
    EXPECT_EQ(window().paintedColours(1360, bolt).text, 0x2828C8U);
}

}  // namespace
