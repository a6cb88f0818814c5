#pragma once

#include <optional>
#include <string>

#include "platform/ui/dialog.h"

/// Dialog templates. Every language has its own id; all ids of one dialog share one layout.
namespace resources {

enum class DialogKind { CompareFiles, Results };

/// Control ids of the file pair dialog.
namespace compare_files_dialog {
constexpr int kReferenceEdit = 1001;
constexpr int kCompareEdit = 1002;
constexpr int kMessage = 1015;
constexpr int kCompareButton = 1;
}  // namespace compare_files_dialog

/// Control ids of the results dialog.
namespace results_dialog {
constexpr int kReferenceTree = 1360;
constexpr int kCompareTree = 1361;
}  // namespace results_dialog

/// Template of a dialog for a two-letter language code; the English one for any other text.
int dialogTemplateId(DialogKind kind, const std::wstring& language);

/// Empty when no template has that id.
std::optional<ui::DialogTemplate> dialogTemplate(int templateId);

}  // namespace resources
