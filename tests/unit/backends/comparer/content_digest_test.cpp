#include "backends/occt/content_digest.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <BRepBuilderAPI_Copy.hxx>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <BRep_Builder.hxx>
#include <TopoDS_Iterator.hxx>
#include <TopoDS_Shell.hxx>

#include "tests/unit/backends/comparer/shapes.h"

namespace {

using occt::contentDigest;

/// The same solid with its faces in another order and every one made anew.
TopoDS_Shape reordered(const TopoDS_Shape& solid) {
    const TopoDS_Shape copy = BRepBuilderAPI_Copy(solid).Shape();
    std::vector<TopoDS_Shape> faces;
    TopoDS_Shape oldShell = TopExp_Explorer(copy, TopAbs_SHELL).Current();
    for (TopoDS_Iterator it(oldShell); it.More(); it.Next()) faces.push_back(it.Value());
    std::reverse(faces.begin(), faces.end());
    std::swap(faces.front(), faces[faces.size() / 2]);
    BRep_Builder builder;
    TopoDS_Shell shell;
    builder.MakeShell(shell);
    for (const TopoDS_Shape& face : faces) builder.Add(shell, face);
    TopoDS_Solid out;
    builder.MakeSolid(out);
    builder.Add(out, shell);
    return out;
}

TEST(ContentDigest, IsThirtyTwoHexadecimalDigits) {
    const std::string digest = contentDigest(shapes::box(1, 2, 3));
    EXPECT_EQ(digest.size(), 32U);
    EXPECT_EQ(digest.find_first_not_of("0123456789abcdef"), std::string::npos);
}

TEST(ContentDigest, OrderOfFacesAndCopiesPlayNoPart) {
    for (const TopoDS_Shape& shape : {shapes::plate(30, 20), shapes::handed()}) {
        EXPECT_EQ(contentDigest(reordered(shape)), contentDigest(shape));
    }
}

TEST(ContentDigest, AnotherShapeIsAnotherDigest) {
    const std::string plate = contentDigest(shapes::plate(30, 20));
    EXPECT_NE(contentDigest(shapes::plate(30.0001, 20)), plate);
    EXPECT_NE(contentDigest(shapes::plate(30, 20, 4.0001)), plate);
    EXPECT_NE(contentDigest(shapes::scaled(shapes::plate(30, 20), 1.001)), plate);
    EXPECT_NE(contentDigest(shapes::baked(shapes::plate(30, 20), shapes::at(0, 0, 1e-4))), plate);
}

TEST(ContentDigest, MirrorImageIsAnotherDigest) {
    EXPECT_NE(contentDigest(shapes::mirrored(shapes::handed())), contentDigest(shapes::handed()));
}

TEST(ContentDigest, InsideOutIsAnotherDigest) {
    const TopoDS_Shape box = shapes::box(1, 2, 3);
    EXPECT_NE(contentDigest(box.Reversed()), contentDigest(box));
}

TEST(ContentDigest, LocationCountsAsPartOfTheGeometry) {
    const TopoDS_Shape box = shapes::box(1, 2, 3);
    const std::string moved = contentDigest(box.Moved(shapes::at(5, 0, 0)));
    EXPECT_NE(moved, contentDigest(box));
    EXPECT_EQ(moved, contentDigest(shapes::baked(box, shapes::at(5, 0, 0))));
}

TEST(ContentDigest, SplineGeometryIsKnown) {
    const TopoDS_Shape spline = BRepBuilderAPI_NurbsConvert(shapes::plate(30, 20)).Shape();
    const std::string digest = contentDigest(spline);
    EXPECT_FALSE(digest.empty());
    EXPECT_NE(digest, contentDigest(shapes::plate(30, 20)));
    const TopoDS_Shape torus = BRepBuilderAPI_NurbsConvert(BRepPrimAPI_MakeTorus(5, 2)).Shape();
    EXPECT_FALSE(contentDigest(torus).empty());
}

TEST(ContentDigest, TriangulationOfASurfaceIsNoGeometry) {
    const TopoDS_Shape cylinder = shapes::cylinder(3, 8);
    const std::string bare = contentDigest(cylinder);
    const BRepMesh_IncrementalMesh mesher(cylinder, 0.1);
    ASSERT_TRUE(mesher.IsDone());
    EXPECT_EQ(contentDigest(cylinder), bare);
}

TEST(ContentDigest, EdgesAloneHaveADigestAndNothingHasNone) {
    const TopoDS_Shape box = shapes::box(1, 2, 3);
    EXPECT_FALSE(contentDigest(TopExp_Explorer(box, TopAbs_WIRE).Current()).empty());
    EXPECT_FALSE(contentDigest(TopExp_Explorer(box, TopAbs_EDGE).Current()).empty());
    EXPECT_TRUE(contentDigest(TopoDS_Shape()).empty());
}

TEST(ContentDigest, NumbersBelowTheQuantumAndSignedZerosAreOne) {
    const auto digestOf = [](double value) {
        occt::Digest128 digest;
        digest.addReal(value, 1e-8);
        return digest.text();
    };
    EXPECT_EQ(digestOf(0.0), digestOf(-0.0));
    EXPECT_EQ(digestOf(0.0), digestOf(1e-12));
    EXPECT_NE(digestOf(0.0), digestOf(2e-8));
    EXPECT_NE(digestOf(1e300), digestOf(-1e300));
    EXPECT_NE(digestOf(1e300), digestOf(std::nan("")));
    EXPECT_NE(digestOf(std::numeric_limits<double>::infinity()), digestOf(0.0));
}

TEST(ContentDigest, RepeatedValuesCount) {
    const auto digestOf = [](std::vector<occt::Digest128::Value> values) {
        occt::Digest128 digest;
        digest.addUnordered(values);
        return digest.text();
    };
    EXPECT_EQ(digestOf({{1, 2}, {3, 4}}), digestOf({{3, 4}, {1, 2}}));
    EXPECT_NE(digestOf({{1, 2}}), digestOf({{1, 2}, {1, 2}}));
    EXPECT_NE(digestOf({{1, 2}}), digestOf({{2, 1}}));
}

}  // namespace
