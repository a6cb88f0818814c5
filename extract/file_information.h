#pragma once

#include <string>
#include <vector>

namespace extract {

/// Appends the four rows that the file information shows for one file: its folder without the
/// separator, its name with extension, the volume, still empty, and the difference, still "-".
///
/// The path is split at its last `separator`; without one, folder and name are both the whole
/// path.
void AddFileInformation(const std::wstring& path, std::vector<std::wstring>& names,
                        std::vector<std::wstring>& values, wchar_t separator = L'\\');

}  // namespace extract
