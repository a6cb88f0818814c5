#include "backends/occt/step/pmi_text.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace {

using occt::step::drawingNumber;
using occt::step::oneLine;
using occt::step::saysMore;
using occt::step::shortName;

TEST(StepPmiText, NumbersAreWrittenAsInDrawings) {
    const struct {
        double number;
        int decimals;
        const char* text;
    } rows[] = {
        {12.0, -1, "12"},
        {0.05, -1, "0.05"},
        {-0.05, -1, "-0.05"},
        {0.950000000000002, -1, "0.95"},
        {25.400000000000002, -1, "25.4"},
        {0.30000000000000004, 1, "0.3"},
        {0.0, -1, "0"},
        {-0.0, -1, "0"},
        {-0.0, 2, "0.00"},
        {1e-7, -1, "1e-07"},
        {1e-6, -1, "0.000001"},
        {123456789012.0, -1, "123456789012"},
        {1e300, 2, "1e+300"},
        {2.5, 3, "2.500"},
        {2.5, 0, "2.5"},
        {2.5, 16, "2.5"},
        {-2.0, 1, "-2.0"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(drawingNumber(row.number, row.decimals), row.text) << row.number;
    }
    EXPECT_EQ(drawingNumber(std::nan("")), "");
    EXPECT_EQ(drawingNumber(std::numeric_limits<double>::infinity()), "");
}

TEST(StepPmiText, ControlCharactersBecomeOneBlank) {
    EXPECT_EQ(oneLine(" a\t\r\nb  c\x1b[31m\x7f "), "a b c [31m");
    EXPECT_EQ(oneLine("a\u0085b\u00A0c\u009Fd"), "a b c d");
    EXPECT_EQ(oneLine("gr\u00F6\u00DFe \u6B6F"), "gr\u00F6\u00DFe \u6B6F");
    EXPECT_EQ(oneLine(std::string_view("a\0b", 3)), "a b");
    EXPECT_EQ(oneLine(" \n "), "");
    EXPECT_EQ(oneLine("a\xC2"), "a\xC2") << "cut in the middle of a character";
}

TEST(StepPmiText, NamesAreCutBetweenCharacters) {
    EXPECT_EQ(shortName("a"), "a");
    const std::string name = shortName(std::string(1'000'000, 'x'));
    EXPECT_EQ(name, std::string(200, 'x') + "\u2026");
    std::string wide = "x";
    for (int i = 0; i < 200; ++i) wide += "\u00E4";
    const std::string cut = shortName(wide);
    EXPECT_EQ(cut, wide.substr(0, 199) + "\u2026");
}

TEST(StepPmiText, NamesThatProgramsMadeUpSayNothing) {
    for (const char* name : {"", " ", "#397", " # 397", "--", "()", "\t"}) {
        EXPECT_FALSE(saysMore(name)) << name;
    }
    for (const char* name : {"a", "1", "#a", "Flatness.1", "\u00E4", "gp16"}) {
        EXPECT_TRUE(saysMore(name)) << name;
    }
}

}  // namespace
