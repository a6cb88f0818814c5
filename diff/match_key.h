#pragma once

#include <string>
#include <string_view>

namespace diff {

/// Appends the key under which siblings are matched: the text up to its first '(', its ASCII
/// letters lower-cased, its digits, '-' and '_', each run of white space as one space, no space
/// at either end, nothing else. Empty for a text that holds none of these. The key is plain
/// ASCII, so narrow characters carry it.
void AppendMatchKey(std::wstring_view text, std::string& out);

}  // namespace diff
