#include "backends/posix/ini_document.h"

#include <gtest/gtest.h>

#include "backends/posix/ini_text.h"
#include "platform/os/utf8.h"

namespace {

using posix::IniDocument;
using posix::IniValue;

constexpr const wchar_t* kKey = L"Software\\Bextora";

std::optional<std::uint32_t> number(const IniDocument& document, std::wstring_view name,
                                    std::wstring_view path = kKey) {
    const auto value = document.value(path, name);
    if (!value || !std::holds_alternative<std::uint32_t>(*value)) return std::nullopt;
    return std::get<std::uint32_t>(*value);
}

std::optional<std::wstring> text(const IniDocument& document, std::wstring_view name,
                                 std::wstring_view path = kKey) {
    const auto value = document.value(path, name);
    if (!value || !std::holds_alternative<std::wstring>(*value)) return std::nullopt;
    return std::get<std::wstring>(*value);
}

TEST(IniDocument, WritesWhatAUserCanRead) {
    IniDocument document;
    document.setValue(kKey, L"PSCompare", 1U);
    document.setValue(kKey, L"StampPath", L"C:\\pictures\\St\u00e4mp.png");
    document.addKey(L"Software\\Empty");
    EXPECT_EQ(document.bytes(),
              "[Software\\Bextora]\nPSCompare=1\nStampPath=\"C:\\pictures\\St\xC3\xA4mp.png\"\n"
              "[Software\\Empty]\n");
}

TEST(IniDocument, ValuesOfAllKindsSurviveTheRoundTrip) {
    const std::wstring hostile[] = {L"",
                                    L" ",
                                    L"  two  ends  ",
                                    L"\"quoted\"",
                                    L"a=b;c#d[e]f%g",
                                    L"%{41}",
                                    L"%",
                                    L"%{",
                                    L"%{zz}",
                                    L"line\r\nfeed\ttab",
                                    std::wstring(L"ze\0ro", 5),
                                    L"back\\slash\\",
                                    L"\u00e4\u9f7f\U0001F600",
                                    L"\uFEFFmark",
                                    L"42",
                                    L"4294967296",
                                    L"\u0085\u2028",
                                    {wchar_t{0xD800}},
                                    {wchar_t{0xDC80}, wchar_t{0xDCC3}, wchar_t{0xDCA9}},
                                    {static_cast<wchar_t>(0x110000)},
                                    {static_cast<wchar_t>(0xFFFFFFFF)},
                                    std::wstring(100'000, L'x')};
    IniDocument document;
    int index = 0;
    for (const std::wstring& value : hostile) {
        document.setValue(kKey, L"text" + std::to_wstring(index++), value);
    }
    for (const std::uint32_t value : {0U, 1U, 2U, 0x80000000U, 0xFFFFFFFFU}) {
        document.setValue(kKey, L"number" + std::to_wstring(value), value);
    }
    const IniDocument again(document.bytes());
    index = 0;
    for (const std::wstring& value : hostile) {
        EXPECT_EQ(text(again, L"text" + std::to_wstring(index)), value) << index;
        ++index;
    }
    for (const std::uint32_t value : {0U, 1U, 2U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(number(again, L"number" + std::to_wstring(value)), value);
    }
    EXPECT_EQ(again.bytes(), document.bytes());
}

TEST(IniDocument, NamesOfAllKindsSurviveTheRoundTrip) {
    const std::wstring hostile[] = {
        L"",         L" blank ", L"a=b",        L"[section]",  L";comment", L"#comment",      L"\"",
        L"per%cent", L"%{41}",   L"line\nfeed", L"\xFEFFmark", L"\u00e4",   {wchar_t{0xDC80}}};
    IniDocument document;
    std::uint32_t value = 0;
    for (const std::wstring& name : hostile) {
        document.setValue(kKey, name, value);
        document.setValue(std::wstring(L"Odd\\") + name + L"x", L"name", value++);
    }
    const IniDocument again(document.bytes());
    value = 0;
    for (const std::wstring& name : hostile) {
        EXPECT_EQ(number(again, name), value) << value;
        EXPECT_EQ(number(again, L"name", std::wstring(L"Odd\\") + name + L"x"), value) << value;
        ++value;
    }
}

TEST(IniDocument, CaseOfAsciiLettersDoesNotCount) {
    IniDocument document("[SOFTWARE\\bextora]\npscompare=1\n\xC3\x84=2\n");
    EXPECT_EQ(number(document, L"PSCompare"), 1U);
    EXPECT_EQ(number(document, L"\u00c4"), 2U);
    EXPECT_EQ(number(document, L"\u00e4"), std::nullopt);
    EXPECT_TRUE(document.hasKey(L"software\\BEXTORA"));
    document.setValue(kKey, L"PSCOMPARE", 0U);
    EXPECT_EQ(document.bytes(), "[SOFTWARE\\bextora]\nPSCOMPARE=0\n\xC3\x84=2\n");
}

TEST(IniDocument, ParentsOfAKeyExist) {
    IniDocument document;
    document.addKey(L"Software\\Bextora\\bextora\\Settings");
    EXPECT_TRUE(document.hasKey(L"Software\\Bextora\\bextora\\Settings"));
    EXPECT_TRUE(document.hasKey(L"Software\\Bextora"));
    EXPECT_TRUE(document.hasKey(L"Software"));
    EXPECT_TRUE(document.hasKey(L""));
    EXPECT_FALSE(document.hasKey(L"Soft"));
    EXPECT_FALSE(document.hasKey(L"Software\\Bextora\\bextora\\Settings\\Compare"));
}

TEST(IniDocument, AddingAKeyThatExistsChangesNothing) {
    IniDocument document("[Software\\Bextora]\n");
    document.addKey(L"software");
    document.addKey(L"SOFTWARE\\BEXTORA");
    EXPECT_EQ(document.bytes(), "[Software\\Bextora]\n");
}

TEST(IniDocument, SurplusBackslashesOfAPathDoNotCount) {
    IniDocument document;
    document.setValue(L"\\Software\\\\Bextora\\", L"a", 1U);
    EXPECT_EQ(number(document, L"a"), 1U);
    EXPECT_EQ(document.bytes(), "[Software\\Bextora]\na=1\n");
}

TEST(IniDocument, SameNameInAnotherKeyIsAnotherValue) {
    IniDocument document;
    document.setValue(L"A", L"name", 1U);
    document.setValue(L"B", L"name", 2U);
    document.setValue(L"A\\B", L"name", 3U);
    EXPECT_EQ(number(document, L"name", L"A"), 1U);
    EXPECT_EQ(number(document, L"name", L"B"), 2U);
    EXPECT_EQ(number(document, L"name", L"A\\B"), 3U);
    EXPECT_EQ(number(document, L"name", L"C"), std::nullopt);
}

struct ValueRow {
    const char* line;
    std::optional<std::uint32_t> asNumber;
    std::optional<std::wstring> asText;
};

class IniValues : public testing::TestWithParam<ValueRow> {};

TEST_P(IniValues, AreReadAsFarAsTheyMakeSense) {
    const IniDocument document(std::string("[Software\\Bextora]\n") + GetParam().line + '\n');
    EXPECT_EQ(number(document, L"a"), GetParam().asNumber);
    EXPECT_EQ(text(document, L"a"), GetParam().asText);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, IniValues,
    testing::Values(
        ValueRow{"a=1", 1, {}}, ValueRow{"  a =\t7 \r", 7, {}}, ValueRow{"a=007", 7, {}},
        ValueRow{"a=4294967295", 4294967295U, {}}, ValueRow{"a=4294967296", {}, L"4294967296"},
        ValueRow{"a=-1", {}, L"-1"}, ValueRow{"a=1.5", {}, L"1.5"}, ValueRow{"a=1 x", {}, L"1 x"},
        ValueRow{"a=0x10", {}, L"0x10"}, ValueRow{"a=\"1\"", {}, L"1"}, ValueRow{"a=\"\"", {}, L""},
        ValueRow{"a=plain text", {}, L"plain text"}, ValueRow{"a=b=c", {}, L"b=c"},
        ValueRow{"a=\"x%{41}y\"", {}, L"xAy"}, ValueRow{"a=\"50%\"", {}, L"50%"},
        ValueRow{"a=\"%{}%{123456789}\"", {}, L"%{}%{123456789}"}, ValueRow{"a=", {}, {}},
        ValueRow{"a=\"cut off", {}, {}}, ValueRow{"a=\"", {}, {}}, ValueRow{"a=\"x\"y\"", {}, {}},
        ValueRow{"a", {}, {}}, ValueRow{";a=1", {}, {}}, ValueRow{"#a=1", {}, {}},
        ValueRow{"[broken\na=1", {}, {}}, ValueRow{"[Other]\na=1", {}, {}}));

TEST(IniDocument, LastOfSeveralCountsAndIsTheOneThatChanges) {
    IniDocument document("[Software\\Bextora]\na=1\n[B]\nb=2\n[software\\bextora]\na=3\n");
    EXPECT_EQ(number(document, L"a"), 3U);
    document.setValue(kKey, L"a", 4U);
    EXPECT_EQ(number(document, L"a"), 4U);
    EXPECT_EQ(document.bytes(), "[Software\\Bextora]\na=1\n[B]\nb=2\n[software\\bextora]\na=4\n");
}

TEST(IniDocument, DamagedRepetitionDoesNotHideAGoodValue) {
    IniDocument document("[Software\\Bextora]\na=1\na=\"cut\n");
    EXPECT_EQ(number(document, L"a"), 1U);
    document.setValue(kKey, L"a", 2U);
    EXPECT_EQ(number(document, L"a"), 2U);
    EXPECT_EQ(number(IniDocument(document.bytes()), L"a"), 2U);
}

TEST(IniDocument, EverythingElseIsKeptAsItIs) {
    const std::string before =
        "\xEF\xBB\xBF; my notes\r\n\r\n[Software\\Bextora]\r\n  a = 1\r\n# why\r\nnonsense\r\n"
        "b=\"cut\r\n[damaged\r\nc=5\r\n\xFF\xFE\x80\r\n[Other]\r\nd=6\r\n";
    IniDocument document(before);
    EXPECT_EQ(document.bytes(), before);
    document.setValue(kKey, L"a", 2U);
    document.setValue(kKey, L"new", 3U);
    EXPECT_EQ(document.bytes(),
              "\xEF\xBB\xBF; my notes\r\n\r\n[Software\\Bextora]\r\na=2\r\n# why\r\nnonsense\r\n"
              "b=\"cut\r\nnew=3\n[damaged\r\nc=5\r\n\xFF\xFE\x80\r\n[Other]\r\nd=6\r\n");
}

TEST(IniDocument, ByteOrderMarkDoesNotHideTheFirstSection) {
    EXPECT_EQ(number(IniDocument("\xEF\xBB\xBF[Software\\Bextora]\na=1"), L"a"), 1U);
}

TEST(IniDocument, ValuesAboveTheFirstSectionBelongToTheRoot) {
    IniDocument document("a=1\n[Software\\Bextora]\n");
    EXPECT_EQ(number(document, L"a", L""), 1U);
    EXPECT_EQ(number(document, L"a"), std::nullopt);
    document.setValue(L"", L"a", 2U);
    EXPECT_EQ(number(document, L"a", L""), 2U);
}

TEST(IniText, LowerCaseTouchesAsciiOnly) {
    EXPECT_EQ(posix::asciiLower(L"ABCxyz\u00c4\u0130I"), L"abcxyz\u00c4\u0130i");
}

}  // namespace
