#pragma once

#include <string>
#include <vector>

namespace workflow {

/// Alternating format names and patterns, L"STEP Files", L"*.stp;*.step", ...
using FormatList = std::vector<std::wstring>;

/// False for the names and patterns of formats that can't be compared. `text` is compared whole
/// and with regard to case, so a single pattern of a row with several is not found.
bool IsComparableFormat(const std::wstring& text);

/// Appends the comparable formats of the host's list to `filters`, and behind them one entry
/// "All Supported Files" with all their patterns. Nothing happens for an empty list.
void BuildFileFilters(const FormatList& formats, FormatList& filters);

/// Asks the user for the two files. `documentFile`, the file of the active document, is offered
/// as the reference if it can be compared and its path has a drive. Returns 1 when the user
/// confirmed. Both outputs are always written, without any double quotes.
int ChooseFiles(const FormatList& filters, const std::wstring& documentFile,
                std::wstring& referencePath, std::wstring& comparePath);

}  // namespace workflow
