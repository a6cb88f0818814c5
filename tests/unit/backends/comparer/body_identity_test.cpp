#include "backends/occt/body_identity.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <BRep_Builder.hxx>
#include <Geom_Plane.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Shell.hxx>

#include "tests/unit/backends/comparer/shapes.h"

namespace {

constexpr double kPi = std::numbers::pi;
using occt::bodyIdentity;

TEST(BodyIdentity, BoxHasItsAnalyticValues) {
    const auto identity = bodyIdentity(shapes::box(2, 3, 4));
    ASSERT_TRUE(identity);
    EXPECT_NEAR(identity->volumeMm3, 24.0, 1e-9);
    EXPECT_NEAR(identity->areaMm2, 52.0, 1e-9);
    EXPECT_NEAR(identity->centroidMm[0], 1.0, 1e-9);
    EXPECT_NEAR(identity->centroidMm[1], 1.5, 1e-9);
    EXPECT_NEAR(identity->centroidMm[2], 2.0, 1e-9);
    // V/12 (b^2 + c^2), ascending
    EXPECT_NEAR(identity->principalMoments[0], 24.0 / 12.0 * (4 + 9), 1e-9);
    EXPECT_NEAR(identity->principalMoments[1], 24.0 / 12.0 * (4 + 16), 1e-9);
    EXPECT_NEAR(identity->principalMoments[2], 24.0 / 12.0 * (9 + 16), 1e-9);
    EXPECT_EQ(identity->faceCount, 6);
    EXPECT_EQ(identity->surfaceKinds, (std::array<std::int32_t, 6>{6, 0, 0, 0, 0, 0}));
}

TEST(BodyIdentity, RoundBodiesHaveTheirAnalyticValues) {
    struct Row {
        TopoDS_Shape shape;
        double volume;
        double area;
        std::array<std::int32_t, 6> kinds;
    };
    const Row rows[] = {
        {shapes::cylinder(2, 5), 20 * kPi, 28 * kPi, {2, 1, 0, 0, 0, 0}},
        {BRepPrimAPI_MakeSphere(3).Solid(), 36 * kPi, 36 * kPi, {0, 0, 0, 1, 0, 0}},
        {BRepPrimAPI_MakeTorus(5, 2).Solid(), 40 * kPi * kPi, 40 * kPi * kPi, {0, 0, 0, 0, 1, 0}},
        {BRepPrimAPI_MakeCone(3, 0, 4).Solid(), 12 * kPi, 24 * kPi, {1, 0, 1, 0, 0, 0}},
    };
    for (const Row& row : rows) {
        const auto identity = bodyIdentity(row.shape);
        ASSERT_TRUE(identity);
        EXPECT_NEAR(identity->volumeMm3, row.volume, 1e-6 * row.volume);
        EXPECT_NEAR(identity->areaMm2, row.area, 1e-6 * row.area);
        EXPECT_EQ(identity->surfaceKinds, row.kinds);
    }
}

TEST(BodyIdentity, FreeFormFacesAreMeasuredAsWellAsThePlainOnesTheyStandFor) {
    for (const TopoDS_Shape& shape : {shapes::plate(30, 20), shapes::crossTube(200.0)}) {
        const auto plain = bodyIdentity(shape);
        const auto free = bodyIdentity(BRepBuilderAPI_NurbsConvert(shape).Shape());
        ASSERT_TRUE(plain && free);
        ASSERT_GT(free->surfaceKinds[5], 0);
        EXPECT_NEAR(free->volumeMm3, plain->volumeMm3, 5e-6 * plain->volumeMm3);
        EXPECT_NEAR(free->areaMm2, plain->areaMm2, 5e-6 * plain->areaMm2);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(free->principalMoments[i], plain->principalMoments[i],
                        2e-5 * plain->principalMoments[2]);
            EXPECT_NEAR(free->centroidMm[i], plain->centroidMm[i], 1e-3);
        }
    }
}

TEST(BodyIdentity, MomentsDoNotSufferFarFromTheOrigin) {
    const auto here = bodyIdentity(shapes::handed());
    const auto there = bodyIdentity(shapes::baked(shapes::handed(), shapes::at(1e7, -2e7, 3e6)));
    ASSERT_TRUE(here && there);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(there->principalMoments[i] / here->principalMoments[i], 1.0, 1e-6);
    }
    EXPECT_NEAR(there->volumeMm3 / here->volumeMm3, 1.0, 1e-6);
}

TEST(BodyIdentity, RotationLeavesAllButTheCentroid) {
    const auto before = bodyIdentity(shapes::handed());
    const auto after = bodyIdentity(shapes::baked(shapes::handed(), shapes::turnedZ(33)));
    ASSERT_TRUE(before && after);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(after->principalMoments[i], before->principalMoments[i], 1e-6);
    }
    EXPECT_GT(std::abs(after->centroidMm[0] - before->centroidMm[0]), 0.1);
}

TEST(BodyIdentity, BodyInsideOutHasThePositiveVolume) {
    const auto identity = bodyIdentity(shapes::box(1, 2, 3).Reversed());
    ASSERT_TRUE(identity);
    EXPECT_NEAR(identity->volumeMm3, 6.0, 1e-9);
    EXPECT_GT(identity->principalMoments[0], 0.0);
}

TEST(BodyIdentity, OpenShellHasNoVolumeButAreaMoments) {
    TopoDS_Shell shell;
    BRep_Builder builder;
    builder.MakeShell(shell);
    TopExp_Explorer faces(shapes::box(2, 2, 2), TopAbs_FACE);
    for (int i = 0; i < 5; ++i, faces.Next()) builder.Add(shell, faces.Current());
    EXPECT_FALSE(occt::isClosedBody(shell));
    const auto identity = bodyIdentity(shell);
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->volumeMm3, 0.0);
    EXPECT_NEAR(identity->areaMm2, 20.0, 1e-9);
    EXPECT_GT(identity->principalMoments[0], 0.0);
}

TEST(BodyIdentity, SolidWithAMissingFaceCountsAsOpen) {
    TopoDS_Shell shell;
    BRep_Builder builder;
    builder.MakeShell(shell);
    TopExp_Explorer faces(shapes::box(2, 2, 2), TopAbs_FACE);
    for (int i = 0; i < 5; ++i, faces.Next()) builder.Add(shell, faces.Current());
    TopoDS_Solid solid;
    builder.MakeSolid(solid);
    builder.Add(solid, shell);
    EXPECT_FALSE(occt::isClosedBody(solid));
    EXPECT_EQ(bodyIdentity(solid)->volumeMm3, 0.0);
}

TEST(BodyIdentity, NothingToMeasureGivesNone) {
    EXPECT_FALSE(bodyIdentity(TopoDS_Shape()));
    TopoDS_Compound empty;
    BRep_Builder().MakeCompound(empty);
    EXPECT_FALSE(bodyIdentity(empty));
    EXPECT_FALSE(bodyIdentity(TopExp_Explorer(shapes::box(1, 1, 1), TopAbs_EDGE).Current()));
    const BRepBuilderAPI_MakeFace endless(new Geom_Plane(gp::XOY()), 1e-6);
    const auto identity = bodyIdentity(endless.Face());
    EXPECT_TRUE(!identity || std::isfinite(identity->areaMm2));
}

}  // namespace
