#include "apps/cli/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/os/utf8.h"
#include "tests/support/comma_locale.h"

namespace {

using cli::columns;
using cli::decimal;
using cli::printable;

TEST(CliText, WhatATerminalCouldObeyIsEscaped) {
    struct Row {
        std::wstring given;
        std::string shown;
    };
    const Row rows[] = {
        {L"", ""},
        {L"Bolt M8 (3)", "Bolt M8 (3)"},
        {L"a\nb\tc\rd", "a\\nb\\tc\\rd"},
        {std::wstring(L"nul\0!", 5), "nul\\x00!"},
        {L"\x1b[31mred", "\\x1b[31mred"},
        {L"\a\b\x7f", "\\x07\\x08\\x7f"},
        {L"\x80\x9b\x9f", "\\x80\\x9b\\x9f"},
        {L"\u202egpj.exe", "\\u{202e}gpj.exe"},
        {L"\u2066x\u2069", "\\u{2066}x\\u{2069}"},
        {L"\u061c\u200e\u200f", "\\u{061c}\\u{200e}\\u{200f}"},
        {L"\ufeff\u200b\u2028", "\\u{feff}\\u{200b}\\u{2028}"},
        {L"Kurbelgeh\u00e4use \u9f7f\u8f6e", "Kurbelgeh\xc3\xa4use \xe9\xbd\xbf\xe8\xbd\xae"},
        {L"a\u00a0b",
         "a\xc2\xa0"
         "b"},
        {L"C:\\parts", "C:\\parts"},
    };
    for (const Row& row : rows) EXPECT_EQ(printable(row.given), row.shown);
}

TEST(CliText, BytesThatAreNoUtf8AreShownAsBytes) {
    EXPECT_EQ(printable(std::string_view("a\xff\xfe"
                                         "b")),
              "a\\xff\\xfe"
              "b");
    EXPECT_EQ(printable(std::string_view("gl\xc3\xa4nzend")), "gl\xc3\xa4nzend");
}

TEST(CliText, NothingPrintableHoldsAControlByte) {
    for (wchar_t c = 0; c < 0x3000; ++c) {
        if (c >= 0xD800 && c < 0xE000) continue;
        for (const wchar_t shown : os::toWide(printable(std::wstring(1, c)))) {
            EXPECT_TRUE(shown >= 0x20 && !(shown >= 0x7F && shown < 0xA0)) << static_cast<int>(c);
        }
    }
}

TEST(CliText, ColumnsCountWideAndCombiningCharacters) {
    struct Row {
        std::wstring text;
        std::size_t width;
    };
    const Row rows[] = {
        {L"", 0},
        {L"gear", 4},
        {L"Geh\u00e4use", 7},
        {L"e\u0301", 1},                   // combining acute
        {L"\u9f7f\u8f6e", 4},              // CJK
        {L"\u30ae\u30a2", 4},              // katakana
        {L"\uff76\uff9e", 2},              // half-width katakana
        {L"\uff21", 2},                    // full-width A
        {L"\uae30\uc5b4", 4},              // hangul
        {L"\u0428\u0435\u0441\u0442", 4},  // Cyrillic
        {L"\U0001f527", 2},                // picture
        {L"\U00020000", 2},                // CJK beyond the first plane
    };
    for (const Row& row : rows) {
        EXPECT_EQ(columns(os::toUtf8(row.text)), row.width) << os::toUtf8(row.text);
    }
}

TEST(CliText, DecimalsDoNotDependOnALocaleAndZeroHasNoMinus) {
    EXPECT_EQ(decimal(1234.5678, 3), "1234.568");
    EXPECT_EQ(decimal(-0.0004, 3), "0.000");
    EXPECT_EQ(decimal(-0.0, 0), "0");
    EXPECT_EQ(decimal(-0.25, 2), "-0.25");
    EXPECT_EQ(decimal(std::nan(""), 2), "nan");
    EXPECT_EQ(decimal(-std::numeric_limits<double>::infinity(), 2), "-inf");
    EXPECT_EQ(decimal(std::numeric_limits<double>::max(), 3).size(), 313U);
}

TEST(CliText, ALocaleWithAnotherPointChangesNothing) {
    const support::CommaLocale comma;
    if (!comma.active()) {
        GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: no locale with a decimal comma can be made "
                        "(package locales)";
    }
    EXPECT_EQ(decimal(12345.678, 2), "12345.68");
    EXPECT_EQ(cli::shortest(0.5), "0.5");
}

}  // namespace
