#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "backends/comparer/parallel.h"
#include "tests/unit/backends/comparer/one_pair.h"
#include "tests/unit/backends/comparer/shapes.h"

namespace {

using bxtexchange::GeometryState;
using comparer::Effort;

/// Twelve parts that all changed, some of them twice in the assembly.
void fill(FakeModel& model, double shift) {
    for (int i = 0; i < 12; ++i) {
        const std::string name = "Plate " + std::to_string(i);
        const TopoDS_Shape plate = shapes::plate(20.0 + 5.0 * i + shift, 30.0, 3.0 + 0.1 * i);
        model.part(model.top(), name, plate, shapes::at(0, 0, 20.0 * i));
        if (i % 3 == 0) model.part(model.top(), name, plate, shapes::at(0, 200, 20.0 * i));
    }
}

std::string bytesWith(unsigned threads) {
    FakeModel reference;
    FakeModel compare;
    fill(reference, 0.0);
    fill(compare, 0.25);
    comparer::Names names;
    const comparer::Side a = comparer::collectSide(reference, names);
    const comparer::Side b = comparer::collectSide(compare, names);
    const comparer::Tolerances tolerances;
    comparer::BodyClasses classes(a, b, tolerances);
    auto matches = comparer::matchInstances(a, b, names, classes, tolerances, [](double) {});
    double last = 0.0;
    const auto caller = std::this_thread::get_id();
    const auto faces = comparer::compareFaces(
        a, b, tolerances, matches,
        [&](double part) {
            EXPECT_EQ(std::this_thread::get_id(), caller);
            EXPECT_GE(part, last);
            last = part;
        },
        Effort{120.0, threads});
    EXPECT_EQ(faces.bodies.size(), 12U);
    return comparer::encodeResult(comparer::buildResult(a, b, names, matches, tolerances, faces));
}

TEST(Parallel, ResultDoesNotDependOnTheNumberOfThreads) {
    const std::string alone = bytesWith(1);
    EXPECT_EQ(bytesWith(2), alone);
    EXPECT_EQ(bytesWith(8), alone);
    EXPECT_EQ(bytesWith(0), alone);
}

TEST(Parallel, TasksThatShareAFaceGoToOneThread) {
    const TopoDS_Shape a = shapes::box(1, 1, 1);
    const TopoDS_Shape b = shapes::box(2, 2, 2);
    const TopoDS_Shape c = shapes::box(3, 3, 3);
    const auto groups =
        comparer::independentTasks({{a}, {b}, {c, a}, {b.Moved(shapes::at(1, 0, 0))}});
    const std::vector<std::vector<std::size_t>> expected = {{0, 2}, {1, 3}};
    EXPECT_EQ(groups, expected);
}

TEST(Parallel, EveryTaskRunsOnce) {
    std::vector<std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < 100; ++i) groups.push_back({2 * i, 2 * i + 1});
    std::vector<std::atomic<int>> runs(200);
    comparer::runInParallel(groups, 4, [&](std::size_t task) { ++runs[task]; });
    for (const auto& count : runs) EXPECT_EQ(count, 1);
    comparer::runInParallel({}, 4, [](std::size_t) { ADD_FAILURE(); });
}

TEST(TimeLimit, BodyThatTakesTooLongIsNotComparedAndSaysWhy) {
    const OnePair pair = comparePair(shapes::plate(50, 30), shapes::plate(51, 30), Effort{1e-9, 1});
    EXPECT_EQ(pair.row().state, GeometryState::NotCompared);
    EXPECT_NE(pair.row().note.find(L"comparing its faces took longer than"), std::wstring::npos);
    EXPECT_FALSE(pair.row().hasFaceDifference);
}

TEST(TimeLimit, TrianglesObeyItToo) {
    const OnePair pair =
        comparePair(shapes::inTriangles(shapes::plate(50, 30), 0.05),
                    shapes::inTriangles(shapes::plate(51, 30), 0.05), Effort{1e-9, 1});
    EXPECT_EQ(pair.row().state, GeometryState::NotCompared);
}

TEST(Shortcuts, SwitchedOffGiveTheSameAnswer) {
    const TopoDS_Shape plate = shapes::plate(50, 30);
    const TopoDS_Shape again = shapes::plate(50, 30);
    for (const auto shortcuts : {comparer::Shortcuts::On, comparer::Shortcuts::Off}) {
        const OnePair pair = comparePair(plate, again, {}, shortcuts);
        EXPECT_EQ(pair.row().state, GeometryState::Unchanged);
        const OnePair turned =
            comparePair(plate, again, {}, shortcuts, shapes::at(3, 4, 0) * shapes::turnedZ(30));
        EXPECT_EQ(turned.row().state, GeometryState::Moved);
    }
}

TEST(Motion, IsASentenceWithDirectionAndAxis) {
    const TopoDS_Shape body = shapes::handed();
    const auto text = [&](const gp_Trsf& place) {
        return comparePair(body, body, {}, comparer::Shortcuts::On, place).row().motion;
    };
    EXPECT_EQ(text(gp_Trsf()), L"");
    EXPECT_EQ(text(shapes::at(12, 0, 0)), L"moved 12.0 mm along +X");
    EXPECT_EQ(text(shapes::at(0, 0, -0.5)), L"moved 0.5 mm along -Z");
    gp_Trsf own;
    own.SetRotation(gp_Ax1(gp::Origin(), gp::DX()), 0.5235987755982988);
    EXPECT_NE(text(own).find(L"and turned 30.0 deg about +X"), std::wstring::npos);
    EXPECT_NE(text(own.Inverted()).find(L"and turned 30.0 deg about -X"), std::wstring::npos);
}

TEST(Motion, OfABodyThatTurnedInPlaceHasNoWay) {
    const TopoDS_Shape body = shapes::baked(shapes::box(40, 30, 10), shapes::at(-20, -15, -5));
    const OnePair pair = comparePair(body, body, {}, comparer::Shortcuts::On, shapes::turnedZ(45));
    EXPECT_EQ(pair.row().motion, L"turned 45.0 deg about +Z");
    EXPECT_NEAR(pair.row().rotationAxis[2], 1.0, 1e-9);
}

}  // namespace
