#include "tests/unit/results/results_fixture.h"

#include "results/placement.h"
#include "results/section_layout.h"

namespace {

using results::ResultSection;
using Sections = std::vector<ResultSection>;
constexpr auto kFiles = ResultSection::FileInformation;
constexpr auto kBom = ResultSection::BillOfMaterials;
constexpr auto kTree = ResultSection::ProductStructure;
constexpr auto kAttributes = ResultSection::Attributes;
constexpr auto kPmi = ResultSection::Pmi;

constexpr int kAllPanels[] = {1305, 1306, 1307, 1308, 1309, 1310, 1311, 1312, 1315, 1316,
                              1317, 1318, 1319, 1320, 1321, 1322, 1360, 1361, 1362, 1363};

class DialogFrame : public ResultsTest {
protected:
    std::vector<int> shownPanels() {
        std::vector<int> shown;
        for (const int id : kAllPanels) {
            if (window().controlVisible(id)) shown.push_back(id);
        }
        return shown;
    }
};

TEST_F(DialogFrame, IsAToolWindowWithoutIconsAndGrip) {
    create();
    const ui::WindowStyle& style = window().windowStyle();
    EXPECT_TRUE(style.toolWindow && style.modalFrame && style.clipChildren);
    EXPECT_FALSE(style.icons || style.sizeGrip);
    window().resizeByUser({100, 300});
    EXPECT_EQ(window().clientSize().width, 600);
    EXPECT_EQ(window().clientSize().height, 300);
}

TEST_F(DialogFrame, TheHiddenListHoldsTheFiveCaptions) {
    create();
    headless::ListBox& sections = *window().listBox(1301);
    const wchar_t* const captions[] = {L"File Information", L"Bill of Materials", L"Attributes",
                                       L"PMI", L"Product Structure"};
    ASSERT_EQ(sections.count(), 5U);
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(sections.text(i), captions[i]);
    EXPECT_EQ(sections.selected(), 0);
    EXPECT_EQ(sections.itemHeightPx(), 26);
    EXPECT_FALSE(window().controlVisible(1301));
    window().choose(1301, 3);
    EXPECT_EQ(dialog->currentSection(), kPmi);
}

TEST_F(DialogFrame, ListsHaveTheirColumnsAndRowHeight) {
    create();
    const auto captions = [&](int id) {
        std::vector<std::wstring> texts;
        for (std::size_t i = 0; i < list(id).columnCount(); ++i) {
            texts.push_back(list(id).columnText(i));
        }
        return texts;
    };
    using Captions = std::vector<std::wstring>;
    for (const int id : {1305, 1306}) {
        EXPECT_EQ(captions(id), (Captions{L"#", L"Part Name", L"Quantity"}));
        EXPECT_EQ(list(id).columnAlign(0), ui::ColumnAlign::Centre);
    }
    for (const int id : {1309, 1310}) EXPECT_EQ(captions(id), (Captions{L"Name", L"Value"}));
    for (const int id : {1315, 1316}) {
        EXPECT_EQ(captions(id), (Captions{L"#", L"PMI Name", L"Value"}));
    }
    EXPECT_EQ(captions(1319), (Captions{L"Reference File", L"Value"}));
    EXPECT_EQ(captions(1320), (Captions{L"Compare File", L"Value"}));
    EXPECT_EQ(list(1305).columnWidthPx(0), 20);
    EXPECT_EQ(list(1305).columnWidthPx(1), 100);
    EXPECT_EQ(list(1309).columnWidthPx(1), 120);
    EXPECT_EQ(list(1309).rowHeightPx(), 32);
    EXPECT_EQ(list(1305).columnWidthPx(2), 120);
    EXPECT_EQ(list(1305).columnAlign(1), ui::ColumnAlign::Left);
    EXPECT_EQ(list(1309).columnWidthPx(0), 100);
    EXPECT_EQ(list(1309).columnAlign(0), ui::ColumnAlign::Left);
    for (const int id : {1305, 1306, 1309, 1310, 1315, 1316, 1319, 1320}) {
        const ui::ListStyle& style = list(id).style();
        EXPECT_TRUE(style.gridLines && style.fullRowSelect && style.doubleBuffer) << id;
        EXPECT_EQ(list(id).rowHeightPx(), 32) << id;
    }
}

TEST_F(DialogFrame, TreesAndTheirLabelsAreMadeAtRunTime) {
    create();
    for (const int id : {1360, 1361}) {
        ASSERT_TRUE(window().tree(id));
        EXPECT_FALSE(window().controlVisible(id));
        const ui::TreeStyle& style = window().tree(id)->style();
        EXPECT_TRUE(style.border && style.buttons && style.lines && style.linesAtRoot);
        EXPECT_TRUE(style.showSelectionAlways && style.fullRowSelect && style.doubleBuffer);
        EXPECT_EQ(window().tree(id)->textColour(), ui::rgb(26, 26, 26));
        EXPECT_EQ(window().tree(id)->backgroundColour(), ui::rgb(255, 255, 255));
        EXPECT_EQ(window().weight(id), 400);
    }
    for (const int id : {1307, 1311, 1317, 1321, 1362}) {
        EXPECT_EQ(window().weight(id), 600) << id;
        EXPECT_EQ(window().weight(id + 1), 600) << id;
    }
    EXPECT_EQ(window().weight(1305), 400);
}

TEST_F(DialogFrame, LabelsReadReferenceAndCompareOnEveryRun) {
    create();
    dialog->referencePath = L"/home/a.stp";
    dialog->RefreshResults();
    for (const int id : {1307, 1311, 1317, 1321, 1362}) {
        EXPECT_EQ(window().text(id), L"Reference");
        EXPECT_EQ(window().text(id + 1), L"Compare");
    }
}

TEST_F(DialogFrame, LabelsNameTheFilesThatAreSetBeforeTheWindow) {
    dialog->referencePath = L"/home/a.stp";
    dialog->comparePath = L"b.stp";
    create();
    EXPECT_EQ(window().text(1321), L"a.stp");
    EXPECT_EQ(window().text(1322), L"b.stp");
    EXPECT_EQ(window().text(1363), L"b.stp");
}

TEST_F(DialogFrame, PrecisionIsReadOnceAndIsThreeWithoutIt) {
    create();
    EXPECT_EQ(dialog->numberPrecision(), 3);
    services.store->keys[L"Software\\Bextora\\bextora\\Workspace"][L"DocPrec"] = 5;
    results::UnifiedCompareDialog other;
    other.Create();
    EXPECT_EQ(other.numberPrecision(), 5);
}

TEST_F(DialogFrame, TheTabsFollowTheSwitches) {
    create();
    EXPECT_EQ(dialog->SectionOrder(), (Sections{kFiles, kBom, kTree, kAttributes, kPmi}));
    set(L"PSCompare", 0);
    EXPECT_EQ(dialog->SectionOrder().size(), 5U);  // until the next run
    dialog->RefreshResults();
    EXPECT_EQ(dialog->SectionOrder(), (Sections{kFiles, kAttributes, kPmi}));
    set(L"AttribCompare", 0);
    dialog->RefreshResults();
    EXPECT_EQ(dialog->SectionOrder(), (Sections{kFiles, kPmi}));
    set(L"PMICompare", 0);
    dialog->RefreshResults();
    EXPECT_EQ(dialog->SectionOrder(), Sections{kFiles});
    EXPECT_EQ(results::SectionTabRect(0, 1, 777), ui::rectAt(0, 0, 777, 38));
    services.store->refuse = true;
    dialog->RefreshResults();
    EXPECT_EQ(dialog->SectionOrder().size(), 5U);
}

TEST_F(DialogFrame, ASectionThatIsSwitchedOffFallsBackToTheFirst) {
    create();
    dialog->ShowSection(kPmi);
    set(L"PMICompare", 0);
    dialog->RefreshResults();
    EXPECT_EQ(dialog->currentSection(), kFiles);
    EXPECT_EQ(window().listBox(1301)->selected(), 0);  // before the first section is shown
    EXPECT_EQ(shownPanels(), (std::vector<int>{1319, 1320, 1321, 1322}));
}

TEST_F(DialogFrame, EachSectionShowsItsOwnFourControls) {
    create();
    const std::pair<ResultSection, std::vector<int>> expected[] = {
        {kFiles, {1319, 1320, 1321, 1322}},
        {kBom, {1305, 1306, 1307, 1308}},
        {kAttributes, {1309, 1310, 1311, 1312}},
        {kPmi, {1315, 1316, 1317, 1318}},
        {kTree, {1360, 1361, 1362, 1363}}};
    for (const auto& [section, controls] : expected) {
        dialog->ShowSection(section);
        EXPECT_EQ(shownPanels(), controls);
        EXPECT_EQ(window().controlVisible(1313), section == kAttributes);
        EXPECT_EQ(window().controlVisible(1314), section == kAttributes);
    }
}

TEST_F(DialogFrame, PlacesOnThePageGoByItsSize) {
    create();
    window().resizeByUser({801, 500});
    EXPECT_EQ(window().controlPlace(1302), ui::rectAt(641, 460, 140, 32));
    EXPECT_EQ(window().controlPlace(1303), ui::rectAt(493, 460, 140, 32));
    EXPECT_EQ(window().controlPlace(1319), ui::rectAt(20, 82, 376, 370));
    EXPECT_EQ(window().controlPlace(1320), ui::rectAt(404, 82, 377, 370));
    EXPECT_EQ(window().controlPlace(1321), ui::rectAt(20, 50, 376, 28));
    EXPECT_EQ(window().controlPlace(1322), ui::rectAt(404, 50, 377, 28));
    EXPECT_TRUE(window().redraws());
    dialog->ShowSection(kAttributes);
    EXPECT_EQ(window().controlPlace(1309), ui::rectAt(20, 119, 376, 333));
    EXPECT_EQ(window().controlPlace(1311), ui::rectAt(20, 87, 376, 28));
    EXPECT_EQ(window().controlPlace(1313), ui::rectAt(20, 47, 8 * 6 + 22 + 6, 18));
    EXPECT_EQ(window().controlPlace(1314), ui::rectAt(8 * 6 + 22 + 34, 47, 4 * 6 + 22 + 6, 18));
}

TEST_F(DialogFrame, TreesThatDoNotFitAreHiddenWithARestOfOnePixel) {
    create();
    dialog->ShowSection(kTree);
    window().resizeByUser({800, 100});
    EXPECT_EQ(window().controlPlace(1360), ui::rectAt(20, 82, 376, 1));
    EXPECT_EQ(window().controlPlace(1361), ui::rectAt(404, 82, 376, 1));
    EXPECT_EQ(window().controlPlace(1362), ui::rectAt(20, 50, 376, 28));
    window().resizeByUser({800, 500});
    EXPECT_EQ(window().controlPlace(1360), ui::rectAt(20, 82, 376, 370));
    dialog->Place(ui::rectAt(0, 0, 30, 500));
    EXPECT_EQ(window().controlPlace(1360).width(), 1);
    EXPECT_EQ(window().controlPlace(1362).width(), 1);
}

TEST_F(DialogFrame, OneStoredSwitchThatIsOffCountsAsNoSectionThoughTwoAreLeft) {
    set(L"PSCompare", 0);
    create();
    EXPECT_EQ(results::SwitchedOnSections(), 0U);
    EXPECT_EQ(dialog->SectionOrder(), (Sections{kFiles, kAttributes, kPmi}));
}

TEST_F(DialogFrame, ASetterTakesWhatTheDialogHoldsAlready) {
    create();
    dialog->SetBomData(rows({L"Bolt"}, {L"1"}, {L"Nut"}, {L"2"}, {1}, {2}));
    dialog->SetBomData(dialog->data().bom);
    EXPECT_EQ(cells(1305), (Cells{{L"1", L"Bolt", L"1"}}));
    dialog->SetPartAttributeData({part(L"P", {})}, {part(L"Q", {})});
    dialog->SetPartAttributeData(dialog->data().referenceParts, dialog->data().compareParts);
    EXPECT_EQ(dialog->data().referenceParts[0].name, L"P");
    EXPECT_EQ(dialog->data().compareParts[0].name, L"Q");
}

TEST_F(DialogFrame, RadiosGrowWithTheDisplaysScale) {
    const results::RadioLayout radios = results::LayoutRadios(48, 24, 144);
    EXPECT_EQ(radios.assembly, ui::rectAt(20, 42, 48 + 33 + 6, 27));
    EXPECT_EQ(radios.part, ui::rectAt(48 + 33 + 34, 42, 24 + 33 + 6, 27));
}

TEST_F(DialogFrame, PanelsBelowElevenPixelsHideAndComeBack) {
    create();
    for (const ResultSection section : {kFiles, kTree}) {
        dialog->ShowSection(section);
        window().resizeByUser({800, 82 + 48 + 10});
        EXPECT_TRUE(shownPanels().empty());
        window().resizeByUser({800, 82 + 48 + 11});
        EXPECT_EQ(shownPanels().size(), 4U);
        window().resizeByUser({800, 0});
        EXPECT_TRUE(shownPanels().empty());
        window().resizeByUser({800, 400});
        EXPECT_EQ(shownPanels().size(), 4U);
    }
}

TEST_F(DialogFrame, ColumnsShareTheWidthAndOnlyGrow) {
    create();
    window().resizeByUser({848, 500});  // panels of 400
    dialog->ShowSection(kBom);
    EXPECT_EQ(list(1305).clientWidthPx(), 400);
    EXPECT_EQ(list(1305).columnWidthPx(0), 30);
    EXPECT_EQ(list(1305).columnWidthPx(1), 370 * 45 / 100);
    EXPECT_EQ(list(1305).columnWidthPx(2), 370 - 370 * 45 / 100);
    dialog->SetBomData(rows({std::wstring(100, L'x')}, {L"1"}, {}, {}));
    dialog->ShowSection(kBom);
    EXPECT_EQ(list(1305).columnWidthPx(1), 100 * 6 + 12);
    EXPECT_EQ(list(1305).columnWidthPx(2), 370 - 370 * 45 / 100);
    EXPECT_GT(list(1305).lastLeftPx(), 0);
    EXPECT_EQ(list(1306).columnWidthPx(1), 370 * 45 / 100);
    dialog->ShowSection(kFiles);
    EXPECT_EQ(list(1319).columnWidthPx(0), 180);
    EXPECT_EQ(list(1319).columnWidthPx(1), 220);
}

TEST_F(DialogFrame, AListWithoutAWidthTakesThePanels) {
    headless::List bare;
    bare.insertColumn(0, L"a", ui::ColumnAlign::Left, 1);
    bare.insertColumn(1, L"b", ui::ColumnAlign::Left, 1);
    results::LayoutColumns(bare, 200);
    EXPECT_EQ(bare.columnWidthPx(0), 90);
    EXPECT_EQ(bare.columnWidthPx(1), 110);
}

TEST_F(DialogFrame, TheLastTabTakesTheRestAndAClickSelectsIt) {
    create();
    window().resizeByUser({803, 400});
    EXPECT_EQ(results::SectionTabRect(0, 5, 803), ui::rectAt(0, 0, 160, 38));
    EXPECT_EQ(results::SectionTabRect(4, 5, 803), (ui::PixelRect{640, 0, 803, 38}));
    window().clickAt({802, 37});
    EXPECT_EQ(dialog->currentSection(), kPmi);
    window().clickAt({160, 0});
    EXPECT_EQ(dialog->currentSection(), kBom);
    window().clickAt({159, 0});
    EXPECT_EQ(dialog->currentSection(), kFiles);
    window().clickAt({400, 38});
    window().clickAt({803, 5});
    window().clickAt({-1, 5});
    EXPECT_EQ(dialog->currentSection(), kFiles);
    window().clickAt({400, 5});
    EXPECT_EQ(dialog->currentSection(), kTree);
}

TEST_F(DialogFrame, AttributesAlwaysStartInAssemblyMode) {
    create();
    EXPECT_TRUE(window().checked(1313));
    dialog->ShowSection(kAttributes);
    window().press(1314);
    EXPECT_TRUE(dialog->partLevel());
    EXPECT_TRUE(window().checked(1314));
    EXPECT_FALSE(window().checked(1313));
    dialog->ShowSection(kPmi);
    EXPECT_TRUE(dialog->partLevel());
    dialog->ShowSection(kAttributes);
    EXPECT_FALSE(dialog->partLevel());
    EXPECT_TRUE(window().checked(1313));
    EXPECT_FALSE(window().checked(1314));
    window().press(1314);
    window().press(1313);
    EXPECT_FALSE(dialog->partLevel());
}

TEST_F(DialogFrame, EscapeAndTheCloseBoxHideAndTheNextRunStartsAtTheFirstSection) {
    create();
    headless::Dialog& same = window();
    for (const ui::Key key : {ui::Key::Escape, ui::Key::Cancel}) {
        dialog->ShowSection(kPmi);
        same.pressKey(key);
        EXPECT_FALSE(same.visible());
        EXPECT_TRUE(dialog->HasWindow());
        dialog->RefreshResults();
        dialog->Show();
        EXPECT_EQ(dialog->currentSection(), kFiles);
        EXPECT_EQ(&window(), &same);
    }
    same.pressKey(ui::Key::Other);
    EXPECT_TRUE(same.visible());
}

TEST_F(DialogFrame, ThePageIsPaintedInRectangles) {
    create();
    window().resizeByUser({800, 400});
    const auto white = ui::rgb(255, 255, 255);
    const auto blue = ui::rgb(21, 101, 192);
    const auto line = ui::rgb(224, 224, 224);
    auto page = window().painted();
    EXPECT_EQ(page.colourAt(20, 52), blue);
    EXPECT_EQ(page.colourAt(22, 75), blue);
    EXPECT_EQ(page.colourAt(22, 76), white);
    EXPECT_EQ(page.colourAt(400, 78), white);
    EXPECT_EQ(page.colourAt(0, 352), line);
    EXPECT_EQ(page.colourAt(0, 351), white);
    EXPECT_EQ(page.colourAt(799, 399), white);
    EXPECT_EQ(page.colourAt(400, 37), line);
    EXPECT_EQ(page.colourAt(0, 0), blue);
    EXPECT_EQ(page.colourAt(0, 37), blue);  // the current tab covers the line
    EXPECT_EQ(page.colourAt(159, 6), ui::rgb(200, 200, 200));
    EXPECT_EQ(page.colourAt(159, 32), blue);
    EXPECT_EQ(page.colourAt(319, 31), ui::rgb(200, 200, 200));
    EXPECT_EQ(page.colourAt(799, 10), white);
    for (const ResultSection section : {kBom, kPmi, kTree}) {
        dialog->ShowSection(section);
        EXPECT_EQ(window().painted().colourAt(400, 78), line);
    }
    dialog->ShowSection(kAttributes);
    page = window().painted();
    EXPECT_EQ(page.colourAt(400, 78), white);
    EXPECT_EQ(page.colourAt(20, 52), white);
    EXPECT_EQ(page.colourAt(20, 89), blue);
}

TEST_F(DialogFrame, TabsShowPlainCaptionsInTheWeightOfTabs) {
    create();
    dialog->SetPmiData(rows({L"a"}, {L"b"}, {}, {}, {1}));
    dialog->RefreshResults();
    EXPECT_EQ(window().listBox(1301)->text(3), L"PMI (1)");
    const auto page = window().painted();
    ASSERT_EQ(page.texts().size(), 5U);
    EXPECT_EQ(page.texts()[4].text, L"PMI");
    EXPECT_EQ(page.texts()[2].text, L"Product Structure");
    EXPECT_EQ(page.texts()[0].format.colour, ui::rgb(255, 255, 255));
    EXPECT_EQ(page.texts()[1].format.colour, ui::rgb(0, 0, 0));
    EXPECT_EQ(page.texts()[1].format.weight, 600);
    EXPECT_EQ(page.texts()[1].format.align, ui::TextFormat::Align::Centre);
}

TEST_F(DialogFrame, ControlsAreWhiteAndLabelsStandOut) {
    create();
    const auto white = ui::rgb(255, 255, 255);
    for (const int id : {0, 1301, 1302, 1303, 1313, 1314, 1307, 1322, 1362}) {
        EXPECT_EQ(window().paintedControlColours(id).background, white) << id;
    }
    for (const int id : {1301, 1313, 1314, 1307, 1363}) {
        EXPECT_EQ(window().paintedControlColours(id).text, ui::rgb(26, 26, 26)) << id;
    }
    EXPECT_EQ(window().paintedControlColours(1307).weight, 600);
    EXPECT_EQ(window().paintedControlColours(1313).weight, 400);
    EXPECT_EQ(window().paintedControlColours(1305).background, ui::rgb(240, 240, 240));
}

TEST_F(DialogFrame, TheHiddenListDrawsItsItems) {
    create();
    const ui::PixelRect area = ui::rectAt(0, 0, 100, 26);
    const auto line = ui::rgb(224, 224, 224);
    const auto selected = window().paintedListBoxItem(1301, 0, area);
    EXPECT_EQ(selected.colourAt(50, 0), line);
    EXPECT_EQ(selected.colourAt(99, 10), line);
    EXPECT_EQ(selected.colourAt(3, 10), line);
    EXPECT_EQ(selected.colourAt(4, 10), ui::rgb(255, 255, 255));
    const auto other = window().paintedListBoxItem(1301, 1, area);
    EXPECT_EQ(other.colourAt(50, 25), line);
    EXPECT_EQ(other.colourAt(97, 25), ui::rgb(255, 255, 255));
    EXPECT_EQ(other.colourAt(50, 0), ui::rgb(255, 255, 255));
    ASSERT_EQ(other.texts().size(), 1U);
    EXPECT_EQ(other.texts()[0].area, (ui::PixelRect{8, 0, 98, 26}));
    EXPECT_TRUE(other.texts()[0].format.endEllipsis);
    EXPECT_TRUE(window().paintedListBoxItem(1301, 9, area).texts().empty());
}

TEST_F(DialogFrame, ShowingASectionRepaintsThePage) {
    create();
    const std::size_t before = window().invalidated().size();
    dialog->ShowSection(kPmi);
    ASSERT_EQ(window().invalidated().size(), before + 1);
    EXPECT_EQ(window().invalidated().back(), ui::rectAt(0, 0, 630, 422));
}

TEST_F(DialogFrame, SettersBeforeTheWindowOnlyStore) {
    dialog->SetBomData(rows({L"Bolt"}, {L"1"}, {}, {}, {1}));
    dialog->SetFileInfoData(fileInfo());
    dialog->SetPmiData(rows({L"D"}, {L"1"}, {}, {}, {1}));
    dialog->SetAttributeData(rows({L"a"}, {L"1"}, {}, {}, {1}));
    dialog->SetPartAttributeData({part(L"P", {})}, {part(L"P", {})});
    EXPECT_TRUE(dialog->folding().collapsedParts().empty());
    dialog->SetVolumeData(1, L"mm", 2, L"mm");
    dialog->RefreshResults();
    EXPECT_TRUE(dialog->SectionOrder().empty());
    EXPECT_EQ(dialog->data().fileInfo.compareValues[2], L"");
    create();
    EXPECT_EQ(list(1305).rowCount(), 0U);
    EXPECT_EQ(dialog->sectionCounts()[1], 1);
    dialog->RefreshResults();
    for (const int id : {1305, 1309, 1315}) EXPECT_EQ(list(id).rowCount(), 1U) << id;
    EXPECT_EQ(dialog->data().fileInfo.compareValues[2], L"2.00 mm\u00b3");
}

}  // namespace
