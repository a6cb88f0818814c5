#include <string>

#include "platform/os/services.h"
#include "resources/dialog_templates.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "results/unified_compare_dialog.h"
#include "shell/settings/compare_settings.h"

namespace results {

namespace control = resources::results_dialog;
namespace id = resources::id;

namespace {

constexpr int kSectionItemPx = 26;
constexpr int kRowHeightPx = 32;
constexpr int kLeastWidthPx = 600;

/// File name of a path, or a stand-in while there is no path.
std::wstring labelText(const std::wstring& path, std::uint32_t standInId) {
    if (path.empty()) return resources::text(standInId);
    const auto& files = os::services().files;
    return path.substr(path.rfind(files ? files->separator() : L'\\') + 1);  // npos + 1 is 0
}

}  // namespace

void UnifiedCompareDialog::onInitDialog() {
    SetUpWindow();
    SetUpLists();
    SetUpTrees();
    for (const SectionInfo& section : AllSections()) {
        window_->setWeight(section.leftLabel, ui::kSemiBoldWeight);
        window_->setWeight(section.rightLabel, ui::kSemiBoldWeight);
    }
    for (const int hidden : {control::kSectionList, control::kAssemblyRadio, control::kPartRadio}) {
        window_->showControl(hidden, false);
    }
    window_->setAnchors(control::kSave, {1, 1, 1, 1});
    window_->setAnchors(control::kCopy, {1, 1, 1, 1});
    WriteLabels();
    window_->setText(control::kAssemblyRadio, resources::text(id::kAssembly));
    window_->setText(control::kPartRadio, resources::text(id::kPart));
    CheckRadios();
    precision_ = settings::ReadNumberPrecision(precision_);
    LoadSectionList();
    UpdateSectionCounts();
    ShowSection(ResultSection::FileInformation);
}

void UnifiedCompareDialog::SetUpWindow() {
    ui::WindowStyle style;
    style.toolWindow = true;
    style.modalFrame = true;
    style.icons = false;
    style.clipChildren = true;
    style.sizeGrip = false;
    window_->setWindowStyle(style);
    window_->setMinimumWidthPx(kLeastWidthPx);
    ui::ListBox* const sections = window_->listBox(control::kSectionList);
    if (!sections) return;
    for (const SectionInfo& section : AllSections()) {
        sections->insert(sections->count(), CaptionOf(section.section));
    }
    sections->select(0);
    sections->setItemHeightPx(kSectionItemPx);
}

void UnifiedCompareDialog::SetUpLists() {
    SetupListColumns(InfoOf(ResultSection::BillOfMaterials), id::kPartName, id::kQuantity, true);
    SetupListColumns(InfoOf(ResultSection::Attributes), id::kName, id::kValue, false);
    SetupListColumns(InfoOf(ResultSection::Pmi), id::kPmiName, id::kValue, true);
    SetupListColumns(InfoOf(ResultSection::FileInformation), id::kProperty, id::kValue, false);
}

void UnifiedCompareDialog::SetupListColumns(const SectionInfo& section,
                                            std::uint32_t firstCaptionId,
                                            std::uint32_t secondCaptionId, bool indexed) {
    for (const int listId : {section.leftControl, section.rightControl}) {
        ui::ListControl* const list = window_->list(listId);
        if (!list) continue;
        list->setRowHeightPx(kRowHeightPx);
        list->setStyle({true, true, true});
        std::size_t column = 0;
        // These widths hold until the first layout.
        if (indexed) {
            list->insertColumn(column++, resources::text(id::kRowNumber), ui::ColumnAlign::Centre,
                               20);
        }
        list->insertColumn(column++, resources::text(firstCaptionId), ui::ColumnAlign::Left, 100);
        list->insertColumn(column, resources::text(secondCaptionId), ui::ColumnAlign::Left, 120);
    }
}

void UnifiedCompareDialog::SetUpTrees() {
    const SectionInfo& section = InfoOf(ResultSection::ProductStructure);
    for (const int treeId : {section.leftControl, section.rightControl}) {
        window_->addControl({treeId, ui::ControlKind::Tree, {}, L"", false});
        ui::TreeControl* const tree = window_->tree(treeId);
        if (!tree) continue;
        tree->setStyle({true, true, true, true, true, true, true});
        tree->setColours(kInk, kWhite);
        window_->setWeight(treeId, ui::kNormalWeight);
    }
    for (const int labelId : {section.leftLabel, section.rightLabel}) {
        window_->addControl({labelId, ui::ControlKind::StaticText, {}, L"", false});
    }
}

void UnifiedCompareDialog::WriteLabels() {
    const std::wstring reference = labelText(referencePath, id::kReference);
    const std::wstring compare = labelText(comparePath, id::kCompare);
    for (const SectionInfo& section : AllSections()) {
        window_->setText(section.leftLabel, reference);
        window_->setText(section.rightLabel, compare);
    }
    const SectionInfo& files = InfoOf(ResultSection::FileInformation);
    if (ui::ListControl* list = window_->list(files.leftControl)) {
        list->setColumnText(0, resources::text(id::kReferenceFile));
    }
    if (ui::ListControl* list = window_->list(files.rightControl)) {
        list->setColumnText(0, resources::text(id::kCompareFile));
    }
}

}  // namespace results
