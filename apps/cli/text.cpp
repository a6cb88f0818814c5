#include "apps/cli/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>

#include "platform/os/utf8.h"

namespace cli {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// Ranges in ascending order. Combining marks of the scripts that CAD names come in.
constexpr Range kZeroWidth[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489},   {0x0591, 0x05BD},   {0x05BF, 0x05BF}, {0x05C1, 0x05C2},
    {0x05C4, 0x05C5}, {0x05C7, 0x05C7},   {0x0610, 0x061A},   {0x064B, 0x065F}, {0x0670, 0x0670},
    {0x06D6, 0x06DC}, {0x06DF, 0x06E4},   {0x06E7, 0x06E8},   {0x06EA, 0x06ED}, {0x0900, 0x0902},
    {0x093A, 0x093A}, {0x093C, 0x093C},   {0x0941, 0x0948},   {0x094D, 0x094D}, {0x0951, 0x0957},
    {0x0E31, 0x0E31}, {0x0E34, 0x0E3A},   {0x0E47, 0x0E4E},   {0x1160, 0x11FF}, {0x1AB0, 0x1ACE},
    {0x1DC0, 0x1DFF}, {0x20D0, 0x20F0},   {0x302A, 0x302D},   {0x3099, 0x309A}, {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F}, {0x1F3FB, 0x1F3FF}, {0xE0100, 0xE01EF},
};

constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},
    {0x23F0, 0x23F0},   {0x23F3, 0x23F3},   {0x25FD, 0x25FE},   {0x2614, 0x2615},
    {0x2648, 0x2653},   {0x267F, 0x267F},   {0x2693, 0x2693},   {0x26A1, 0x26A1},
    {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},   {0x26CE, 0x26CE},
    {0x26D4, 0x26D4},   {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},
    {0x26FA, 0x26FA},   {0x26FD, 0x26FD},   {0x2705, 0x2705},   {0x270A, 0x270B},
    {0x2728, 0x2728},   {0x274C, 0x274C},   {0x274E, 0x274E},   {0x2753, 0x2755},
    {0x2757, 0x2757},   {0x2795, 0x2797},   {0x27B0, 0x27B0},   {0x27BF, 0x27BF},
    {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},   {0x2E80, 0x303E},
    {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0xA4CF},   {0xA960, 0xA97C},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},
    {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x18CFF}, {0x1AFF0, 0x1B2FF},
    {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A},
    {0x1F200, 0x1F265}, {0x1F300, 0x1F320}, {0x1F32D, 0x1F335}, {0x1F337, 0x1F37C},
    {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0},
    {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F3FA}, {0x1F400, 0x1F43E}, {0x1F440, 0x1F440},
    {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D}, {0x1F54B, 0x1F54E}, {0x1F550, 0x1F567},
    {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596}, {0x1F5A4, 0x1F5A4}, {0x1F5FB, 0x1F64F},
    {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC}, {0x1F6D0, 0x1F6D2}, {0x1F6D5, 0x1F6D7},
    {0x1F6DC, 0x1F6DF}, {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC}, {0x1F7E0, 0x1F7F0},
    {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945}, {0x1F947, 0x1F9FF}, {0x1FA70, 0x1FAFF},
    {0x20000, 0x3FFFD},
};

// What a terminal or a reader could be fooled by: soft hyphen, marks and overrides of direction,
// zero-width characters, separators of lines, fillers, tags.
constexpr Range kHidden[] = {
    {0x00AD, 0x00AD}, {0x034F, 0x034F}, {0x061C, 0x061C}, {0x115F, 0x1160},   {0x17B4, 0x17B5},
    {0x180B, 0x180E}, {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},   {0x3164, 0x3164},
    {0xFEFF, 0xFEFF}, {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFFB}, {0xE0000, 0xE007F},
};

constexpr char32_t kDelete = 0x7F;
constexpr char32_t kFirstRawByte = 0xDC80;
constexpr char32_t kLastRawByte = 0xDCFF;

template <std::size_t Count>
bool within(const Range (&ranges)[Count], char32_t c) {
    const auto after =
        std::upper_bound(std::begin(ranges), std::end(ranges), c,
                         [](char32_t value, const Range& r) { return value < r.first; });
    return after != std::begin(ranges) && c <= std::prev(after)->last;
}

bool isControl(char32_t c) {
    return c < 0x20 || (c >= kDelete && c < 0xA0);
}

std::string hex(char32_t value, int digits) {
    std::array<char, 8> text = {};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), static_cast<std::uint32_t>(value), 16)
            .ptr;
    std::string made(text.data(), end);
    if (made.size() < static_cast<std::size_t>(digits)) {
        made.insert(0, static_cast<std::size_t>(digits) - made.size(), '0');
    }
    return made;
}

void append(std::string& out, char32_t c) {
    if (c == U'\n') {
        out += "\\n";
    } else if (c == U'\t') {
        out += "\\t";
    } else if (c == U'\r') {
        out += "\\r";
    } else if (isControl(c)) {
        out += "\\x" + hex(c, 2);
    } else if (c >= kFirstRawByte && c <= kLastRawByte) {
        out += "\\x" + hex(c - 0xDC00, 2);
    } else if (within(kHidden, c)) {
        out += "\\u{" + hex(c, 4) + "}";
    } else {
        out += os::toUtf8(std::wstring(1, static_cast<wchar_t>(c)));
    }
}

}  // namespace

std::string printable(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (const wchar_t c : text) {
        if (c >= L' ' && c < L'\x7F') {
            out += static_cast<char>(c);
        } else {
            append(out, static_cast<char32_t>(c));
        }
    }
    return out;
}

std::string printable(std::string_view utf8) {
    return printable(os::toWide(utf8));
}

std::size_t columns(std::string_view printableUtf8) {
    std::size_t width = 0;
    for (const wchar_t wide : os::toWide(printableUtf8)) {
        const auto c = static_cast<char32_t>(wide);
        if (c < 0x300) {
            ++width;
        } else if (!within(kZeroWidth, c)) {
            width += within(kWide, c) ? 2 : 1;
        }
    }
    return width;
}

std::string decimal(double value, int decimals) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    std::array<char, 400> text = {};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::fixed, decimals)
                         .ptr;
    std::string made(text.data(), end);
    const bool zero = made.find_first_not_of("-0.") == std::string::npos;
    if (zero && made.front() == '-') made.erase(0, 1);
    return made;
}

std::string shortest(double value) {
    std::array<char, 64> text = {};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

}  // namespace cli
