#pragma once

#include <string>
#include <string_view>

namespace os {

/// Wide text as UTF-8. A code point that UTF-8 can't carry (a lone surrogate, anything past
/// U+10FFFF) becomes U+FFFD, except that U+DC80 to U+DCFF give back the raw byte 0x80 to 0xFF
/// that toWide() made them from: file names of any bytes survive the round trip.
std::string toUtf8(std::wstring_view text);

/// UTF-8 as wide text. A byte that is no part of valid UTF-8 becomes U+DC00 plus the byte.
std::wstring toWide(std::string_view text);

}  // namespace os
