#include <type_traits>

#include "platform/ui/services.h"
#include "reports/compare_html_exporter.h"
#include "reports/compare_report_exporter.h"
#include "tests/support/memory_model.h"
#include "tests/support/scripted_host.h"
#include "tests/unit/reports/csv_fixture.h"

namespace {

using bxtsgutils::CompareReportExporter;
using reports::CompareHtmlExporter;

static_assert(std::has_virtual_destructor_v<CompareReportExporter>);
static_assert(!std::is_polymorphic_v<CompareHtmlExporter>);

class WideScreen : public ui::Screen {
public:
    ui::PixelSize sizePx() const override { return {1920, 1080}; }
    std::optional<ui::PixelRect> mainWindowPx() const override { return std::nullopt; }
    std::optional<int> ribbonBottomPx() const override { return std::nullopt; }
};

class Exporter : public CsvTest {
protected:
    Exporter() {
        states.pmiCompare = {extract::ItemDiffState::Different};
        states.bomReference = {extract::ItemDiffState::OnlyInReference};
        services.store->keys[L"Software\\Bextora\\bextora\\Settings\\Compare"] = {
            {L"IncludeRefFile", 2}, {L"PMICompareReport", 0}};
    }
    static void expectStoredOptions(const reports::ReportOptions& options) {
        EXPECT_TRUE(options.includeReferenceFile);
        EXPECT_FALSE(options.includePMI);
        EXPECT_TRUE(options.include3DResult);
        EXPECT_FALSE(options.includeCompareFile);
    }

    std::shared_ptr<bxt::IDocument> document =
        std::make_shared<support::FakeDocument>("d", services.log);
    HPS::CADModel reference{support::flatModel({"Bolt"})};
    HPS::CADModel compare{support::flatModel({"Nut"})};
    reports::RowStates states;
};

TEST_F(Exporter, OfPdfSharesTheDocumentAndStartsWithTheDefaults) {
    const CompareReportExporter exporter(document);
    EXPECT_EQ(exporter.document(), document);
    EXPECT_EQ(document.use_count(), 2);
    EXPECT_TRUE(exporter.resultPrcPath().empty());
    EXPECT_TRUE(exporter.options().includePMI);
    EXPECT_FALSE(exporter.options().includeReferenceFile);
}

TEST_F(Exporter, OfPdfReadsTheSwitchesFirstAndFailsWithoutAFile) {
    CompareReportExporter exporter(document);
    exporter.setRowStates(states);
    EXPECT_EQ(exporter.exportToPDF(L"/r.pdf", document, compare, reference, {}), -1);
    expectStoredOptions(exporter.options());
    EXPECT_EQ(exporter.rowStates().pmiCompare, states.pmiCompare);
    EXPECT_EQ(exporter.rowStates().bomReference, states.bomReference);
    EXPECT_TRUE(disk->files.empty());
}

TEST_F(Exporter, OfHtmlCopiesTheModelsAndTakesTheScreensSize) {
    EXPECT_EQ(CompareHtmlExporter(document, reference, compare).imageWidthPx(), 0);
    ui::services().screen = std::make_shared<WideScreen>();
    const CompareHtmlExporter exporter(document, reference, compare);
    ui::services().screen.reset();
    EXPECT_EQ(exporter.imageWidthPx(), 1920);
    EXPECT_EQ(exporter.imageHeightPx(), 1080);
    EXPECT_EQ(&exporter.document(), &document);
    EXPECT_EQ(document.use_count(), 1);
    EXPECT_EQ(exporter.referenceModel(), reference);
    EXPECT_EQ(exporter.compareModel(), compare);
}

TEST_F(Exporter, OfHtmlReadsTheSwitchesFirstAndFailsWithoutAFile) {
    CompareHtmlExporter exporter(document, reference, compare);
    exporter.setRowStates(states);
    EXPECT_EQ(exporter.exportToHTML(L"/r.html", {}), -1);
    expectStoredOptions(exporter.options());
    EXPECT_EQ(exporter.rowStates().bomReference, states.bomReference);
    EXPECT_TRUE(disk->files.empty());
}

}  // namespace
