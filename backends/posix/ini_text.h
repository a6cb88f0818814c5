#pragma once

#include <string>
#include <string_view>

namespace posix {

/// UTF-8 in which every character that is a control character, no Unicode character, `%`, or one
/// of `special` has become `%{hex}`. A blank at either end becomes one too.
std::string escapeIniText(std::wstring_view text, std::wstring_view special);

/// The reverse. What looks like an escape but is none stands for itself.
std::wstring unescapeIniText(std::string_view bytes);

/// `A` to `Z` as small letters; everything else as it is, whatever the locale.
std::wstring asciiLower(std::wstring_view text);

/// A key's path in the one form in which paths are compared: no leading, trailing or doubled
/// backslashes, case kept.
std::wstring normalKeyPath(std::wstring_view path);

}  // namespace posix
