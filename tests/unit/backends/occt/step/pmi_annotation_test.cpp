#include "backends/occt/step/pmi_annotation.h"

#include <gtest/gtest.h>

#include "platform/hps/component_type.h"
#include "tests/unit/backends/occt/step/pmi_file.h"

namespace {

namespace Type = HPS::ComponentType;
using step_test::linesOf;
using step_test::pmiOf;
using step_test::ref;
using step_test::Texts;

const std::string kLines =
    "#43=GEOMETRIC_CURVE_SET('',(#98));#44=PRESENTATION_STYLE_ASSIGNMENT(());";

TEST(StepPmiAnnotation, WhatIsOnlyDrawnHasItsName) {
    const auto all = pmiOf("#41=ANNOTATION_CURVE_OCCURRENCE('Flatness.1',(#44),#43);" + kLines);
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].name, "Flatness.1");
    EXPECT_EQ(all[0].text, "");
    EXPECT_EQ(all[0].type, Type::PmiAnnotation);
}

TEST(StepPmiAnnotation, ADrawingIsNamedAfterWhatItsLinesAre) {
    const auto all = pmiOf(
        "#41=TESSELLATED_ANNOTATION_OCCURRENCE('',(#44),#45);"
        "#45=TESSELLATED_GEOMETRIC_SET('surface finish',(#98));" +
        kLines);
    EXPECT_EQ(all.at(0).name, "Surface finish");
    EXPECT_EQ(all[0].type, Type::PmiSurfaceFinish);
    EXPECT_EQ(linesOf("#41=ANNOTATION_CURVE_OCCURRENCE('#41',(#44),#43);" + kLines),
              (Texts{"Annotation|"}));
}

TEST(StepPmiAnnotation, NamesTellNotesAndWelds) {
    const std::pair<const char*, std::uint32_t> kinds[] = {
        {"General Note 3", Type::PmiNote},
        {"Text.8", Type::PmiNote},
        {"label", Type::PmiNote},
        {"Spot Weld.2", Type::PmiWeld},
        {"Roughness.1", Type::PmiSurfaceFinish},
        {"Linear Size.1", Type::PmiAnnotation},
    };
    for (const auto& [name, type] : kinds) {
        const auto all = pmiOf("#41=ANNOTATION_CURVE_OCCURRENCE('" + std::string(name) +
                               "',(#44),#43);" + kLines);
        EXPECT_EQ(all.at(0).type, type) << name;
    }
}

TEST(StepPmiAnnotation, WhatIsDrawnForAnItemIsNoItem) {
    const std::string drawn = "#41=ANNOTATION_CURVE_OCCURRENCE('a',(#44),#43);" + kLines +
                              "#40=DRAUGHTING_MODEL_ITEM_ASSOCIATION('','',#30,#99,#41);";
    EXPECT_EQ(linesOf(drawn + "#30=DIMENSIONAL_SIZE(#70,'radius');"), (Texts{"a|"}));
    EXPECT_EQ(linesOf(drawn + "#30=DATUM_FEATURE('','',#13,.T.);"), Texts{});
    EXPECT_EQ(linesOf(drawn + "#30=SHAPE_ASPECT('','',#13,.T.);"), (Texts{"a|"}))
        << "a face has no meaning of its own";
    EXPECT_EQ(linesOf("#41=ANNOTATION_CURVE_OCCURRENCE('gp16',(#44),#43);" + kLines +
                      "#30=FLATNESS_TOLERANCE('gp16','',#72,#70);"),
              (Texts{"gp16|\u23E5 0.05"}))
        << "tied by its name alone";
}

TEST(StepPmiAnnotation, CalloutsHoldTheirParts) {
    EXPECT_EQ(linesOf("#40=DRAUGHTING_CALLOUT('Note.1',(#41,#42));"
                      "#41=ANNOTATION_CURVE_OCCURRENCE('leader',(#44),#43);"
                      "#42=ANNOTATION_TEXT_OCCURRENCE('words',(#44),#45);"
                      "#45=TEXT_LITERAL('','break edges',#98,'baseline left',.RIGHT.,#97);" +
                      kLines),
              (Texts{"Note.1|break edges"}));
}

TEST(StepPmiAnnotation, TextsAndSignsAreJoined) {
    EXPECT_EQ(linesOf("#40=DRAUGHTING_CALLOUT('d',(#41,#42,#46));"
                      "#41=ANNOTATION_SYMBOL_OCCURRENCE('',(#44),#45);"
                      "#45=DEFINED_SYMBOL('',#47,#98);#47=PRE_DEFINED_DIMENSION_SYMBOL('diameter');"
                      "#42=ANNOTATION_TEXT_OCCURRENCE('',(#44),#48);"
                      "#48=COMPOSITE_TEXT('',(#49,#50));"
                      "#49=TEXT_LITERAL('','12',#98,'',.RIGHT.,#97);"
                      "#50=TEXT_LITERAL('','\\X\\0A H7',#98,'',.RIGHT.,#97);"
                      "#46=ANNOTATION_SYMBOL_OCCURRENCE('',(#44),#51);"
                      "#51=DEFINED_SYMBOL('',#52,#98);"
                      "#52=PRE_DEFINED_GEOMETRICAL_TOLERANCE_SYMBOL('flatness');" +
                      kLines),
              (Texts{"d|\u2300 12 H7 \u23E5"}));
}

TEST(StepPmiAnnotation, TextsBesideTheLinesAreRead) {
    const auto withText = [](const std::string& text) {
        return linesOf("#41=ANNOTATION_CURVE_OCCURRENCE('Note',(#44),#43);" + kLines +
                       "#50=PROPERTY_DEFINITION('pmi validation property','',#51);"
                       "#51=CHARACTERIZED_ITEM_WITHIN_REPRESENTATION('','',#41,#99);"
                       "#52=PROPERTY_DEFINITION_REPRESENTATION(#50,#53);"
                       "#53=REPRESENTATION('',(#54,#55),$);"
                       "#54=DESCRIPTIVE_REPRESENTATION_ITEM('font name','Arial');"
                       "#55=DESCRIPTIVE_REPRESENTATION_ITEM('equivalent unicode string','" +
                       text + "');");
    };
    EXPECT_EQ(withText("break edges"), (Texts{"Note|break edges"}));
    EXPECT_EQ(withText("TXT\\\\wNOTES:\\X\\0A/n\\X\\0A 1. ALL"), (Texts{"Note|NOTES: 1. ALL"}));
}

TEST(StepPmiAnnotation, ACountStandsBeforeItsDimension) {
    const auto counted = [](const std::string& text) {
        return linesOf("#30=DIMENSIONAL_SIZE(#70,'diameter');" + step_test::dimensionItems("#33") +
                       step_test::item(33, "nominal value", "LENGTH_MEASURE(12.)") +
                       "#40=DRAUGHTING_MODEL_ITEM_ASSOCIATION('','',#30,#99,#41);"
                       "#41=ANNOTATION_TEXT_OCCURRENCE('Size',(),#42);"
                       "#42=TEXT_LITERAL('','" +
                       text + "',#98,'',.RIGHT.,#97);");
    };
    EXPECT_EQ(counted("4X"), (Texts{"Size|4X \u230012"}));
    EXPECT_EQ(counted("X"), (Texts{"Size|\u230012"}));
    EXPECT_EQ(counted("4"), (Texts{"Size|\u230012"}));
    EXPECT_EQ(counted("4X DEEP"), (Texts{"Size|\u230012"}));
}

TEST(StepPmiAnnotation, TheTextOfADimensionsValueIsTheDimensions) {
    EXPECT_EQ(linesOf("#30=DIMENSIONAL_LOCATION('','',#70,#71);"
                      "#40=DRAUGHTING_CALLOUT('c',(#41));"
                      "#41=ANNOTATION_TEXT_OCCURRENCE('dimension value',(),#42);"
                      "#42=DIMENSION_TEXT_ASSOCIATIVITY('','40.0',#98,'',.RIGHT.,#97,#96,#95);"),
              (Texts{"Dimensional location|"}));
}

TEST(StepPmiAnnotation, SavedViewsCountWhatTheyShow) {
    const std::string parts =
        "#41=ANNOTATION_CURVE_OCCURRENCE('a',(#44),#43);"
        "#42=ANNOTATION_CURVE_OCCURRENCE('b',(#44),#43);" +
        kLines +
        "#60=CAMERA_MODEL_D3('camera',#99,#98);"
        "#61=CAMERA_MODEL_D3('#61',#99,#98);";
    const auto all = pmiOf(parts +
                           "#62=DRAUGHTING_MODEL('Front',(#41,#42,#60),#900);"
                           "#63=DRAUGHTING_MODEL('#63',(#42,#61),#900);"
                           "#64=DRAUGHTING_MODEL('all of it',(#41,#42),#900);");
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[2].name + "|" + all[2].text, "View|1 annotation");
    EXPECT_EQ(all[3].name + "|" + all[3].text, "View Front|2 annotations");
    EXPECT_EQ(all[3].type, Type::PmiView);
    EXPECT_EQ(linesOf("#60=CAMERA_MODEL_D3('alone',#99,#98);"), (Texts{"View alone|"}));
}

TEST(StepPmiAnnotation, PlanesOfAViewCountWithTheirAnnotations) {
    EXPECT_EQ(linesOf("#41=ANNOTATION_CURVE_OCCURRENCE('a',(#44),#43);"
                      "#42=ANNOTATION_CURVE_OCCURRENCE('b',(#44),#43);" +
                      kLines +
                      "#60=CAMERA_MODEL_D3('camera',#99,#98);"
                      "#61=ANNOTATION_PLANE('p',(#44),#98,(#41,#42));"
                      "#62=DRAUGHTING_MODEL('Front',(#61,#60),#900);")
                  .back(),
              "View Front|2 annotations");
}

TEST(StepPmiAnnotation, NotesForProgramsAreItems) {
    EXPECT_EQ(linesOf("#50=PROPERTY_DEFINITION('general note','',#70);"
                      "#52=PROPERTY_DEFINITION_REPRESENTATION(#50,#53);"
                      "#53=REPRESENTATION('',(#54),$);"
                      "#54=DESCRIPTIVE_REPRESENTATION_ITEM('semantic text','break edges');"),
              (Texts{"General note|break edges"}));
}

TEST(StepPmiAnnotation, SurfaceFinishShowsItsNumbers) {
    const auto all = pmiOf(
        "#50=PROPERTY_DEFINITION('','',#70);"
        "#52=PROPERTY_DEFINITION_REPRESENTATION(#50,#53);"
        "#53=SURFACE_TEXTURE_REPRESENTATION('',(#54,#55),$);"
        "#54=DESCRIPTIVE_REPRESENTATION_ITEM('texture','machined');"
        "#55=MEASURE_REPRESENTATION_ITEM('Ra',LENGTH_MEASURE(3.2),#56);"
        "#56=(LENGTH_UNIT()NAMED_UNIT(*)SI_UNIT(.MICRO.,.METRE.));");
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].type, Type::PmiSurfaceFinish);
    EXPECT_EQ(all[0].text, "\u221A machined Ra 3.2 um");
}

TEST(StepPmiAnnotation, SharedTextsAreCut) {
    const auto all = pmiOf(
        "#41=ANNOTATION_TEXT_OCCURRENCE('n',(),#42);"
        "#42=TEXT_LITERAL('','" +
        std::string(1'000'000, 'x') + "',#98,'',.RIGHT.,#97);");
    EXPECT_EQ(all.at(0).text, std::string(16'000, 'x') + "\u2026");
}

TEST(StepPmiAnnotation, BrokenDrawingsAreLeftOut) {
    EXPECT_EQ(linesOf("#40=DRAUGHTING_CALLOUT();#41=ANNOTATION_CURVE_OCCURRENCE();"
                      "#42=DRAUGHTING_CALLOUT('c',(#42,#99));#43=DRAUGHTING_MODEL();"
                      "#44=ANNOTATION_PLANE();#45=CAMERA_MODEL_D3();"
                      "#46=DRAUGHTING_MODEL_ITEM_ASSOCIATION();"),
              (Texts{"Annotation|", "Annotation 2|", "c|", "View|"}));
}

}  // namespace
