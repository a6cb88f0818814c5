#include "extract/attribute_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "extract/naming.h"

namespace extract {
namespace {

// Type codes of metadata.
constexpr std::uint32_t kInteger = 0x80001001;
constexpr std::uint32_t kUnsignedInteger = 0x80001002;
constexpr std::uint32_t kDouble = 0x80001003;
constexpr std::uint32_t kString = 0x80001004;
constexpr std::uint32_t kTime = 0x80001005;
constexpr std::uint32_t kBoolean = 0x80001006;

constexpr int kSignificantDigits = 17;

// Wide enough for 17 digits, sign, point and exponent, and for any 64-bit number.
constexpr std::size_t kNumberLength = 32;

template <typename Number, typename... Format>
std::wstring numberText(Number number, Format... format) {
    char buffer[kNumberLength];
    const auto end = std::to_chars(buffer, buffer + kNumberLength, number, format...).ptr;
    return {buffer, end};
}

std::wstring doubleText(double value) {
    // A value that is no number has a sign bit, which says nothing.
    if (std::isnan(value)) return L"nan";
    return numberText(value, std::chars_format::general, kSignificantDigits);
}

// U+200A is left out on purpose, here and among the blanks that are trimmed.
bool becomesBlank(wchar_t c) {
    const auto code = static_cast<std::uint32_t>(c);
    if (code < 0x20) return true;
    if (code < 0xA0) return false;
    switch (code) {
        case 0x00A0:
        case 0x200B:
        case 0x200C:
        case 0x200D:
        case 0x202F:
        case 0x2060:
        case 0xFEFF: return true;
        default: return code >= 0x2000 && code <= 0x2009;
    }
}

// White space that becomesBlank() leaves as it is.
bool isOtherWhiteSpace(wchar_t c) {
    switch (static_cast<std::uint32_t>(c)) {
        case 0x0085:
        case 0x1680:
        case 0x2028:
        case 0x2029:
        case 0x205F:
        case 0x3000: return true;
        default: return false;
    }
}

bool isTrimmed(wchar_t c) {
    return c == L' ' || becomesBlank(c) || isOtherWhiteSpace(c);
}

}  // namespace

void MetadataValueToText(const HPS::Metadata& metadata, std::wstring& text) {
    text.clear();
    switch (metadata.Type()) {
        case kString: text = ReadText(HPS::StringMetadata(metadata).GetValue()); break;
        case kInteger: text = numberText(HPS::IntegerMetadata(metadata).GetValue()); break;
        case kUnsignedInteger:
            text = numberText(HPS::UnsignedIntegerMetadata(metadata).GetValue());
            break;
        case kDouble: text = doubleText(HPS::DoubleMetadata(metadata).GetValue()); break;
        case kBoolean: text = HPS::BooleanMetadata(metadata).GetValue() ? L"true" : L"false"; break;
        case kTime:
            text = numberText(HPS::TimeMetadata(metadata).GetValue().secondsSinceEpoch);
            break;
        default: break;
    }
}

std::wstring CleanAttributeText(std::wstring text) {
    const auto kept = [](wchar_t c) { return !isTrimmed(c); };
    const auto last = std::find_if(text.rbegin(), text.rend(), kept).base();
    const auto first = std::find_if(text.begin(), last, kept);
    auto end = text.begin();
    for (auto at = first; at != last; ++at) {
        const wchar_t c = becomesBlank(*at) ? L' ' : *at;
        if (c != L' ' || *(end - 1) != L' ') *end++ = c;
    }
    text.erase(end, text.end());
    return text;
}

}  // namespace extract
