#include "backends/comparer/feature_cloud.h"

#include <gtest/gtest.h>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <gp_Quaternion.hxx>

#include "tests/unit/backends/comparer/shapes.h"

namespace {

using comparer::FeatureCloud;
constexpr double kToleranceMm = 1e-3;

FeatureCloud cloudOf(const TopoDS_Shape& shape) {
    return FeatureCloud(*comparer::featuresOf(shape), 4.0 * kToleranceMm);
}

gp_Trsf oddMotion() {
    gp_Trsf turn;
    turn.SetRotation(gp_Quaternion(gp_Vec(1, 2, 3), 1.1));
    return shapes::at(100, -20, 7) * turn;
}

TEST(Motion, OfADisplacedBodyIsFound) {
    for (const TopoDS_Shape& shape :
         {shapes::handed(), shapes::plate(30, 20), shapes::box(5, 6, 7), shapes::box(5, 5, 5),
          shapes::cylinder(4, 9), TopoDS_Shape(BRepPrimAPI_MakeTorus(8, 2).Solid()),
          TopoDS_Shape(BRepPrimAPI_MakeSphere(4).Solid())}) {
        const FeatureCloud from = cloudOf(shape);
        const FeatureCloud to = cloudOf(shapes::baked(shape, oddMotion()));
        const auto motion = comparer::findMotion(from, to, kToleranceMm);
        ASSERT_TRUE(motion);
        EXPECT_TRUE(to.covers(from, *motion, kToleranceMm));
    }
}

TEST(Motion, OfABodyWithoutSymmetryIsTheOneThatWasMade) {
    const auto motion = comparer::findMotion(
        cloudOf(shapes::handed()), cloudOf(shapes::baked(shapes::handed(), oddMotion())), 1e-3);
    ASSERT_TRUE(motion);
    const gp_Trsf rest = motion->Inverted() * oddMotion();
    EXPECT_LT(gp_Pnt(40, 30, 20).Distance(gp_Pnt(40, 30, 20).Transformed(rest)), 1e-6);
}

TEST(Motion, ToAMirrorImageDoesNotExist) {
    EXPECT_FALSE(comparer::findMotion(cloudOf(shapes::handed()),
                                      cloudOf(shapes::mirrored(shapes::handed())), kToleranceMm));
}

TEST(Motion, ToTheMirrorImageOfASymmetricBodyExists) {
    EXPECT_TRUE(comparer::findMotion(cloudOf(shapes::plate(30, 30)),
                                     cloudOf(shapes::mirrored(shapes::plate(30, 30))),
                                     kToleranceMm));
}

TEST(Motion, OfASymmetricBodyIsTheSmallest) {
    const TopoDS_Shape cube = shapes::box(5, 5, 5);
    const auto motion = comparer::findMotion(
        cloudOf(cube), cloudOf(shapes::baked(cube, shapes::turnedZ(91))), kToleranceMm);
    ASSERT_TRUE(motion);
    EXPECT_NEAR(motion->GetRotation().GetRotationAngle(), 0.017453292519943295, 1e-6);
}

TEST(Motion, ToAnotherBodyDoesNotExist) {
    EXPECT_FALSE(comparer::findMotion(cloudOf(shapes::plate(30, 20)),
                                      cloudOf(shapes::plate(30.05, 20)), kToleranceMm));
    EXPECT_FALSE(comparer::findMotion(cloudOf(shapes::plate(30, 20, 4.0)),
                                      cloudOf(shapes::plate(30, 20, 4.05)), kToleranceMm));
    EXPECT_FALSE(comparer::findMotion(cloudOf(shapes::box(5, 6, 7)),
                                      cloudOf(shapes::cylinder(5, 6)), kToleranceMm));
}

TEST(Features, LeaveOutSeams) {
    const TopoDS_Shape pin = shapes::cylinder(4, 9);
    const FeatureCloud cloud = cloudOf(pin);
    EXPECT_EQ(cloud.features().size(), 2U);
    EXPECT_TRUE(cloud.covers(cloudOf(shapes::baked(pin, shapes::turnedZ(77))), gp_Trsf(), 1e-6));
}

TEST(Features, OfNothingAreNone) {
    EXPECT_FALSE(comparer::featuresOf(TopoDS_Shape()));
}

TEST(Features, OfATorusShowHowItLies) {
    gp_Trsf tilt;
    tilt.SetRotation(gp_Ax1(gp::Origin(), gp::DX()), 0.3);
    const TopoDS_Shape torus = BRepPrimAPI_MakeTorus(8, 2).Solid();
    EXPECT_FALSE(
        cloudOf(torus).covers(cloudOf(shapes::baked(torus, tilt)), gp_Trsf(), kToleranceMm));
}

}  // namespace
