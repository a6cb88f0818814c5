#include "backends/occt/step/placements.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/occt/step/step_file.h"

namespace {

using occt::step::axisPlacement;
using occt::step::Matrix;
using occt::step::transformationOperator;
using step_test::StepFile;

void expectNear(const std::optional<Matrix>& found, const Matrix& expected) {
    ASSERT_TRUE(found);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR((*found)[i], expected[i], 1e-12) << "at " << i;
    }
}

const std::string kPoint = "#1=CARTESIAN_POINT('',(1.,2.,3.));\n";

TEST(StepPlacements, AnAxisPlacementIsOriginAndAxes) {
    const StepFile step(kPoint +
                        "#2=DIRECTION('',(0.,1.,0.));#3=DIRECTION('',(0.,0.,5.));"
                        "#4=AXIS2_PLACEMENT_3D('',#1,#2,#3);");
    // z along y, x along z: y is their product, along x.
    expectNear(axisPlacement(step.file, 4, 1.0), {0, 1, 0, 1, 0, 0, 1, 2, 1, 0, 0, 3});
    expectNear(axisPlacement(step.file, 4, 25.4), {0, 1, 0, 25.4, 0, 0, 1, 50.8, 1, 0, 0, 76.2});
}

TEST(StepPlacements, MissingAndParallelDirectionsAreMadeUp) {
    const StepFile step(kPoint +
                        "#2=DIRECTION('',(0.,0.,1.));#3=DIRECTION('',(1.,0.,0.));"
                        "#4=AXIS2_PLACEMENT_3D('',#1,$,$);#5=AXIS2_PLACEMENT_3D('',#1,#2,#2);"
                        "#6=AXIS2_PLACEMENT_3D('',#1,#3,$);"
                        "#7=DIRECTION('',(0.,0.,0.));#8=AXIS2_PLACEMENT_3D('',#1,#7,#7);");
    const Matrix moved = {1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3};
    for (const std::uint64_t id : {4, 5, 8}) expectNear(axisPlacement(step.file, id, 1.0), moved);
    // x is taken by z, so y stands in for it.
    expectNear(axisPlacement(step.file, 6, 1.0), {0, 0, 1, 1, 1, 0, 0, 2, 0, 1, 0, 3});
}

TEST(StepPlacements, AReferenceDirectionThatIsNotSquareIsMadeSo) {
    const StepFile step(kPoint +
                        "#2=DIRECTION('',(0.,0.,1.));#3=DIRECTION('',(1.,0.,1.));"
                        "#4=AXIS2_PLACEMENT_3D('',#1,#2,#3);");
    expectNear(axisPlacement(step.file, 4, 1.0), {1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3});
}

TEST(StepPlacements, DamagedPlacementsAreNothing) {
    const StepFile step(kPoint +
                        "#2=AXIS2_PLACEMENT_3D('',#99,$,$);#3=AXIS2_PLACEMENT_3D('',$,$,$);"
                        "#4=A();#5=CARTESIAN_POINT('',('x'));#6=AXIS2_PLACEMENT_3D('',#5,$,$);"
                        "#7=CARTESIAN_POINT('');#8=AXIS2_PLACEMENT_3D('',#7,$,$);");
    for (const std::uint64_t id : {1, 2, 3, 4, 6, 8, 99, 0}) {
        EXPECT_FALSE(axisPlacement(step.file, id, 1.0)) << id;
    }
}

TEST(StepPlacements, OperatorsScaleAndMirror) {
    const StepFile step(
        kPoint +
        "#2=DIRECTION('',(1.,0.,0.));#3=DIRECTION('',(0.,1.,0.));#4=DIRECTION('',(0.,0.,1.));"
        "#5=DIRECTION('',(0.,-1.,0.));"
        "#10=CARTESIAN_TRANSFORMATION_OPERATOR_3D('','','',#2,#3,#1,2.,#4);"
        "#11=CARTESIAN_TRANSFORMATION_OPERATOR_3D('',#2,#5,#1,$,#4);"
        "#12=CARTESIAN_TRANSFORMATION_OPERATOR_3D('','',$,$,$,#1,$,$);");
    expectNear(transformationOperator(step.file, 10, 1.0), {2, 0, 0, 1, 0, 2, 0, 2, 0, 0, 2, 3});
    expectNear(transformationOperator(step.file, 11, 1.0), {1, 0, 0, 1, 0, -1, 0, 2, 0, 0, 1, 3});
    expectNear(transformationOperator(step.file, 12, 1.0), {1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3});
}

TEST(StepPlacements, AbsurdScalesAreNothing) {
    for (const char* scale : {"0.", "-1.", "1.E300", "1.E-300"}) {
        const StepFile step(kPoint + "#2=CARTESIAN_TRANSFORMATION_OPERATOR_3D('',$,$,#1," + scale +
                            ",$);");
        EXPECT_FALSE(transformationOperator(step.file, 2, 1.0)) << scale;
    }
}

TEST(StepPlacements, InverseUndoesATurnAMoveAndAScale) {
    const Matrix turned = {0, -2, 0, 5, 2, 0, 0, -6, 0, 0, 2, 7};
    const auto back = occt::step::inverse(turned);
    ASSERT_TRUE(back);
    expectNear(occt::step::multiply(turned, *back), occt::step::kIdentity);
    expectNear(occt::step::multiply(*back, turned), occt::step::kIdentity);
    EXPECT_FALSE(occt::step::inverse(Matrix{}));
    EXPECT_FALSE(occt::step::inverse({1e300, 0, 0, 0, 0, 1e300, 0, 0, 0, 0, 1e300, 0}));
}

TEST(StepPlacements, MultiplyingAppliesTheRightOneFirst) {
    const Matrix turn = {0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0};
    const Matrix move = {1, 0, 0, 10, 0, 1, 0, 0, 0, 0, 1, 0};
    expectNear(occt::step::multiply(turn, move), {0, -1, 0, 0, 1, 0, 0, 10, 0, 0, 1, 0});
    expectNear(occt::step::multiply(move, turn), {0, -1, 0, 10, 1, 0, 0, 0, 0, 0, 1, 0});
}

}  // namespace
