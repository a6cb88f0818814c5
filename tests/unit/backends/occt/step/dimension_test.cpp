#include "backends/occt/step/dimension.h"

#include <gtest/gtest.h>

#include "platform/hps/component_type.h"
#include "tests/unit/backends/occt/step/pmi_file.h"

namespace {

using step_test::dimensionItems;
using step_test::item;
using step_test::linesOf;
using step_test::pmiOf;
using step_test::Texts;

/// Text of a size of that kind with one nominal value of 12, and with more statements.
std::string textOf(const std::string& kind, const std::string& more = "",
                   const std::string& items = "#33") {
    return pmiOf("#30=DIMENSIONAL_SIZE(#70,'" + kind + "');" + dimensionItems(items) +
                 item(33, "nominal value", "LENGTH_MEASURE(12.)") + more)
        .at(0)
        .text;
}

/// Limits of deviation for the dimension, by measures with units.
std::string deviations(const std::string& lower, const std::string& upper) {
    return "#34=PLUS_MINUS_TOLERANCE(#35,#30);#35=TOLERANCE_VALUE(#36,#37);"
           "#36=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(" +
           lower + "),#901);#37=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(" + upper + "),#901);";
}

std::string note(const std::string& text) {
    return "#38=DESCRIPTIVE_REPRESENTATION_ITEM('dimensional note','" + text + "');";
}

TEST(StepDimension, TheKindGivesTheSignInFront) {
    const std::pair<const char*, const char*> kinds[] = {
        {"diameter", "\u230012"},
        {"diametral size dimension", "\u230012"},
        {"radius", "R12"},
        {"spherical diameter", "S\u230012"},
        {"spherical radius", "SR12"},
        {"curve length", "\u231212"},
        {"thickness", "12"},
        {"linear distance", "12"},
        {"", "12"},
    };
    for (const auto& [kind, text] : kinds) EXPECT_EQ(textOf(kind), text) << kind;
}

TEST(StepDimension, DeviationsStandBehindTheValue) {
    const struct {
        const char* lower;
        const char* upper;
        const char* text;
    } rows[] = {
        {"-0.05", "0.1", "\u230012 +0.1/-0.05"},
        {"-0.1", "0.1", "\u230012 \u00B10.1"},
        {"0.1", "-0.1", "\u230012 \u00B10.1"},  // the wrong way round
        {"0.", "0.2", "\u230012 +0.2/0"},
        {"-0.2", "0.", "\u230012 0/-0.2"},
        {"0.1", "0.2", "\u230012 +0.2/+0.1"},
        {"-0.2", "-0.1", "\u230012 -0.1/-0.2"},
        {"0.", "0.", "\u230012 0/0"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(textOf("diameter", deviations(row.lower, row.upper)), row.text);
    }
    EXPECT_EQ(textOf("diameter",
                     "#34=PLUS_MINUS_TOLERANCE(#35,#30);#35=TOLERANCE_VALUE($,#36);"
                     "#36=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(0.3),#901);"),
              "\u230012 +0.3");
    EXPECT_EQ(textOf("diameter", "#34=PLUS_MINUS_TOLERANCE(#35,#30);#35=TOLERANCE_VALUE($,$);"),
              "\u230012");
}

TEST(StepDimension, FitsShowTheirClass) {
    EXPECT_EQ(textOf("diameter",
                     "#34=PLUS_MINUS_TOLERANCE(#35,#30);#35=LIMITS_AND_FITS('H','hole','7','');"),
              "\u230012 H7");
    EXPECT_EQ(textOf("diameter",
                     "#34=PLUS_MINUS_TOLERANCE(#35,#30);"
                     "#35=LIMITS_AND_FITS('g','shaft','IT6','');"),
              "\u230012 g6");
}

TEST(StepDimension, LimitsStandAloneOrBehindTheValue) {
    const std::string limits = item(34, "upper limit", "LENGTH_MEASURE(5.2)") +
                               item(35, "lower limit", "LENGTH_MEASURE(4.9)");
    EXPECT_EQ(textOf("radius", limits, "#34,#35"), "R4.9\u20265.2");
    EXPECT_EQ(textOf("radius", limits, "#35,#34"), "R4.9\u20265.2");
    EXPECT_EQ(textOf("radius", limits, "#33,#34,#35"), "R12 (4.9\u20265.2)");
    EXPECT_EQ(textOf("radius", limits, "#34"), "R5.2 MAX");
    EXPECT_EQ(textOf("radius", limits, "#35"), "R4.9 MIN");
    EXPECT_EQ(
        textOf("radius", limits + "#36=VALUE_RANGE('',SET_REPRESENTATION_ITEM((#34,#35)));", "#36"),
        "R4.9\u20265.2");
}

TEST(StepDimension, NotesMarkBasicAndReferenceDimensions) {
    const std::pair<const char*, const char*> notes[] = {
        {"theoretical", "[R12]"},
        {"auxiliary", "(R12)"},
        {"square", "R\u25A112"},
        {"controlled radius", "CR12"},
        {"envelope requirement", "R12 \u24BA"},
        {"free state condition", "R12 \u24BB"},
        {"independency requirement", "R12 \u24BE"},
        {"two point size", "R12 LP"},
        {"statistical", "R12 ST"},
        {"of our own making", "R12 of our own making"},
        {" ", "R12"},
    };
    for (const auto& [text, expected] : notes) {
        EXPECT_EQ(textOf("radius", note(text), "#33,#38"), expected) << text;
    }
}

TEST(StepDimension, QualifiersSetDigitsAndSayMaximumAndMinimum) {
    const auto qualified = [](const std::string& value, const std::string& qualifier) {
        return pmiOf("#30=DIMENSIONAL_SIZE(#70,'radius');" + dimensionItems("#33") +
                     item(33, "nominal value", "LENGTH_MEASURE(" + value + ")", 901,
                          "QUALIFIED_REPRESENTATION_ITEM((#34))") +
                     "#34=" + qualifier + ";")
            .at(0)
            .text;
    };
    EXPECT_EQ(qualified("2.5", "VALUE_FORMAT_TYPE_QUALIFIER('NR2 1.3')"), "R2.500");
    EXPECT_EQ(qualified("2.5", "VALUE_FORMAT_TYPE_QUALIFIER('NR2S 1.0')"), "R2.5")
        << "digits that would lose something are not used";
    EXPECT_EQ(qualified("2.5", "VALUE_FORMAT_TYPE_QUALIFIER('NR3 1.3')"), "R2.5");
    EXPECT_EQ(qualified("2.5", "VALUE_FORMAT_TYPE_QUALIFIER('NR2 1.99')"), "R2.5");
    EXPECT_EQ(qualified("2.5", "VALUE_FORMAT_TYPE_QUALIFIER('NR2 .')"), "R2.5");
    EXPECT_EQ(qualified("2.5", "TYPE_QUALIFIER('maximum')"), "R2.5 MAX");
    EXPECT_EQ(qualified("2.5", "TYPE_QUALIFIER('minimum')"), "R2.5 MIN");
    EXPECT_EQ(qualified("2.5", "TYPE_QUALIFIER('average')"), "R2.5 AVG");
    EXPECT_EQ(qualified("2.5", "TYPE_QUALIFIER('other')"), "R2.5");
    EXPECT_EQ(textOf("radius", deviations("-0.1", "0.2") +
                                   "#39=MEASURE_QUALIFICATION('','',#36,(#40));"
                                   "#40=VALUE_FORMAT_TYPE_QUALIFIER('NR2S 0.2');"),
              "R12 +0.2/-0.10");
}

TEST(StepDimension, OtherUnitsAreNamed) {
    const auto inUnit = [](const std::string& measure, int unit) {
        return pmiOf("#30=DIMENSIONAL_LOCATION('linear distance','',#70,#70);" +
                     dimensionItems("#33") + item(33, "", measure, unit))
            .at(0)
            .text;
    };
    EXPECT_EQ(inUnit("LENGTH_MEASURE(2.)", 901), "2") << "the part's own unit";
    EXPECT_EQ(inUnit("LENGTH_MEASURE(2.)", 912), "2 in");
    EXPECT_EQ(inUnit("PLANE_ANGLE_MEASURE(30.)", 930), "30\u00B0");
    EXPECT_EQ(inUnit("PLANE_ANGLE_MEASURE(0.5)", 932), "0.5 rad");
    EXPECT_EQ(inUnit("LENGTH_MEASURE(2.)", 999), "2") << "a unit that is not there";
}

TEST(StepDimension, AnglesKeepTheirUnitInDeviations) {
    EXPECT_EQ(pmiOf("#30=ANGULAR_SIZE(#70,'',.SMALL.);" + dimensionItems("#33") +
                    item(33, "nominal value", "PLANE_ANGLE_MEASURE(45.)", 930) +
                    "#34=PLUS_MINUS_TOLERANCE(#35,#30);#35=TOLERANCE_VALUE(#36,#37);"
                    "#36=PLANE_ANGLE_MEASURE_WITH_UNIT(PLANE_ANGLE_MEASURE(-0.5),#930);"
                    "#37=PLANE_ANGLE_MEASURE_WITH_UNIT(PLANE_ANGLE_MEASURE(0.5),#930);")
                  .at(0)
                  .text,
              "45\u00B0 \u00B10.5\u00B0");
}

TEST(StepDimension, WithoutANumberThereIsNoText) {
    EXPECT_EQ(linesOf("#30=DIMENSIONAL_SIZE(#70,'radius');"), (Texts{"Radius|"}));
    for (const char* number : {"NaN", "1e999", "-1e999", "$", "*", "'12'", ".T.", "(1.)"}) {
        EXPECT_EQ(linesOf("#30=DIMENSIONAL_SIZE(#70,'radius');" + dimensionItems("#33") +
                          item(33, "nominal value", number)),
                  (Texts{"Radius|"}))
            << number;
    }
}

TEST(StepDimension, ASharedRepresentationIsReadInParts) {
    std::string items;
    std::string numbers;
    for (int i = 0; i < 1000; ++i) {
        numbers += (i == 0 ? "#" : ",#") + std::to_string(2000 + i);
        items += item(2000 + i, "", "LENGTH_MEASURE(" + std::to_string(i) + ".)");
    }
    const auto all = pmiOf("#30=DIMENSIONAL_SIZE(#70,'radius');" + dimensionItems(numbers) + items);
    EXPECT_EQ(all.at(0).text, "R0");
    EXPECT_EQ(all[0].values.size(), 1U);
}

}  // namespace
