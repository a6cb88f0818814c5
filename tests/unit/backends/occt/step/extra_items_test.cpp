#include "backends/occt/step/extra_items.h"

#include <gtest/gtest.h>

#include "platform/hps/component_type.h"
#include "tests/unit/backends/occt/step/product_text.h"
#include "tests/unit/backends/occt/step/step_file.h"

namespace {

namespace Type = HPS::ComponentType;
using occt::step::ConstructionItem;
using occt::step::MeshBody;
using occt::step::readProducts;
using step_test::kContexts;
using step_test::product;
using step_test::StepFile;

std::vector<ConstructionItem> construction(const std::string& items, const std::string& text) {
    const StepFile step(kContexts + product(10, "", "part", 900, items) + text);
    const auto products = readProducts(step.file);
    return readConstruction(step.file, products.products.at(0));
}

TEST(StepConstruction, PlacementsOfAPartAreReferences) {
    const auto found = construction(",#50,#51,#99",
                                    "#50=AXIS2_PLACEMENT_3D('base',#920,$,$);"
                                    "#51=CARTESIAN_POINT('',(0.,0.,0.));");
    ASSERT_EQ(found.size(), 2U) << "the origin and the named one; a point is geometry";
    EXPECT_EQ(found[0].type, Type::CoordinateSystem);
    EXPECT_EQ(found[1].name, "base");
}

TEST(StepConstruction, ConstructiveGeometryIsOfEachKind) {
    const auto found = construction(
        "",
        "#60=CONSTRUCTIVE_GEOMETRY_REPRESENTATION('',(#61,#62,#63,#64,#65,#66,#67),#900);"
        "#61=PLANE('mid',#15);#62=CARTESIAN_POINT('p',(0.,0.,0.));#63=LINE('axis',#62,$);"
        "#64=AXIS1_PLACEMENT('turn',#62,$);#65=BOUNDED_CURVE();#66=AXIS2_PLACEMENT_3D('cs',#62,$,$"
        ");#67=SPHERE('none');"
        "#68=CONSTRUCTIVE_GEOMETRY_REPRESENTATION_RELATIONSHIP('','',#14,#60);");
    ASSERT_EQ(found.size(), 7U);
    const std::uint32_t types[] = {
        Type::CoordinateSystem, Type::Plane, Type::PointSet,        Type::Curve,
        Type::Direction,        Type::Curve, Type::CoordinateSystem};
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(found[i].type, types[i]) << i;
    EXPECT_EQ(found[1].name, "mid");
}

/// Bodies of a part whose related representation holds #61.
std::vector<MeshBody> meshes(const std::string& text, std::size_t& damaged, int context = 900) {
    const StepFile step(kContexts + product(10, "", "part", context) +
                        "#60=TESSELLATED_SHAPE_REPRESENTATION('',(#61)," + step_test::ref(context) +
                        ");#59=SHAPE_REPRESENTATION_RELATIONSHIP('','',#14,#60);" + text);
    const auto products = readProducts(step.file);
    return readMeshBodies(step.file, products.products.at(0), damaged);
}

const std::string kCorners =
    "#70=COORDINATES_LIST('',5,((0.,0.,0.),(1.,0.,0.),(0.,2.,0.),"
    "(0.,0.,3.),(9.,9.,9.)));";
const std::string kSolid = "#61=TESSELLATED_SOLID('body',(#62),$);";

TEST(StepMeshBodies, TrianglesKeepThePointsThatTheyUse) {
    std::size_t damaged = 0;
    const auto bodies =
        meshes(kSolid + kCorners + "#62=TRIANGULATED_FACE('',#70,4,(),$,(),((1,3,2),(1,2,4)));",
               damaged, 910);
    ASSERT_EQ(bodies.size(), 1U);
    EXPECT_EQ(bodies[0].name, "body");
    EXPECT_TRUE(bodies[0].isSolid);
    const MeshBody::Face& face = bodies[0].faces.at(0);
    ASSERT_EQ(face.pointsMm.size(), 4U);
    EXPECT_DOUBLE_EQ(face.pointsMm[1][1], 50.8);
    EXPECT_EQ(face.triangles, (std::vector<std::array<std::uint32_t, 3>>{{0, 1, 2}, {0, 2, 3}}));
    EXPECT_EQ(damaged, 0U);
}

TEST(StepMeshBodies, FacesMayNumberTheirPointsThemselves) {
    std::size_t damaged = 0;
    const auto bodies = meshes(
        kSolid + kCorners + "#62=TRIANGULATED_FACE('',#70,3,(),$,(4,3,2),((1,2,3)));", damaged);
    EXPECT_EQ(bodies.at(0).faces.at(0).pointsMm.at(0), (std::array<double, 3>{0, 0, 3}));
    // Numbers beyond the face's own numbering can only be those of the list.
    const auto mixed = meshes(
        kSolid + kCorners + "#62=TRIANGULATED_FACE('',#70,3,(),$,(1,2,4),((1,2,4)));", damaged);
    EXPECT_EQ(mixed.at(0).faces.at(0).pointsMm.at(2), (std::array<double, 3>{0, 0, 3}));
    EXPECT_EQ(damaged, 0U);
}

TEST(StepMeshBodies, StripsAndFansBecomeTriangles) {
    std::size_t damaged = 0;
    const auto bodies = meshes("#61=TESSELLATED_SHELL('skin',(#62),$);" + kCorners +
                                   "#62=COMPLEX_TRIANGULATED_FACE('',#70,5,(),$,(),((1,2,3,4,4)),"
                                   "((1,2,3,4)));",
                               damaged);
    ASSERT_EQ(bodies.size(), 1U);
    EXPECT_FALSE(bodies[0].isSolid);
    EXPECT_EQ(bodies[0].faces.at(0).triangles, (std::vector<std::array<std::uint32_t, 3>>{
                                                   {0, 1, 2}, {2, 1, 3}, {0, 1, 2}, {0, 2, 3}}))
        << "every second one of a strip is turned, flat ones are left out";
}

TEST(StepMeshBodies, DamagedFacesAreCounted) {
    for (const char* face : {"TRIANGULATED_FACE('',#70,3,(),$,(),((1,2,6)))",
                             "TRIANGULATED_FACE('',#70,3,(),$,(1,2,99),((1,2,3)))",
                             "TRIANGULATED_FACE('',#99,3,(),$,(),((1,2,3)))",
                             "TRIANGULATED_FACE('',#71,3,(),$,(),((1,2,3)))",
                             "TRIANGULATED_FACE('',#72,3,(),$,(),((1,2,3)))",
                             "TRIANGULATED_FACE('',#70,3,(),$,(),((0,2,3)))",
                             "TRIANGULATED_FACE('',#70,3,(),$,(),((1.5,2,3)))",
                             "TRIANGULATED_FACE('',#70,3,(),$,(),((1,1,1)))",
                             "TRIANGULATED_FACE('',#70,3,(),$,(),((1,2)))", "TRIANGULATED_FACE('')",
                             "OTHER_FACE('',#70,3,(),$,(),((1,2,3)))"}) {
        std::size_t damaged = 0;
        const auto bodies = meshes(kSolid + kCorners + "#62=" + face +
                                       ";#71=COORDINATES_LIST('',1,((0.,0.)));"
                                       "#72=COORDINATES_LIST('',3,((1.E200,0.,0.),(1.,0.,0.),(0.,1."
                                       ",0.)));",
                                   damaged);
        EXPECT_TRUE(bodies.empty()) << face;
        EXPECT_EQ(damaged, 1U) << face;
    }
}

}  // namespace
