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

/// Control ids of the results dialog. Trees and their labels are made at run time.
namespace results_dialog {
constexpr int kUnchanged = 1064;  ///< never shown, and nobody asks for it
constexpr int kSectionList = 1301;
constexpr int kSave = 1302;
constexpr int kCopy = 1303;
constexpr int kReferenceBom = 1305;
constexpr int kCompareBom = 1306;
constexpr int kReferenceBomLabel = 1307;
constexpr int kCompareBomLabel = 1308;
constexpr int kReferenceAttributes = 1309;
constexpr int kCompareAttributes = 1310;
constexpr int kReferenceAttributesLabel = 1311;
constexpr int kCompareAttributesLabel = 1312;
constexpr int kAssemblyRadio = 1313;
constexpr int kPartRadio = 1314;
constexpr int kReferencePmi = 1315;
constexpr int kComparePmi = 1316;
constexpr int kReferencePmiLabel = 1317;
constexpr int kComparePmiLabel = 1318;
constexpr int kReferenceFileInfo = 1319;
constexpr int kCompareFileInfo = 1320;
constexpr int kReferenceFileInfoLabel = 1321;
constexpr int kCompareFileInfoLabel = 1322;
constexpr int kReferenceTree = 1360;
constexpr int kCompareTree = 1361;
constexpr int kReferenceTreeLabel = 1362;
constexpr int kCompareTreeLabel = 1363;
}  // namespace results_dialog

/// Template of a dialog for a two-letter language code; the English one for any other text.
int dialogTemplateId(DialogKind kind, const std::wstring& language);

/// Empty when no template has that id.
std::optional<ui::DialogTemplate> dialogTemplate(int templateId);

}  // namespace resources
