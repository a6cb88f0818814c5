#include "backends/mesh/uri.h"

#include <cstdint>

#include "backends/mesh/text.h"

namespace mesh {
namespace {

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string unescaped(std::string_view uri) {
    std::string out;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        const bool escape = uri[i] == '%' && i + 2 < uri.size();
        const int high = escape ? hexDigit(uri[i + 1]) : -1;
        const int low = escape ? hexDigit(uri[i + 2]) : -1;
        if (high < 0 || low < 0) {
            out += uri[i];
            continue;
        }
        out += static_cast<char>(16 * high + low);
        i += 2;
    }
    return out;
}

/// 64 for what is no digit.
std::uint32_t base64Digit(char c) {
    if (c >= 'A' && c <= 'Z') return static_cast<std::uint32_t>(c - 'A');
    if (c >= 'a' && c <= 'z') return static_cast<std::uint32_t>(c - 'a') + 26;
    if (c >= '0' && c <= '9') return static_cast<std::uint32_t>(c - '0') + 52;
    if (c == '+' || c == '-') return 62;
    return c == '/' || c == '_' ? 63 : 64;
}

}  // namespace

std::optional<std::string> pathBelow(std::string_view uri) {
    std::string path = unescaped(uri);
    const bool absolute = path.empty() || path.front() == '/';
    const bool strange = path.find_first_of(std::string_view(":\\\0", 3)) != path.npos;
    if (absolute || strange) return std::nullopt;
    for (std::size_t begin = 0; begin <= path.size();) {
        std::size_t end = path.find('/', begin);
        if (end == path.npos) end = path.size();
        if (path.substr(begin, end - begin) == "..") return std::nullopt;
        begin = end + 1;
    }
    return path;
}

std::optional<std::string> decodeDataUri(std::string_view uri) {
    constexpr std::string_view kMark = ";base64,";
    const std::size_t mark = uri.substr(0, 256).find(kMark);
    if (!sameWord(uri.substr(0, 5), "data:") || mark == uri.npos) return std::nullopt;
    std::string_view digits = uri.substr(mark + kMark.size());
    while (digits.ends_with('=')) digits.remove_suffix(1);
    std::string out;
    out.reserve(digits.size() / 4 * 3 + 2);
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : digits) {
        const std::uint32_t digit = base64Digit(c);
        if (digit == 64) return std::nullopt;
        bits = (bits << 6U) | digit;
        count += 6;
        if (count < 8) continue;
        count -= 8;
        out += static_cast<char>((bits >> static_cast<unsigned>(count)) & 0xFFU);
    }
    if (count == 6) return std::nullopt;
    return out;
}

}  // namespace mesh
