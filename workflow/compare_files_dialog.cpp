#include "workflow/compare_files_dialog.h"

#include <utility>

#include "platform/bxt/resource_loader.h"
#include "platform/ui/services.h"
#include "resources/dialog_templates.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"

namespace workflow {
namespace {

namespace control = resources::compare_files_dialog;

void appendFilter(std::wstring& text, const std::wstring& name, const std::wstring& pattern) {
    if (!name.empty()) text += name + L"(" + pattern + L")|" + pattern + L"|";
}

std::uint32_t browseImage() {
    return bxtsgutils::ResourceLoader::getImage(203, 204, 205, 206);
}

}  // namespace

CompareFilesDialog::CompareFilesDialog(FormatList fileFilters) : filters(std::move(fileFilters)) {}

CompareFilesDialog::~CompareFilesDialog() = default;

int CompareFilesDialog::DoModal() {
    const auto& toolkit = ui::services().toolkit;
    const auto shape = resources::dialogTemplate(resources::dialogTemplateId(
        resources::DialogKind::CompareFiles, bxtsgutils::ResourceLoader::getCurrentLocaleID()));
    if (!toolkit || !shape) return ui::Dialog::kCancelled;
    window_ = toolkit->createDialog(*shape);
    if (!window_) return ui::Dialog::kCancelled;
    const int result = window_->runModal(*this);
    window_.reset();
    return result;
}

std::wstring CompareFilesDialog::BrowserFilter(const FormatList& filters) {
    if (filters.size() < 2) return resources::text(resources::id::kAllFilesFilter);
    const std::size_t last = filters.size() - 2;
    std::wstring text;
    appendFilter(text, filters[last], filters[last + 1]);
    for (std::size_t i = 0; i + 1 < last; i += 2) appendFilter(text, filters[i], filters[i + 1]);
    return text + L"|";
}

void CompareFilesDialog::onInitDialog() {
    window_->setCueBanner(control::kReferenceEdit, resources::text(resources::id::kReferenceCue),
                          true);
    window_->setCueBanner(control::kCompareEdit, resources::text(resources::id::kCompareCue), true);
    message.clear();
    const ui::BrowseOptions browse = {.filter = BrowserFilter(filters),
                                      .hideReadOnly = true,
                                      .overwritePrompt = true,
                                      .image = browseImage()};
    window_->setBrowse(control::kReferenceEdit, browse);
    window_->setBrowse(control::kCompareEdit, browse);
    WriteControls();
    // With the reference given, the user has only the other path left to type.
    if (!referencePath.empty()) window_->setFocus(control::kCompareEdit);
}

void CompareFilesDialog::onTextChanged(int controlId) {
    if (controlId != control::kReferenceEdit && controlId != control::kCompareEdit) return;
    ReadControls();
    window_->enable(control::kCompareButton, !referencePath.empty() && !comparePath.empty());
    WriteControls();
}

void CompareFilesDialog::onClicked(int controlId) {
    if (controlId != control::kCompareButton) return;
    ReadControls();
    if (referencePath == comparePath) {
        message = resources::text(resources::id::kEqualPaths);
        WriteControls();
        return;
    }
    window_->endModal(ui::Dialog::kConfirmed);
}

void CompareFilesDialog::onCancel() {
    window_->endModal(ui::Dialog::kCancelled);
}

void CompareFilesDialog::ReadControls() {
    referencePath = window_->text(control::kReferenceEdit);
    comparePath = window_->text(control::kCompareEdit);
    message = window_->text(control::kMessage);
}

void CompareFilesDialog::WriteControls() {
    window_->setText(control::kReferenceEdit, referencePath);
    window_->setText(control::kCompareEdit, comparePath);
    window_->setText(control::kMessage, message);
}

}  // namespace workflow
