// Volumes and areas of solids whose formulas are in every textbook, written in several units by
// Open CASCADE, read back by the helper and measured as the product does.

#include <cmath>
#include <numbers>

#include <BRepBuilderAPI_Transform.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <gp_Ax1.hxx>
#include <gp_Trsf.hxx>

#include "extract/import_library.h"
#include "extract/model_volume.h"
#include "platform/hps/component_type.h"
#include "tests/integration/data/data_imports.h"
#include "tests/integration/data/solid_files.h"

namespace {

namespace Type = HPS::ComponentType;
using std::numbers::pi;

struct Unit {
    const char* written;  ///< as the writer of STEP files calls it
    double lengthMm;
};

class AnalyticVolumes : public data_test::DataImports, public testing::WithParamInterface<Unit> {
protected:
    /// The shape is written away from the origin and askew.
    void check(const TopoDS_Shape& shape, double volumeMm3, double areaMm2,
               double relative = 1e-9) {
        gp_Trsf turn;
        turn.SetRotation(gp_Ax1(gp_Pnt(1, 2, 3), gp_Dir(1, 1, 3)), 0.7);
        gp_Trsf move;
        move.SetTranslation(gp_Vec(130, -57, 22));
        const std::string path = (scratch.path() / "solid.step").string();
        ASSERT_TRUE(data_test::writeStep(BRepBuilderAPI_Transform(shape, move * turn).Shape(),
                                         GetParam().written, path));
        const auto read = import(path);
        ASSERT_EQ(read.result, HPS::IOResult::Success) << read.cause.text;

        extract::CompareJob job;
        std::wstring unit;
        EXPECT_NEAR(extract::ComputeModelVolume(job, read.component, unit) / volumeMm3, 1.0,
                    relative);
        EXPECT_EQ(unit, L"mm") << "without a document lengths are shown in millimetres";

        const auto bodies = read.component.GetAllSubcomponents(Type::BrepModel);
        ASSERT_EQ(bodies.size(), 1U);
        A3DPhysicalPropertiesData data = {sizeof data, 0.99, 0.0, 0.0};
        ASSERT_EQ(extract::importLibrary().ComputePhysicalProperties(
                      HPS::Exchange::Component(bodies[0]).GetExchangeEntity(), &data),
                  0);
        const double length = GetParam().lengthMm;
        EXPECT_NEAR(data.volume * std::pow(length, 3) / volumeMm3, 1.0, relative);
        EXPECT_NEAR(data.surface * std::pow(length, 2) / areaMm2, 1.0, relative);
    }
};

TEST_P(AnalyticVolumes, Box) {
    const double a = 12.5;
    const double b = 33.0;
    const double c = 71.25;
    check(BRepPrimAPI_MakeBox(a, b, c).Shape(), a * b * c, 2 * (a * b + b * c + c * a));
}

TEST_P(AnalyticVolumes, Cylinder) {
    const double r = 7.3;
    const double h = 41.0;
    check(BRepPrimAPI_MakeCylinder(r, h).Shape(), pi * r * r * h, 2 * pi * r * (r + h));
}

TEST_P(AnalyticVolumes, Sphere) {
    const double r = 19.7;
    check(BRepPrimAPI_MakeSphere(r).Shape(), 4.0 / 3.0 * pi * r * r * r, 4 * pi * r * r);
}

TEST_P(AnalyticVolumes, Torus) {
    const double ring = 31.0;
    const double tube = 6.1;
    check(BRepPrimAPI_MakeTorus(ring, tube).Shape(), 2 * pi * pi * ring * tube * tube,
          4 * pi * pi * ring * tube);
}

TEST_P(AnalyticVolumes, ConeFrustum) {
    const double r = 17.0;
    const double s = 4.5;
    const double h = 23.0;
    const double slant = std::hypot(r - s, h);
    check(BRepPrimAPI_MakeCone(r, s, h).Shape(), pi * h / 3 * (r * r + r * s + s * s),
          pi * (r + s) * slant + pi * (r * r + s * s));
}

TEST_P(AnalyticVolumes, CylinderCutAskew) {
    // The cut leaves an ellipse, whose place on the cylinder is no straight line.
    const double r = 8.0;
    const double mean = 30.0;
    const double slope = 0.5;
    check(data_test::cutCylinder(r, mean, slope), pi * r * r * mean,
          2 * pi * r * mean + pi * r * r * (1 + std::sqrt(1 + slope * slope)), 1e-7);
}

INSTANTIATE_TEST_SUITE_P(Units, AnalyticVolumes,
                         testing::Values(Unit{"MM", 1.0}, Unit{"INCH", 25.4}, Unit{"M", 1000.0}),
                         [](const testing::TestParamInfo<Unit>& test) {
                             return std::string(test.param.written);
                         });

class MeasuredBodies : public data_test::DataImports {
protected:
    double volumeOf(const TopoDS_Shape& shape) {
        const std::string path = (scratch.path() / "shape.step").string();
        EXPECT_TRUE(data_test::writeStep(shape, "MM", path));
        const auto read = import(path);
        EXPECT_EQ(read.result, HPS::IOResult::Success) << read.cause.text;
        bodies = import_test::count(read, Type::BrepModel);
        extract::CompareJob job;
        std::wstring unit;
        return extract::ComputeModelVolume(job, read.component, unit);
    }

    std::size_t bodies = 0;
};

TEST_F(MeasuredBodies, OpenShellsAddNothing) {
    EXPECT_EQ(volumeOf(data_test::openBox(10, 20, 30)), 0.0);
    EXPECT_EQ(bodies, 1U);
    const double both = volumeOf(data_test::together(
        {data_test::openBox(10, 20, 30), BRepPrimAPI_MakeBox(gp_Pnt(100, 0, 0), 1, 2, 3).Shape()}));
    EXPECT_EQ(bodies, 2U);
    EXPECT_NEAR(both, 6.0, 1e-9);
}

TEST_F(MeasuredBodies, HollowsCountWithTheirSign) {
    EXPECT_NEAR(volumeOf(data_test::hollowBox(10, 4)), 1000.0 - 64.0, 1e-7);
    EXPECT_EQ(bodies, 1U);
}

TEST_F(MeasuredBodies, InsideOutIsStillABody) {
    EXPECT_NEAR(volumeOf(data_test::insideOutBox(10, 20, 30)), 6000.0, 1e-6);
}

TEST_F(MeasuredBodies, ABodyWithoutVolumeAddsNothing) {
    EXPECT_EQ(volumeOf(data_test::flatSolid(10, 20)), 0.0);
}

TEST_F(MeasuredBodies, ABodyThatCutsItselfHasAFiniteVolume) {
    const double volume = volumeOf(data_test::bowTie(10, 20, 30));
    EXPECT_TRUE(std::isfinite(volume));
    EXPECT_GE(volume, 0.0);
    EXPECT_LE(volume, 6000.0) << "never more than the box around it";
}

}  // namespace
