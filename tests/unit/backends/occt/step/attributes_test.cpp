#include "backends/occt/step/attributes.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/unit/backends/occt/step/attribute_texts.h"

namespace {

using occt::step::Attributes;
using occt::step::readAttributes;
using occt::step::readProducts;
using step_test::attributesOfPart;
using step_test::kContexts;
using step_test::product;
using step_test::property;
using step_test::shown;
using step_test::StepFile;
using step_test::usage;

using Texts = std::vector<std::string>;

TEST(StepAttributes, TheHeaderNamesFileAndSystem) {
    const occt::step::Part21 file(
        "ISO-10303-21;HEADER;FILE_DESCRIPTION(('a','','b'),'2;1');"
        "FILE_NAME('gear.step','2024-01-01T00:00:00',('A. Author'),(''),'pre','sys',$);"
        "FILE_SCHEMA(('AP214'));ENDSEC;DATA;#1=A();ENDSEC;END-ISO-10303-21;");
    EXPECT_EQ(shown(readAttributes(file, {}).file),
              (Texts{"Header Description='a, b'", "Header File Name='gear.step'",
                     "Header Time Stamp='2024-01-01T00:00:00'", "Header Author='A. Author'",
                     "Header Preprocessor='pre'", "Header Originating System='sys'",
                     "Header Schema='AP214'"}));
}

TEST(StepAttributes, ProductsHaveTheirOwnFields) {
    const StepFile step(
        "#1=PRODUCT('id-1','Shaft','turned',());#2=PRODUCT_DEFINITION_FORMATION('B','',#1);"
        "#3=PRODUCT_DEFINITION('','',#2,$);#70=DOCUMENT_FILE();"
        "#71=APPLIED_DOCUMENT_REFERENCE(#70,'',(#3));"
        "#72=APPLIED_EXTERNAL_IDENTIFICATION_ASSIGNMENT('shaft.stp',$,$,(#70));");
    EXPECT_EQ(shown(readAttributes(step.file, readProducts(step.file)).products.at(0)),
              (Texts{"Description='turned'", "Filename='shaft.stp'", "Product ID='id-1'",
                     "Version='B'"}));
    EXPECT_EQ(attributesOfPart(""), Texts{}) << "an identifier that is the name says nothing";
}

TEST(StepAttributes, VersionsSayWhereTheyComeFrom) {
    const auto of = [](const std::string& version) {
        const StepFile step("#1=PRODUCT('','a','',());#2=" + version +
                            ";#3=PRODUCT_DEFINITION('','',#2,$);");
        return shown(readAttributes(step.file, readProducts(step.file)).products.at(0));
    };
    EXPECT_EQ(of("PRODUCT_DEFINITION_FORMATION_WITH_SPECIFIED_SOURCE('2','first',#1,.MADE.)"),
              (Texts{"Source='made'", "Version='2'", "Version Description='first'"}));
    EXPECT_EQ(of("PRODUCT_DEFINITION_FORMATION_WITH_SPECIFIED_SOURCE('','',#1,.BOUGHT.)"),
              (Texts{"Source='bought'"}));
    EXPECT_EQ(of("PRODUCT_DEFINITION_FORMATION_WITH_SPECIFIED_SOURCE('','',#1,.NOT_KNOWN.)"),
              Texts{});
}

TEST(StepAttributes, IdentifiersThatProgramsMadeUpAreLeftOut) {
    for (const char* id : {"#123", " ", "0F8FAD5B-D9CB-469F-A165-70867728950E",
                           "{0f8fad5b-d9cb-469f-a165-70867728950e}"}) {
        const StepFile step("#1=PRODUCT('" + std::string(id) +
                            "','a','',());#2=PRODUCT_DEFINITION_FORMATION('','',#1);"
                            "#3=PRODUCT_DEFINITION('','',#2,$);");
        EXPECT_EQ(shown(readAttributes(step.file, readProducts(step.file)).products.at(0)), Texts{})
            << id;
    }
    const StepFile step(
        "#1=PRODUCT('0F8FAD5B-D9CB-469F-A165-7086772895','a','',());"
        "#2=PRODUCT_DEFINITION_FORMATION('','',#1);"
        "#3=PRODUCT_DEFINITION('','',#2,$);");
    EXPECT_EQ(shown(readAttributes(step.file, readProducts(step.file)).products.at(0)),
              (Texts{"Product ID='0F8FAD5B-D9CB-469F-A165-7086772895'"}));
}

TEST(StepAttributes, ExportsAMinuteApartDifferInFileNameAndTimeStampAlone) {
    const auto exported = [](const std::string& minute, const std::string& uuid) {
        const std::string text =
            "ISO-10303-21;HEADER;FILE_DESCRIPTION(('a'),'2;1');FILE_NAME('gear" + minute +
            ".step','2024-01-01T00:" + minute +
            ":00',('A'),('O'),'p','s','');FILE_SCHEMA(('AP203'));ENDSEC;DATA;" + kContexts +
            "#10=PRODUCT('" + uuid +
            "','part','',());#11=PRODUCT_DEFINITION_FORMATION('1','',#10);"
            "#12=PRODUCT_DEFINITION('','',#11,$);#80=DATE_AND_TIME(#81,#82);"
            "#81=CALENDAR_DATE(2024,1,1);#82=LOCAL_TIME(0," +
            minute +
            ",17.,$);"
            "#83=DATE_TIME_ROLE('creation_date');"
            "#84=CC_DESIGN_DATE_AND_TIME_ASSIGNMENT(#80,#83,(#12));"
            "ENDSEC;END-ISO-10303-21;";
        const occt::step::Part21 file(text);
        const Attributes all = readAttributes(file, readProducts(file));
        Texts out = shown(all.file);
        for (const auto& product : all.products) {
            for (const std::string& value : shown(product)) out.push_back(value);
        }
        return out;
    };
    const Texts first = exported("03", "0f8fad5b-d9cb-469f-a165-70867728950e");
    const Texts second = exported("04", "7c9e6679-7425-40de-944b-e07fc1f90ae7");
    ASSERT_EQ(first.size(), second.size());
    Texts different;
    for (std::size_t i = 0; i < first.size(); ++i) {
        if (first[i] != second[i]) different.push_back(first[i].substr(0, first[i].find('=')));
    }
    EXPECT_EQ(different, (Texts{"Header File Name", "Header Time Stamp"}));
    EXPECT_NE(std::find(first.begin(), first.end(), "Creation Date='2024-01-01'"), first.end());
}

TEST(StepAttributes, ControlCharactersBecomeBlanks) {
    EXPECT_EQ(attributesOfPart(property(50, 12, "a\\X\\0Ab\x1b[2J", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('','x\ty\\X2\\0085\\X0\\z');"),
              (Texts{"a b [2J='x y z'"}));
}

TEST(StepAttributes, EncodingsThatAreCutShortAreShownAsUnknown) {
    EXPECT_EQ(attributesOfPart(property(50, 12, "k", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('','a\\X2\\00E4004');"),
              (Texts{"k='a\u00E4\uFFFD'"}));
}

TEST(StepAttributes, AValueOfAMegabyteStaysAndAKeyIsCut) {
    const std::string text(1'000'000, 'v');
    const auto values = attributesOfPart(property(50, 12, std::string(1'000'000, 'k'), "#60") +
                                         "#60=DESCRIPTIVE_REPRESENTATION_ITEM('','" + text + "');");
    ASSERT_EQ(values.size(), 1U);
    EXPECT_EQ(values[0], std::string(200, 'k') + "\u2026='" + text + "'");
}

TEST(StepAttributes, APartMayHaveAHundredThousandKeys) {
    std::string items;
    std::string all;
    constexpr int count = 100'000;
    for (int i = 0; i < count; ++i) {
        const std::string id = step_test::ref(10'000 + i);
        items += (i == 0 ? "" : ",") + id;
        all += id + "=INTEGER_REPRESENTATION_ITEM('k" + std::to_string(i) + "'," +
               std::to_string(i) + ");\n";
    }
    EXPECT_EQ(attributesOfPart(property(50, 12, "many", items) + all).size(),
              static_cast<std::size_t>(count));
}

TEST(StepAttributes, DuplicateKeysAreAllKeptInOrder) {
    EXPECT_EQ(attributesOfPart(property(50, 12, "K", "#60") + property(53, 12, "K", "#61") +
                               property(56, 12, "K", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('','b');"
                               "#61=DESCRIPTIVE_REPRESENTATION_ITEM('','a');"),
              (Texts{"K='a'", "K='b'", "K='b'"}));
}

TEST(StepAttributes, NumbersThatAreNoneAreLeftOut) {
    for (const char* number : {"NaN", "1e999", "$", "*", "-", "INF"}) {
        EXPECT_EQ(attributesOfPart(property(50, 12, "K", "#60") +
                                   "#60=REAL_REPRESENTATION_ITEM(''," + number + ");"),
                  Texts{})
            << number;
    }
}

TEST(StepAttributes, ItemsOfEachKindKeepTheirValue) {
    EXPECT_EQ(
        attributesOfPart(
            property(50, 12, "user defined attribute", "#60,#61,#62,#63,#64,#65,#66,#67,#68") +
            "#60=DESCRIPTIVE_REPRESENTATION_ITEM('text','it''s');"
            "#61=INTEGER_REPRESENTATION_ITEM('count',42);"
            "#62=REAL_REPRESENTATION_ITEM('factor',0.5);"
            "#63=BOOLEAN_REPRESENTATION_ITEM('yes',.T.);"
            "#64=MEASURE_REPRESENTATION_ITEM('length',LENGTH_MEASURE(2.5),#901);"
            "#65=(MASS_MEASURE_WITH_UNIT()MEASURE_REPRESENTATION_ITEM()MEASURE_WITH_UNIT("
            "MASS_MEASURE(3.),#912)REPRESENTATION_ITEM('mass'));"
            "#66=VALUE_REPRESENTATION_ITEM('typed',COUNT_MEASURE(7.));"
            "#67=INTEGER_REPRESENTATION_ITEM('large',5000000000);"
            "#68=CARTESIAN_POINT('none',(1.,2.,3.));"),
        (Texts{"count=42", "factor=0.5r", "large=5e+09r", "length='2.5 mm'", "mass='3 in'",
               "text='it's'", "typed=7u", "yes=yes"}));
}

TEST(StepAttributes, APropertyNamesItsOnlyValue) {
    EXPECT_EQ(attributesOfPart(property(50, 12, "Material", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('x','steel');"),
              (Texts{"Material='steel'"}));
    EXPECT_EQ(attributesOfPart(property(50, 12, "Material", "#60,#61") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('grade','steel');"
                               "#61=DESCRIPTIVE_REPRESENTATION_ITEM('','soft');"),
              (Texts{"Material='soft'", "grade='steel'"}));
    EXPECT_EQ(attributesOfPart(property(50, 12, "user defined attribute", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('','steel');"),
              (Texts{"described='steel'"}));
}

TEST(StepAttributes, GeneralPropertiesNameProperties) {
    EXPECT_EQ(attributesOfPart(property(50, 12, "user defined attribute", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('','steel');"
                               "#61=GENERAL_PROPERTY('','Material','');"
                               "#62=GENERAL_PROPERTY_ASSOCIATION('','',#61,#50);"),
              (Texts{"Material='steel'"}));
}

TEST(StepAttributes, TypesOfOtherPropertiesAreLeftOut) {
    EXPECT_EQ(attributesOfPart(property(55, 12, "attribute type designation", "#60") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('x','y');"),
              Texts{});
}

TEST(StepAttributes, BrokenPropertiesAreLeftOut) {
    EXPECT_EQ(attributesOfPart(property(50, 99, "a", "#60") + property(55, 12, "b", "#99,$,1") +
                               "#60=DESCRIPTIVE_REPRESENTATION_ITEM('','x');"
                               "#70=PROPERTY_DEFINITION_REPRESENTATION(#99,#98);"
                               "#71=PROPERTY_DEFINITION_REPRESENTATION(#55,#98);"
                               "#72=PROPERTY_DEFINITION_REPRESENTATION();"),
              Texts{});
}

TEST(StepAttributes, UsagesHaveTheirOwn) {
    const std::string text = kContexts + product(10, "", "top") + product(20, "", "part") +
                             usage(100, 10, 20, 0) + property(50, 104, "Position", "#60") +
                             property(55, 105, "Torque", "#61") +
                             "#60=INTEGER_REPRESENTATION_ITEM('',3);"
                             "#61=REAL_REPRESENTATION_ITEM('',8.5);";
    const StepFile step(text);
    const Attributes attributes = readAttributes(step.file, readProducts(step.file));
    ASSERT_EQ(attributes.usages.count(104), 1U);
    EXPECT_EQ(shown(attributes.usages.at(104)), (Texts{"Position=3", "Torque=8.5r"}));
    EXPECT_EQ(shown(attributes.products.at(1)), Texts{});
}

TEST(StepAttributes, TheOrderOfTheFilePlaysNoPart) {
    const std::string items =
        "#60=BOOLEAN_REPRESENTATION_ITEM('',.T.);#61=BOOLEAN_REPRESENTATION_ITEM('',.F.);"
        "#62=INTEGER_REPRESENTATION_ITEM('',2);#63=INTEGER_REPRESENTATION_ITEM('',10);";
    std::string properties[] = {property(30, 12, "P", "#60"), property(33, 12, "P", "#61"),
                                property(36, 12, "P", "#62"), property(40, 12, "P", "#63")};
    const Texts expected = {"P=2", "P=10", "P=no", "P=yes"};
    std::string forward;
    std::string backward;
    for (const std::string& text : properties) {
        forward += text;
        backward = text + backward;
    }
    EXPECT_EQ(attributesOfPart(items + forward), expected);
    EXPECT_EQ(attributesOfPart(items + backward), expected);
}

TEST(StepAttributes, FeaturesAreNamedByTheirKind) {
    const StepFile step(kContexts + product(10, "", "part") +
                        "#50=ROUND_HOLE('H7','',#13,.T.);#51=COMPOUND_FEATURE('','',#13,.T.);"
                        "#52=DATUM_FEATURE('A','',#13,.T.);#53=POCKET('lost','',#99,.T.);");
    const auto features = readFeatures(step.file, readProducts(step.file));
    EXPECT_EQ(shown(features.at(0)),
              (Texts{"Feature='compound feature'", "Feature='round hole H7'"}));
}

TEST(StepAttributes, NumbersHaveTheirShortestText) {
    EXPECT_EQ(occt::step::numberText(0.1), "0.1");
    EXPECT_EQ(occt::step::numberText(-2.0), "-2");
    EXPECT_EQ(occt::step::numberText(1e300), "1e+300");
}

}  // namespace
