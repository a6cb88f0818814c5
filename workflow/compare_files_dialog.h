#pragma once

#include <memory>
#include <string>

#include "platform/ui/dialog.h"
#include "workflow/file_pair.h"

namespace workflow {

/// Prompt for the two files of a run. The three texts are exchanged with the controls as the
/// user types; whether the files exist is not its concern. User-interface thread.
class CompareFilesDialog : private ui::DialogEvents {
public:
    explicit CompareFilesDialog(FormatList fileFilters);
    ~CompareFilesDialog() override;
    CompareFilesDialog(const CompareFilesDialog&) = delete;
    CompareFilesDialog& operator=(const CompareFilesDialog&) = delete;

    /// Runs the dialog. Returns 1 for its button "Compare"; another number otherwise, also
    /// without a toolkit.
    int DoModal();

    /// Filter text for the file browser: "All Supported Files" first, then the other formats.
    static std::wstring BrowserFilter(const FormatList& filters);

    std::wstring referencePath;
    std::wstring comparePath;
    std::wstring message;
    FormatList filters;

private:
    void onInitDialog() override;
    void onTextChanged(int controlId) override;
    void onClicked(int controlId) override;
    void onCancel() override;
    void ReadControls();
    void WriteControls();

    std::unique_ptr<ui::Dialog> window_;
};

}  // namespace workflow
