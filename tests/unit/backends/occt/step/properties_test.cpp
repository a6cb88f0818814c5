#include "backends/occt/step/properties.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/occt/step/attribute_texts.h"

namespace {

using step_test::attributesOfPart;
using step_test::property;
using step_test::ref;

using Texts = std::vector<std::string>;

std::string measured(const std::string& measure, const std::string& unit) {
    return attributesOfPart(property(50, 12, "K", "#60") + "#60=MEASURE_REPRESENTATION_ITEM(''," +
                            measure + "," + unit + ");" +
                            "#70=DERIVED_UNIT((#71,#72));#71=DERIVED_UNIT_ELEMENT(#73,1.);"
                            "#72=DERIVED_UNIT_ELEMENT(#901,-3.);"
                            "#73=(MASS_UNIT()NAMED_UNIT(*)SI_UNIT(.KILO.,.GRAM.));"
                            "#74=DERIVED_UNIT((#75));#75=DERIVED_UNIT_ELEMENT(#901,2.);"
                            "#76=DERIVED_UNIT((#77));#77=DERIVED_UNIT_ELEMENT(#73,-1.);"
                            "#78=DERIVED_UNIT((#99));#79=DERIVED_UNIT((#80));"
                            "#80=DERIVED_UNIT_ELEMENT(#901,4.);")
        .at(0);
}

TEST(StepProperties, MeasuresShowTheirUnit) {
    EXPECT_EQ(measured("LENGTH_MEASURE(2.5)", "#901"), "K='2.5 mm'");
    EXPECT_EQ(measured("POSITIVE_RATIO_MEASURE(7850.)", "#70"), "K='7850 kg/mm\u00B3'");
    EXPECT_EQ(measured("AREA_MEASURE(3.)", "#74"), "K='3 mm\u00B2'");
    EXPECT_EQ(measured("NUMERIC_MEASURE(3.)", "#76"), "K='3 1/kg'");
    EXPECT_EQ(measured("NUMERIC_MEASURE(3.)", "#79"), "K='3 mm^4'");
}

TEST(StepProperties, WithoutAKnownUnitTheNumberStands) {
    for (const char* unit : {"#99", "$", "#78", "#10"}) {
        EXPECT_EQ(measured("LENGTH_MEASURE(2.5)", unit), "K=2.5r") << unit;
    }
}

TEST(StepProperties, CountsHaveNoSign) {
    const auto value = [](const std::string& measure) {
        return attributesOfPart(property(50, 12, "K", "#60") + "#60=VALUE_REPRESENTATION_ITEM(''," +
                                measure + ");")
            .at(0);
    };
    EXPECT_EQ(value("COUNT_MEASURE(7.)"), "K=7u");
    EXPECT_EQ(value("COUNT_MEASURE(4294967295.)"), "K=4294967295u");
    EXPECT_EQ(value("COUNT_MEASURE(7.5)"), "K=7.5r");
    EXPECT_EQ(value("COUNT_MEASURE(-1.)"), "K=-1r");
    EXPECT_EQ(value("NUMERIC_MEASURE(7.)"), "K=7r");
    EXPECT_EQ(value("CONTEXT_DEPENDENT_MEASURE(7)"), "K=7");
}

TEST(StepProperties, WholeNumbersKeepTheSmallestKindThatFits) {
    const auto value = [](const std::string& number) {
        return attributesOfPart(property(50, 12, "K", "#60") +
                                "#60=INTEGER_REPRESENTATION_ITEM(''," + number + ");")
            .at(0);
    };
    EXPECT_EQ(value("-2147483648"), "K=-2147483648");
    EXPECT_EQ(value("2147483647"), "K=2147483647");
    EXPECT_EQ(value("2147483648"), "K=2147483648u");
    EXPECT_EQ(value("4294967296"), "K=4294967296r");
}

TEST(StepProperties, LogicalValuesMayBeUnknown) {
    const auto value = [](const std::string& word) {
        return attributesOfPart(property(50, 12, "K", "#60") +
                                "#60=BOOLEAN_REPRESENTATION_ITEM(''," + word + ");")
            .at(0);
    };
    EXPECT_EQ(value(".T."), "K=yes");
    EXPECT_EQ(value(".F."), "K=no");
    EXPECT_EQ(value(".U."), "K='unknown'");
    EXPECT_EQ(value("BOOLEAN(.T.)"), "K=yes");
}

TEST(StepProperties, MaterialsAreNamedByTheirItem) {
    const auto material = [](const std::string& item) {
        return attributesOfPart(property(50, 12, "material property", "#60", "material name") +
                                "#60=" + item + ";");
    };
    EXPECT_EQ(material("DESCRIPTIVE_REPRESENTATION_ITEM('STEEL','')"), (Texts{"Material='STEEL'"}));
    EXPECT_EQ(material("DESCRIPTIVE_REPRESENTATION_ITEM('Steel','Steel')"),
              (Texts{"Material='Steel'"}));
    EXPECT_EQ(material("DESCRIPTIVE_REPRESENTATION_ITEM('Steel','1.2345')"),
              (Texts{"Material='Steel, 1.2345'"}));
    EXPECT_EQ(material("DESCRIPTIVE_REPRESENTATION_ITEM('material name','1.2345')"),
              (Texts{"Material='1.2345'"}));
    EXPECT_EQ(material("MEASURE_REPRESENTATION_ITEM('density measure',"
                       "POSITIVE_RATIO_MEASURE(7850.),$)"),
              (Texts{"Density=7850r"}));
    EXPECT_EQ(material("MEASURE_REPRESENTATION_ITEM('thermal expansion coefficient measure',"
                       "POSITIVE_RATIO_MEASURE(2.5),#901)"),
              (Texts{"Thermal Expansion Coefficient='2.5 mm'"}));
}

TEST(StepProperties, TheMaterialOfEachBodyIsThePartsAndNamedOnce) {
    EXPECT_EQ(attributesOfPart("#30=SHAPE_ASPECT('','first body',#13,.F.);"
                               "#31=SHAPE_ASPECT('','second body',#13,.F.);" +
                               property(50, 30, "material property", "#60,#61") +
                               property(53, 31, "material_property", "#60,#61") +
                               property(56, 31, "Of the body", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('STEEL','');"
                               "#61=MEASURE_REPRESENTATION_ITEM('density measure',"
                               "POSITIVE_RATIO_MEASURE(7850.),$);"),
              (Texts{"Density=7850r", "Material='STEEL'"}));
}

TEST(StepProperties, PropertiesOfVersionsAndProductsHoldForTheirDefinitions) {
    EXPECT_EQ(attributesOfPart(property(50, 11, "Of the version", "#60") +
                               property(53, 10, "Of the product", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('','x');"),
              (Texts{"Of the product='x'", "Of the version='x'"}));
}

/// Properties that all have one representation of as many items.
std::string shared(int count) {
    std::string text = "#2000=REPRESENTATION('',(";
    for (int i = 0; i < count; ++i) text += (i == 0 ? "" : ",") + ref(3000 + i);
    text += "),$);\n";
    for (int i = 0; i < count; ++i) {
        text += ref(3000 + i) + "=INTEGER_REPRESENTATION_ITEM('i" + std::to_string(i) + "',1);\n" +
                ref(20'000 + i) + "=PROPERTY_DEFINITION('p','',#12);\n" + ref(40'000 + i) +
                "=PROPERTY_DEFINITION_REPRESENTATION(" + ref(20'000 + i) + ",#2000);\n";
    }
    return text;
}

TEST(StepProperties, ASharedRepresentationDoesNotMultiply) {
    EXPECT_EQ(attributesOfPart(shared(8)).size(), 64U) << "few of both are given in full";
    EXPECT_EQ(attributesOfPart(shared(60)).size(), 3600U);
    EXPECT_EQ(attributesOfPart(shared(5000)).size(), 0U) << "many of both are left out";
}

TEST(StepProperties, ASharedMegabyteDoesNotMultiply) {
    std::string text =
        "#2000=REPRESENTATION('',(#2001),$);"
        "#2001=DESCRIPTIVE_REPRESENTATION_ITEM('','" +
        std::string(1'000'000, 'x') + "');\n";
    for (int i = 0; i < 1000; ++i) {
        text += ref(20'000 + i) + "=PROPERTY_DEFINITION('p','',#12);\n" + ref(40'000 + i) +
                "=PROPERTY_DEFINITION_REPRESENTATION(" + ref(20'000 + i) + ",#2000);\n";
    }
    EXPECT_EQ(attributesOfPart(text).size(), 0U);
}

}  // namespace
