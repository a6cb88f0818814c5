#include "backends/occt/step/pmi.h"

#include <gtest/gtest.h>

#include "platform/hps/component_type.h"
#include "tests/unit/backends/occt/step/pmi_file.h"

namespace {

namespace Type = HPS::ComponentType;
using occt::step::Pmi;
using occt::step::readPmi;
using occt::step::readProducts;
using step_test::linesOf;
using step_test::pmiOf;
using step_test::StepFile;
using step_test::Texts;

std::vector<std::string> names(const std::vector<Pmi>& all) {
    std::vector<std::string> out;
    for (const Pmi& pmi : all) out.push_back(pmi.name);
    return out;
}

TEST(StepPmi, DimensionsHaveKindValueAndProduct) {
    const auto all = pmiOf(
        "#30=DIMENSIONAL_SIZE(#71,'diameter');"
        "#31=DIMENSIONAL_CHARACTERISTIC_REPRESENTATION(#30,#32);"
        "#32=SHAPE_DIMENSION_REPRESENTATION('',(#33),#900);"
        "#33=(LENGTH_MEASURE_WITH_UNIT()MEASURE_REPRESENTATION_ITEM()MEASURE_WITH_UNIT("
        "POSITIVE_LENGTH_MEASURE(12.5),#901)REPRESENTATION_ITEM('nominal value'));"
        "#34=DIMENSIONAL_LOCATION('linear distance','',#70,#70);"
        "#35=ANGULAR_LOCATION('','',#70,#70,.SMALL.);");
    ASSERT_EQ(names(all), (Texts{"Angular location", "Diameter", "Linear distance"}));
    EXPECT_EQ(all[1].type, Type::PmiDimension);
    EXPECT_EQ(all[1].values, (std::vector<double>{12.5}));
    EXPECT_EQ(all[1].product, 1U);
    EXPECT_EQ(all[2].product, 0U);
    EXPECT_TRUE(all[2].values.empty());
}

TEST(StepPmi, TolerancesAreNamedByTheirOwnKind) {
    const auto all = pmiOf(
        "#30=FLATNESS_TOLERANCE('Geometric tolerance.1','',#72,#70);"
        "#31=(GEOMETRIC_TOLERANCE('','',#72,#71)GEOMETRIC_TOLERANCE_WITH_DATUM_REFERENCE((#70))"
        "MODIFIED_GEOMETRIC_TOLERANCE(.MAXIMUM_MATERIAL_CONDITION.)POSITION_TOLERANCE());"
        "#32=PLUS_MINUS_TOLERANCE(#33,#34);#35=(GEOMETRIC_TOLERANCE('','',#72,#70)"
        "SURFACE_PROFILE_TOLERANCE()UNEQUALLY_DISPOSED_GEOMETRIC_TOLERANCE(#72));");
    ASSERT_EQ(names(all), (Texts{"Flatness", "Position", "Surface profile"}));
    EXPECT_EQ(all[0].type, Type::PmiTolerance);
    EXPECT_EQ(all[0].values, (std::vector<double>{0.05}));
    EXPECT_EQ(all[1].product, 1U);
    EXPECT_EQ(all[1].values, (std::vector<double>{0.05}));
}

TEST(StepPmi, TheAuthorsNamesStand) {
    const std::string drawn =
        "#40=DRAUGHTING_MODEL_ITEM_ASSOCIATION('','',#30,#99,#41);"
        "#41=DRAUGHTING_CALLOUT('Linear Size.3',(#42));"
        "#42=TESSELLATED_ANNOTATION_OCCURRENCE('other',(),#43);#43=TESSELLATED_GEOMETRIC_SET('',())"
        ";";
    EXPECT_EQ(linesOf("#30=DIMENSIONAL_SIZE(#70,'radius');" + drawn), (Texts{"Linear Size.3|"}));
    EXPECT_EQ(linesOf("#30=FLATNESS_TOLERANCE('FC4','',#72,#70);" + drawn),
              (Texts{"FC4|\u23E5 0.05"}));
    EXPECT_EQ(linesOf("#30=FLATNESS_TOLERANCE('Geometric tolerance.7','',#72,#70);" + drawn),
              (Texts{"Linear Size.3|\u23E5 0.05"}));
    EXPECT_EQ(linesOf("#30=FLATNESS_TOLERANCE('#30','',#72,#70);"), (Texts{"Flatness|\u23E5 0.05"}))
        << "a number of an entity is nobody's name";
}

TEST(StepPmi, DatumsHaveTheirLetter) {
    const auto all = pmiOf(
        "#30=DATUM('','',#13,.F.,'B');#31=DATUM('','',#13,.F.,'A');"
        "#32=DATUM('','',#13,.F.,$);#33=DATUM();");
    EXPECT_EQ(names(all), (Texts{"Datum", "Datum 2", "Datum A", "Datum B"}));
    EXPECT_EQ(all[2].type, Type::PmiDatum);
}

TEST(StepPmi, NamesAreUniqueAndDontDependOnTheFilesOrder) {
    const std::string texts[] = {
        "#30=DIMENSIONAL_SIZE(#70,'radius');", "#31=DIMENSIONAL_SIZE(#71,'radius');",
        "#32=DIMENSIONAL_SIZE(#70,'radius 2');", "#33=DIMENSIONAL_SIZE(#71,'radius');"};
    std::string forward;
    std::string backward;
    for (const std::string& text : texts) {
        forward += text;
        backward = text + backward;
    }
    const auto first = pmiOf(forward);
    const auto second = pmiOf(backward);
    EXPECT_EQ(names(first), (Texts{"Radius", "Radius 3", "Radius 4", "Radius 2"}));
    EXPECT_EQ(names(second), names(first));
    for (std::size_t i = 0; i < first.size(); ++i) EXPECT_EQ(first[i].product, second[i].product);
}

TEST(StepPmi, ColoursComeFromTheAnnotation) {
    const std::string annotation =
        "#40=DRAUGHTING_MODEL_ITEM_ASSOCIATION('','',#30,#99,#41);"
        "#41=ANNOTATION_OCCURRENCE('',(#42),#43);#42=PRESENTATION_STYLE_ASSIGNMENT((#44));"
        "#44=CURVE_STYLE('',#98,$,#45);";
    const std::string size = "#30=DIMENSIONAL_SIZE(#70,'radius');";
    const auto rgb = pmiOf(size + annotation + "#45=COLOUR_RGB('',0.5,0.25,2.);");
    ASSERT_TRUE(rgb.at(0).color);
    EXPECT_EQ(*rgb[0].color, (std::array<float, 3>{0.5F, 0.25F, 1.0F}));
    const auto named = pmiOf(size + annotation + "#45=DRAUGHTING_PRE_DEFINED_COLOUR('cyan');");
    EXPECT_EQ(*named.at(0).color, (std::array<float, 3>{0, 1, 1}));
    EXPECT_FALSE(pmiOf(size).at(0).color);
    EXPECT_TRUE(pmiOf(size + "#40=DRAUGHTING_MODEL_ITEM_ASSOCIATION('','',#30,#99,#41);"
                             "#41=ANNOTATION_OCCURRENCE('',(#42),$);#42=COLOUR_RGB('',0.,1.,0.);")
                    .at(0)
                    .color)
        << "styled, but nothing is drawn";
    EXPECT_FALSE(pmiOf(size + annotation + "#45=CURVE_STYLE('',#41,#42,#44);").at(0).color)
        << "a circle of styles";
}

TEST(StepPmi, ItemsThatCannotBeReadHaveTheNameOfTheirType) {
    EXPECT_EQ(linesOf("#30=DIMENSIONAL_SIZE(#70,'radius;#31=DATUM('','',#13,.F.,'A');"),
              (Texts{"Dimensional size|"}));
}

TEST(StepPmi, WhatBelongsToNoProductGoesToTheRoot) {
    const auto all = pmiOf("#30=DIMENSIONAL_SIZE(#99,'radius');");
    EXPECT_EQ(all.at(0).product, 0U);
    const StepFile without("#30=DIMENSIONAL_SIZE(#99,'radius');");
    EXPECT_TRUE(readPmi(without.file, readProducts(without.file)).empty());
}

}  // namespace
