#include <gtest/gtest.h>

#include "backends/occt/step/value.h"

namespace {

using occt::step::decodeText;

struct Row {
    const char* label;
    std::string raw;
    std::string expected;
};

class TextDecoding : public testing::TestWithParam<Row> {};

TEST_P(TextDecoding, GivesUtf8) {
    EXPECT_EQ(decodeText(GetParam().raw), GetParam().expected);
}

const std::string kUnreadable = "\xEF\xBF\xBD";

INSTANTIATE_TEST_SUITE_P(
    Rows, TextDecoding,
    testing::Values(
        Row{"Plain", "shaft 12", "shaft 12"}, Row{"Empty", "", ""},
        Row{"DoubledQuote", "6'' pipe", "6' pipe"}, Row{"TwoDoubledQuotes", "a''''b", "a''b"},
        Row{"DoubledBackslash", "a\\\\b", "a\\b"},
        Row{"DoubledBackslashIsNoDirective", "\\\\X\\\\E9", "\\X\\E9"},
        Row{"LoneBackslash", "a\\b", "a\\b"}, Row{"BackslashAtEnd", "a\\", "a\\"},
        Row{"X2", "\\X2\\00FC\\X0\\ber", "über"},
        Row{"X2SeveralUnits", "\\X2\\04120430043B\\X0\\", "Вал"},
        Row{"X2SmallDigits", "\\X2\\00fc\\X0\\", "ü"},
        Row{"X2SurrogatePair", "\\X2\\D83DDE00\\X0\\", "😀"},
        Row{"X2LoneHighHalf", "\\X2\\D83D0041\\X0\\", kUnreadable + "A"},
        Row{"X2HighHalfAtEnd", "\\X2\\D83D\\X0\\!", kUnreadable + "!"},
        Row{"X2LoneLowHalf", "\\X2\\DE00\\X0\\", kUnreadable},
        Row{"X2HalvesApart", "\\X2\\D83D0041DE00\\X0\\", kUnreadable + "A" + kUnreadable},
        Row{"X2TooFewDigits", "\\X2\\00E\\X0\\x", kUnreadable + "x"},
        Row{"X2NoDigits", "\\X2\\00ZZ\\X0\\x", kUnreadable + "x"},
        Row{"X2NeverEnds", "\\X2\\0041", "A"}, Row{"X2Empty", "a\\X2\\\\X0\\b", "ab"},
        Row{"X4", "\\X4\\0001F600\\X0\\", "😀"},
        Row{"X4PastTheLast", "\\X4\\00110000\\X0\\", kUnreadable},
        Row{"X", "\\X\\E9t\\X\\E9", "été"}, Row{"XWithoutDigits", "\\X\\G1", "\\X\\G1"},
        Row{"XAtEnd", "\\X\\E", "\\X\\E"}, Row{"S", "\\S\\C\\S\\v", "Ãö"},
        Row{"SAtEnd", "\\S\\", "\\S\\"}, Row{"PageIsDropped", "\\PA\\\\S\\d", "ä"},
        Row{"Utf8Stays", "Zahnrad übergroß 齿轮", "Zahnrad übergroß 齿轮"},
        Row{"Latin1", "Geh\xE4use", "Gehäuse"}, Row{"Windows1251", "\xC2\xE0\xEB \xB8", "Вал ё"},
        Row{"OverlongIsNoUtf8", "\xE0\x80\x80", "\xC3\xA0\xC2\x80\xC2\x80"},
        Row{"SurrogateIsNoUtf8", "\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},
        Row{"LineBreaksAreLayout", "long\r\n name", "long name"},
        Row{"OtherControlsStay", "a\tb\x1B[0m", "a\tb\x1B[0m"}),
    [](const testing::TestParamInfo<Row>& row) { return row.param.label; });

}  // namespace
