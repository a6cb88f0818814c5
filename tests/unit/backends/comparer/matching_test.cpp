#include "backends/comparer/matching.h"

#include <gtest/gtest.h>
#include <BRepBuilderAPI_NurbsConvert.hxx>

#include "tests/unit/backends/comparer/fake_model.h"
#include "tests/unit/backends/comparer/shapes.h"

namespace {

using bxtexchange::GeometryState;
using bxtexchange::MatchEvidence;
using comparer::Match;
using shapes::at;

std::vector<Match> matchModels(const FakeModel& reference, const FakeModel& compare) {
    comparer::Names names;
    const comparer::Side a = comparer::collectSide(reference, names);
    const comparer::Side b = comparer::collectSide(compare, names);
    const comparer::Tolerances tolerances;
    comparer::BodyClasses classes(a, b, tolerances);
    return comparer::matchInstances(a, b, names, classes, tolerances, [](double) {});
}

std::vector<GeometryState> states(const std::vector<Match>& matches) {
    std::vector<GeometryState> out;
    for (const Match& match : matches) out.push_back(match.state);
    return out;
}

TEST(Matching, IdenticalContentAtTheSamePlaceIsUnchanged) {
    FakeModel a;
    a.part(a.top(), "Plate", shapes::plate(30, 20), at(5, 6, 7));
    FakeModel b;
    b.part(b.top(), "Plate", shapes::plate(30, 20), at(5, 6, 7));
    const auto matches = matchModels(a, b);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].state, GeometryState::Unchanged);
    EXPECT_EQ(matches[0].evidence, MatchEvidence::IdenticalContent);
    EXPECT_FALSE(matches[0].ambiguous);
}

TEST(Matching, EqualIdentityAtTheSamePlaceIsUnchanged) {
    FakeModel a;
    a.part(a.top(), "Plate", shapes::plate(30, 20));
    FakeModel b;
    b.part(b.top(), "Platte", shapes::plate(30, 20));
    b.hideDigests();
    const auto matches = matchModels(a, b);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].state, GeometryState::Unchanged);
    EXPECT_EQ(matches[0].evidence, MatchEvidence::Identity);
}

TEST(Matching, PlacementBakedIntoTheGeometryIsUnchanged) {
    const gp_Trsf place = at(40, -3, 8) * shapes::turnedZ(37);
    for (const TopoDS_Shape& shape :
         {shapes::plate(30, 20), shapes::handed(), shapes::cylinder(3, 9)}) {
        FakeModel a;
        a.part(a.top(), "P", shape, place);
        FakeModel b;
        b.part(b.top(), "P", shapes::baked(shape, place));
        const auto matches = matchModels(a, b);
        ASSERT_EQ(matches.size(), 1U);
        EXPECT_EQ(matches[0].state, GeometryState::Unchanged);
        EXPECT_EQ(matches[0].evidence, MatchEvidence::Identity);
    }
}

TEST(Matching, MovedInstanceKeepsItsWay) {
    FakeModel a;
    a.part(a.top(), "Plate", shapes::plate(30, 20), at(1, 0, 0));
    FakeModel b;
    b.part(b.top(), "Plate", shapes::plate(30, 20), at(13, 0, -4));
    const auto matches = matchModels(a, b);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].state, GeometryState::Moved);
    EXPECT_EQ(matches[0].evidence, MatchEvidence::Identity);
    EXPECT_NEAR(matches[0].displacementMm[0], 12.0, 1e-9);
    EXPECT_NEAR(matches[0].displacementMm[2], -4.0, 1e-9);
    EXPECT_NEAR(matches[0].rotationDeg, 0.0, 1e-9);
}

TEST(Matching, RotatedInstanceKeepsItsAngle) {
    FakeModel a;
    a.part(a.top(), "Arm", shapes::handed());
    FakeModel b;
    b.part(b.top(), "Arm", shapes::handed(), shapes::turnedZ(25));
    const auto matches = matchModels(a, b);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].state, GeometryState::Moved);
    EXPECT_NEAR(matches[0].rotationDeg, 25.0, 1e-6);
}

TEST(Matching, TurnThatASymmetricBodyDoesNotShowIsNone) {
    FakeModel a;
    a.part(a.top(), "Pin", shapes::cylinder(3, 9));
    a.part(a.top(), "Cube", shapes::baked(shapes::box(4, 4, 4), at(-2, -2, -2)), at(50, 0, 0));
    FakeModel b;
    b.part(b.top(), "Pin", shapes::cylinder(3, 9), shapes::turnedZ(41));
    b.part(b.top(), "Cube", shapes::baked(shapes::box(4, 4, 4), at(-2, -2, -2)),
           at(50, 0, 0) * shapes::turnedZ(90));
    EXPECT_EQ(states(matchModels(a, b)),
              (std::vector{GeometryState::Unchanged, GeometryState::Unchanged}));
}

TEST(Matching, MirroredBodyIsNotEqual) {
    FakeModel a;
    a.part(a.top(), "Arm", shapes::handed());
    FakeModel b;
    b.part(b.top(), "Arm", shapes::mirrored(shapes::handed()));
    const auto matches = matchModels(a, b);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].state, GeometryState::Changed);
    EXPECT_TRUE(comparer::sameIdentity(*occt::bodyIdentity(shapes::handed()),
                                       *occt::bodyIdentity(shapes::mirrored(shapes::handed())),
                                       1e-5))
        << "the identity alone would have called them equal";
}

TEST(Matching, SmallMoveOfAHoleThatNoIntegralShowsIsAChange) {
    const auto before = shapes::plate(50, 30, 1.0);
    const auto after = shapes::plate(50.05, 30, 1.0);
    ASSERT_TRUE(comparer::sameIdentity(*occt::bodyIdentity(before), *occt::bodyIdentity(after),
                                       comparer::Tolerances().relative));
    FakeModel a;
    a.part(a.top(), "Plate", before);
    FakeModel b;
    b.part(b.top(), "Plate", after);
    EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Changed}));
}

/// The rims of such a hole are neither circles nor have they corners, and the hole is too small
/// for any integral.
TEST(Matching, CrossHoleWithoutCirclesOrCornersIsFound) {
    const auto before = shapes::crossTube(200.0);
    for (const TopoDS_Shape& after :
         {shapes::crossTube(200.01), shapes::crossTube(205.0), shapes::crossTube(200.0, 2.005)}) {
        ASSERT_TRUE(comparer::sameIdentity(*occt::bodyIdentity(before), *occt::bodyIdentity(after),
                                           comparer::Tolerances().relative));
        FakeModel a;
        a.part(a.top(), "Tube", before);
        FakeModel b;
        b.part(b.top(), "Tube", after);
        EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Changed}));
    }
}

TEST(Matching, TurnOfABodyThatIsAlmostRoundIsSeen) {
    FakeModel a;
    a.part(a.top(), "Tube", shapes::crossTube(200.0));
    FakeModel placed;
    placed.part(placed.top(), "Tube", shapes::crossTube(200.0), shapes::turnedZ(1));
    FakeModel baked;
    baked.part(baked.top(), "Tube", shapes::baked(shapes::crossTube(200.0), shapes::turnedZ(1)));
    for (const FakeModel* b : {&placed, &baked}) {
        const auto matches = matchModels(a, *b);
        ASSERT_EQ(matches.size(), 1U);
        EXPECT_EQ(matches[0].state, GeometryState::Moved);
        EXPECT_NEAR(matches[0].rotationDeg, 1.0, 1e-3);
    }
}

TEST(Matching, LocalBendOfAFreeFormFaceIsAChange) {
    FakeModel a;
    a.part(a.top(), "Hood", shapes::hood(0.0));
    for (const double pullMm : {0.02, 0.5}) {
        FakeModel b;
        b.part(b.top(), "Hood", shapes::hood(pullMm));
        EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Changed})) << pullMm;
    }
    FakeModel tiny;
    tiny.part(tiny.top(), "Hood", shapes::hood(1e-5));
    EXPECT_EQ(states(matchModels(a, tiny)), (std::vector{GeometryState::Unchanged}));
}

/// Its corners and the points of its grid are where they were after half a turn; the bend isn't.
TEST(Matching, TurnOfABodyThatIsAlmostSymmetricIsSeen) {
    const auto sheet = shapes::hood(0.02, 0.0);
    const gp_Trsf halfTurn = at(100, 100, 0) * shapes::turnedZ(180) * at(-100, -100, 0);
    FakeModel a;
    a.part(a.top(), "Sheet", sheet);
    FakeModel b;
    b.part(b.top(), "Sheet", sheet, halfTurn);
    EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Moved}));
    FakeModel flat;
    flat.part(flat.top(), "Sheet", shapes::hood(0.0, 0.0));
    FakeModel flatTurned;
    flatTurned.part(flatTurned.top(), "Sheet", shapes::hood(0.0, 0.0), halfTurn);
    EXPECT_EQ(states(matchModels(flat, flatTurned)), (std::vector{GeometryState::Unchanged}));
}

TEST(Matching, FormInWhichABodyIsWrittenPlaysNoPart) {
    for (const TopoDS_Shape& shape :
         {shapes::plate(30, 20), shapes::box(1, 2, 3), shapes::crossTube(200.0)}) {
        FakeModel a;
        a.part(a.top(), "P", shape);
        FakeModel b;
        b.part(b.top(), "P", BRepBuilderAPI_NurbsConvert(shape).Shape());
        const auto matches = matchModels(a, b);
        ASSERT_EQ(matches.size(), 1U);
        EXPECT_EQ(matches[0].state, GeometryState::Unchanged);
        EXPECT_EQ(matches[0].evidence, MatchEvidence::Identity);
    }
}

TEST(Matching, BodyInsideOutIsTheSameBody) {
    FakeModel a;
    a.part(a.top(), "P", shapes::plate(30, 20));
    FakeModel b;
    b.part(b.top(), "P", shapes::plate(30, 20).Reversed());
    EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Unchanged}));
}

TEST(Matching, BodyFarFromTheOriginIsComparedAsElsewhere) {
    const gp_Trsf far = at(1e6, -1e6, 1e6);
    FakeModel a;
    a.part(a.top(), "P", shapes::baked(shapes::plate(30, 20), far));
    FakeModel same;
    same.part(same.top(), "P", shapes::plate(30, 20), far);
    EXPECT_EQ(states(matchModels(a, same)), (std::vector{GeometryState::Unchanged}));
    FakeModel changed;
    changed.part(changed.top(), "P", shapes::baked(shapes::plate(30.01, 20), far));
    EXPECT_EQ(states(matchModels(a, changed)), (std::vector{GeometryState::Changed}));
    FakeModel moved;
    moved.part(moved.top(), "P", shapes::plate(30, 20), at(0.01, 0, 0) * far);
    EXPECT_EQ(states(matchModels(a, moved)), (std::vector{GeometryState::Moved}));
}

/// Wires have no identity: they are compared by their features and all along.
TEST(Matching, WiresAreComparedWithinTheTolerance) {
    FakeModel a;
    a.part(a.top(), "Path", shapes::bentWire(10.0));
    const auto stateOf = [&](const TopoDS_Shape& wire, const gp_Trsf& placement) {
        FakeModel b;
        b.part(b.top(), "Path", wire, placement);
        return states(matchModels(a, b));
    };
    EXPECT_EQ(stateOf(shapes::bentWire(10.0001), gp_Trsf()),
              (std::vector{GeometryState::Unchanged}));
    EXPECT_EQ(stateOf(shapes::bentWire(10.01), gp_Trsf()), (std::vector{GeometryState::Changed}));
    EXPECT_EQ(stateOf(shapes::baked(shapes::bentWire(10.0), at(0, 5, 0)), gp_Trsf()),
              (std::vector{GeometryState::Moved}));
}

TEST(Matching, EqualVolumeAloneIsNoMatch) {
    FakeModel a;
    a.part(a.top(), "Block", shapes::box(4, 4, 4));
    FakeModel b;
    b.part(b.top(), "Block", shapes::box(2, 4, 8));
    EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Changed}));
}

TEST(Matching, ChangeBelowTheToleranceIsNone) {
    FakeModel a;
    a.part(a.top(), "Block", shapes::box(100, 100, 100));
    FakeModel b;
    b.part(b.top(), "Block", shapes::box(100.0002, 100, 100));
    EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Unchanged}));
}

TEST(Matching, RenamedPartOfEqualGeometryIsNeitherDeletedNorAdded) {
    FakeModel a;
    a.part(a.top(), "Cover", shapes::plate(30, 20));
    a.part(a.top(), "Base", shapes::box(10, 20, 30), at(0, 0, 50));
    FakeModel b;
    b.part(b.top(), "Lid", shapes::plate(30, 20));
    b.part(b.top(), "Base", shapes::box(10, 20, 30), at(0, 0, 50));
    EXPECT_EQ(states(matchModels(a, b)),
              (std::vector{GeometryState::Unchanged, GeometryState::Unchanged}));
}

TEST(Matching, AddedAndDeletedInstancesStandAlone) {
    FakeModel a;
    a.part(a.top(), "Gone", shapes::box(1, 2, 3));
    a.part(a.top(), "Kept", shapes::box(5, 5, 5), at(100, 0, 0));
    FakeModel b;
    b.part(b.top(), "Kept", shapes::box(5, 5, 5), at(100, 0, 0));
    b.part(b.top(), "New", shapes::cylinder(9, 9), at(200, 0, 0));
    const auto matches = matchModels(a, b);
    EXPECT_EQ(states(matches),
              (std::vector{GeometryState::OnlyInReference, GeometryState::Unchanged,
                           GeometryState::OnlyInCompare}));
    EXPECT_EQ(matches[0].compare, Match::kNone);
    EXPECT_EQ(matches[2].reference, Match::kNone);
}

TEST(Matching, ReshapedPartIsFoundByPathThenProductThenPlace) {
    FakeModel a;
    const auto group = a.occurrence(a.top(), "Group");
    a.part(group, "ByPath", shapes::box(10, 10, 10));
    a.part(group, "ByProduct", shapes::box(10, 10, 11), at(100, 0, 0));
    a.part(group, "ByPlace", shapes::box(10, 10, 12), at(200, 0, 0));
    FakeModel b;
    const auto other = b.occurrence(b.top(), "Group");
    b.part(other, "ByPath", shapes::box(10, 10, 20), at(5, 0, 0));
    b.part(b.top(), "ByProduct", shapes::box(10, 10, 21), at(400, 0, 0));
    b.part(other, "Renamed", shapes::box(10, 10, 13), at(200, 0, 0));
    const auto matches = matchModels(a, b);
    EXPECT_EQ(states(matches), (std::vector(3, GeometryState::Changed)));
    for (const Match& match : matches) EXPECT_EQ(match.evidence, MatchEvidence::SamePlace);
    EXPECT_EQ(matches[0].compare, 0);
    EXPECT_EQ(matches[1].compare, 2);
    EXPECT_EQ(matches[2].compare, 1);
}

TEST(Matching, FillerNamesPairNothing) {
    FakeModel a;
    a.part(a.top(), "Part", shapes::box(10, 10, 10));
    FakeModel b;
    b.part(b.top(), "Part", shapes::cylinder(3, 30), at(900, 0, 0));
    b.part(b.top(), "Part", shapes::cylinder(4, 50), at(-900, 0, 0));
    EXPECT_EQ(states(matchModels(a, b)),
              (std::vector{GeometryState::OnlyInReference, GeometryState::OnlyInCompare,
                           GeometryState::OnlyInCompare}));
}

TEST(Matching, TheOnlyBodiesOfTwoFilesAreOneThatChanged) {
    FakeModel a;
    a.part(a.top(), "Part", shapes::box(10, 10, 10));
    FakeModel b;
    b.part(b.top(), "Solid", shapes::cylinder(3, 30), at(900, 0, 0));
    const auto matches = matchModels(a, b);
    ASSERT_EQ(states(matches), std::vector{GeometryState::Changed});
    EXPECT_EQ(matches[0].note, "the only body of each file");
    EXPECT_FALSE(matches[0].ambiguous);
}

TEST(Matching, MoreOfOnePartAreOnlyInCompare) {
    const TopoDS_Shape bolt = shapes::cylinder(2, 10);
    FakeModel a;
    for (int i = 0; i < 3; ++i) a.part(a.top(), "Bolt", bolt, at(20.0 * i, 0, 0));
    FakeModel b;
    for (int i = 0; i < 5; ++i) b.part(b.top(), "Bolt", bolt, at(20.0 * i, 0, 0));
    const auto matches = matchModels(a, b);
    EXPECT_EQ(states(matches), (std::vector{GeometryState::Unchanged, GeometryState::Unchanged,
                                            GeometryState::Unchanged, GeometryState::OnlyInCompare,
                                            GeometryState::OnlyInCompare}));
}

TEST(Matching, MovedOnesOfUnequalNumberGoToTheNearest) {
    const TopoDS_Shape bolt = shapes::cylinder(2, 10);
    FakeModel a;
    a.part(a.top(), "Bolt", bolt, at(0, 0, 0));
    a.part(a.top(), "Bolt", bolt, at(100, 0, 0));
    FakeModel b;
    b.part(b.top(), "Bolt", bolt, at(103, 0, 0));
    const auto matches = matchModels(a, b);
    EXPECT_EQ(states(matches), (std::vector{GeometryState::OnlyInReference, GeometryState::Moved}));
    EXPECT_FALSE(matches[1].ambiguous);
}

TEST(Matching, EquallyNearPartnersAreMarkedAmbiguous) {
    const TopoDS_Shape bolt = shapes::cylinder(2, 10);
    FakeModel a;
    a.part(a.top(), "Bolt", bolt, at(-10, 0, 0));
    a.part(a.top(), "Bolt", bolt, at(10, 0, 0));
    FakeModel b;
    b.part(b.top(), "Bolt", bolt, at(0, 0, 0));
    const auto matches = matchModels(a, b);
    EXPECT_EQ(states(matches), (std::vector{GeometryState::Moved, GeometryState::OnlyInReference}));
    EXPECT_TRUE(matches[0].ambiguous);
}

TEST(Matching, WholeAssemblyThatMovesKeepsItsOrder) {
    const TopoDS_Shape bolt = shapes::cylinder(2, 10);
    FakeModel a;
    FakeModel b;
    for (int i = 0; i < 4; ++i) {
        a.part(a.top(), "Bolt", bolt, at(20.0 * i, 0, 0));
        b.part(b.top(), "Bolt", bolt, at(20.0 * i + 11.0, 0, 0));
    }
    for (const Match& match : matchModels(a, b)) {
        EXPECT_EQ(match.state, GeometryState::Moved);
        EXPECT_NEAR(match.displacementMm[0], 11.0, 1e-9);
        EXPECT_TRUE(match.ambiguous);
    }
}

TEST(Matching, TwinsAtOnePlacePairOneToOne) {
    FakeModel a;
    FakeModel b;
    for (int i = 0; i < 3; ++i) a.part(a.top(), "Twin", shapes::box(1, 1, 1));
    for (int i = 0; i < 2; ++i) b.part(b.top(), "Twin", shapes::box(1, 1, 1));
    const auto matches = matchModels(a, b);
    EXPECT_EQ(states(matches), (std::vector{GeometryState::Unchanged, GeometryState::Unchanged,
                                            GeometryState::OnlyInReference}));
    EXPECT_TRUE(matches[0].ambiguous);
}

TEST(Matching, TwinWithTheSamePathIsPreferred) {
    FakeModel a;
    a.part(a.top(), "First", shapes::box(1, 1, 1));
    a.part(a.top(), "Second", shapes::box(1, 1, 1));
    FakeModel b;
    b.part(b.top(), "Second", shapes::box(1, 1, 1));
    b.part(b.top(), "First", shapes::box(1, 1, 1));
    const auto matches = matchModels(a, b);
    ASSERT_EQ(matches.size(), 2U);
    EXPECT_EQ(matches[0].compare, 1);
    EXPECT_EQ(matches[1].compare, 0);
    EXPECT_FALSE(matches[0].ambiguous);
}

TEST(Matching, BodiesOfOnePartAreComparedOneByOne) {
    const TopoDS_Shape ring = shapes::cylinder(5, 5);
    FakeModel a;
    a.bodies(a.occurrence(a.top(), "Bearing"),
             {{"inner", ring}, {"outer", shapes::box(20, 20, 20)}});
    FakeModel b;
    b.bodies(b.occurrence(b.top(), "Bearing"),
             {{"inner", ring}, {"outer", shapes::box(20, 20, 21)}});
    EXPECT_EQ(states(matchModels(a, b)),
              (std::vector{GeometryState::Unchanged, GeometryState::Changed}));
}

TEST(Matching, BodyThatNobodyCanMeasureIsNotCompared) {
    FakeModel a;
    a.part(a.top(), "Odd", shapes::box(1, 1, 1));
    a.hideDigests();
    a.hideIdentities();
    FakeModel b;
    b.part(b.top(), "Odd", shapes::box(1, 1, 1));
    b.hideDigests();
    b.hideIdentities();
    const auto matches = matchModels(a, b);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].state, GeometryState::NotCompared);
    EXPECT_FALSE(matches[0].note.empty());
    FakeModel good;
    good.part(good.top(), "Odd", shapes::box(1, 1, 1));
    EXPECT_EQ(states(matchModels(a, good)),
              (std::vector{GeometryState::NotCompared, GeometryState::OnlyInCompare}));
}

TEST(Matching, IdenticalContentIsEqualEvenIfNobodyCanMeasureIt) {
    FakeModel a;
    a.part(a.top(), "Odd", shapes::box(1, 1, 1));
    a.hideIdentities();
    FakeModel b;
    b.part(b.top(), "Odd", shapes::box(1, 1, 1));
    b.hideIdentities();
    const auto matches = matchModels(a, b);
    ASSERT_EQ(matches.size(), 1U);
    EXPECT_EQ(matches[0].state, GeometryState::Unchanged);
    EXPECT_EQ(matches[0].evidence, MatchEvidence::IdenticalContent);
}

TEST(Matching, ScaledOrMirroredPlacementIsComparedWithItsTwinOnly) {
    gp_Trsf mirror;
    mirror.SetMirror(gp_Ax2(gp::Origin(), gp::DX()));
    FakeModel a;
    a.part(a.top(), "P", shapes::handed(), mirror);
    FakeModel same;
    same.part(same.top(), "P", shapes::handed(), mirror);
    const auto twins = matchModels(a, same);
    ASSERT_EQ(twins.size(), 1U);
    EXPECT_EQ(twins[0].state, GeometryState::Unchanged);
    EXPECT_EQ(twins[0].evidence, MatchEvidence::IdenticalContent);
    FakeModel moved;
    moved.part(moved.top(), "P", shapes::handed(), at(0, 0, 5) * mirror);
    FakeModel other;
    other.part(other.top(), "P", shapes::box(1, 2, 3), mirror);
    for (const FakeModel* model : {&moved, &other}) {
        const auto matches = matchModels(a, *model);
        ASSERT_EQ(matches.size(), 1U);
        EXPECT_EQ(matches[0].state, GeometryState::NotCompared);
        EXPECT_EQ(matches[0].note, "placed with a scale or mirrored");
    }
}

TEST(Matching, TwinsOfAScaledPlacementPairOneToOne) {
    gp_Trsf half;
    half.SetScaleFactor(0.5);
    FakeModel a;
    const auto pin = shapes::cylinder(3, 9);
    for (int i = 0; i < 3; ++i) a.part(a.top(), "Pin", pin, at(i * 20, 0, 0) * half);
    FakeModel b;
    for (const int i : {2, 0}) b.part(b.top(), "Pin", pin, at(i * 20, 0, 0) * half);
    EXPECT_EQ(states(matchModels(a, b)),
              (std::vector{GeometryState::Unchanged, GeometryState::NotCompared,
                           GeometryState::Unchanged}));
}

TEST(Matching, MissingShapeIsNotCompared) {
    FakeModel a;
    a.part(a.top(), "P", TopoDS_Shape());
    FakeModel b;
    b.part(b.top(), "P", TopoDS_Shape());
    EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::NotCompared}));
}

TEST(Matching, RenamedRootRenamesNothing) {
    FakeModel a("rev1");
    a.part(a.top(), "P", shapes::box(1, 2, 3));
    FakeModel b("rev2");
    b.part(b.top(), "P", shapes::box(1, 2, 4));
    EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Changed}));
}

/// Every state the other way round.
TEST(Matching, ExchangedSidesGiveTheMirrorImage) {
    FakeModel a;
    a.part(a.top(), "Same", shapes::box(1, 2, 3));
    a.part(a.top(), "Moved", shapes::box(2, 2, 3), at(50, 0, 0));
    a.part(a.top(), "Changed", shapes::box(3, 2, 3), at(100, 0, 0));
    a.part(a.top(), "Gone", shapes::box(4, 2, 3), at(150, 0, 0));
    a.part(a.top(), "Near1", shapes::box(20, 20, 3), at(300, 0, 0));
    a.part(a.top(), "Near2", shapes::box(20, 20, 4), at(302, 0, 0));
    FakeModel b;
    b.part(b.top(), "Near3", shapes::box(20, 20, 5), at(303, 0, 0));
    b.part(b.top(), "New", shapes::box(9, 9, 9), at(200, 0, 0));
    b.part(b.top(), "Changed", shapes::box(3, 2, 5), at(100, 0, 0));
    b.part(b.top(), "Moved", shapes::box(2, 2, 3), at(55, 0, 0));
    b.part(b.top(), "Same", shapes::box(1, 2, 3));
    const auto forward = matchModels(a, b);
    const auto backward = matchModels(b, a);
    ASSERT_EQ(forward.size(), backward.size());
    for (const Match& match : forward) {
        bool found = false;
        for (const Match& other : backward) {
            if (other.reference != match.compare || other.compare != match.reference) continue;
            found = true;
            GeometryState expected = match.state;
            if (match.state == GeometryState::OnlyInReference) {
                expected = GeometryState::OnlyInCompare;
            } else if (match.state == GeometryState::OnlyInCompare) {
                expected = GeometryState::OnlyInReference;
            }
            EXPECT_EQ(other.state, expected);
            EXPECT_NEAR(other.displacementMm[0], -match.displacementMm[0], 1e-9);
        }
        EXPECT_TRUE(found);
    }
}

TEST(Matching, HundredThousandInstancesTakeSeconds) {
    const TopoDS_Shape body = shapes::plate(30, 20);
    FakeModel a;
    FakeModel b;
    for (int i = 0; i < 100000; ++i) {
        const double lift = i % 10 == 0 ? 3.0 : 0.0;
        const int column = i % 300;
        const int row = i / 300;
        const gp_Trsf place = at(120.0 * column, 80.0 * row, 0);
        a.part(a.top(), "Plate", body, place);
        b.part(b.top(), "Plate", body, at(0, 0, lift) * place);
    }
    const auto matches = matchModels(a, b);
    std::size_t moved = 0;
    for (const Match& match : matches) moved += match.state == GeometryState::Moved ? 1U : 0U;
    EXPECT_EQ(matches.size(), 100000U);
    EXPECT_EQ(moved, 10000U);
}

TEST(Matching, TwentyThousandLevelsDoNotMatter) {
    const auto build = [](FakeModel& model) {
        FakeModel::Id level = model.top();
        for (int i = 0; i < 20000; ++i) level = model.occurrence(level, "Level");
        model.part(level, "Deep", shapes::box(1, 2, 3));
    };
    FakeModel a;
    build(a);
    FakeModel b;
    build(b);
    EXPECT_EQ(states(matchModels(a, b)), (std::vector{GeometryState::Unchanged}));
}

}  // namespace
