#include "extract/case_folding.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using extract::CompareNoCase;
using extract::EqualNoCase;
using extract::FoldCase;
using extract::HashNoCase;

constexpr std::uint32_t kEndOfUnicode = 0x110000;

TEST(CaseFolding, LettersOfAllScriptsTakeTheirLowerCaseForm) {
    const std::pair<const wchar_t*, const wchar_t*> kPairs[] = {
        {L"ABCXYZ", L"abcxyz"},
        {L"\u00C0\u00D6\u00D8\u00DE\u0178", L"\u00E0\u00F6\u00F8\u00FE\u00FF"},
        {L"\u0100\u0147\u0160\u017D", L"\u0101\u0148\u0161\u017E"},
        {L"\u0391\u03A9\u0386", L"\u03B1\u03C9\u03AC"},
        {L"\u0401\u0410\u042F\u0490", L"\u0451\u0430\u044F\u0491"},
        {L"\u0531\u0556", L"\u0561\u0586"},
        {L"\u1E9E\u1EF8", L"\u00DF\u1EF9"},
        {L"\u2126\u212A\u212B", L"\u03C9k\u00E5"},
        {L"\u2160\u24B6", L"\u2170\u24D0"},
        {L"\uFF21\uFF3A", L"\uFF41\uFF5A"},
        {L"\U00010400", L"\U00010428"},
    };
    for (const auto& [upper, lower] : kPairs) {
        EXPECT_TRUE(EqualNoCase(upper, lower)) << lower;
        EXPECT_EQ(CompareNoCase(upper, lower), 0) << lower;
        EXPECT_EQ(HashNoCase(upper), HashNoCase(lower)) << lower;
    }
}

TEST(CaseFolding, NothingElseIsEqual) {
    const std::pair<const wchar_t*, const wchar_t*> kPairs[] = {
        {L"a", L"b"},       {L"[", L"{"},           {L"@", L"`"},      {L"\u00D7", L"\u00F7"},
        {L"\u00DF", L"ss"}, {L"\u0131", L"i"},      {L"\u0130", L"i"}, {L"\u03C2", L"\u03C3"},
        {L"e", L"\u00E9"},  {L"\u6B6F", L"\u8ECA"}, {L"a", L""},       {L"ab", L"a"},
    };
    for (const auto& [a, b] : kPairs) {
        EXPECT_FALSE(EqualNoCase(a, b)) << a << b;
        EXPECT_NE(CompareNoCase(a, b), 0) << a << b;
    }
}

// The number of letters that have a lower-case form, and a sum over them and their forms, were
// worked out from the character database by other means.
TEST(CaseFolding, KnowsEveryLetterThatHasALowerCaseForm) {
    std::uint32_t letters = 0;
    std::uint32_t sum = 0;
    for (std::uint32_t code = 0; code < kEndOfUnicode; ++code) {
        const auto folded = static_cast<std::uint32_t>(FoldCase(static_cast<wchar_t>(code)));
        if (folded == code) continue;
        ++letters;
        sum += code * 31 + (folded - code);
        EXPECT_EQ(FoldCase(static_cast<wchar_t>(folded)), static_cast<wchar_t>(folded)) << code;
    }
    EXPECT_EQ(letters, 1432U);
    EXPECT_EQ(sum, 1001574276U);
}

TEST(CaseFolding, OrdersByTheFoldedCharactersCodes) {
    const wchar_t* const kAscending[] = {L"",       L" ",      L"1",     L"A",  L"A ",
                                         L"a1",     L"AB",     L"b_",    L"BA", L"\u00C4",
                                         L"\u0101", L"\u0431", L"\u6B6F"};
    const auto count = static_cast<int>(std::size(kAscending));
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < count; ++j) {
            const int order = CompareNoCase(kAscending[i], kAscending[j]);
            EXPECT_EQ(order < 0, i < j) << i << " " << j;
            EXPECT_EQ(order > 0, i > j) << i << " " << j;
        }
    }
}

TEST(CaseFolding, SignsBetweenTheCasesComeBeforeLetters) {
    EXPECT_LT(CompareNoCase(L"_", L"A"), 0);
    EXPECT_LT(CompareNoCase(L"[", L"a"), 0);
    EXPECT_GT(CompareNoCase(L"{", L"Z"), 0);
}

TEST(CaseFolding, TakesAnyNumberForACharacter) {
    for (const std::uint32_t code : {0U, 0xD800U, 0xDCFFU, 0x10FFFFU, 0x110000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(FoldCase(static_cast<wchar_t>(code)), static_cast<wchar_t>(code));
    }
}

}  // namespace
