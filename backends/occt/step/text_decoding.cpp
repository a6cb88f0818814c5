#include "backends/occt/step/value.h"

#include <algorithm>

namespace occt::step {
namespace {

std::optional<std::uint32_t> hexNumber(std::string_view digits) {
    std::uint32_t number = 0;
    for (const char c : digits) {
        const int digit = c >= '0' && c <= '9'   ? c - '0'
                          : c >= 'A' && c <= 'F' ? c - 'A' + 10
                          : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                                 : -1;
        if (digit < 0) return std::nullopt;
        number = number * 16 + static_cast<std::uint32_t>(digit);
    }
    return number;
}

void appendCodePoint(std::string& out, std::uint32_t code) {
    if (code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) code = 0xFFFD;
    if (code < 0x80) {
        out += static_cast<char>(code);
        return;
    }
    const int tails = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr std::uint32_t lead[] = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(lead[tails] | (code >> (6 * tails)));
    for (int i = tails - 1; i >= 0; --i) {
        out += static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3F));
    }
}

/// Length of the UTF-8 sequence at `at`, 0 when there is none.
std::size_t utf8Length(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead < 0x80                   ? 1
                               : lead >= 0xC2 && lead < 0xE0 ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return 0;
    }
    if (length < 3) return length;
    // Longer forms than needed, surrogates, and what lies past the last code point.
    const auto second = static_cast<unsigned char>(text[at + 1]);
    const bool none = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
                      (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90);
    return none ? 0 : length;
}

bool isUtf8(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = utf8Length(text, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

/// Whether bytes that are no UTF-8 look like Windows-1251: Cyrillic words are runs of high bytes,
/// while letters of ISO 8859-1 above ASCII stand alone or in pairs.
bool isCyrillic(std::string_view text) {
    std::size_t run = 0;
    for (const char c : text) {
        run = static_cast<unsigned char>(c) >= 0xC0 ? run + 1 : 0;
        if (run == 3) return true;
    }
    return false;
}

std::uint32_t fromCyrillic(unsigned char byte) {
    if (byte >= 0xC0) return 0x410U + (byte - 0xC0U);
    return byte == 0xA8 ? 0x401U : byte == 0xB8 ? 0x451U : byte;
}

/// Code units of `width` hexadecimal digits up to \X0\. Moves `at` behind it.
void decodeWide(std::string_view raw, std::size_t& at, std::size_t width, std::string& out) {
    constexpr std::uint32_t none = 0xFFFD;
    constexpr std::string_view last = "\\X0\\";
    const std::size_t end = std::min(raw.find('\\', at), raw.size());
    std::uint32_t high = 0;
    while (at < end) {
        const auto unit = at + width <= end ? hexNumber(raw.substr(at, width)) : std::nullopt;
        const bool isLow = unit && *unit >= 0xDC00 && *unit < 0xE000;
        if (high != 0 && !isLow) appendCodePoint(out, none);
        if (!unit) {
            appendCodePoint(out, none);
            high = 0;
            at = end;  // where the next unit starts is anybody's guess
            break;
        }
        at += width;
        const bool isHigh = *unit >= 0xD800 && *unit < 0xDC00;
        if (isLow && high != 0) {
            appendCodePoint(out, 0x10000 + ((high - 0xD800) << 10) + (*unit - 0xDC00));
        } else if (!isHigh) {
            appendCodePoint(out, *unit);
        }
        high = isHigh ? *unit : 0;
    }
    if (high != 0) appendCodePoint(out, none);
    if (raw.substr(at, last.size()) == last) at += last.size();
}

/// One directive at the backslash at `at`; false when it is none.
bool decodeDirective(std::string_view raw, std::size_t& at, std::string& out) {
    const std::string_view rest = raw.substr(at);
    if (rest.starts_with("\\\\")) {
        out += '\\';
        at += 2;
    } else if (rest.starts_with("\\X2\\") || rest.starts_with("\\X4\\")) {
        at += 4;
        decodeWide(raw, at, rest[2] == '2' ? 4 : 8, out);
    } else if (rest.starts_with("\\X\\") && rest.size() >= 5 && hexNumber(rest.substr(3, 2))) {
        appendCodePoint(out, *hexNumber(rest.substr(3, 2)));
        at += 5;
    } else if (rest.starts_with("\\S\\") && rest.size() >= 4 &&
               static_cast<unsigned char>(rest[3]) < 0x80) {
        appendCodePoint(out, static_cast<unsigned char>(rest[3]) + 128U);
        at += 4;
    } else if (rest.size() >= 4 && rest[1] == 'P' && rest[3] == '\\') {
        at += 4;  // page of \S\: ISO 8859-1 is the only one that files in practice use
    } else {
        return false;
    }
    return true;
}

}  // namespace

std::string decodeText(std::string_view raw) {
    const bool utf8 = isUtf8(raw);
    const bool cyrillic = !utf8 && isCyrillic(raw);
    std::string out;
    out.reserve(raw.size());
    for (std::size_t at = 0; at < raw.size();) {
        const char c = raw[at];
        if (c == '\'' && at + 1 < raw.size() && raw[at + 1] == '\'') {
            out += c;
            at += 2;
        } else if (c == '\\' && decodeDirective(raw, at, out)) {
            continue;
        } else if (static_cast<unsigned char>(c) >= 0x80 && !utf8) {
            const auto byte = static_cast<unsigned char>(c);
            appendCodePoint(out, cyrillic ? fromCyrillic(byte) : byte);
            ++at;
        } else if (c == '\n' || c == '\r') {
            ++at;  // a line break inside a text is the writer's layout
        } else {
            out += c;
            ++at;
        }
    }
    return out;
}

}  // namespace occt::step
