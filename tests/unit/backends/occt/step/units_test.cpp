#include "backends/occt/step/units.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/occt/step/step_file.h"

namespace {

using step_test::StepFile;

std::string context(int number, const std::string& units) {
    return "#" + std::to_string(number) + "=(GEOMETRIC_REPRESENTATION_CONTEXT(3)" +
           "GLOBAL_UNIT_ASSIGNED_CONTEXT((" + units + "))REPRESENTATION_CONTEXT('',''));\n";
}

std::string siLength(int number, const std::string& prefix) {
    return "#" + std::to_string(number) + "=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(" + prefix +
           ",.METRE.));\n";
}

const std::string kInch =
    siLength(1, ".MILLI.") +
    "#2=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.4),#1);\n"
    "#3=(CONVERSION_BASED_UNIT('INCH',#2)LENGTH_UNIT()NAMED_UNIT(#9));\n#9=D(1.);\n";

TEST(StepUnits, LengthsOfSiUnits) {
    const std::pair<const char*, double> rows[] = {
        {".MILLI.", 1},  {"$", 1000},       {".CENTI.", 10},  {".DECI.", 100},
        {".KILO.", 1e6}, {".MICRO.", 1e-3}, {".NANO.", 1e-6}, {".HECTO.", 1e5},
    };
    for (const auto& [prefix, length] : rows) {
        const StepFile step(siLength(1, prefix));
        EXPECT_DOUBLE_EQ(occt::step::lengthUnitMm(step.file, 1), length) << prefix;
    }
}

TEST(StepUnits, ConversionBasedUnitsAreFollowed) {
    const StepFile step(kInch +
                        "#4=(LENGTH_MEASURE_WITH_UNIT()MEASURE_WITH_UNIT(LENGTH_MEASURE("
                        "12.),#3));\n"
                        "#5=(CONVERSION_BASED_UNIT('FOOT',#4)LENGTH_UNIT()NAMED_UNIT(#9));");
    EXPECT_DOUBLE_EQ(occt::step::lengthUnitMm(step.file, 3), 25.4);
    EXPECT_DOUBLE_EQ(occt::step::lengthUnitMm(step.file, 5), 304.8);
}

TEST(StepUnits, WhatIsNoLengthIsNone) {
    const StepFile step(
        "#1=(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.));\n"
        "#2=(CONVERSION_BASED_UNIT('LOOP',#3)LENGTH_UNIT()NAMED_UNIT(*));\n"
        "#3=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(2.),#2);\n"
        "#4=(CONVERSION_BASED_UNIT('ZERO',#5)LENGTH_UNIT()NAMED_UNIT(*));\n"
        "#5=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(0.),#6);\n" +
        siLength(6, "$") +
        "#7=(CONVERSION_BASED_UNIT('NONE',#99)LENGTH_UNIT()NAMED_UNIT(*));\n"
        "#8=(CONVERSION_BASED_UNIT('TEXT',#10)LENGTH_UNIT()NAMED_UNIT(*));\n"
        "#10=LENGTH_MEASURE_WITH_UNIT('x',$);\n");
    for (const std::uint64_t unit : {1, 2, 4, 7, 8, 99, 0}) {
        EXPECT_EQ(occt::step::lengthUnitMm(step.file, unit), 0.0) << unit;
    }
}

TEST(StepUnits, ContextsNameTheirLengthUnit) {
    const StepFile step(kInch + "#20=(NAMED_UNIT(*)PLANE_ANGLE_UNIT()SI_UNIT($,.RADIAN.));\n" +
                        context(30, "#20,#3") + context(31, "#20") + "#32=A();");
    EXPECT_DOUBLE_EQ(occt::step::contextUnitMm(step.file, 30), 25.4);
    EXPECT_EQ(occt::step::contextUnitMm(step.file, 31), 0.0);
    EXPECT_EQ(occt::step::contextUnitMm(step.file, 32), 0.0);
    EXPECT_EQ(occt::step::contextUnitMm(step.file, 99), 0.0);
}

TEST(StepUnits, TheFilesUnitIsThatOfMostContexts) {
    EXPECT_EQ(occt::step::fileUnitMm(StepFile("#1=A();").file), 1.0);
    EXPECT_DOUBLE_EQ(occt::step::fileUnitMm(StepFile(kInch + context(30, "#3")).file), 25.4);
    const StepFile mixed(kInch + context(30, "#3") + context(31, "#1") + context(32, "#1"));
    EXPECT_DOUBLE_EQ(occt::step::fileUnitMm(mixed.file), 1.0);
    // A tie goes to the shorter one, wherever it stands.
    const StepFile tie(kInch + context(30, "#3") + context(31, "#1"));
    EXPECT_DOUBLE_EQ(occt::step::fileUnitMm(tie.file), 1.0);
}

TEST(StepUnits, EightUnitsHaveNames) {
    const std::pair<double, const char*> rows[] = {
        {1, "Millimeter"},  {10, "Centimeter"}, {1000, "Meter"},
        {1e6, "Kilometer"}, {25.4, "Inch"},     {304.8, "Foot"},
        {914.4, "Yard"},    {1609344, "Mile"},  {25.4000508, "Inch"},
    };
    for (const auto& [length, name] : rows) {
        EXPECT_STREQ(occt::step::namedUnit(length).name, name);
        EXPECT_NEAR(occt::step::namedUnit(length).lengthMm, length, 1e-5 * length);
    }
    for (const double other : {0.001, 100.0, 0.0, -1.0, 26.0}) {
        EXPECT_STREQ(occt::step::namedUnit(other).name, "Millimeter");
        EXPECT_EQ(occt::step::namedUnit(other).lengthMm, 1.0);
    }
}

TEST(StepUnits, SymbolsForTexts) {
    const StepFile step(
        kInch +
        "#10=(MASS_UNIT()NAMED_UNIT(*)SI_UNIT(.KILO.,.GRAM.));\n"
        "#11=(CONVERSION_BASED_UNIT('DEGREE',#12)NAMED_UNIT(*)PLANE_ANGLE_UNIT());\n"
        "#13=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.DECI.,.METRE.));\n"
        "#14=(CONTEXT_DEPENDENT_UNIT('Pieces')NAMED_UNIT(#9));\n"
        "#15=DERIVED_UNIT(());\n#16=(NAMED_UNIT(*)SI_UNIT($,.BECQUEREL.));\n#12=A();");
    const std::pair<int, const char*> rows[] = {
        {1, "mm"},      {3, "in"}, {10, "kg"}, {11, "deg"}, {13, "dm"},
        {14, "pieces"}, {15, ""},  {16, ""},   {99, ""},
    };
    for (const auto& [unit, symbol] : rows) {
        EXPECT_EQ(occt::step::unitSymbol(step.file, static_cast<std::uint64_t>(unit)), symbol);
    }
}

}  // namespace
