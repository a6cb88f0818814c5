#include "backends/occt/read/step_pieces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/unit/backends/occt/step/product_text.h"
#include "tests/unit/backends/occt/step/step_file.h"

namespace {

using occt::StepPieces;
using step_test::kContexts;
using step_test::product;
using step_test::ref;
using step_test::usage;
using Numbers = std::set<std::uint64_t>;

/// A file and its pieces, each as the numbers of its instances.
class Cut {
public:
    explicit Cut(const std::string& data, std::size_t size = 1)
        : file_(data), cut_(occt::cutIntoPieces(file_.file, readProducts(file_.file), size)) {
        if (!cut_) return;
        for (const auto& piece : cut_->pieces) {
            EXPECT_TRUE(std::is_sorted(piece.begin(), piece.end()));
            Numbers& numbers = pieces.emplace_back();
            for (const std::uint32_t position : piece) numbers.insert(number(position));
            EXPECT_EQ(numbers.size(), piece.size());
        }
        for (const auto& [from, to] : cut_->instead) instead[number(from)] = number(to);
    }

    bool done() const { return cut_.has_value(); }

    std::vector<Numbers> pieces;
    std::map<std::uint64_t, std::uint64_t> instead;

private:
    std::uint64_t number(std::uint32_t position) const {
        return file_.file.instances()[position].id;
    }

    step_test::StepFile file_;
    std::optional<StepPieces> cut_;
};

/// An edge at base on a curve at base + 1 with two curves in parameters at base + 2 and base + 3.
std::string edge(int base, const std::string& type, const std::string& first,
                 const std::string& second) {
    return ref(base) + "=EDGE_CURVE('',#980,#980," + ref(base + 1) + ",.T.);\n" + ref(base + 1) +
           "=" + type + "('',#981,(" + ref(base + 2) + "," + ref(base + 3) + "),.PCURVE_S1.);\n" +
           ref(base + 2) + "=PCURVE(''," + first + ",#984);\n" + ref(base + 3) + "=PCURVE(''," +
           second + ",#985);\n";
}

/// A vertex, a line, two planes and two cylinders, and what curves in parameters refer to.
const std::string kGeometry =
    "#980=VERTEX_POINT('',#920);\n#981=LINE('',#920,#982);\n#982=VECTOR('',#983,1.);\n"
    "#983=DIRECTION('',(1.,0.,0.));\n#984=DEFINITIONAL_REPRESENTATION('',(#986),#900);\n"
    "#985=DEFINITIONAL_REPRESENTATION('',(#986),#900);\n#986=LINE('',#920,#982);\n"
    "#990=PLANE('',#994);\n#991=PLANE('',#994);\n#992=CYLINDRICAL_SURFACE('',#994,1.);\n"
    "#993=CYLINDRICAL_SURFACE('',#994,2.);\n#994=AXIS2_PLACEMENT_3D('',#920,$,$);\n";

/// A product whose one item is that edge.
std::string withEdge(const std::string& edgeText) {
    return kContexts + kGeometry + product(10, "a", "A", 900, ",#50") +
           "#50=EDGE_BASED_WIREFRAME_MODEL('',(#51));\n#51=CONNECTED_EDGE_SET('',(#60));\n" +
           edgeText;
}

TEST(StepPieces, EachProductComesWithItsShape) {
    const Cut cut(kContexts + product(10, "a", "A") + product(20, "b", "B"));
    ASSERT_TRUE(cut.done());
    const Numbers a = {10, 11, 12, 13, 14, 15, 16, 900, 901, 920};
    const Numbers b = {20, 21, 22, 23, 24, 25, 26, 900, 901, 920};
    EXPECT_EQ(cut.pieces, (std::vector<Numbers>{a, b}));
}

TEST(StepPieces, ProductsThatFitStandTogether) {
    const std::string data =
        kContexts + product(10, "a", "A") + product(20, "b", "B") + product(30, "c", "C");
    EXPECT_EQ(Cut(data, 1).pieces.size(), 3U);
    EXPECT_EQ(Cut(data, 11).pieces.size(), 2U);
    EXPECT_EQ(Cut(data, 1000).pieces.size(), 1U);
}

TEST(StepPieces, PiecesFollowTheOrderOfTheFile) {
    const Cut cut(kContexts + product(50, "a", "A") + product(20, "b", "B"));
    ASSERT_EQ(cut.pieces.size(), 2U);
    EXPECT_EQ(cut.pieces[0].count(50), 1U);
    EXPECT_EQ(cut.pieces[1].count(20), 1U);
}

TEST(StepPieces, EachProductKeepsItsUnits) {
    const Cut cut(kContexts + product(10, "a", "A", 900) + product(20, "b", "B", 910));
    ASSERT_EQ(cut.pieces.size(), 2U);
    EXPECT_EQ(cut.pieces[0].count(912), 0U);
    EXPECT_EQ(cut.pieces[1].count(900), 0U);
    for (const int number : {910, 911, 912, 901}) EXPECT_EQ(cut.pieces[1].count(number), 1U);
}

TEST(StepPieces, ProductsWithACommonBodyAreNotParted) {
    const std::string body = "#70=MANIFOLD_SOLID_BREP('',#71);\n#71=CLOSED_SHELL('',());\n";
    const Cut cut(kContexts + body + product(10, "a", "A", 900, ",#70") + product(20, "b", "B") +
                  product(30, "c", "C", 900, ",#70"));
    ASSERT_EQ(cut.pieces.size(), 2U);
    EXPECT_EQ(cut.pieces[0].count(12) + cut.pieces[0].count(32), 2U);
    EXPECT_EQ(cut.pieces[0].count(22), 0U);
}

TEST(StepPieces, ProductsWithACommonRepresentationAreNotParted) {
    const Cut cut(kContexts + product(10, "a", "A") + product(20, "b", "B") +
                  "#80=SHAPE_DEFINITION_REPRESENTATION(#23,#14);\n");
    EXPECT_EQ(cut.pieces.size(), 1U);
}

TEST(StepPieces, CommonBodiesBelowComplexRepresentationsAreSeen) {
    const std::string shape =
        "#70=(GEOMETRICALLY_BOUNDED_SURFACE_SHAPE_REPRESENTATION()REPRESENTATION('',(#920),#900)"
        "SHAPE_REPRESENTATION());\n";
    const Cut cut(kContexts + shape + product(10, "a", "A") + product(20, "b", "B") +
                  "#80=SHAPE_DEFINITION_REPRESENTATION(#13,#70);\n"
                  "#81=SHAPE_DEFINITION_REPRESENTATION(#23,#70);\n");
    EXPECT_EQ(cut.pieces.size(), 1U);
}

TEST(StepPieces, UsagesAndTheirPlacementsAreLeftOut) {
    const Cut cut(kContexts + product(10, "a", "A") + product(20, "b", "B") +
                  usage(30, 10, 20, 5.0));
    ASSERT_EQ(cut.pieces.size(), 2U);
    for (const Numbers& piece : cut.pieces) {
        for (int number = 30; number < 37; ++number) EXPECT_EQ(piece.count(number), 0U) << number;
    }
}

TEST(StepPieces, MappedItemsThatStandForUsagesAreLeftOut) {
    const Cut cut(kContexts + product(10, "a", "A", 900, ",#40") + product(20, "b", "B") +
                  "#40=MAPPED_ITEM('',#41,#15);\n#41=REPRESENTATION_MAP(#25,#24);\n"
                  "#42=NEXT_ASSEMBLY_USAGE_OCCURRENCE('','','',#12,#22,$);\n");
    ASSERT_EQ(cut.pieces.size(), 2U);
    EXPECT_EQ(cut.pieces[0].count(40), 0U);
}

TEST(StepPieces, MappedItemsThatAreGeometryStay) {
    const Cut cut(kContexts + product(10, "a", "A", 900, ",#40") +
                  "#40=MAPPED_ITEM('',#41,#15);\n#41=REPRESENTATION_MAP(#15,#43);\n"
                  "#43=SHAPE_REPRESENTATION('',(#15),#900);\n");
    ASSERT_EQ(cut.pieces.size(), 1U);
    for (const int number : {40, 41, 43}) EXPECT_EQ(cut.pieces[0].count(number), 1U);
}

TEST(StepPieces, RelatedRepresentationsComeAlong) {
    const Cut cut(kContexts + product(10, "a", "A") +
                  "#40=SHAPE_REPRESENTATION('',(#15),#900);\n"
                  "#41=SHAPE_REPRESENTATION_RELATIONSHIP('','',#14,#40);\n");
    ASSERT_EQ(cut.pieces.size(), 1U);
    EXPECT_EQ(cut.pieces[0].count(40) + cut.pieces[0].count(41), 2U);
}

TEST(StepPieces, StylesAndPropertiesAreLeftOut) {
    const Cut cut(kContexts + product(10, "a", "A") +
                  "#40=STYLED_ITEM('',(),#15);\n"
                  "#41=PROPERTY_DEFINITION('','',#12);\n"
                  "#42=PROPERTY_DEFINITION_REPRESENTATION(#41,#43);\n"
                  "#43=REPRESENTATION('',(#15),#900);\n#44=SHAPE_ASPECT('','',#13,.F.);\n");
    ASSERT_EQ(cut.pieces.size(), 1U);
    for (int number = 40; number < 45; ++number) EXPECT_EQ(cut.pieces[0].count(number), 0U);
}

TEST(StepPieces, CurvesInPlanesGiveWayToTheLineInSpace) {
    const Cut cut(withEdge(edge(60, "SURFACE_CURVE", "#990", "#991")));
    ASSERT_EQ(cut.pieces.size(), 1U);
    EXPECT_EQ(cut.pieces[0].count(981), 1U);
    for (const int number : {61, 62, 63, 984, 986, 990}) {
        EXPECT_EQ(cut.pieces[0].count(number), 0U) << number;
    }
    EXPECT_EQ(cut.instead, (std::map<std::uint64_t, std::uint64_t>{{61, 981}}));
}

TEST(StepPieces, CurvesOnOtherSurfacesStay) {
    const Cut cut(withEdge(edge(60, "SURFACE_CURVE", "#990", "#992")));
    ASSERT_EQ(cut.pieces.size(), 1U);
    EXPECT_EQ(cut.pieces[0].count(62), 0U);
    for (const int number : {61, 63, 981, 985, 992}) {
        EXPECT_EQ(cut.pieces[0].count(number), 1U) << number;
    }
    EXPECT_TRUE(cut.instead.empty());
}

TEST(StepPieces, SeamsKeepBothCurves) {
    for (const auto& [type, first, second] : {std::array{"SURFACE_CURVE", "#992", "#992"},
                                              {"SURFACE_CURVE", "#990", "#990"},
                                              {"SEAM_CURVE", "#990", "#991"},
                                              {"INTERSECTION_CURVE", "#990", "#991"}}) {
        const Cut cut(withEdge(edge(60, type, first, second)));
        ASSERT_EQ(cut.pieces.size(), 1U);
        for (const int number : {61, 62, 63}) EXPECT_EQ(cut.pieces[0].count(number), 1U) << type;
        EXPECT_TRUE(cut.instead.empty());
    }
}

TEST(StepPieces, CurvesThatOthersUseTooKeepAll) {
    const std::string segment = "#70=COMPOSITE_CURVE_SEGMENT(.CONTINUOUS.,.T.,#61);\n";
    const Cut both(withEdge(edge(60, "SURFACE_CURVE", "#990", "#992") + segment));
    ASSERT_EQ(both.pieces.size(), 1U);
    for (const int number : {61, 62, 63}) EXPECT_EQ(both.pieces[0].count(number), 1U);
    // Reached by another way than an edge.
    const Cut direct(withEdge(edge(60, "SURFACE_CURVE", "#990", "#991") +
                              "#70=EDGE_CURVE('',#980,#980,#71,.T.);\n"
                              "#71=TRIMMED_CURVE('',#61,(),(),.T.,.PARAMETER.);\n"
                              "#72=CONNECTED_EDGE_SET('',(#70));\n"
                              "#73=EDGE_BASED_WIREFRAME_MODEL('',(#72));\n"
                              "#74=SHAPE_REPRESENTATION('',(#73),#900);\n"
                              "#75=SHAPE_DEFINITION_REPRESENTATION(#13,#74);\n"));
    ASSERT_EQ(direct.pieces.size(), 1U);
    for (const int number : {61, 62, 63}) EXPECT_EQ(direct.pieces[0].count(number), 1U);
}

TEST(StepPieces, ProductsWithoutShapesDoNoHarm) {
    const Cut cut(kContexts + "#1=PRODUCT_DEFINITION('','',$,$);\n" + product(10, "a", "A"));
    ASSERT_TRUE(cut.done());
    EXPECT_EQ(cut.pieces.back().count(14), 1U);
}

TEST(StepPieces, WhatCannotBeCutIsLeftWhole) {
    const std::string sound = kContexts + product(10, "a", "A");
    ASSERT_TRUE(Cut(sound).done());
    const struct {
        const char* what;
        std::string data;
    } rows[] = {
        {"no products", kContexts},
        {"a dangling reference", sound + "#40=STYLED_ITEM('',(),#41);\n"},
        {"a number twice", sound + "#10=PRODUCT('','','',());\n"},
        {"a broken statement", sound + "#40=(;\n"},
        {"a number too large", sound + "#3000000000=DIRECTION('',(1.));\n"},
        {"small letters in what is needed", sound +
                                                "#40=SHAPE_REPRESENTATION('',(#41),#900);\n"
                                                "#41=direction('',(1.));\n"
                                                "#42=SHAPE_DEFINITION_REPRESENTATION(#13,#40);\n"},
        {"shapes of aspects", sound + "#40=SHAPE_ASPECT('','',#13,.F.);\n"
                                      "#41=PROPERTY_DEFINITION('','',#40);\n"
                                      "#42=SHAPE_DEFINITION_REPRESENTATION(#41,#14);\n"},
    };
    for (const auto& row : rows) EXPECT_FALSE(Cut(row.data).done()) << row.what;
}

}  // namespace
