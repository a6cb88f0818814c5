#include "backends/occt/step/tolerance.h"

#include <gtest/gtest.h>

#include "platform/hps/component_type.h"
#include "tests/unit/backends/occt/step/pmi_file.h"

namespace {

namespace Type = HPS::ComponentType;
using step_test::item;
using step_test::linesOf;
using step_test::pmiOf;
using step_test::Texts;

/// Datums A (#50), B (#51) and C (#52).
const std::string kDatums =
    "#50=DATUM('','',#13,.F.,'A');#51=DATUM('','',#13,.F.,'B');#52=DATUM('','',#13,.F.,'C');";

/// Text of a position tolerance of 0.05 with more records and statements.
std::string position(const std::string& records, const std::string& statements = "") {
    const auto all = pmiOf("#30=(GEOMETRIC_TOLERANCE('','',#72,#70)" + records +
                           "POSITION_TOLERANCE());" + kDatums + statements);
    for (const auto& pmi : all) {
        if (pmi.type == Type::PmiTolerance) return pmi.text;
    }
    return "none";
}

std::string reference(const std::string& systems) {
    return "GEOMETRIC_TOLERANCE_WITH_DATUM_REFERENCE((" + systems + "))";
}

/// A compartment of that number with a base and modifiers.
std::string compartment(int number, const std::string& base, const std::string& modifiers = "$") {
    return step_test::ref(number) + "=DATUM_REFERENCE_COMPARTMENT('','',#13,.F.," + base + "," +
           modifiers + ");";
}

TEST(StepTolerance, EachKindHasItsSign) {
    const std::pair<const char*, const char*> kinds[] = {
        {"ANGULARITY", "\u2220"},       {"CIRCULAR_RUNOUT", "\u2197"},
        {"COAXIALITY", "\u25CE"},       {"CONCENTRICITY", "\u25CE"},
        {"CYLINDRICITY", "\u232D"},     {"FLATNESS", "\u23E5"},
        {"LINE_PROFILE", "\u2312"},     {"PARALLELISM", "\u2225"},
        {"PERPENDICULARITY", "\u27C2"}, {"POSITION", "\u2316"},
        {"ROUNDNESS", "\u25CB"},        {"STRAIGHTNESS", "\u23E4"},
        {"SURFACE_PROFILE", "\u2313"},  {"SYMMETRY", "\u232F"},
        {"TOTAL_RUNOUT", "\u2330"},
    };
    for (const auto& [kind, sign] : kinds) {
        const std::string keyword = std::string(kind) + "_TOLERANCE";
        const std::string expected = std::string(sign) + " 0.05";
        EXPECT_EQ(pmiOf("#30=" + keyword + "('','',#72,#70);").at(0).text, expected);
        EXPECT_EQ(pmiOf("#30=(GEOMETRIC_TOLERANCE('','',#72,#70)" + keyword + "());").at(0).text,
                  expected);
    }
}

TEST(StepTolerance, AKindThatNobodyKnowsHasItsNumber) {
    EXPECT_EQ(linesOf("#30=WAVINESS_TOLERANCE('','',#72,#70);"), (Texts{"Waviness|0.05"}));
    EXPECT_EQ(linesOf("#30=GEOMETRIC_TOLERANCE('','',#72,#70);"),
              (Texts{"Geometric tolerance|0.05"}));
}

TEST(StepTolerance, ZonesStandBeforeTheNumber) {
    const std::pair<const char*, const char*> forms[] = {
        {"cylindrical or circular", "\u2316 \u23000.05"},
        {"within a circle", "\u2316 \u23000.05"},
        {"within a cylinder", "\u2316 \u23000.05"},
        {"spherical", "\u2316 S\u23000.05"},
        {"within a sphere", "\u2316 S\u23000.05"},
        {"between two concentric circles", "\u2316 0.05"},
        {"between two coaxial cylinders", "\u2316 0.05"},
        {"between two parallel planes", "\u2316 0.05"},
        {"unknown", "\u2316 0.05"},
    };
    for (const auto& [form, text] : forms) {
        EXPECT_EQ(position("",
                           "#60=TOLERANCE_ZONE('','',#13,.F.,(#30),#61);"
                           "#61=TOLERANCE_ZONE_FORM('" +
                               std::string(form) + "');"),
                  text)
            << form;
    }
}

TEST(StepTolerance, ProjectedZonesShowTheirLength) {
    EXPECT_EQ(position("",
                       "#60=TOLERANCE_ZONE('','',#13,.F.,(#30),#61);"
                       "#61=TOLERANCE_ZONE_FORM('cylindrical or circular');"
                       "#62=PROJECTED_ZONE_DEFINITION(#60,(#70),#71,#63);"
                       "#63=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(20.),#901);"),
              "\u2316 \u23000.05 \u24C5 20");
}

TEST(StepTolerance, ModifiersStandBehindTheNumber) {
    const std::pair<const char*, const char*> modifiers[] = {
        {"MAXIMUM_MATERIAL_REQUIREMENT", "\u24C2"},
        {"LEAST_MATERIAL_REQUIREMENT", "\u24C1"},
        {"RECIPROCITY_REQUIREMENT", "\u24C7"},
        {"FREE_STATE", "\u24BB"},
        {"TANGENT_PLANE", "\u24C9"},
        {"COMMON_ZONE", "CZ"},
        {"STATISTICAL_TOLERANCE", "ST"},
        {"ANY_CROSS_SECTION", "ACS"},
        {"EACH_RADIAL_ELEMENT", "EACH RADIAL ELEMENT"},
        {"LINE_ELEMENT", "LE"},
        {"NOT_CONVEX", "NC"},
        {"SEPARATE_REQUIREMENT", "SEP REQT"},
        {"OF_ANOTHER_WORLD", "OF_ANOTHER_WORLD"},
    };
    for (const auto& [word, sign] : modifiers) {
        EXPECT_EQ(position("GEOMETRIC_TOLERANCE_WITH_MODIFIERS((." + std::string(word) + ".))"),
                  "\u2316 0.05 " + std::string(sign));
    }
    EXPECT_EQ(position("MODIFIED_GEOMETRIC_TOLERANCE(.REGARDLESS_OF_FEATURE_SIZE.)"),
              "\u2316 0.05 \u24C8");
}

TEST(StepTolerance, TheOrderOfModifiersIsTheirOwn) {
    EXPECT_EQ(position("GEOMETRIC_TOLERANCE_WITH_MODIFIERS((.MAXIMUM_MATERIAL_REQUIREMENT.,"
                       ".COMMON_ZONE.))"),
              position("GEOMETRIC_TOLERANCE_WITH_MODIFIERS((.COMMON_ZONE.,"
                       ".MAXIMUM_MATERIAL_REQUIREMENT.))"));
}

TEST(StepTolerance, UnitsOfLengthAndAreaStandBehindASlash) {
    const std::string size =
        "#60=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(25.),#901);"
        "#61=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(10.),#901);";
    const std::string unit = "GEOMETRIC_TOLERANCE_WITH_DEFINED_UNIT(#60)";
    EXPECT_EQ(position(unit, size), "\u2316 0.05/25");
    const auto area = [](const std::string& type, const std::string& second) {
        return "GEOMETRIC_TOLERANCE_WITH_DEFINED_AREA_UNIT(." + type + ".," + second + ")";
    };
    EXPECT_EQ(position(area("CIRCULAR", "$") + unit, size), "\u2316 0.05/\u230025");
    EXPECT_EQ(position(area("SQUARE", "$") + unit, size), "\u2316 0.05/\u25A125");
    EXPECT_EQ(position(area("RECTANGULAR", "#61") + unit, size), "\u2316 0.05/25x10");
}

TEST(StepTolerance, UnequalZonesAndLargestTolerances) {
    EXPECT_EQ(position("UNEQUALLY_DISPOSED_GEOMETRIC_TOLERANCE(#60)",
                       "#60=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(0.02),#901);"),
              "\u2316 0.05 \u24CA 0.02");
    EXPECT_EQ(position("GEOMETRIC_TOLERANCE_WITH_MODIFIERS((.MAXIMUM_MATERIAL_REQUIREMENT.))"
                       "GEOMETRIC_TOLERANCE_WITH_MAXIMUM_TOLERANCE(#60)",
                       "#60=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(0.2),#901);"),
              "\u2316 0.05 \u24C2 0.2 MAX");
}

TEST(StepTolerance, DatumsStandInTheOrderOfTheirSystem) {
    const std::string parts =
        compartment(61, "#51") + compartment(62, "#50") + compartment(63, "#52");
    EXPECT_EQ(position(reference("#60"), "#60=DATUM_SYSTEM('','',#13,.F.,(#61,#62,#63));" + parts),
              "\u2316 0.05 B A C");
    EXPECT_EQ(pmiOf("#30=PERPENDICULARITY_TOLERANCE('','',#72,#70,(#60));"
                    "#60=DATUM_SYSTEM('','',#13,.F.,(#61,#62,#63));" +
                    parts + kDatums)
                  .at(0)
                  .text,
              "\u27C2 0.05 B A C");
}

TEST(StepTolerance, ReferencesOfTheOlderKindSayTheirPlace) {
    EXPECT_EQ(
        position(reference("#62,#61"), "#61=DATUM_REFERENCE(1,#51);#62=DATUM_REFERENCE(2,#50);"),
        "\u2316 0.05 B A");
    EXPECT_EQ(position(reference("#61"),
                       "#61=REFERENCED_MODIFIED_DATUM(1,#51,"
                       ".MAXIMUM_MATERIAL_CONDITION.);"),
              "\u2316 0.05 B \u24C2");
    EXPECT_EQ(position(reference("#61"),
                       "#61=(DATUM_REFERENCE(1,#51)"
                       "REFERENCED_MODIFIED_DATUM(.LEAST_MATERIAL_CONDITION.));"),
              "\u2316 0.05 B \u24C1");
}

TEST(StepTolerance, DatumsHaveModifiersOfTheirOwn) {
    const auto modified = [](const std::string& modifiers, const std::string& more = "") {
        return position(reference("#60"), "#60=DATUM_SYSTEM('','',#13,.F.,(#61));" +
                                              compartment(61, "#50", modifiers) + more);
    };
    const std::pair<const char*, const char*> words[] = {
        {"MAXIMUM_MATERIAL_REQUIREMENT", "\u24C2"},
        {"LEAST_MATERIAL_REQUIREMENT", "\u24C1"},
        {"FREE_STATE", "\u24BB"},
        {"TRANSLATION", "\u25B7"},
        {"DEGREE_OF_FREEDOM_CONSTRAINT_X", "[x]"},
        {"ORIENTATION", "><"},
        {"CONTACTING_FEATURE", "CF"},
        {"POINT", "PT"},
        {"LINE", "SL"},
        {"PLANE", "PL"},
        {"DISTANCE_VARIABLE", "DV"},
        {"BASIC", "BSC"},
    };
    for (const auto& [word, sign] : words) {
        EXPECT_EQ(modified("(SIMPLE_DATUM_REFERENCE_MODIFIER(." + std::string(word) + ".))"),
                  "\u2316 0.05 A " + std::string(sign));
    }
    EXPECT_EQ(modified("(#64)",
                       "#64=DATUM_REFERENCE_MODIFIER_WITH_VALUE("
                       ".CIRCULAR_OR_CYLINDRICAL.,#65);#65=LENGTH_MEASURE_WITH_UNIT("
                       "LENGTH_MEASURE(8.),#901);"),
              "\u2316 0.05 A \u23008");
    EXPECT_EQ(modified("(#64)",
                       "#64=DATUM_REFERENCE_MODIFIER_WITH_VALUE(.PROJECTED.,#65);"
                       "#65=LENGTH_MEASURE_WITH_UNIT(LENGTH_MEASURE(8.),#901);"),
              "\u2316 0.05 A \u24C58");
}

TEST(StepTolerance, CommonDatumsAreJoined) {
    EXPECT_EQ(
        position(reference("#60"),
                 "#60=DATUM_SYSTEM('','',#13,.F.,(#61,#62));" +
                     compartment(61, "COMMON_DATUM_LIST((#64,#65))") + compartment(62, "#52") +
                     "#64=DATUM_REFERENCE_ELEMENT('','',#13,.F.,#50,$);"
                     "#65=DATUM_REFERENCE_ELEMENT('','',#13,.F.,#51,"
                     "(SIMPLE_DATUM_REFERENCE_MODIFIER(.MAXIMUM_MATERIAL_REQUIREMENT.)));"),
        "\u2316 0.05 A-B \u24C2 C");
}

TEST(StepTolerance, BrokenReferencesLeaveWhatCanBeRead) {
    EXPECT_EQ(position(reference("#60,#99,$,*")), "\u2316 0.05");
    EXPECT_EQ(position(reference("#30")), "\u2316 0.05") << "refers to itself";
    EXPECT_EQ(position(reference("#60"), "#60=DATUM_SYSTEM();"), "\u2316 0.05");
    EXPECT_EQ(position(reference("#60"), "#60=DATUM_SYSTEM('','',#13,.F.,(#60,#61));" +
                                             compartment(61, "#61", "#61")),
              "\u2316 0.05");
    EXPECT_EQ(linesOf("#30=FLATNESS_TOLERANCE('','',#99,#70);"), (Texts{"Flatness|\u23E5"}));
    EXPECT_EQ(linesOf("#30=FLATNESS_TOLERANCE();"), (Texts{"Flatness|\u23E5"}));
}

TEST(StepTolerance, AFrameOfThousandsOfDatumsIsCut) {
    std::string ids = "#50";
    for (int i = 0; i < 5000; ++i) ids += ",#50";
    EXPECT_LE(position(reference(ids)).size(), 100U);
}

TEST(StepTolerance, DatumTargetsShowLetterNumberShapeAndSize) {
    const std::string target =
        "#60=PLACED_DATUM_TARGET_FEATURE('','circle',#13,.T.,'1');"
        "#61=SHAPE_ASPECT_RELATIONSHIP('','datum target',#60,#50);";
    const std::string sized =
        "#62=PROPERTY_DEFINITION('','',#60);#63=SHAPE_DEFINITION_REPRESENTATION(#62,#64);"
        "#64=SHAPE_REPRESENTATION_WITH_PARAMETERS('',(#15,#65),#900);" +
        item(65, "target diameter", "LENGTH_MEASURE(5.)");
    EXPECT_EQ(linesOf(kDatums + target).at(3), "Datum target A1|A1 circle");
    const auto all = pmiOf(kDatums + target + sized);
    EXPECT_EQ(all.at(3).text, "A1 circle \u23005");
    EXPECT_EQ(all[3].type, Type::PmiDatumTarget);
    EXPECT_EQ(linesOf(kDatums +
                      "#60=PLACED_DATUM_TARGET_FEATURE('','rectangle',#13,.T.,'B2');"
                      "#62=PROPERTY_DEFINITION('','',#60);"
                      "#63=SHAPE_DEFINITION_REPRESENTATION(#62,#64);"
                      "#64=SHAPE_REPRESENTATION_WITH_PARAMETERS('',(#65,#66),#900);" +
                      item(65, "target length", "LENGTH_MEASURE(4.)") +
                      item(66, "target width", "LENGTH_MEASURE(3.)"))
                  .at(3),
              "Datum target B2|B2 rectangle 4x3");
    EXPECT_EQ(linesOf("#60=DATUM_TARGET('','area',#13,.T.,'7');"),
              (Texts{"Datum target 7|7 area"}));
}

}  // namespace
