#include "backends/occt/step/attributes_style.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/occt/step/attribute_texts.h"

namespace {

using step_test::kContexts;
using step_test::product;
using step_test::ref;
using step_test::shown;
using step_test::StepFile;

using Texts = std::vector<std::string>;

/// Attributes of a part with the bodies #60 and #61.
Texts stylesOf(const std::string& text) {
    const StepFile step(kContexts + product(10, "", "part", 900, ",#60,#61") +
                        "#60=MANIFOLD_SOLID_BREP('',#99);#61=MANIFOLD_SOLID_BREP('',#99);" + text);
    return shown(
        occt::step::readAttributes(step.file, occt::step::readProducts(step.file)).products.at(0));
}

/// A style of that number that leads to the colour with the next but three.
std::string style(int number, const std::string& color) {
    return ref(number) + "=PRESENTATION_STYLE_ASSIGNMENT((" + ref(number + 1) + "));" +
           ref(number + 1) + "=SURFACE_STYLE_USAGE(.BOTH.," + ref(number + 2) + ");" +
           ref(number + 2) + "=SURFACE_SIDE_STYLE('',(" + ref(number + 3) + "));" +
           ref(number + 3) + "=FILL_AREA_STYLE_COLOUR(''," + ref(number + 4) + ");" +
           ref(number + 4) + "=" + color + ";";
}

TEST(StepStyles, BodiesGiveTheirColour) {
    const std::string red = style(70, "COLOUR_RGB('',1.,0.5,0.)");
    EXPECT_EQ(stylesOf(red + "#80=STYLED_ITEM('',(#70),#60);"), (Texts{"Color='#FF8000'"}));
    EXPECT_EQ(stylesOf(red + style(81, "DRAUGHTING_PRE_DEFINED_COLOUR('blue')") +
                       "#80=STYLED_ITEM('',(#70),#60);#90=STYLED_ITEM('',(#81),#61);"),
              (Texts{"Color='#0000FF, #FF8000'"}));
    EXPECT_EQ(stylesOf(red + "#80=STYLED_ITEM('',(#70),#62);#62=ADVANCED_FACE('',(),$,.T.);"),
              Texts{})
        << "the colour of a face is not the part's";
    EXPECT_EQ(stylesOf(red + "#80=STYLED_ITEM('',(#70),#14);"), (Texts{"Color='#FF8000'"}))
        << "the representation as a whole";
}

TEST(StepStyles, SurfacesComeBeforeLines) {
    EXPECT_EQ(stylesOf("#70=PRESENTATION_STYLE_ASSIGNMENT((#71,#72));"
                       "#71=CURVE_STYLE('',#98,$,#73);#72=SURFACE_STYLE_FILL_AREA(#74);"
                       "#73=COLOUR_RGB('',0.,0.,0.);#74=COLOUR_RGB('',0.,1.,0.);"
                       "#80=STYLED_ITEM('',(#70),#60);"),
              (Texts{"Color='#00FF00'"}));
    EXPECT_EQ(stylesOf("#70=PRESENTATION_STYLE_ASSIGNMENT((#71));#71=CURVE_STYLE('',#98,$,#73);"
                       "#73=COLOUR_RGB('',0.,0.,1.);#80=STYLED_ITEM('',(#70),#60);"),
              (Texts{"Color='#0000FF'"}));
}

TEST(StepStyles, LayersAreThoseOfTheBodiesAndTheirStyles) {
    EXPECT_EQ(stylesOf("#70=PRESENTATION_LAYER_ASSIGNMENT('two','',(#61));"
                       "#71=PRESENTATION_LAYER_ASSIGNMENT('one','',(#60,#61));"
                       "#72=PRESENTATION_LAYER_ASSIGNMENT('styled','',(#80));"
                       "#73=PRESENTATION_LAYER_ASSIGNMENT('none','',(#62));"
                       "#80=STYLED_ITEM('',(),#60);"),
              (Texts{"Layer='one, styled, two'"}));
}

TEST(StepStyles, OfManyLayersTheFirstAreNamed) {
    std::string text;
    for (int i = 10; i < 60; ++i) {
        text +=
            ref(1000 + i) + "=PRESENTATION_LAYER_ASSIGNMENT('" + std::to_string(i) + "','',(#60));";
    }
    EXPECT_EQ(stylesOf(text),
              (Texts{"Layer='10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, "
                     "\u2026'"}));
}

TEST(StepStyles, CirclesOfStylesEnd) {
    EXPECT_EQ(stylesOf("#70=PRESENTATION_STYLE_ASSIGNMENT((#70,#71));"
                       "#71=SURFACE_STYLE_USAGE(.BOTH.,#70);#80=STYLED_ITEM('',(#70),#60);"),
              Texts{});
}

}  // namespace
