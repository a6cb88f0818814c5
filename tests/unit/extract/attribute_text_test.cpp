#include "extract/attribute_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "tests/support/comma_locale.h"

namespace {

using extract::CleanAttributeText;

using Value = decltype(HPS::MetadataValue::value);

std::wstring textOf(Value value, std::uint32_t otherType = 0) {
    std::wstring text = L"what stood before";
    extract::MetadataValueToText(HPS::Metadata(std::make_shared<const HPS::MetadataValue>(
                                     HPS::MetadataValue{"key", std::move(value), otherType})),
                                 text);
    return text;
}

TEST(MetadataText, OfEachKind) {
    EXPECT_EQ(textOf(std::string("steel \xC3\xA4")), L"steel \u00E4");
    EXPECT_EQ(textOf(std::string()), L"");
    EXPECT_EQ(textOf(std::int32_t{-42}), L"-42");
    EXPECT_EQ(textOf(std::numeric_limits<std::int32_t>::min()), L"-2147483648");
    EXPECT_EQ(textOf(std::numeric_limits<std::uint32_t>::max()), L"4294967295");
    EXPECT_EQ(textOf(true), L"true");
    EXPECT_EQ(textOf(false), L"false");
    EXPECT_EQ(textOf(HPS::Time{1700000000}), L"1700000000");
    EXPECT_EQ(textOf(HPS::Time{std::numeric_limits<std::uint64_t>::max()}),
              L"18446744073709551615");
}

TEST(MetadataText, OfAnotherKindIsEmpty) {
    EXPECT_EQ(textOf(std::string("hidden"), 0x80001007), L"");
    std::wstring text = L"what stood before";
    extract::MetadataValueToText(HPS::Metadata(), text);
    EXPECT_EQ(text, L"");
}

TEST(MetadataText, DoublesKeepSeventeenDigits) {
    const std::pair<double, const wchar_t*> kNumbers[] = {
        {0.0, L"0"},
        {-0.0, L"-0"},
        {1.0, L"1"},
        {-2.5, L"-2.5"},
        {0.1, L"0.10000000000000001"},
        {1.0 / 3.0, L"0.33333333333333331"},
        {7850.0, L"7850"},
        {1e16, L"10000000000000000"},
        {1e17, L"1e+17"},
        {1.2345e-7, L"1.2345000000000001e-07"},
        {std::numeric_limits<double>::max(), L"1.7976931348623157e+308"},
        {std::numeric_limits<double>::denorm_min(), L"4.9406564584124654e-324"},
    };
    for (const auto& [number, text] : kNumbers) EXPECT_EQ(textOf(number), text);
}

TEST(MetadataText, NeighbouringDoublesHaveDifferentTexts) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 20000; ++i) {
        const auto value = std::bit_cast<double>(std::uint64_t{random()});
        if (!std::isfinite(value)) continue;
        const double next = std::nextafter(value, std::numeric_limits<double>::infinity());
        EXPECT_NE(textOf(value), textOf(next));
    }
}

TEST(MetadataText, NumbersThatAreNoneAreWords) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(textOf(nan), L"nan");
    EXPECT_EQ(textOf(std::copysign(nan, -1.0)), L"nan");
    EXPECT_EQ(textOf(std::numeric_limits<double>::infinity()), L"inf");
    EXPECT_EQ(textOf(-std::numeric_limits<double>::infinity()), L"-inf");
}

TEST(MetadataText, DoesNotDependOnTheLocale) {
    const support::CommaLocale comma;
    if (!comma.active()) GTEST_SKIP() << "no locale with decimal commas can be made here";
    EXPECT_EQ(textOf(1234.5), L"1234.5");
    EXPECT_EQ(textOf(std::int32_t{1234567}), L"1234567");
}

TEST(MetadataText, EndsAtAZero) {
    EXPECT_EQ(textOf(std::string("a\0b", 3)), L"a");
}

TEST(MetadataText, BytesThatAreNoUtf8StayApart) {
    EXPECT_EQ(textOf(std::string("a\xFF")), (std::wstring{L'a', wchar_t{0xDCFF}}));
}

TEST(CleanText, TurnsEachSpecialBlankIntoABlank) {
    for (std::uint32_t code = 0; code < 0x10000; ++code) {
        const bool listed = code < 0x20 || code == 0xA0 || (code >= 0x2000 && code <= 0x2009) ||
                            code == 0x200B || code == 0x200C || code == 0x200D || code == 0x202F ||
                            code == 0x2060 || code == 0xFEFF;
        const std::wstring text = {L'a', static_cast<wchar_t>(code), L'b'};
        EXPECT_EQ(CleanAttributeText(text), listed ? L"a b" : text) << std::hex << code;
    }
}

TEST(CleanText, KeepsTheHairSpace) {
    EXPECT_EQ(CleanAttributeText(L"a\u200Ab"), L"a\u200Ab");
    EXPECT_EQ(CleanAttributeText(L"\u200Aa\u200A"), L"\u200Aa\u200A");
}

TEST(CleanText, TrimsEveryOtherWhiteSpace) {
    const std::wstring trimmed =
        L" \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200B"
        L"\u200C\u200D\u2028\u2029\u202F\u205F\u2060\u3000\uFEFF";
    for (std::uint32_t code = 0; code < 0x10000; ++code) {
        const auto c = static_cast<wchar_t>(code);
        const bool gone = code < 0x20 || trimmed.find(c) != std::wstring::npos;
        const std::wstring text = {c, L'a', c};
        EXPECT_EQ(CleanAttributeText(text), gone ? L"a" : text) << std::hex << code;
    }
}

TEST(CleanText, TrimsAndJoinsBlanks) {
    EXPECT_EQ(CleanAttributeText(L"\u00A0steel  304"), L"steel 304");
    EXPECT_EQ(CleanAttributeText(L"  a \t\r\n b  "), L"a b");
    EXPECT_EQ(CleanAttributeText(L"a     b"), L"a b");
    EXPECT_EQ(CleanAttributeText(L" \u3000\u2028 a\u3000b \u0085"), L"a\u3000b");
    EXPECT_EQ(CleanAttributeText(L""), L"");
    EXPECT_EQ(CleanAttributeText(L" \t\u00A0\u3000 "), L"");
}

// The rule as it is told: replace, trim, and join pairs of blanks until there are none.
std::wstring plainClean(std::wstring text) {
    static const std::wstring kListed =
        L"\u00A0\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200B\u200C\u200D"
        L"\u202F\u2060\uFEFF";
    for (wchar_t& c : text) {
        if (c < 0x20 || kListed.find(c) != std::wstring::npos) c = L' ';
    }
    static const std::wstring kWhite = L" \u0085\u1680\u2028\u2029\u205F\u3000";
    const std::size_t first = text.find_first_not_of(kWhite);
    if (first == std::wstring::npos) return {};
    text = text.substr(first, text.find_last_not_of(kWhite) - first + 1);
    for (std::size_t at = text.find(L"  "); at != std::wstring::npos; at = text.find(L"  ")) {
        text.replace(at, 2, L" ");
    }
    return text;
}

TEST(CleanText, AgreesWithThePlainRuleOnRandomTexts) {
    static const std::wstring kCharacters = L"ab  \t\n\u00A0\u2003\u200A\u200B\u3000\u0085\uFEFF";
    std::mt19937 random(11);
    for (int i = 0; i < 20000; ++i) {
        std::wstring text(random() % 12, L' ');
        for (wchar_t& c : text) c = kCharacters[random() % kCharacters.size()];
        EXPECT_EQ(CleanAttributeText(text), plainClean(text));
    }
}

TEST(CleanText, AMegabyteOfBlanksIsOneBlank) {
    const std::wstring blanks(1 << 20, L' ');
    EXPECT_EQ(CleanAttributeText(L"a" + blanks + L"b"), L"a b");
    EXPECT_EQ(CleanAttributeText(blanks), L"");
}

}  // namespace
