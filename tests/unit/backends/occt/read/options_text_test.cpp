#include "backends/occt/options_text.h"

#include <gtest/gtest.h>

namespace {

using HPS::Exchange::BRepMode;
using HPS::Exchange::ImportOptions;
using HPS::Exchange::Tessellation::Level;
using occt::formatOptions;
using occt::parseOptions;

constexpr bool ImportOptions::*kSwitches[] = {
    &ImportOptions::solids,
    &ImportOptions::surfaces,
    &ImportOptions::wireframes,
    &ImportOptions::attributes,
    &ImportOptions::constructionAndReferences,
    &ImportOptions::pmi,
    &ImportOptions::featureTrees,
    &ImportOptions::pmiColorOverridesFile,
};

TEST(OptionsText, DefaultsComeBack) {
    EXPECT_EQ(parseOptions(formatOptions({})), ImportOptions());
}

TEST(OptionsText, EverySwitchComesBackAndMakesAnotherKey) {
    for (const auto option : kSwitches) {
        ImportOptions options;
        options.*option = !(options.*option);
        const std::string text = formatOptions(options);
        EXPECT_EQ(parseOptions(text), options) << text;
        EXPECT_NE(text, formatOptions({}));
    }
}

TEST(OptionsText, EveryLevelModeAndColourComesBack) {
    for (std::uint32_t level = 0; level <= 4; ++level) {
        for (std::uint32_t mode = 0; mode <= 2; ++mode) {
            ImportOptions options;
            options.tessellationLevel = static_cast<Level>(level);
            options.brepMode = static_cast<BRepMode>(mode);
            options.pmiDefaultColor = HPS::RGBColor{1.0F, 128.0F / 255.0F, 0.0F};
            EXPECT_EQ(parseOptions(formatOptions(options)), options);
        }
    }
}

TEST(OptionsText, NumbersOutsideTheirRangeReadAsTheNearest) {
    ImportOptions options;
    options.tessellationLevel = static_cast<Level>(99);
    options.brepMode = static_cast<BRepMode>(0xFFFFFFFF);
    const auto read = parseOptions(formatOptions(options));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->tessellationLevel, Level::ExtraHigh);
    EXPECT_EQ(read->brepMode, BRepMode::BRepAndTessellation);
}

TEST(OptionsText, ColoursOutsideTheirRangeAreClamped) {
    ImportOptions options;
    options.pmiDefaultColor = HPS::RGBColor{-1.0F, 2.0F, std::numeric_limits<float>::quiet_NaN()};
    const auto read = parseOptions(formatOptions(options));
    ASSERT_TRUE(read && read->pmiDefaultColor);
    EXPECT_EQ(*read->pmiDefaultColor, (HPS::RGBColor{0.0F, 1.0F, 0.0F}));
}

TEST(OptionsText, OtherTextsAreNothing) {
    const std::string good = formatOptions({});
    ASSERT_TRUE(parseOptions(good));
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_FALSE(parseOptions(good.substr(0, size))) << size;
    }
    for (const char* text :
         {"", "none", "11110102-2-2-none", "11110100-5-2-none", "11110100-2-3-none",
          "11110100-2-2-16777216", "11110100-2-2--1", "11110100-2-2-", "11110100-2-2-nonee",
          "11110100-2-2-5x", "11110100_2-2-none", "1111010x-2-2-none", "11110100-2_2-none",
          "11110100-2-2_none"}) {
        EXPECT_FALSE(parseOptions(text)) << text;
    }
    EXPECT_TRUE(parseOptions("11110100-2-2-16777215"));
}

}  // namespace
