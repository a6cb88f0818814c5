#include "platform/bxt/analytics.h"
#include "platform/bxt/file_path.h"
#include "platform/ui/services.h"
#include "reports/compare_html_exporter.h"
#include "reports/compare_report_exporter.h"
#include "reports/csv_report_writer.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "results/copy_text.h"
#include "results/unified_compare_dialog.h"

namespace results {

namespace id = resources::id;

namespace {

constexpr const wchar_t* kEventCategory = L"Compare";

reports::ReportTable tableOf(const SectionRows& rows, bool wanted) {
    if (!wanted) return reports::BuildColumnTable({}, {}, {}, {});
    return reports::BuildColumnTable(rows.compareNames, rows.compareValues, rows.referenceNames,
                                     rows.referenceValues);
}

struct ReportForm {
    const wchar_t* extension;
    const wchar_t* event;
};

// Compared exactly and with case.
constexpr ReportForm kForms[] = {
    {L".pdf", L"Save to PDF"}, {L".html", L"Save to HTML"}, {L".csv", L"Save to CSV"}};

}  // namespace

std::wstring UnifiedCompareDialog::CopyText() const {
    std::wstring text;
    AppendFileInfoText(data_.fileInfo, text);
    if (HasSection(ResultSection::BillOfMaterials)) {
        AppendBomText(data_.bom, text);
        if (engine_.referenceRoot() || engine_.compareRoot()) {
            AppendProductStructureText(engine_.referenceRoot(), engine_.compareRoot(), text);
        }
    }
    if (HasSection(ResultSection::Attributes)) {
        if (!partLevel_) {
            AppendAttributeText(data_.attributes, text);
        } else if (!data_.referenceParts.empty()) {
            AppendPartAttributeText(data_, text);
        }
    }
    if (HasSection(ResultSection::Pmi)) AppendPmiText(data_.pmi, text);
    return text;
}

void UnifiedCompareDialog::OnCopyResults() {
    const ui::WaitCursor waiting;
    const auto& clipboard = ui::services().clipboard;
    const bool copied = clipboard && clipboard->setText(CopyText());
    if (application_) {
        application_->setStatusText(
            resources::text(copied ? id::kResultsCopied : id::kFailedToCopy));
    }
    bxt::Analytics::addCommandEvent(kEventCategory, L"Copy to Clipboard");
}

void UnifiedCompareDialog::OnSaveResults() {
    if (!document_) return;
    const auto record = document_->getAs<bxtsg::SCComprae>(bxtsg::code::Compare);
    const auto& chooser = ui::services().fileChooser;
    if (!record || !chooser) return;
    ui::SaveFileOptions options;
    options.defaultExtension = L"pdf";
    options.suggestedName = bxt::FilePath(record->refFile()).getFName() + L" - Compare Results";
    options.overwritePrompt = true;
    options.filter = L"3D PDF (*.pdf)|*.pdf|HTML (*.html)|*.html|CSV (*.csv)|*.csv|";
    const auto path = chooser->chooseSaveFile(options);
    if (!path) return;
    const ui::WaitCursor waiting;
    if (path->empty()) return;
    if (application_) application_->setStatusText(resources::text(id::kSaving));
    std::wstring event;
    const bool saved = WriteReport(*path, event) == 0;
    if (application_) {
        application_->setStatusText(resources::text(saved ? id::kResultsSaved : id::kFailedToSave) +
                                    *path);
    }
    if (!event.empty()) bxt::Analytics::addCommandEvent(kEventCategory, event);
}

int UnifiedCompareDialog::WriteReport(const std::wstring& path, std::wstring& event) {
    const reports::ReportContent content = BuildReportContent();
    const std::wstring extension = bxt::FilePath(path).getExt();
    for (const ReportForm& form : kForms) {
        if (extension == form.extension) event = form.event;
    }
    if (extension == L".pdf") {
        bxtsgutils::CompareReportExporter exporter(document_);
        exporter.setRowStates(BuildRowStates());
        return exporter.exportToPDF(path, document_, compareModel_, referenceModel_, content);
    }
    if (extension == L".html") {
        reports::CompareHtmlExporter exporter(document_, referenceModel_, compareModel_);
        exporter.setRowStates(BuildRowStates());
        return exporter.exportToHTML(path, content);
    }
    if (extension != L".csv") return -1;
    reports::CsvReportWriter writer;
    writer.SetRowStates(BuildRowStates());
    return writer.WriteCsvReport(path, content);
}

reports::ReportContent UnifiedCompareDialog::BuildReportContent() {
    const bool structure = HasSection(ResultSection::BillOfMaterials);
    const bool attributes = HasSection(ResultSection::Attributes);
    reports::ReportContent content;
    content.fileInfo = tableOf(data_.fileInfo, true);
    content.bom = tableOf(data_.bom, structure);
    content.attributes = tableOf(data_.attributes, attributes);
    content.pmi = tableOf(data_.pmi, HasSection(ResultSection::Pmi));
    if (attributes) {
        content.referenceParts = data_.referenceParts;
        content.compareParts = data_.compareParts;
    }
    if (!structure) return content;
    EnsureTrees();
    if (!engine_.referenceRoot() && !engine_.compareRoot()) return content;
    content.productStructure.resize(reports::column::kCount);
    auto& table = content.productStructure;
    engine_.FlattenPSTreeAligned(
        table[reports::column::kReferenceName], table[reports::column::kReferenceValue],
        table[reports::column::kCompareName], table[reports::column::kCompareValue]);
    return content;
}

reports::RowStates UnifiedCompareDialog::BuildRowStates() const {
    reports::RowStates states;
    states.fileInfoCompare = data_.fileInfo.compareStates;
    states.fileInfoReference = data_.fileInfo.referenceStates;
    if (HasSection(ResultSection::BillOfMaterials)) {
        states.bomCompare = data_.bom.compareStates;
        states.bomReference = data_.bom.referenceStates;
    }
    if (HasSection(ResultSection::Attributes)) {
        states.attributesCompare = data_.attributes.compareStates;
        states.attributesReference = data_.attributes.referenceStates;
    }
    if (HasSection(ResultSection::Pmi)) {
        states.pmiCompare = data_.pmi.compareStates;
        states.pmiReference = data_.pmi.referenceStates;
    }
    return states;
}

}  // namespace results
