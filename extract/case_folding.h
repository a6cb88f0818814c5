#pragma once

#include <cstddef>
#include <string_view>

namespace extract {

/// Comparing texts without regard to case. Every letter that has a lower-case form of one
/// character counts as that form, in all scripts, whatever the process locale; nothing else is
/// equal to anything but itself. So characters between Z and a, such as _, come before letters.

/// Lower-case form of a character; the character itself when it has none.
wchar_t FoldCase(wchar_t character);

/// Below 0, 0 or above 0, by the folded characters' codes; of two texts of which one begins with
/// the other, the shorter one is less.
int CompareNoCase(std::wstring_view a, std::wstring_view b);

bool EqualNoCase(std::wstring_view a, std::wstring_view b);

/// The same number for texts that are equal without regard to case.
std::size_t HashNoCase(std::wstring_view text);

}  // namespace extract
