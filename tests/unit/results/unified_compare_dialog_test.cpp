#include "results/unified_compare_dialog.h"

#include <gtest/gtest.h>

#include "platform/bxt/services.h"
#include "tests/support/scripted_host.h"
#include "tests/support/scripted_host_services.h"

namespace {

using results::ResultSection;
using results::UnifiedCompareDialog;
using Lines = std::vector<std::wstring>;

class ResultsDialog : public testing::Test {
protected:
    void setModels(const std::vector<std::string>& reference,
                   const std::vector<std::string>& compare) {
        dialog->SetReportContext(nullptr, nullptr, HPS::CADModel(support::flatModel(reference)),
                                 HPS::CADModel(support::flatModel(compare)));
    }
    support::FakeDialog::State& window() { return *services.toolkit->dialogs.back(); }
    Lines left() { return window().trees[1360]->lines(); }
    Lines right() { return window().trees[1361]->lines(); }

    support::TestServices services;
    std::unique_ptr<UnifiedCompareDialog> dialog = std::make_unique<UnifiedCompareDialog>();
};

TEST_F(ResultsDialog, TheLanguageSelectsTheTemplate) {
    for (const auto& [language, id] : {std::pair{L"de", 1350},
                                       {L"ja", 1351},
                                       {L"zh", 1352},
                                       {L"ko", 1353},
                                       {L"es", 1354},
                                       {L"fr", 1355},
                                       {L"pt", 1356},
                                       {L"en", 1300},
                                       {L"it", 1300}}) {
        bxt::services().language = language;
        EXPECT_EQ(UnifiedCompareDialog::SelectTemplateId(), id);
    }
}

TEST_F(ResultsDialog, HasNoWindowBeforeCreate) {
    EXPECT_FALSE(dialog->HasWindow());
    dialog->Show();
    dialog->Hide();
    dialog->BringToForeground();
    dialog->DestroyWindow();
    EXPECT_TRUE(services.log->entries().empty());
}

TEST_F(ResultsDialog, CreateMakesAHiddenWindowAtTheFirstSection) {
    EXPECT_TRUE(dialog->Create());
    EXPECT_TRUE(dialog->HasWindow());
    EXPECT_FALSE(window().visible);
    EXPECT_EQ(window().shape.id, 1300);
    EXPECT_EQ(dialog->currentSection(), ResultSection::FileInformation);
}

TEST_F(ResultsDialog, WithoutAToolkitThereIsNoWindow) {
    ui::services().toolkit.reset();
    EXPECT_FALSE(dialog->Create());
    EXPECT_FALSE(dialog->HasWindow());
}

TEST_F(ResultsDialog, ClosingOnlyHidesIt) {
    dialog->Create();
    dialog->Show();
    EXPECT_TRUE(window().visible);
    window().events->onCancel();
    EXPECT_FALSE(window().visible);
    EXPECT_TRUE(dialog->HasWindow());
    dialog->Show();
    EXPECT_TRUE(window().visible);
}

TEST_F(ResultsDialog, KeysThatHideItAreKeptFromEverybodyElse) {
    dialog->Create();
    for (const ui::Key key : {ui::Key::Escape, ui::Key::Cancel}) {
        dialog->Show();
        EXPECT_TRUE(window().events->onKeyDown(key));
        EXPECT_FALSE(window().visible);
    }
    dialog->Show();
    EXPECT_FALSE(window().events->onKeyDown(ui::Key::Other));
    EXPECT_TRUE(window().visible);
}

TEST_F(ResultsDialog, ColoursGoByTheControlThenByItsKind) {
    dialog->Create();
    const ui::ControlColours own{1, 2, 400};
    const auto backgroundOf = [&](int id, ui::ControlKind kind) {
        return window().events->onColours(id, kind, own).background;
    };
    using Kind = ui::ControlKind;
    EXPECT_EQ(backgroundOf(0, Kind::List), 0xFFFFFFU);
    EXPECT_EQ(backgroundOf(1301, Kind::ListBox), 0xFFFFFFU);
    for (const Kind kind : {Kind::GroupBox, Kind::StaticText, Kind::PushButton, Kind::DefaultButton,
                            Kind::CheckBox, Kind::RadioButton}) {
        EXPECT_EQ(backgroundOf(9999, kind), 0xFFFFFFU);
        EXPECT_EQ(window().events->onColours(9999, kind, own).text, 2U);
    }
    for (const Kind kind : {Kind::List, Kind::ListBox, Kind::Tree, Kind::FileEdit}) {
        EXPECT_EQ(backgroundOf(9999, kind), 1U);
    }
}

TEST_F(ResultsDialog, DestructionDestroysTheWindow) {
    dialog->Create();
    services.log->clear();
    dialog.reset();
    EXPECT_EQ(services.log->entries(),
              (std::vector<std::string>{"dialog1300.destroyWindow", "dialog1300.delete"}));
}

TEST_F(ResultsDialog, OtherSectionsBuildNothing) {
    dialog->Create();
    setModels({"Bolt"}, {"Bolt"});
    for (const int section : {0, 1, 2, 3}) {
        dialog->ShowSection(static_cast<ResultSection>(section));
        EXPECT_EQ(dialog->currentSection(), static_cast<ResultSection>(section));
        EXPECT_EQ(dialog->engine().referenceRoot(), nullptr);
    }
}

TEST_F(ResultsDialog, TheFirstVisitOfTheStructureBuildsAndFillsTheTrees) {
    dialog->Create();
    setModels({"Bolt"}, {"Bolt", "Nut"});
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_EQ(left(), (Lines{L"Top", L"  Bolt"}));
    EXPECT_EQ(right(), (Lines{L"Top", L"  Bolt", L"  Nut"}));
}

TEST_F(ResultsDialog, BothTreesPaintTheirItemsByState) {
    dialog->Create();
    setModels({"Bolt", "Pin"}, {"Bolt", "Nut"});
    dialog->ShowSection(ResultSection::ProductStructure);
    const auto colourOf = [&](int treeId, const wchar_t* name) -> std::uint32_t {
        const auto& tree = *window().trees[treeId];
        const ui::TreeItem top = tree.firstChild(nullptr);
        for (ui::TreeItem at = tree.firstChild(top); at; at = tree.nextSibling(at)) {
            if (tree.item(at).text != name) continue;
            const auto colours = window().events->onPaintItem(treeId, tree.item(at));
            return colours.changed ? colours.text : 0U;
        }
        ADD_FAILURE() << "no such item";
        return 0;
    };
    EXPECT_EQ(colourOf(1360, L"Bolt"), 0U);
    EXPECT_EQ(colourOf(1361, L"Bolt"), 0U);
    EXPECT_EQ(colourOf(1360, L"Pin"), 0x2828C8U);
    EXPECT_EQ(colourOf(1361, L"Nut"), 0x50A000U);
    const ui::TreeItem pin = window().trees[1360]->nextSibling(
        window().trees[1360]->firstChild(window().trees[1360]->firstChild(nullptr)));
    EXPECT_FALSE(window().events->onPaintItem(1309, window().trees[1360]->item(pin)).changed);
}

TEST_F(ResultsDialog, LaterVisitsKeepTheTrees) {
    dialog->Create();
    setModels({"Bolt"}, {"Bolt"});
    dialog->ShowSection(ResultSection::ProductStructure);
    const auto* root = dialog->engine().referenceRoot();
    const int invalidations = window().trees[1360]->invalidations;
    dialog->ShowSection(ResultSection::FileInformation);
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_EQ(dialog->engine().referenceRoot(), root);
    EXPECT_EQ(window().trees[1360]->invalidations, invalidations);
}

TEST_F(ResultsDialog, TreesThatWereBuiltForSomebodyElseAreOnlyFilledIn) {
    dialog->Create();
    setModels({"Bolt"}, {"Bolt"});
    dialog->MakeOutcome()->productStructure();
    const auto* root = dialog->engine().referenceRoot();
    ASSERT_NE(root, nullptr);
    EXPECT_TRUE(left().empty());
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_EQ(dialog->engine().referenceRoot(), root);
    EXPECT_EQ(left().size(), 2U);
}

TEST_F(ResultsDialog, TwoEmptyModelsLeaveTheTreesEmpty) {
    dialog->Create();
    dialog->SetReportContext(nullptr, nullptr, {}, {});
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_EQ(dialog->engine().referenceRoot(), nullptr);
    EXPECT_EQ(dialog->engine().compareRoot(), nullptr);
    EXPECT_TRUE(left().empty());
    EXPECT_TRUE(right().empty());
}

TEST_F(ResultsDialog, OneEmptyModelStillBuilds) {
    dialog->Create();
    dialog->SetReportContext(nullptr, nullptr, {}, HPS::CADModel(support::flatModel({"Nut"})));
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_TRUE(left().empty());
    EXPECT_EQ(right(), (Lines{L"Top", L"  Nut"}));
}

TEST_F(ResultsDialog, RefreshForgetsTheLastRun) {
    dialog->Create();
    setModels({"Bolt"}, {"Bolt"});
    dialog->ShowSection(ResultSection::ProductStructure);
    dialog->RefreshResults();
    EXPECT_EQ(dialog->engine().referenceRoot(), nullptr);
    EXPECT_EQ(dialog->engine().compareRoot(), nullptr);
    EXPECT_TRUE(left().empty());
    EXPECT_TRUE(right().empty());
    EXPECT_EQ(dialog->currentSection(), ResultSection::FileInformation);
    setModels({"Pin"}, {"Pin"});
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_EQ(left(), (Lines{L"Top", L"  Pin"}));
}

TEST_F(ResultsDialog, RefreshWithoutAWindowDoesNothing) {
    setModels({"Bolt"}, {"Bolt"});
    dialog->ShowSection(ResultSection::ProductStructure);
    ASSERT_NE(dialog->engine().referenceRoot(), nullptr);
    const auto outcome = dialog->MakeOutcome();
    dialog->RefreshResults();
    EXPECT_NE(dialog->engine().referenceRoot(), nullptr);
    EXPECT_EQ(dialog->currentSection(), ResultSection::ProductStructure);
    EXPECT_FALSE(outcome->productStructure().rows.empty());
}

TEST_F(ResultsDialog, TheContextIsSharedUntilTheNextOne) {
    const auto document = std::make_shared<support::FakeDocument>("d", services.log);
    const auto host = std::make_shared<support::ScriptedHost>(services.log);
    const HPS::CADModel model(support::flatModel({"Bolt"}));
    dialog->SetReportContext(document, host, model, {});
    EXPECT_EQ(dialog->document(), document);
    EXPECT_EQ(dialog->application(), host);
    EXPECT_EQ(dialog->referenceModel(), model);
    EXPECT_TRUE(dialog->compareModel().Empty());
    dialog->SetReportContext(nullptr, nullptr, {}, {});
    EXPECT_EQ(document.use_count(), 1);
    EXPECT_EQ(host.use_count(), 1);
}

TEST_F(ResultsDialog, AnOutcomeIsCutOffByRefreshAndDestruction) {
    dialog->Create();
    setModels({"Bolt"}, {"Bolt"});
    const auto refreshed = dialog->MakeOutcome();
    dialog->RefreshResults();
    EXPECT_TRUE(refreshed->productStructure().rows.empty());
    const auto orphaned = dialog->MakeOutcome();
    const auto asked = dialog->MakeOutcome();
    EXPECT_TRUE(orphaned->productStructure().rows.empty());
    EXPECT_EQ(asked->productStructure().rows.size(), 2U);
    dialog.reset();
    EXPECT_EQ(asked->productStructure().rows.size(), 2U);
    EXPECT_TRUE(orphaned->productStructure().rows.empty());
}

TEST_F(ResultsDialog, AnOutcomeNamesTheDialogsPaths) {
    dialog->referencePath = L"/r";
    dialog->comparePath = L"/c";
    const auto outcome = dialog->MakeOutcome();
    dialog->referencePath = L"/other";
    EXPECT_EQ(outcome->referencePath(), L"/r");
    EXPECT_EQ(outcome->comparePath(), L"/c");
}

}  // namespace
