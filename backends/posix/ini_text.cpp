#include "backends/posix/ini_text.h"

#include <charconv>
#include <cstdint>

#include "platform/os/utf8.h"

namespace posix {
namespace {

bool isBlank(wchar_t c) {
    return c == L' ' || c == L'\t';
}

bool standsForItself(wchar_t c, std::wstring_view special) {
    const auto code = static_cast<std::uint32_t>(c);
    const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool character = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    return character && !control && c != L'%' && special.find(c) == std::wstring_view::npos;
}

void appendEscape(std::string& out, wchar_t c) {
    char digits[8];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, static_cast<std::uint32_t>(c), 16).ptr;
    out += "%{";
    out.append(digits, end);
    out += '}';
}

/// Length of the escape at the start of `bytes`, 0 if there is none.
std::size_t readEscape(std::string_view bytes, wchar_t& character) {
    constexpr std::size_t kLongest = 11;  // %{ffffffff}
    if (!bytes.starts_with("%{")) return 0;
    const std::size_t close = bytes.substr(0, kLongest).find('}');
    if (close == std::string_view::npos) return 0;
    std::uint32_t code = 0;
    const char* const end = bytes.data() + close;
    const auto parsed = std::from_chars(bytes.data() + 2, end, code, 16);
    if (parsed.ec != std::errc() || parsed.ptr != end) return 0;
    character = static_cast<wchar_t>(code);
    return close + 1;
}

}  // namespace

std::string escapeIniText(std::wstring_view text, std::wstring_view special) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool atEnd = i == 0 || i + 1 == text.size();
        if (standsForItself(text[i], special) && !(atEnd && isBlank(text[i]))) {
            out += os::toUtf8(text.substr(i, 1));
        } else {
            appendEscape(out, text[i]);
        }
    }
    return out;
}

std::wstring unescapeIniText(std::string_view bytes) {
    std::wstring out;
    while (!bytes.empty()) {
        wchar_t character = 0;
        if (const std::size_t length = readEscape(bytes, character)) {
            out += character;
            bytes.remove_prefix(length);
            continue;
        }
        const std::size_t next = bytes.find('%', 1);
        out += os::toWide(bytes.substr(0, next));
        bytes.remove_prefix(next == std::string_view::npos ? bytes.size() : next);
    }
    return out;
}

std::wstring asciiLower(std::wstring_view text) {
    std::wstring lower(text);
    for (wchar_t& c : lower) {
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    }
    return lower;
}

std::wstring normalKeyPath(std::wstring_view path) {
    std::wstring normal;
    for (const wchar_t c : path) {
        const bool doubled = c == L'\\' && (normal.empty() || normal.back() == L'\\');
        if (!doubled) normal += c;
    }
    if (!normal.empty() && normal.back() == L'\\') normal.pop_back();
    return normal;
}

}  // namespace posix
