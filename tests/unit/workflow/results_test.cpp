#include <map>

#include "backends/headless/desktop.h"
#include "backends/headless/dialog.h"
#include "backends/headless/toolkit.h"
#include "extract/import_library.h"
#include "platform/bxt/compare_outcome.h"
#include "platform/bxt/services.h"
#include "platform/exchange/a3d.h"
#include "tests/support/memory_model.h"
#include "tests/support/scoped_pmi.h"
#include "tests/unit/workflow/workflow_fixture.h"

namespace {

using support::occurrence;
using support::part;
using Texts = std::vector<std::wstring>;
using Numbers = std::vector<std::int32_t>;

class SilentUser : public headless::User {
public:
    void answerDialog(headless::Dialog&) override {}
    int answerMessageBox(const headless::MessageBox&) override { return 1; }
};

/// Components have their name's length in cubic millimetres, by way of the exchange library.
class WeighedModel : public support::MemoryModel {
public:
    const void* exchangeEntity(HPS::ComponentId id) const override {
        return &(volumes_[id] = static_cast<double>(name(id).size()));
    }

private:
    mutable std::map<HPS::ComponentId, double> volumes_;
};

A3DStatus volumeOf(const void* item, A3DPhysicalPropertiesData* data) {
    data->volume = *static_cast<const double*>(item);
    return 0;
}
A3DStatus refuse(const void*, A3DAsmModelFileData*) {
    return 1;
}
A3DStatus refuseOccurrence(const void*, A3DAsmProductOccurrenceData*) {
    return 1;
}
A3DStatus refuseFile(const char*, const void**) {
    return 1;
}
A3DStatus refuseText(const wchar_t*, std::size_t, char*) {
    return 1;
}

void* exchangeFunction(const char* name) {
    const std::string_view wanted = name;
    if (wanted == "A3DComputePhysicalProperties" ||
        wanted == "A3DComputePolyBrepPhysicalProperties") {
        return reinterpret_cast<void*>(&volumeOf);
    }
    if (wanted == "A3DAsmModelFileGet") return reinterpret_cast<void*>(&refuse);
    if (wanted == "A3DAsmProductOccurrenceGet") return reinterpret_cast<void*>(&refuseOccurrence);
    if (wanted == "A3DAsmModelFileLoadFromFile") return reinterpret_cast<void*>(&refuseFile);
    if (wanted == "A3DMiscUnicodeToUTF8") return reinterpret_cast<void*>(&refuseText);
    return nullptr;
}

HPS::CADModel weighedModel(const support::ComponentShape& top) {
    support::MemoryModel::Builder builder(std::make_unique<WeighedModel>());
    builder.addShape(support::MemoryModel::Builder::kRoot, top);
    return HPS::CADModel(builder.finish());
}

support::ComponentShape inMillimetres(support::ComponentShape shape) {
    return shape.with("Units", std::string("Millimeter"));
}

/// What BuildResults makes of two models, on a headless desktop.
class Results : public WorkflowTest {
protected:
    Results() {
        ui::services().toolkit = toolkit;
        ui::services().clipboard = std::make_shared<headless::Clipboard>();
        ui::services().screen = screen;
    }
    ~Results() override { extract::importLibrary().Release(); }

    void bindExchangeLibrary() {
        services.modules->libraries[L"A3DLIBS.dll"]["A3DGetProcAddress"] =
            reinterpret_cast<void*>(&exchangeFunction);
        extract::importLibrary().Bind();
    }
    void build(const HPS::CADModel& reference, const HPS::CADModel& compareModel) {
        compare->BuildResults(reference, compareModel, kReference, kCompare,
                              host->active->factory());
    }
    std::shared_ptr<bxtsg::SCCompareOutcome> outcome() {
        return activeDocument().getAs<bxtsg::SCCompareOutcome>(bxtsg::code::CompareOutcome);
    }
    const bxtsg::SectionsOutcome& lists() { return outcome()->sections(); }
    headless::Dialog& window() { return *toolkit->windows().back(); }
    Texts column(int listId, std::size_t at) {
        Texts all;
        for (std::size_t row = 0; row < window().list(listId)->rowCount(); ++row) {
            all.push_back(window().list(listId)->text(row, at));
        }
        return all;
    }
    void store(const wchar_t* name, std::uint32_t value) {
        services.store->keys[L"Software\\Bextora\\bextora\\Settings\\Compare"][name] = value;
    }

    std::shared_ptr<SilentUser> user = std::make_shared<SilentUser>();
    std::shared_ptr<headless::Toolkit> toolkit = std::make_shared<headless::Toolkit>(user, L"Main");
    std::shared_ptr<headless::Screen> screen = std::make_shared<headless::Screen>();
};

TEST_F(Results, BillsOfMaterialsArriveWithTheirStates) {
    build(support::makeModel({occurrence("Top", {part("Bolt"), part("Bolt"), part("Pin")})}),
          support::makeModel({occurrence("Top", {part("Bolt"), part("Nut")})}));
    EXPECT_EQ(lists().billOfMaterials.referenceNames, (Texts{L"Bolt", L"Pin"}));
    EXPECT_EQ(lists().billOfMaterials.referenceValues, (Texts{L"2", L"1"}));
    EXPECT_EQ(lists().billOfMaterials.compareNames, (Texts{L"Bolt", L"Nut"}));
    EXPECT_EQ(lists().billOfMaterials.referenceStates, (Numbers{0, 1}));
    EXPECT_EQ(lists().billOfMaterials.compareStates, (Numbers{0, 2}));
    EXPECT_EQ(column(1305, 1), (Texts{L"Bolt", L"Pin"}));
    EXPECT_EQ(column(1306, 2), (Texts{L"1", L"1"}));
}

TEST_F(Results, AttributesOfFilesAndPartsArriveWithTheirStates) {
    const auto bolt = part("Bolt").with("Material", std::string("Steel"));
    const auto other = part("Bolt").with("Material", std::string("Brass"));
    build(support::makeModel({occurrence("Top", {bolt}).with("Author", std::string("Ann"))}),
          support::makeModel({occurrence("Top", {other}).with("Author", std::string("Bob"))}));
    EXPECT_EQ(lists().attributes.referenceNames, (Texts{L"Author"}));
    EXPECT_EQ(lists().attributes.compareValues, (Texts{L"Bob"}));
    EXPECT_EQ(lists().attributes.referenceStates, (Numbers{3}));
    ASSERT_EQ(lists().referenceParts.size(), 1U);
    EXPECT_EQ(lists().referenceParts[0].name, L"Bolt");
    EXPECT_TRUE(lists().referenceParts[0].isDifferent);
    ASSERT_EQ(lists().compareParts[0].attributes.size(), 1U);
    EXPECT_EQ(lists().compareParts[0].attributes[0].value, L"Brass");
    EXPECT_EQ(lists().compareParts[0].attributes[0].state, 3);
    ASSERT_EQ(lists().partRows.size(), 1U);
    EXPECT_EQ(lists().partRows[0].reference, 0);
    EXPECT_EQ(lists().partRows[0].compare, 0);
    EXPECT_EQ(column(1309, 1), (Texts{L"Ann"}));
    EXPECT_EQ(compare->state().resultsDialog->data().referenceParts.size(), 1U);
}

TEST_F(Results, PmiArrivesWithItsStates) {
    const support::ScopedPmi answers;
    build(support::makeModel({occurrence("Top", {support::pmi("Flatness", "0.1")})}),
          support::makeModel({occurrence("Top", {support::pmi("Flatness", "0.2")})}));
    EXPECT_EQ(lists().pmi.referenceNames, (Texts{L"Flatness"}));
    EXPECT_EQ(lists().pmi.compareValues, (Texts{L"0.2"}));
    EXPECT_EQ(lists().pmi.compareStates, (Numbers{3}));
    EXPECT_EQ(column(1316, 2), (Texts{L"0.2"}));
}

TEST_F(Results, FileInformationSplitsPathsAtTheHostsSeparator) {
    build(support::makeModel({occurrence("Top")}), support::makeModel({occurrence("Top")}));
    ASSERT_EQ(services.files->separator(), L'/');
    const bxtsg::OutcomeRows& rows = lists().fileInformation;
    EXPECT_EQ(rows.referenceNames, (Texts{L"File Path", L"File Name", L"Volume", L"Difference"}));
    EXPECT_EQ(rows.referenceValues, (Texts{L"/data", L"ref.stp", L"-", L"-"}));
    EXPECT_EQ(rows.referenceStates, (Numbers{0, 3, 0, 0}));
    EXPECT_EQ(column(1320, 1)[1], rows.compareValues[1]);
}

TEST_F(Results, VolumesAreMeasuredAndWrittenIntoTheRows) {
    bindExchangeLibrary();
    build(weighedModel(occurrence("Top", {inMillimetres(part("Bolt", {"four"}))})),
          weighedModel(occurrence("Top", {inMillimetres(part("Bolt", {"fives"}))})));
    EXPECT_EQ(lists().referenceVolume, 4.0);
    EXPECT_EQ(lists().compareVolume, 5.0);
    EXPECT_EQ(lists().referenceUnit, L"mm");
    EXPECT_EQ(lists().fileInformation.referenceValues[2], L"4.00 mm\u00b3");
    EXPECT_EQ(lists().fileInformation.compareValues[3], L"+ 25.00 %");
    EXPECT_EQ(lists().fileInformation.compareStates[2], 3);
    EXPECT_EQ(column(1319, 1)[2], L"4.00 mm\u00b3");
}

TEST_F(Results, WithoutTheExchangeLibraryVolumesAreDashes) {
    build(weighedModel(occurrence("Top", {inMillimetres(part("Bolt"))})),
          weighedModel(occurrence("Top", {inMillimetres(part("Bolt"))})));
    EXPECT_EQ(lists().referenceVolume, 0.0);
    EXPECT_EQ(column(1319, 1)[2], L"-");
    EXPECT_EQ(column(1320, 1)[3], L"-");
}

TEST_F(Results, CountsAreThoseOfTheDialog) {
    build(support::makeModel({occurrence("Top", {part("Bolt"), part("Pin")})}),
          support::makeModel({occurrence("Top", {part("Bolt"), part("Nut")})}));
    EXPECT_EQ(lists().counts, compare->state().resultsDialog->sectionCounts());
    EXPECT_EQ(lists().counts[bxtsg::outcome_section::BillOfMaterials], 2);
    EXPECT_EQ(lists().order, (Numbers{0, 1, 4, 2, 3}));
}

TEST_F(Results, SectionsThatAreOffAreFilledAllTheSame) {
    store(L"PSCompare", 0);
    build(support::makeModel({occurrence("Top", {part("Bolt")})}),
          support::makeModel({occurrence("Top", {part("Bolt")})}));
    EXPECT_EQ(lists().order, (Numbers{0, 2, 3}));
    EXPECT_EQ(lists().billOfMaterials.referenceNames, (Texts{L"Bolt"}));
}

TEST_F(Results, LabelsOfTheFirstRunDoNotNameItsFiles) {
    for (int run = 0; run < 2; ++run) {
        build(support::makeModel({occurrence("Top")}), support::makeModel({occurrence("Top")}));
        EXPECT_EQ(window().text(1321), L"Reference");
        EXPECT_EQ(window().text(1322), L"Compare");
    }
}

TEST_F(Results, AnotherRunReplacesEverythingAndBeginsAnew) {
    const auto bolt = support::makeModel({occurrence("Top", {part("Bolt")})});
    build(bolt, bolt);
    window().choose(1301, 2);
    window().press(1314);
    EXPECT_TRUE(compare->state().resultsDialog->partLevel());
    build(support::makeModel({occurrence("Top", {part("Nut")})}), bolt);
    EXPECT_EQ(column(1305, 1), (Texts{L"Nut"}));
    EXPECT_EQ(compare->state().resultsDialog->currentSection(),
              results::ResultSection::FileInformation);
    EXPECT_FALSE(compare->state().resultsDialog->partLevel());
    EXPECT_EQ(toolkit->windows().size(), 1U);
}

TEST_F(Results, AnOutcomeKeepsTheRowsThatSomebodyAskedFor) {
    const auto bolt = support::makeModel({occurrence("Top", {part("Bolt")})});
    build(bolt, bolt);
    const auto first = outcome();
    EXPECT_EQ(first->sections().billOfMaterials.referenceNames, (Texts{L"Bolt"}));
    build(bolt, bolt);
    const auto second = outcome();
    build(bolt, bolt);
    EXPECT_EQ(first->sections().billOfMaterials.referenceNames, (Texts{L"Bolt"}));
    EXPECT_TRUE(second->sections().billOfMaterials.referenceNames.empty());
}

TEST_F(Results, TheDialogStandsBesideTheMainWindow) {
    screen->mainWindow = ui::PixelRect{100, 50, 1700, 1000};
    build(support::makeModel({occurrence("Top")}), support::makeModel({occurrence("Top")}));
    // 0.13 of the screen's height; 900 left of the right edge.
    EXPECT_EQ(window().windowPlace(), ui::rectAt(800, 140, 700, 460));
    screen->ribbonBottom = 200;
    build(support::makeModel({occurrence("Top")}), support::makeModel({occurrence("Top")}));
    EXPECT_EQ(window().windowPlace(), ui::rectAt(800, 205, 700, 460));
}

TEST_F(Results, StoredSwitchesThatAreOffMakeItLower) {
    EXPECT_EQ(workflow::CompareWorkflow::ResultsDialogRect().height(), 440);
    store(L"PSCompare", 0);
    EXPECT_EQ(workflow::CompareWorkflow::ResultsDialogRect().height(), 210);
    build(support::makeModel({occurrence("Top")}), support::makeModel({occurrence("Top")}));
    EXPECT_EQ(window().windowPlace().height(), 295);
}

TEST_F(Results, WithoutAScreenItStaysWhereItIs) {
    ui::services().screen = nullptr;
    build(support::makeModel({occurrence("Top")}), support::makeModel({occurrence("Top")}));
    EXPECT_EQ(window().windowPlace().left, 0);
    EXPECT_TRUE(window().visible());
}

TEST_F(Results, FileTextsOfTheWholeRunReachTheClipboard) {
    const auto bolt = support::makeModel({occurrence("Top", {part("Bolt")})});
    build(bolt, bolt);
    window().press(1303);
    const auto clipboard = std::dynamic_pointer_cast<headless::Clipboard>(ui::services().clipboard);
    ASSERT_TRUE(clipboard->text());
    EXPECT_NE(clipboard->text()->find(L"1     Bolt     1\r\n"), std::wstring::npos);
    EXPECT_NE(clipboard->text()->find(L"No PMI     -\r\n"), std::wstring::npos);
}

}  // namespace
