#include "backends/comparer/instances.h"

#include <gtest/gtest.h>

#include "tests/unit/backends/comparer/fake_model.h"
#include "tests/unit/backends/comparer/shapes.h"

namespace {

TEST(Instances, ComeInModelOrderWithTheirPaths) {
    FakeModel model("Machine");
    const auto group = model.occurrence(model.top(), "Group", shapes::at(1, 0, 0));
    model.part(group, "A", shapes::box(1, 1, 1), shapes::at(0, 2, 0));
    model.part(model.top(), "B", shapes::box(2, 2, 2));
    comparer::Names names;
    const auto side = comparer::collectSide(model, names);
    ASSERT_EQ(side.instances.size(), 2U);
    EXPECT_EQ(comparer::displayPath(side, side.instances[0], names), "Machine / Group / A");
    EXPECT_EQ(comparer::displayPath(side, side.instances[1], names), "Machine / B");
    const gp_Pnt centre = comparer::worldCentre(side, side.instances[0]);
    EXPECT_LT(centre.Distance({1.5, 2.5, 0.5}), 1e-9);
}

TEST(Instances, OfOneDefinitionShareTheirBody) {
    FakeModel model;
    const TopoDS_Shape bolt = shapes::cylinder(1, 5);
    for (int i = 0; i < 4; ++i) model.part(model.top(), "Bolt", bolt, shapes::at(i, 0, 0));
    comparer::Names names;
    const auto side = comparer::collectSide(model, names);
    EXPECT_EQ(side.instances.size(), 4U);
    EXPECT_EQ(side.bodies.size(), 1U);
}

TEST(Instances, SeveralBodiesOfAPartCarryTheirNames) {
    FakeModel model("Root");
    const TopoDS_Shape shape = shapes::box(1, 1, 1);
    model.bodies(model.occurrence(model.top(), "Pair"), {{"left", shape}, {"", shape}});
    model.bodies(model.occurrence(model.top(), "Single"), {{"only", shapes::box(2, 2, 2)}});
    comparer::Names names;
    const auto side = comparer::collectSide(model, names);
    ASSERT_EQ(side.instances.size(), 3U);
    EXPECT_EQ(comparer::displayPath(side, side.instances[0], names), "Root / Pair / left");
    EXPECT_EQ(comparer::displayPath(side, side.instances[1], names), "Root / Pair / Body");
    EXPECT_EQ(comparer::displayPath(side, side.instances[2], names), "Root / Single");
    EXPECT_EQ(names.text(side.instances[0].product), "Pair");
}

TEST(Instances, PartAtTheRootHasTheRootsName) {
    FakeModel model("Lone");
    model.body(model.top(), shapes::box(1, 1, 1));
    comparer::Names names;
    const auto side = comparer::collectSide(model, names);
    ASSERT_EQ(side.instances.size(), 1U);
    EXPECT_FALSE(side.isAssembly);
    EXPECT_EQ(comparer::displayPath(side, side.instances[0], names), "Lone");
}

TEST(Instances, ScalesAndMirrorsAreNotRigid) {
    FakeModel model;
    gp_Trsf scale;
    scale.SetScale(gp::Origin(), 2.0);
    gp_Trsf mirror;
    mirror.SetMirror(gp_Ax2(gp::Origin(), gp::DX()));
    const TopoDS_Shape shape = shapes::box(1, 1, 1);
    model.part(model.top(), "Rigid", shape, shapes::turnedZ(30));
    model.part(model.top(), "Scaled", shape, scale);
    model.part(model.top(), "Mirrored", shape, mirror);
    comparer::Names names;
    const auto side = comparer::collectSide(model, names);
    EXPECT_TRUE(side.instances[0].rigid);
    EXPECT_FALSE(side.instances[1].rigid);
    EXPECT_FALSE(side.instances[2].rigid);
}

}  // namespace
