#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cli {

/// Text from a file in a form that a terminal can be given: UTF-8 in which control characters,
/// characters that change the direction of writing, invisible ones and bytes that are no UTF-8
/// stand as \n, \x1b or \u{202e}. Everything else stays.
std::string printable(std::wstring_view text);
/// The same for UTF-8, which may hold any bytes.
std::string printable(std::string_view utf8);

/// Columns that a terminal needs for printable text, the same on every machine: 2 for wide and
/// full-width characters of East Asia and pictures, 0 for combining marks, otherwise 1.
std::size_t columns(std::string_view printableUtf8);

/// A number with that many decimals, a full stop for the point and no minus before a zero.
/// "nan" and "inf" for what is no number.
std::string decimal(double value, int decimals);

/// The shortest text that reads back as the same number.
std::string shortest(double value);

}  // namespace cli
