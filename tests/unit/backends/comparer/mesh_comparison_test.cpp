#include <chrono>
#include <cmath>

#include <gtest/gtest.h>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepTools.hxx>

#include "backends/comparer/mesh_body.h"
#include "backends/comparer/scene.h"
#include "tests/unit/backends/comparer/one_pair.h"
#include "tests/unit/backends/comparer/shapes.h"

namespace {

using bxtexchange::GeometryState;
using bxtexchange::MatchEvidence;
using shapes::inTriangles;

TEST(Triangles, OfTheSamePartAreUnchangedAndTheirAccuracyIsStated) {
    const OnePair pair =
        comparePair(shapes::plate(50, 30), inTriangles(shapes::plate(50, 30), 0.05));
    EXPECT_EQ(pair.row().state, GeometryState::Unchanged);
    EXPECT_EQ(pair.row().evidence, MatchEvidence::Faces);
    // A hole of radius 4 in chords that turn by 0.3 bulges out by less than 0.05.
    EXPECT_GT(pair.row().meshAllowanceMm, 0.01);
    EXPECT_LT(pair.row().meshAllowanceMm, 0.06);
    EXPECT_NE(pair.row().note.find(L"triangles count as accurate to 0.0"), std::wstring::npos);
    EXPECT_FALSE(pair.row().hasFaceDifference);
}

TEST(Triangles, OfABodyWithFlatWallsAloneAreGrantedNothingButRounding) {
    const OnePair pair =
        comparePair(shapes::box(40, 30, 10), inTriangles(shapes::box(40, 30, 10), 0.1));
    EXPECT_EQ(pair.row().state, GeometryState::Unchanged);
    EXPECT_LT(pair.row().meshAllowanceMm, 1e-4);
    const OnePair off =
        comparePair(shapes::box(40, 30, 10), inTriangles(shapes::box(40, 30, 10.01), 0.1));
    EXPECT_EQ(off.row().state, GeometryState::Changed);
    EXPECT_NEAR(off.row().faces.largestDeviationMm, 0.01, 1e-4);
}

TEST(Triangles, DoNotHideAHoleThatIsWider) {
    const OnePair pair =
        comparePair(shapes::plate(50, 30, 4.0), inTriangles(shapes::plate(50, 30, 4.2), 0.05));
    EXPECT_EQ(pair.row().state, GeometryState::Changed);
    ASSERT_TRUE(pair.row().hasFaceDifference);
    EXPECT_NEAR(pair.row().faces.largestDeviationMm, 0.2, 0.05);
    EXPECT_NE(pair.row().faces.summary.find(L"points differ by up to 0."), std::wstring::npos);
}

TEST(Triangles, DoNotHideAHoleThatMovedByLessThanTheirAccuracy) {
    const OnePair pair =
        comparePair(shapes::plate(50, 30), inTriangles(shapes::plate(50.02, 30), 0.05));
    EXPECT_EQ(pair.row().state, GeometryState::Changed);
}

TEST(Triangles, ClosedHoleIsFoundFromEitherSide) {
    const TopoDS_Shape with = shapes::plate(50, 30, 8.0);
    const TopoDS_Shape without = shapes::box(100, 60, 10);
    for (const auto& [before, after] :
         {std::pair(with, inTriangles(without, 0.1)), std::pair(without, inTriangles(with, 0.1)),
          std::pair(inTriangles(with, 0.1), inTriangles(without, 0.1)),
          std::pair(inTriangles(without, 0.1), inTriangles(with, 0.1))}) {
        const OnePair pair = comparePair(before, after);
        EXPECT_EQ(pair.row().state, GeometryState::Changed);
        EXPECT_GT(pair.row().faces.largestDeviationMm, 4.9);
        EXPECT_LT(pair.row().faces.largestDeviationMm, 8.1);
    }
}

TEST(Triangles, OfOnePartInTwoFinenessesAreUnchanged) {
    const TopoDS_Shape ball = BRepPrimAPI_MakeSphere(20.0).Solid();
    const TopoDS_Shape coarse = inTriangles(ball, 0.2);
    BRepTools::Clean(ball);
    const TopoDS_Shape fine = inTriangles(ball, 0.02);
    const OnePair pair = comparePair(coarse, fine);
    EXPECT_EQ(pair.row().state, GeometryState::Unchanged);
    EXPECT_GT(pair.row().meshAllowanceMm, 0.0);
}

TEST(Triangles, ComparedWithTheReversedPairTellTheSame) {
    const TopoDS_Shape a = inTriangles(shapes::plate(50, 30, 4.0), 0.05);
    const TopoDS_Shape b = inTriangles(shapes::plate(51, 30, 4.5), 0.05);
    const OnePair there = comparePair(a, b);
    const OnePair back = comparePair(b, a);
    EXPECT_EQ(there.row().state, GeometryState::Changed);
    EXPECT_NEAR(there.row().faces.largestDeviationMm, back.row().faces.largestDeviationMm, 1e-9);
}

TEST(Triangles, InInchesFitThePartInMillimetresAndTheResultSaysSo) {
    const TopoDS_Shape plate = shapes::plate(50, 30);
    const OnePair pair = comparePair(plate, inTriangles(plate, 0.05, 1.0 / 25.4));
    ASSERT_EQ(pair.rows.instances.size(), 1U);
    EXPECT_EQ(pair.row().state, GeometryState::Unchanged);
    ASSERT_EQ(pair.rows.notes.size(), 1U);
    EXPECT_EQ(pair.rows.notes[0],
              L"Compare file: Its triangles fit the other file when their unit is taken as inches, "
              L"and were compared so.");
}

TEST(Triangles, OfAnotherSizeAreNotTakenForInches) {
    const TopoDS_Shape plate = shapes::plate(50, 30);
    const OnePair pair = comparePair(plate, inTriangles(plate, 0.05, 1.0 / 24.0));
    EXPECT_TRUE(pair.rows.notes.empty());
    EXPECT_NE(pair.row().state, GeometryState::Unchanged);
}

TEST(Triangles, OfAPartThatStandsElsewhereHaveMoved) {
    const TopoDS_Shape plate = shapes::plate(50, 30);
    const OnePair pair = comparePair(plate, inTriangles(plate, 0.05), {}, comparer::Shortcuts::On,
                                     shapes::at(0, 12, 0));
    EXPECT_EQ(pair.row().state, GeometryState::Moved);
    EXPECT_EQ(pair.row().motion, L"moved 12.0 mm along +Y");
}

/// A wavy sheet of 2 x 708 x 708 triangles.
TopoDS_Shape sheet(double bump) {
    constexpr int kSide = 708;
    const Handle(Poly_Triangulation) mesh =
        new Poly_Triangulation((kSide + 1) * (kSide + 1), 2 * kSide * kSide, Standard_False);
    const auto node = [](int i, int j) { return i * (kSide + 1) + j + 1; };
    for (int i = 0; i <= kSide; ++i) {
        for (int j = 0; j <= kSide; ++j) {
            const double z = std::sin(i * 0.02) * std::cos(j * 0.03) * 5.0;
            const double up = i == 300 && j == 400 ? bump : 0.0;
            mesh->SetNode(node(i, j), gp_Pnt(i * 0.2, j * 0.2, z + up));
        }
    }
    int number = 0;
    for (int i = 0; i < kSide; ++i) {
        for (int j = 0; j < kSide; ++j) {
            mesh->SetTriangle(++number,
                              Poly_Triangle(node(i, j), node(i + 1, j), node(i + 1, j + 1)));
            mesh->SetTriangle(++number,
                              Poly_Triangle(node(i, j), node(i + 1, j + 1), node(i, j + 1)));
        }
    }
    TopoDS_Face face;
    BRep_Builder builder;
    builder.MakeFace(face);
    builder.UpdateFace(face, mesh);
    return face;
}

TEST(Triangles, OneCornerAmongAMillionTrianglesIsFound) {
    const auto begin = std::chrono::steady_clock::now();
    const OnePair pair = comparePair(sheet(0.0), sheet(0.5));
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    RecordProperty("seconds", std::to_string(seconds));
    ASSERT_EQ(pair.rows.instances.size(), 1U);
    EXPECT_EQ(pair.row().state, GeometryState::Changed);
    EXPECT_GT(pair.row().faces.largestDeviationMm, 0.1);
    EXPECT_LE(pair.row().faces.largestDeviationMm, 0.5);
}

TEST(MeshBody, BowIsThatOfTheArcThatChordsStandFor) {
    const comparer::MeshBody tube(inTriangles(shapes::cylinder(10, 30), 0.1));
    double largest = 0.0;
    for (std::uint32_t t = 0; t < tube.triangles().size(); ++t) {
        const auto corner = tube.corners(t);
        for (std::size_t k = 0; k < 3; ++k) {
            const gp_XYZ middle = (corner[k] + corner[(k + 1) % 3]) / 2.0;
            // Chords on the two round edges; the flat ends have longer ones.
            const bool onWall = std::abs(corner[0].Z() - corner[1].Z()) > 1.0 ||
                                std::abs(corner[0].Z() - corner[2].Z()) > 1.0;
            if (onWall) largest = std::max(largest, 10.0 - std::hypot(middle.X(), middle.Y()));
        }
    }
    EXPECT_GT(largest, 0.0);
    EXPECT_GE(tube.largestBowMm(), largest);
    EXPECT_LE(tube.largestBowMm(), 2.2 * largest);
}

TEST(MeshBody, FlatChamferIsGrantedNothing) {
    // Ten degrees down over the last 5 of 100 mm: no arc, whatever the angle.
    const TopoDS_Shape plate = BRepAlgoAPI_Cut(
        shapes::box(100, 60, 10),
        shapes::baked(BRepBuilderAPI_Transform(
                          shapes::box(100, 80, 20),
                          [] {
                              gp_Trsf tilt;
                              tilt.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp::DY()), 0.1745);
                              return tilt;
                          }(),
                          Standard_True)
                          .Shape(),
                      shapes::at(95, -10, 10)));
    EXPECT_LT(comparer::MeshBody(inTriangles(plate, 0.1)).largestBowMm(), 1e-6);
}

TEST(MeshBody, NearestTriangleIsThatOfAnExhaustiveSearch) {
    const comparer::MeshBody body(inTriangles(shapes::plate(50, 30), 0.05));
    const comparer::MeshBody one(inTriangles(shapes::box(1, 1, 1), 0.1));
    EXPECT_NEAR(one.nearest(gp_Pnt(2, 2, 0.5), 0.0).mm, std::sqrt(2.0), 1e-9);
    EXPECT_NEAR(one.nearest(gp_Pnt(0.5, 0.5, 3.0), 0.0).mm, 2.0, 1e-9);
    EXPECT_NEAR(body.nearest(gp_Pnt(50, 30, 5), 0.0).mm, 4.0, 0.05);
}

}  // namespace
