#include <cmath>
#include <cstdio>
#include <map>
#include <numbers>

#include <gtest/gtest.h>
#include <BRepBuilderAPI_NurbsConvert.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <Quantity_Color.hxx>
#include <ShapeUpgrade_ShapeDivideAngle.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include "backends/comparer/body_classes.h"
#include "backends/comparer/face_report.h"
#include "backends/comparer/face_summary.h"
#include "backends/comparer/result_document.h"
#include "backends/comparer/result_rows.h"
#include "tests/unit/backends/comparer/fake_model.h"
#include "tests/unit/backends/comparer/shapes.h"

namespace {

using bxtexchange::GeometryState;
using bxtexchange::MatchEvidence;
using comparer::FaceReport;
using comparer::Match;
using comparer::SurfaceKind;

/// What two files with one part of that name each come to.
struct Outcome {
    Match match;
    FaceReport report;

    const bxtexchange::FaceDifference& numbers() const { return report.bodies.at(0).numbers; }
    const std::string& summary() const { return report.summaries.at(0); }
};

Outcome compareShapes(const TopoDS_Shape& before, const TopoDS_Shape& after,
                      const comparer::Tolerances& tolerances = {},
                      const gp_Trsf& placeAfter = gp_Trsf()) {
    FakeModel reference;
    FakeModel compare;
    reference.part(reference.top(), "Lid", before);
    compare.part(compare.top(), "Lid", after, placeAfter);
    comparer::Names names;
    const comparer::Side a = comparer::collectSide(reference, names);
    const comparer::Side b = comparer::collectSide(compare, names);
    comparer::BodyClasses classes(a, b, tolerances);
    auto matches = comparer::matchInstances(a, b, names, classes, tolerances, [](double) {});
    Outcome outcome;
    outcome.report = comparer::compareFaces(a, b, tolerances, matches, [](double) {});
    EXPECT_EQ(matches.size(), 1U);
    outcome.match = matches.at(0);
    return outcome;
}

void expectCounts(const Outcome& outcome, int unchanged, int changed, int added, int removed) {
    ASSERT_EQ(outcome.report.bodies.size(), 1U);
    EXPECT_EQ(outcome.numbers().unchangedFaces, unchanged);
    EXPECT_EQ(outcome.numbers().changedFaces, changed);
    EXPECT_EQ(outcome.numbers().addedFaces, added);
    EXPECT_EQ(outcome.numbers().removedFaces, removed);
}

TopoDS_Shape quartered(const TopoDS_Shape& shape) {
    ShapeUpgrade_ShapeDivideAngle divide(std::numbers::pi / 2.0, shape);
    divide.Perform();
    return shapes::onlySolid(divide.Result());
}

TopoDS_Shape asNurbs(const TopoDS_Shape& shape) {
    return shapes::onlySolid(BRepBuilderAPI_NurbsConvert(shape, Standard_True).Shape());
}

TopoDS_Shape rounded(const TopoDS_Shape& shape, double radius) {
    TopTools_IndexedMapOfShape edges;
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    BRepFilletAPI_MakeFillet fillet(shape);
    fillet.Add(radius, TopoDS::Edge(edges(1)));
    return shapes::onlySolid(fillet.Shape());
}

TEST(Faces, HoleThatMovedChangesItsWallAndBothFacesAroundIt) {
    const Outcome outcome = compareShapes(shapes::plate(50, 30), shapes::plate(50.05, 30));
    EXPECT_EQ(outcome.match.state, GeometryState::Changed);
    expectCounts(outcome, 4, 3, 0, 0);
    EXPECT_NEAR(outcome.numbers().largestDeviationMm, 0.05, 0.0005);
    EXPECT_EQ(outcome.summary(),
              "1 cylindrical face moved 0.05 mm along +X; 2 planar faces with another outline");
}

TEST(Faces, WiderHoleNamesBothRadii) {
    const Outcome outcome = compareShapes(shapes::plate(50, 30, 2.5), shapes::plate(50, 30, 3.0));
    expectCounts(outcome, 4, 3, 0, 0);
    EXPECT_NEAR(outcome.numbers().largestDeviationMm, 0.5, 0.005);
    EXPECT_EQ(outcome.summary(),
              "1 cylindrical face: radius 2.5 mm -> 3.0 mm; "
              "2 planar faces with another outline");
}

TEST(Faces, ClosedHoleIsRemovedAndItsMiddleIsFurthestAway) {
    const Outcome outcome = compareShapes(shapes::plate(50, 30, 8.0), shapes::box(100, 60, 10));
    expectCounts(outcome, 4, 2, 0, 1);
    EXPECT_NEAR(outcome.numbers().largestDeviationMm, 8.0, 0.08);
    EXPECT_EQ(outcome.summary(), "1 cylindrical face removed; 2 planar faces with another outline");
}

TEST(Faces, ThickerBoxMovedOneFaceAlongItsNormal) {
    const Outcome outcome = compareShapes(shapes::box(40, 30, 10), shapes::box(40, 30, 12));
    expectCounts(outcome, 1, 5, 0, 0);
    EXPECT_NEAR(outcome.numbers().largestDeviationMm, 2.0, 0.02);
    EXPECT_EQ(outcome.summary(),
              "1 planar face moved 2.0 mm along its normal; "
              "4 planar faces with another outline");
}

TEST(Faces, FacesThatMovedAlikeAreCountedInOneSentence) {
    const TopoDS_Shape wide = shapes::baked(shapes::box(44, 30, 10), shapes::at(-2, 0, 0));
    const Outcome outcome = compareShapes(shapes::box(40, 30, 10), wide);
    expectCounts(outcome, 0, 6, 0, 0);
    EXPECT_EQ(outcome.summary(),
              "2 planar faces moved 2.0 mm along their normals; "
              "4 planar faces with another outline");
}

TEST(Faces, FilletIsAnAddedFaceAsDeepAsItsCorner) {
    const TopoDS_Shape box = shapes::box(40, 30, 10);
    const Outcome outcome = compareShapes(box, rounded(box, 3.0));
    expectCounts(outcome, 2, 4, 1, 0);
    EXPECT_NEAR(outcome.numbers().largestDeviationMm, 3.0 * (std::sqrt(2.0) - 1.0), 0.013);
    EXPECT_EQ(outcome.summary(), "1 cylindrical face added; 4 planar faces with another outline");
}

TEST(Faces, ReversedPairExchangesTheSides) {
    const TopoDS_Shape box = shapes::box(40, 30, 10);
    const Outcome there = compareShapes(box, rounded(box, 3.0));
    const Outcome back = compareShapes(rounded(box, 3.0), box);
    expectCounts(back, 2, 4, 0, 1);
    EXPECT_EQ(there.report.bodies[0].referenceFaces, back.report.bodies[0].compareFaces);
    EXPECT_EQ(there.report.bodies[0].compareFaces, back.report.bodies[0].referenceFaces);
    EXPECT_NEAR(there.numbers().largestDeviationMm, back.numbers().largestDeviationMm, 1e-9);
}

TEST(Faces, SplitFacesAreNoChange) {
    const TopoDS_Shape plate = shapes::plate(50, 30);
    const Outcome outcome = compareShapes(plate, quartered(plate));
    EXPECT_EQ(outcome.match.state, GeometryState::Unchanged);
    EXPECT_EQ(outcome.match.evidence, MatchEvidence::Faces);
    EXPECT_TRUE(outcome.report.bodies.empty());
}

TEST(Faces, SplitBodyElsewhereHasMoved) {
    const TopoDS_Shape plate = shapes::plate(50, 30);
    const Outcome outcome =
        compareShapes(plate, quartered(plate), {}, shapes::at(0, 12, 0) * shapes::turnedZ(30));
    EXPECT_EQ(outcome.match.state, GeometryState::Moved);
    EXPECT_EQ(outcome.match.evidence, MatchEvidence::Faces);
    EXPECT_NEAR(outcome.match.rotationDeg, 30.0, 1e-6);
}

TEST(Faces, SplitAndFreeFormFacesDoNotHideAChange) {
    const Outcome outcome =
        compareShapes(shapes::plate(50, 30), asNurbs(quartered(shapes::plate(50.05, 30))));
    EXPECT_EQ(outcome.match.state, GeometryState::Changed);
    expectCounts(outcome, 4, 3, 0, 0);
    EXPECT_NEAR(outcome.numbers().largestDeviationMm, 0.05, 0.0005);
}

/// A ring half sunk into a plate meets it where the ring's own surface closes.
TEST(Faces, FaceThatEndsAtTheSeamOfItsNeighbourHasThatEdge) {
    const TopoDS_Shape ring = BRepPrimAPI_MakeTorus(gp_Ax2({30, 30, 10}, gp::DZ()), 9, 2).Solid();
    const TopoDS_Shape plate =
        shapes::onlySolid(BRepAlgoAPI_Fuse(shapes::plate(70, 30), ring).Shape());
    EXPECT_EQ(compareShapes(plate, asNurbs(plate)).match.state, GeometryState::Unchanged);
    EXPECT_EQ(compareShapes(asNurbs(plate), plate).match.state, GeometryState::Unchanged);
}

TEST(Faces, BodyBuiltElsewhereInItsPartIsAlignedFirst) {
    const gp_Trsf motion = shapes::at(300, -40, 7) * shapes::turnedZ(25);
    const Outcome outcome =
        compareShapes(shapes::handed(), shapes::baked(rounded(shapes::handed(), 1.0), motion));
    ASSERT_EQ(outcome.report.bodies.size(), 1U);
    EXPECT_GE(outcome.numbers().unchangedFaces, 3);
    EXPECT_LT(outcome.numbers().largestDeviationMm, 1.0);
}

TEST(Faces, MirroredAndScaledBodiesSaySo) {
    const TopoDS_Shape body = shapes::handed();
    EXPECT_EQ(compareShapes(body, shapes::mirrored(body)).summary(), "mirrored");
    EXPECT_EQ(compareShapes(body, shapes::scaled(body, 1.02)).summary(), "scaled to 102.0 %");
}

TEST(Faces, LengthToleranceDecidesWhatIsEqual) {
    comparer::Tolerances loose;
    loose.lengthMm = 0.6;
    const TopoDS_Shape before = shapes::plate(50, 30, 2.5);
    const TopoDS_Shape after = shapes::plate(50, 30, 3.0);
    EXPECT_EQ(compareShapes(before, after, loose).match.state, GeometryState::Unchanged);
    loose.lengthMm = 0.4;
    EXPECT_EQ(compareShapes(before, after, loose).match.state, GeometryState::Changed);
}

TEST(Faces, ShapesWithoutFacesStayChangedWithANote) {
    const Outcome outcome = compareShapes(shapes::bentWire(30), shapes::bentWire(31));
    EXPECT_TRUE(outcome.report.bodies.empty());
    if (outcome.match.state == GeometryState::Changed) {
        EXPECT_EQ(outcome.match.note, "its faces could not be compared");
    }
}

/// How many faces have a colour of their own, by its channels that are on, and how many bodies.
std::map<std::string, int> coloursOf(const comparer::ResultDocument& result) {
    const auto colours = XCAFDoc_DocumentTool::ColorTool(result.document()->Main());
    const auto tool = XCAFDoc_DocumentTool::ShapeTool(result.document()->Main());
    std::map<std::string, int> count;
    const auto add = [&](const std::string& what, const TDF_Label& label) {
        Quantity_Color colour;
        if (!colours->GetColor(label, XCAFDoc_ColorSurf, colour)) return;
        const bool red = colour.Red() > 2.0 * colour.Green();
        const bool green = colour.Green() > 2.0 * colour.Red();
        ++count[what + (red ? " red" : green ? " green" : " neither")];
    };
    TDF_LabelSequence labels;
    tool->GetShapes(labels);
    for (Standard_Integer i = 1; i <= labels.Length(); ++i) {
        if (!XCAFDoc_ShapeTool::IsSimpleShape(labels.Value(i))) continue;
        add("body", labels.Value(i));
        TDF_LabelSequence faces;
        XCAFDoc_ShapeTool::GetSubShapes(labels.Value(i), faces);
        for (Standard_Integer f = 1; f <= faces.Length(); ++f) add("face", faces.Value(f));
    }
    return count;
}

TEST(FaceColours, FacesOfOneSideAreRedOrGreenAndTheRestOfTheBodyIsNot) {
    FakeModel reference;
    FakeModel compare;
    const gp_Trsf place = shapes::at(5, 6, 7);
    reference.part(reference.top(), "Lid", shapes::plate(50, 30), place);
    compare.part(compare.top(), "Lid", rounded(shapes::plate(50, 30), 2.0), place);
    comparer::Names names;
    const comparer::Side a = comparer::collectSide(reference, names);
    const comparer::Side b = comparer::collectSide(compare, names);
    const comparer::Tolerances tolerances;
    comparer::BodyClasses classes(a, b, tolerances);
    auto matches = comparer::matchInstances(a, b, names, classes, tolerances, [](double) {});
    const FaceReport faces = comparer::compareFaces(a, b, tolerances, matches, [](double) {});
    ASSERT_EQ(faces.bodies.size(), 1U);
    const std::string path = testing::TempDir() + "face_colours.xbf";
    ASSERT_EQ(comparer::writeResultDocument(
                  comparer::buildScene(a, b, names, matches, faces),
                  comparer::buildResult(a, b, names, matches, tolerances, faces), path),
              "");
    comparer::ResultDocument result;
    std::string error;
    ASSERT_TRUE(result.open(path, error)) << error;
    const std::map<std::string, int> expected = {
        {"body neither", 2}, {"face red", 4}, {"face green", 5}};
    EXPECT_EQ(coloursOf(result), expected);
    const auto rows = result.rows();
    ASSERT_TRUE(rows);
    EXPECT_TRUE(rows->instances.at(0).hasFaceDifference);
    EXPECT_EQ(rows->instances.at(0).faces.addedFaces, 1);
    EXPECT_FALSE(rows->instances.at(0).faces.summary.empty());
    std::remove(path.c_str());
}

/// Samples of a face's surface the way that a free-form one is looked at.
std::vector<comparer::SurfaceSample> samplesOf(const TopoDS_Shape& solid, SurfaceKind kind) {
    std::vector<comparer::SurfaceSample> samples;
    const comparer::FaceSet set(asNurbs(solid), 1e-3);
    for (const comparer::Patch& patch : set.patches()) {
        if (patch.carrier.kind != kind) continue;
        for (const auto& sample : patch.samples) samples.push_back(sample.at);
        return samples;
    }
    return samples;
}

TEST(CarrierFit, RecognisesEveryElementarySurfaceWrittenInFreeForm) {
    struct Row {
        TopoDS_Shape solid;
        SurfaceKind kind;
        double radiusMm;
        double minorMm;
        double halfAngle;
    };
    const Row rows[] = {
        {shapes::box(3, 4, 5), SurfaceKind::Plane, 0, 0, 0},
        {shapes::cylinder(7, 20), SurfaceKind::Cylinder, 7, 0, 0},
        {BRepPrimAPI_MakeCone(8, 4, 10).Solid(), SurfaceKind::Cone, 0, 0, std::atan(0.4)},
        {BRepPrimAPI_MakeSphere(6).Solid(), SurfaceKind::Sphere, 6, 0, 0},
        {BRepPrimAPI_MakeTorus(9, 2).Solid(), SurfaceKind::Torus, 9, 2, 0},
    };
    for (const Row& row : rows) {
        const auto samples = samplesOf(row.solid, row.kind);
        const auto carrier = comparer::fitCarrier(samples, 1e-4);
        ASSERT_TRUE(carrier) << comparer::kindWord(row.kind);
        EXPECT_EQ(carrier->kind, row.kind);
        EXPECT_NEAR(carrier->radiusMm, row.radiusMm, 1e-6);
        EXPECT_NEAR(carrier->minorMm, row.minorMm, 1e-6);
        EXPECT_NEAR(carrier->halfAngle, row.halfAngle, 1e-7);
    }
}

TEST(CarrierFit, TakesNoFreeFormSurfaceForAnElementaryOne) {
    const comparer::FaceSet set(shapes::hood(0.0), 1e-3);
    ASSERT_EQ(set.patches().size(), 1U);
    EXPECT_EQ(set.patches()[0].carrier.kind, SurfaceKind::Other);
}

TEST(FaceSummary, NumbersAndDirectionsReadLikeThoseOnADrawing) {
    EXPECT_EQ(comparer::numberText(12.0), "12.0");
    EXPECT_EQ(comparer::numberText(2.5), "2.5");
    EXPECT_EQ(comparer::numberText(0.05), "0.05");
    EXPECT_EQ(comparer::numberText(-1e-9), "0.0");
    EXPECT_EQ(comparer::directionText(gp_Vec(0, 0, -3)), "-Z");
    EXPECT_EQ(comparer::directionText(gp_Vec(3, 4, 0)), "(0.6, 0.8, 0.0)");
}

}  // namespace
