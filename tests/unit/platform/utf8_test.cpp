#include "platform/os/utf8.h"

#include <gtest/gtest.h>

#include "platform/bxt/resource_loader.h"
#include "platform/hps/utf8.h"

namespace {

TEST(Utf8, EveryCodePointSurvivesBothWays) {
    for (std::uint32_t code = 1; code <= 0x10FFFF; ++code) {
        if (code >= 0xD800 && code <= 0xDFFF) continue;
        const std::wstring wide(1, static_cast<wchar_t>(code));
        const std::string narrow = os::toUtf8(wide);
        ASSERT_EQ(os::toWide(narrow), wide) << code;
        const std::size_t expected = code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
        ASSERT_EQ(narrow.size(), expected) << code;
    }
}

TEST(Utf8, KnownBytes) {
    EXPECT_EQ(os::toUtf8(L"a\u00FC\u20AC\U0001F600"), "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(os::toUtf8(L""), "");
    EXPECT_EQ(os::toWide(""), L"");
}

TEST(Utf8, AnyBytesSurviveTheRoundTrip) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            for (const char* tail : {"", "a", "\x80", "\xBF\xBF"}) {
                std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
                bytes += tail;
                ASSERT_EQ(os::toUtf8(os::toWide(bytes)), bytes) << first << " " << second;
            }
        }
    }
}

TEST(Utf8, BytesThatAreNoUtf8BecomeMarkedBytes) {
    EXPECT_EQ(os::toWide("a\xFFz"), std::wstring({L'a', wchar_t{0xDCFF}, L'z'}));
    EXPECT_EQ(os::toWide("\xC3"), std::wstring(1, wchar_t{0xDCC3}));
    // Overlong, surrogate, past the end of Unicode: no byte of them is taken for a character.
    for (const char* bad : {"\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        for (const wchar_t c : os::toWide(bad)) EXPECT_EQ(c & ~0xFF, 0xDC00) << bad;
    }
}

TEST(Utf8, WhatUtf8CannotCarryIsReplaced) {
    EXPECT_EQ(os::toUtf8(std::wstring(1, wchar_t{0xD800})), "\xEF\xBF\xBD");
    EXPECT_EQ(os::toUtf8(std::wstring(1, wchar_t{0x110000})), "\xEF\xBF\xBD");
    EXPECT_EQ(os::toUtf8(std::wstring(1, wchar_t{0xDC7F})), "\xEF\xBF\xBD");
    EXPECT_EQ(os::toUtf8(std::wstring(1, wchar_t{0xDD00})), "\xEF\xBF\xBD");
}

// Plain runs are widened in words of eight: every length and place around that.
TEST(Utf8, PlainRunsOfEveryLengthAndPlace) {
    for (std::size_t before = 0; before <= 20; ++before) {
        for (std::size_t after = 0; after <= 20; ++after) {
            const std::string head(before, 'h'), tail(after, 't');
            const std::wstring expected =
                std::wstring(before, L'h') + L"\u20AC" + std::wstring(after, L't');
            ASSERT_EQ(os::toWide(head + "\xE2\x82\xAC" + tail), expected);
            ASSERT_EQ(os::toWide(head + tail),
                      std::wstring(before, L'h') + std::wstring(after, L't'));
            ASSERT_EQ(os::toWide(head + "\xFF" + tail).at(before), wchar_t{0xDCFF});
        }
    }
}

TEST(Utf8, ZerosArePartOfTheText) {
    EXPECT_EQ(os::toWide(std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(os::toUtf8(std::wstring(L"a\0b", 3)), std::string("a\0b", 3));
}

TEST(SceneText, GivesAnEmptyArrayForAnEmptyText) {
    std::vector<wchar_t> array = {L'x'};
    EXPECT_TRUE(HPS::UTF8().ToWStr(array));
    EXPECT_TRUE(array.empty());
    EXPECT_TRUE(HPS::UTF8("").Empty());
}

TEST(SceneText, EndsItsArrayWithAZero) {
    std::vector<wchar_t> array;
    EXPECT_TRUE(HPS::UTF8("\xC3\xBC"
                          "b")
                    .ToWStr(array));
    EXPECT_EQ(array, (std::vector<wchar_t>{wchar_t{0xFC}, L'b', L'\0'}));
    EXPECT_EQ(HPS::UTF8("\xC3\xBC"
                        "b")
                  .ToWide(),
              L"\u00FCb");
    EXPECT_EQ(HPS::UTF8(std::wstring(L"\u00FC")).GetBytes(), "\xC3\xBC");
}

TEST(StringUtils, WidensUtf8) {
    EXPECT_EQ(bxtsgutils::StringUtils::convert("6.7.0.365"), L"6.7.0.365");
    EXPECT_EQ(bxtsgutils::StringUtils::convert("\xC3\xBC"), L"\u00FC");
}

}  // namespace
