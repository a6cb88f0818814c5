#include "backends/comparer/feature_cloud.h"

#include <gtest/gtest.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <BRepTools_ReShape.hxx>
#include <BRep_Tool.hxx>
#include <Geom_Line.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Circ.hxx>
#include <gp_Quaternion.hxx>

#include "tests/unit/backends/comparer/shapes.h"

namespace {

using comparer::FeatureCloud;
constexpr double kToleranceMm = 1e-3;

FeatureCloud cloudOf(const TopoDS_Shape& shape) {
    return FeatureCloud(*comparer::featuresOf(shape), 4.0 * kToleranceMm);
}

std::optional<gp_Trsf> motionBetween(const FeatureCloud& from, const FeatureCloud& to) {
    return comparer::findMotion(from, to, kToleranceMm, [](const gp_Trsf&) { return true; });
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
        const auto motion = motionBetween(from, to);
        ASSERT_TRUE(motion);
        EXPECT_TRUE(comparer::coincide(from, to, *motion, kToleranceMm));
    }
}

TEST(Motion, OfABodyWithoutSymmetryIsTheOneThatWasMade) {
    const auto motion = motionBetween(cloudOf(shapes::handed()),
                                      cloudOf(shapes::baked(shapes::handed(), oddMotion())));
    ASSERT_TRUE(motion);
    const gp_Trsf rest = motion->Inverted() * oddMotion();
    EXPECT_LT(gp_Pnt(40, 30, 20).Distance(gp_Pnt(40, 30, 20).Transformed(rest)), 1e-6);
}

TEST(Motion, ToAMirrorImageDoesNotExist) {
    EXPECT_FALSE(
        motionBetween(cloudOf(shapes::handed()), cloudOf(shapes::mirrored(shapes::handed()))));
}

TEST(Motion, ToTheMirrorImageOfASymmetricBodyExists) {
    EXPECT_TRUE(motionBetween(cloudOf(shapes::plate(30, 30)),
                              cloudOf(shapes::mirrored(shapes::plate(30, 30)))));
}

TEST(Motion, OfASymmetricBodyIsTheSmallest) {
    const TopoDS_Shape cube = shapes::box(5, 5, 5);
    const auto motion =
        motionBetween(cloudOf(cube), cloudOf(shapes::baked(cube, shapes::turnedZ(91))));
    ASSERT_TRUE(motion);
    EXPECT_NEAR(motion->GetRotation().GetRotationAngle(), 0.017453292519943295, 1e-6);
}

TEST(Motion, MustFitForWhoeverKnowsMoreThanFeatures) {
    const FeatureCloud cube = cloudOf(shapes::box(5, 5, 5));
    const auto upsideDown = [](const gp_Trsf& motion) {
        return gp::DZ().Transformed(motion).Dot(gp::DZ()) < -0.5;
    };
    const auto motion = comparer::findMotion(cube, cube, kToleranceMm, upsideDown);
    ASSERT_TRUE(motion);
    EXPECT_TRUE(upsideDown(*motion));
    EXPECT_FALSE(
        comparer::findMotion(cube, cube, kToleranceMm, [](const gp_Trsf&) { return false; }));
}

TEST(Motion, OfABodyOfManySymmetriesIsLookedAtCloselyAFewTimesOnly) {
    std::vector<comparer::Feature> teeth;
    for (int i = 0; i < 1000; ++i) {
        teeth.push_back({comparer::Feature::Kind::Corner,
                         gp_Pnt(100, 0, i % 2).Transformed(shapes::turnedZ(0.36 * i))});
    }
    const FeatureCloud wheel(teeth, 4.0 * kToleranceMm);
    int asked = 0;
    const auto motion = comparer::findMotion(wheel, wheel, kToleranceMm, [&](const gp_Trsf&) {
        ++asked;
        return false;
    });
    EXPECT_FALSE(motion);
    EXPECT_EQ(asked, 200);
}

TEST(Motion, ToAnotherBodyDoesNotExist) {
    EXPECT_FALSE(motionBetween(cloudOf(shapes::plate(30, 20)), cloudOf(shapes::plate(30.05, 20))));
    EXPECT_FALSE(
        motionBetween(cloudOf(shapes::plate(30, 20, 4.0)), cloudOf(shapes::plate(30, 20, 4.05))));
    EXPECT_FALSE(motionBetween(cloudOf(shapes::box(5, 6, 7)), cloudOf(shapes::cylinder(5, 6))));
}

TEST(Features, LeaveOutSeams) {
    const TopoDS_Shape pin = shapes::cylinder(4, 9);
    const FeatureCloud cloud = cloudOf(pin);
    EXPECT_EQ(cloud.features().size(), 4U) << "two circles, each with its centre as a rim";
    EXPECT_TRUE(cloud.covers(cloudOf(shapes::baked(pin, shapes::turnedZ(77))), gp_Trsf(), 1e-6));
}

/// The same body with every edge cut in two.
TEST(Features, DoNotShowHowEdgesAreSplit) {
    const TopoDS_Shape body = shapes::handed();
    BRepTools_ReShape context;
    for (TopExp_Explorer it(body, TopAbs_EDGE); it.More(); it.Next()) {
        const TopoDS_Edge edge = TopoDS::Edge(it.Current().Oriented(TopAbs_FORWARD));
        double first = 0.0;
        double last = 0.0;
        const Handle(Geom_Curve) curve = BRep_Tool::Curve(edge, first, last);
        if (curve.IsNull() || curve->DynamicType() != STANDARD_TYPE(Geom_Line)) continue;
        const gp_Pnt middle = curve->Value((first + last) / 2);
        const TopoDS_Vertex vertex = BRepBuilderAPI_MakeVertex(middle).Vertex();
        const auto half = [&](const TopoDS_Vertex& a, const TopoDS_Vertex& b) {
            return BRepBuilderAPI_MakeEdge(curve, a, b).Edge();
        };
        BRepBuilderAPI_MakeWire halves(half(TopExp::FirstVertex(edge), vertex),
                                       half(vertex, TopExp::LastVertex(edge)));
        context.Replace(edge, halves.Wire());
    }
    const TopoDS_Shape split = context.Apply(body);
    TopTools_IndexedMapOfShape before;
    TopTools_IndexedMapOfShape after;
    TopExp::MapShapes(body, TopAbs_VERTEX, before);
    TopExp::MapShapes(split, TopAbs_VERTEX, after);
    ASSERT_GT(after.Extent(), before.Extent());
    EXPECT_TRUE(comparer::coincide(cloudOf(body), cloudOf(split), gp_Trsf(), 1e-6));
}

std::vector<comparer::Feature> rimsOf(const TopoDS_Shape& shape) {
    auto features = *comparer::featuresOf(shape);
    std::erase_if(features, [](const comparer::Feature& feature) {
        return feature.kind != comparer::Feature::Kind::RimCentre;
    });
    return features;
}

TEST(Features, OfARoundEdgeAreItsCentreAndLength) {
    const auto rims = rimsOf(shapes::cylinder(4, 9));
    ASSERT_EQ(rims.size(), 2U);
    for (const auto& rim : rims) {
        EXPECT_NEAR(rim.sizeMm, 8 * 3.14159265358979, 1e-9);
        EXPECT_NEAR(rim.point.X(), 0.0, 1e-9);
        EXPECT_NEAR(std::abs(rim.point.Z() - 4.5), 4.5, 1e-9);
    }
}

/// Two arcs and two straight edges that run on smoothly are one rim.
TEST(Features, JoinEdgesThatRunOnSmoothly) {
    const auto edge = [](const gp_Pnt& a, const gp_Pnt& b) {
        return BRepBuilderAPI_MakeEdge(a, b).Edge();
    };
    const auto arc = [](const gp_Pnt& centre, double from) {
        const gp_Ax2 axes(centre, gp::DZ());
        const double pi = 3.14159265358979323846;
        return BRepBuilderAPI_MakeEdge(gp_Circ(axes, 5), from, from + pi).Edge();
    };
    const double pi = 3.14159265358979323846;
    BRepBuilderAPI_MakeWire slot(edge({0, -5, 0}, {30, -5, 0}), arc({30, 0, 0}, -pi / 2),
                                 edge({30, 5, 0}, {0, 5, 0}), arc({0, 0, 0}, pi / 2));
    const auto rims = rimsOf(slot.Wire());
    ASSERT_EQ(rims.size(), 1U);
    EXPECT_NEAR(rims[0].sizeMm, 60 + 10 * pi, 1e-6);
    EXPECT_LT(rims[0].point.Distance(gp_Pnt(15, 0, 0)), 1e-6);
    const auto features = comparer::featuresOf(slot.Wire());
    ASSERT_TRUE(features);
    for (const auto& feature : *features) {
        EXPECT_NE(feature.kind, comparer::Feature::Kind::Corner);
    }
}

TEST(Features, OfInaccurateRimsAreSoughtFurtherAway) {
    using Kind = comparer::Feature::Kind;
    const comparer::Feature corner{Kind::Corner, gp_Pnt(50, 0, 0)};
    const auto cloud = [&](double x, double slackMm) {
        return FeatureCloud({corner, {Kind::RimCentre, gp_Pnt(x, 0, 0), 12.0 + x, slackMm}},
                            4.0 * kToleranceMm);
    };
    const gp_Trsf none;
    EXPECT_FALSE(comparer::coincide(cloud(0, 0), cloud(0.02, 0), none, kToleranceMm));
    EXPECT_TRUE(comparer::coincide(cloud(0, 0.011), cloud(0.02, 0), none, kToleranceMm));
    EXPECT_TRUE(comparer::coincide(cloud(0, 0), cloud(0.02, 0.011), none, kToleranceMm));
    EXPECT_FALSE(comparer::coincide(cloud(0, 0.009), cloud(0.02, 0), none, kToleranceMm));
    EXPECT_FALSE(comparer::coincide(cloud(0, 5.0), cloud(0.06, 5.0), none, kToleranceMm));
}

/// Writers drop edges that are next to nothing.
TEST(Features, LeaveOutTinyRims) {
    EXPECT_TRUE(rimsOf(BRepBuilderAPI_MakeEdge(gp_Circ(gp::XOY(), 0.001)).Edge()).empty());
    EXPECT_EQ(rimsOf(BRepBuilderAPI_MakeEdge(gp_Circ(gp::XOY(), 0.01)).Edge()).size(), 1U);
}

TEST(Features, OfStraightEdgesAreTheirCornersOnly) {
    EXPECT_TRUE(rimsOf(shapes::box(1, 2, 3)).empty());
    EXPECT_TRUE(rimsOf(BRepBuilderAPI_NurbsConvert(shapes::box(1, 2, 3)).Shape()).empty());
}

TEST(Features, OfAConeShowWhichWayItPoints) {
    const TopoDS_Shape cone = BRepPrimAPI_MakeCone(3, 0, 4).Solid();
    gp_Trsf flip;
    flip.SetRotation(gp_Ax1(gp::Origin(), gp::DX()), 3.14159265358979);
    EXPECT_FALSE(comparer::coincide(cloudOf(cone), cloudOf(shapes::baked(cone, flip)), gp_Trsf(),
                                    kToleranceMm));
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
