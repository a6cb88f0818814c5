#include <gtest/gtest.h>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <TopoDS_Shell.hxx>

#include "tests/unit/backends/comparer/one_pair.h"
#include "tests/unit/backends/comparer/shapes.h"

namespace {

using bxtexchange::GeometryState;

/// A prism over a figure of eight: it crosses itself.
TopoDS_Shape eight(double heightMm) {
    BRepBuilderAPI_MakePolygon polygon;
    polygon.Add(gp_Pnt(0, 0, 0));
    polygon.Add(gp_Pnt(20, 20, 0));
    polygon.Add(gp_Pnt(20, 0, 0));
    polygon.Add(gp_Pnt(0, 20, 0));
    polygon.Close();
    const TopoDS_Face face = BRepBuilderAPI_MakeFace(polygon.Wire(), Standard_True).Face();
    return BRepPrimAPI_MakePrism(face, gp_Vec(0, 0, heightMm)).Shape();
}

/// The same body at another length: what is bad about it stays.
void expectAnAnswer(const TopoDS_Shape& before, const TopoDS_Shape& after) {
    const OnePair same = comparePair(before, before, {}, comparer::Shortcuts::Off);
    ASSERT_EQ(same.rows.instances.size(), 1U);
    EXPECT_TRUE(same.row().state == GeometryState::Unchanged ||
                same.row().state == GeometryState::NotCompared);
    const OnePair pair = comparePair(before, after);
    ASSERT_GE(pair.rows.instances.size(), 1U);
    for (const auto& row : pair.rows.instances) {
        EXPECT_NE(row.state, GeometryState::Unchanged);
        EXPECT_TRUE(row.state != GeometryState::NotCompared || !row.note.empty());
    }
}

TEST(BadFaces, BodyThatCrossesItselfHasAnAnswer) {
    expectAnAnswer(eight(10), eight(11));
}

TEST(BadFaces, DegeneratedEdgesAtATipAreNoChange) {
    const TopoDS_Shape cone = BRepPrimAPI_MakeCone(8, 0, 10).Solid();
    expectAnAnswer(cone, BRepPrimAPI_MakeCone(8, 0, 10.5).Solid());
}

TEST(BadFaces, TenKilometresAwayAHoleThatMovedIsStillFound) {
    const gp_Trsf far = shapes::at(1e7, -1e7, 1e7);
    const TopoDS_Shape before = shapes::baked(shapes::plate(50, 30), far);
    const TopoDS_Shape after = shapes::baked(shapes::plate(51, 30), far);
    const OnePair same = comparePair(before, before, {}, comparer::Shortcuts::Off);
    EXPECT_EQ(same.row().state, GeometryState::Unchanged);
    const OnePair pair = comparePair(before, after);
    ASSERT_EQ(pair.rows.instances.size(), 1U);
    EXPECT_EQ(pair.row().state, GeometryState::Changed);
    EXPECT_NEAR(pair.row().faces.largestDeviationMm, 1.0, 0.02);
}

TEST(BadFaces, PartPlacedTenKilometresAwayIsComparedInItsOwnFrame) {
    const OnePair pair = comparePair(shapes::plate(50, 30), shapes::plate(50.05, 30), {},
                                     comparer::Shortcuts::On, shapes::at(1e7, 0, 0));
    ASSERT_EQ(pair.rows.instances.size(), 1U);
    EXPECT_EQ(pair.row().state, GeometryState::Changed);
    EXPECT_NEAR(pair.row().faces.largestDeviationMm, 0.05, 1e-3);
}

TEST(BadFaces, PartOfTenKilometresHasAnAnswer) {
    expectAnAnswer(shapes::box(1e7, 1e6, 1e6), shapes::box(1e7, 1e6, 1.1e6));
}

TEST(BadFaces, PartOfMicrometresIsWithinTheToleranceAndNeverAnError) {
    const OnePair tiny =
        comparePair(shapes::box(0.02, 0.02, 0.02), shapes::box(0.02, 0.02, 0.0205));
    ASSERT_EQ(tiny.rows.instances.size(), 1U);
    EXPECT_EQ(tiny.row().state, GeometryState::Unchanged) << "half a micrometre";
    const OnePair larger =
        comparePair(shapes::box(0.02, 0.02, 0.02), shapes::box(0.02, 0.02, 0.03));
    EXPECT_EQ(larger.row().state, GeometryState::Changed);
    EXPECT_NEAR(larger.row().faces.largestDeviationMm, 0.01, 1e-4);
}

TEST(BadFaces, BodyWithoutFacesIsNeverCountedAsEqual) {
    TopoDS_Shell shell;
    BRep_Builder builder;
    builder.MakeShell(shell);
    for (const auto& [before, after] :
         {std::pair<TopoDS_Shape, TopoDS_Shape>(shell, shapes::box(1, 2, 3)),
          std::pair<TopoDS_Shape, TopoDS_Shape>(shapes::box(1, 2, 3), shell)}) {
        const OnePair pair = comparePair(before, after);
        ASSERT_FALSE(pair.rows.instances.empty());
        for (const auto& row : pair.rows.instances) {
            EXPECT_NE(row.state, GeometryState::Unchanged);
        }
    }
}

TEST(BadFaces, BodyOfSurfacesAndTrianglesSaysThatItsFacesCannotBeCompared) {
    BRep_Builder builder;
    const auto mixed = [&](double height) {
        TopoDS_Compound body;
        builder.MakeCompound(body);
        builder.Add(body, shapes::box(40, 30, height));
        builder.Add(body, shapes::inTriangles(shapes::box(10, 10, 10), 0.1));
        return body;
    };
    const OnePair pair = comparePair(mixed(10), mixed(12));
    ASSERT_EQ(pair.rows.instances.size(), 1U);
    EXPECT_EQ(pair.row().state, GeometryState::Changed);
    EXPECT_EQ(pair.row().note, L"its faces could not be compared");
}

}  // namespace
