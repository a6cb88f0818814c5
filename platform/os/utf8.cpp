#include "platform/os/utf8.h"

#include <cstdint>
#include <cstring>

namespace os {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr std::uint32_t kRawByteBase = 0xDC00;

bool isRawByte(std::uint32_t code) {
    return code >= 0xDC80 && code <= 0xDCFF;
}

void append(std::string& out, std::uint32_t code) {
    const auto byte = [&out](std::uint32_t value) { out.push_back(static_cast<char>(value)); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0 | (code >> 6));
        byte(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        byte(0xE0 | (code >> 12));
        byte(0x80 | ((code >> 6) & 0x3F));
        byte(0x80 | (code & 0x3F));
    } else {
        byte(0xF0 | (code >> 18));
        byte(0x80 | ((code >> 12) & 0x3F));
        byte(0x80 | ((code >> 6) & 0x3F));
        byte(0x80 | (code & 0x3F));
    }
}

struct Decoded {
    std::uint32_t code = 0;
    std::size_t length = 0;  // 0: not valid
};

std::size_t sequenceLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

Decoded decode(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = sequenceLength(lead);
    if (length == 0 || length > text.size()) return {};
    if (length == 1) return {lead, 1};
    std::uint32_t code = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0) != 0x80) return {};
        code = (code << 6) | (next & 0x3FU);
    }
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kLeast[length] || surrogate || code > 0x10FFFF) return {};
    return {code, length};
}

// Nearly all names are ASCII; finding its end word by word is several times quicker than decoding.
std::size_t asciiPrefix(std::string_view text) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
        std::memcpy(&word, text.data() + length, sizeof word);
        if ((word & kHighBits) != 0) break;
    }
    while (length < text.size() && static_cast<unsigned char>(text[length]) < 0x80) ++length;
    return length;
}

}  // namespace

std::string toUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (const wchar_t character : text) {
        const auto code = static_cast<std::uint32_t>(character);
        if (isRawByte(code)) {
            out.push_back(static_cast<char>(code - kRawByteBase));
        } else if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
            append(out, kReplacement);
        } else {
            append(out, code);
        }
    }
    return out;
}

std::wstring toWide(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    while (!text.empty()) {
        const std::size_t plain = asciiPrefix(text);
        out.append(text.begin(), text.begin() + plain);
        text.remove_prefix(plain);
        if (text.empty()) break;
        const Decoded decoded = decode(text);
        if (decoded.length == 0) {
            out.push_back(static_cast<wchar_t>(kRawByteBase + static_cast<unsigned char>(text[0])));
            text.remove_prefix(1);
        } else {
            out.push_back(static_cast<wchar_t>(decoded.code));
            text.remove_prefix(decoded.length);
        }
    }
    return out;
}

}  // namespace os
