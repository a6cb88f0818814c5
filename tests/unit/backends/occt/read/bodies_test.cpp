#include "backends/occt/read/bodies.h"

#include <gtest/gtest.h>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <gp_Pnt.hxx>

#include "platform/hps/component_type.h"

namespace {

namespace Type = HPS::ComponentType;
using HPS::Exchange::ImportOptions;
using HPS::Exchange::Tessellation::Level;
using occt::Body;
using occt::collectBodies;

TopoDS_Compound group(const std::vector<TopoDS_Shape>& shapes) {
    TopoDS_Compound out;
    const BRep_Builder builder;
    builder.MakeCompound(out);
    for (const TopoDS_Shape& shape : shapes) builder.Add(out, shape);
    return out;
}

TopoDS_Shape box() {
    return BRepPrimAPI_MakeBox(1.0, 2.0, 3.0).Shape();
}
TopoDS_Shape part(const TopoDS_Shape& shape, TopAbs_ShapeEnum type) {
    return TopExp_Explorer(shape, type).Current();
}
TopoDS_Shape edge(double x) {
    return BRepBuilderAPI_MakeEdge(gp_Pnt(0, 0, 0), gp_Pnt(x, 0, 0)).Edge();
}

using Path = std::vector<std::uint32_t>;

TEST(Bodies, EachSolidAndShellIsOne) {
    const TopoDS_Shape shell = part(box(), TopAbs_SHELL);
    const auto bodies = collectBodies(group({box(), shell, group({box()})}), {});
    ASSERT_EQ(bodies.size(), 3U);
    for (const Body& body : bodies) EXPECT_EQ(body.type, Type::BrepModel);
    EXPECT_EQ(bodies[0].path, (Path{0}));
    EXPECT_EQ(bodies[1].path, (Path{1}));
    EXPECT_TRUE(bodies[1].shape.IsSame(shell));
    EXPECT_EQ(bodies[2].path, (Path{2, 0}));
}

TEST(Bodies, ASingleShapeHasNoPath) {
    const auto bodies = collectBodies(box(), {});
    ASSERT_EQ(bodies.size(), 1U);
    EXPECT_TRUE(bodies[0].path.empty());
    EXPECT_TRUE(collectBodies(TopoDS_Shape(), {}).empty());
    EXPECT_TRUE(collectBodies(group({}), {}).empty());
}

TEST(Bodies, LooseFacesEdgesAndPointsOfAGroupAreOneEach) {
    const TopoDS_Shape face = part(box(), TopAbs_FACE);
    const TopoDS_Shape point = BRepBuilderAPI_MakeVertex(gp_Pnt(1, 2, 3)).Vertex();
    const auto bodies = collectBodies(
        group({group({face, face}), group({edge(1), edge(2)}), group({point, point})}), {});
    ASSERT_EQ(bodies.size(), 3U);
    EXPECT_EQ(bodies[0].type, Type::BrepModel);
    EXPECT_EQ(bodies[1].type, Type::Curve);
    EXPECT_EQ(bodies[2].type, Type::PointSet);
}

TEST(Bodies, AMixtureIsTakenApart) {
    const auto bodies = collectBodies(group({edge(1), part(box(), TopAbs_FACE), edge(2)}), {});
    ASSERT_EQ(bodies.size(), 3U);
    EXPECT_EQ(bodies[0].type, Type::Curve);
    EXPECT_EQ(bodies[1].type, Type::BrepModel);
    EXPECT_EQ(bodies[2].path, (Path{2}));
}

TEST(Bodies, OptionsChooseByKind) {
    const TopoDS_Shape all = group({box(), part(box(), TopAbs_SHELL), group({edge(1)})});
    ImportOptions options;
    options.solids = false;
    EXPECT_EQ(collectBodies(all, options).size(), 2U);
    options.surfaces = false;
    EXPECT_EQ(collectBodies(all, options).size(), 1U);
    options.wireframes = false;
    EXPECT_TRUE(collectBodies(all, options).empty());
}

TEST(Bodies, DeepGroupsAreWalkedWithoutRecursion) {
    TopoDS_Shape deep = box();
    for (int i = 0; i < 2'000; ++i) deep = group({deep});
    const auto bodies = collectBodies(deep, {});
    ASSERT_EQ(bodies.size(), 1U);
    EXPECT_EQ(bodies[0].path.size(), 2'000U);
}

std::size_t triangles(const TopoDS_Shape& mesh) {
    std::size_t sum = 0;
    for (TopExp_Explorer face(mesh, TopAbs_FACE); face.More(); face.Next()) {
        TopLoc_Location location;
        sum += static_cast<std::size_t>(
            BRep_Tool::Triangulation(TopoDS::Face(face.Current()), location)->NbTriangles());
    }
    return sum;
}

TEST(Bodies, MeshesGetFinerLevelByLevel) {
    const TopoDS_Shape cylinder = BRepPrimAPI_MakeCylinder(5.0, 20.0).Shape();
    std::size_t coarser = 0;
    for (std::uint32_t level = 0; level <= 4; ++level) {
        const std::size_t found = triangles(occt::meshOf(cylinder, static_cast<Level>(level)));
        EXPECT_GT(found, coarser) << level;
        coarser = found;
    }
    EXPECT_EQ(triangles(occt::meshOf(cylinder, static_cast<Level>(99))), coarser)
        << "past the last counts as the last";
    TopLoc_Location location;
    EXPECT_TRUE(
        BRep_Tool::Triangulation(TopoDS::Face(part(cylinder, TopAbs_FACE)), location).IsNull())
        << "the exact body stays as it was";
}

TEST(Bodies, WhatHasNoFaceHasNoMesh) {
    EXPECT_TRUE(occt::meshOf(edge(1), Level::Medium).IsNull());
    EXPECT_TRUE(occt::meshOf(group({}), Level::Medium).IsNull());
}

TEST(Bodies, TrianglesOfAFileBecomeAShape) {
    occt::step::MeshBody mesh;
    EXPECT_TRUE(occt::shapeOf(mesh).IsNull());
    mesh.faces.push_back({{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}});
    mesh.faces.push_back({{{0, 0, 0}, {1, 0, 0}, {0, 0, 1}}, {{0, 2, 1}}});
    const TopoDS_Shape shape = occt::shapeOf(mesh);
    EXPECT_EQ(triangles(shape), 2U);
    TopLoc_Location location;
    const auto first = BRep_Tool::Triangulation(TopoDS::Face(part(shape, TopAbs_FACE)), location);
    EXPECT_EQ(first->Node(2).X(), 1.0);
}

}  // namespace
