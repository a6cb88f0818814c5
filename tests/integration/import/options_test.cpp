// Each import option changes what is read, and nothing else.

#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

#include "platform/hps/component.h"
#include "platform/hps/component_type.h"
#include "tests/integration/import/imports.h"
#include "tests/integration/import/small_files.h"
#include "tests/support/real_data.h"

namespace {

namespace Type = HPS::ComponentType;
using HPS::Exchange::BRepMode;
using HPS::Exchange::ImportOptionsKit;
using HPS::Exchange::Tessellation::Level;
using import_test::Imported;
using Texts = std::vector<std::string>;

class ImportOptionsTest : public import_test::Imports {
protected:
    Imported everything(const ImportOptionsKit& options = {}) {
        Imported out = importText(import_test::everythingFile(), options);
        EXPECT_EQ(import_test::names(out, Type::ProductOccurrence),
                  (Texts{"top", "solid", "skin", "wire"}))
            << "no option takes products away";
        return out;
    }
    static Texts names(const Imported& imported, std::uint32_t type) {
        return import_test::names(imported, type);
    }
    static Texts metadataOf(const Imported& imported, std::uint32_t type, const std::string& name) {
        return import_test::metadata(import_test::find(imported, type, name));
    }
};

TEST_F(ImportOptionsTest, DefaultsReadWhatTheLibraryReads) {
    const Imported read = everything();
    EXPECT_EQ(names(read, Type::BrepModel), (Texts{"Body 1", "hull"}));
    EXPECT_EQ(names(read, Type::Curve), (Texts{"wire"}));
    EXPECT_EQ(names(read, Type::RepresentationItemMask).size(), 3U);
    EXPECT_EQ(names(read, Type::PmiMask), (Texts{"Diameter", "Radius"}));
    EXPECT_EQ(read.model->gaps(), Texts());
}

TEST_F(ImportOptionsTest, SolidsAreLeftOut) {
    EXPECT_EQ(names(everything(ImportOptionsKit().SetSolids(false)), Type::BrepModel),
              (Texts{"hull"}));
}

TEST_F(ImportOptionsTest, SurfacesAreLeftOut) {
    EXPECT_EQ(names(everything(ImportOptionsKit().SetSurfaces(false)), Type::BrepModel),
              (Texts{"Body 1"}));
}

TEST_F(ImportOptionsTest, WireframesAreLeftOut) {
    const Imported read = everything(ImportOptionsKit().SetWireframes(false));
    EXPECT_TRUE(names(read, Type::Curve).empty());
    EXPECT_EQ(names(read, Type::BrepModel).size(), 2U);
}

TEST_F(ImportOptionsTest, AttributesAreLeftOut) {
    const Imported with = everything();
    EXPECT_EQ(metadataOf(with, Type::ProductOccurrence, "solid"),
              (Texts{"Material=steel", "Units=Millimeter"}));
    const Texts root = metadataOf(with, Type::ProductOccurrence, "top");
    EXPECT_NE(std::find(root.begin(), root.end(), "Header Time Stamp=2024-01-01T00:00:00"),
              root.end());
    const Imported without = everything(ImportOptionsKit().SetAttributes(false));
    EXPECT_EQ(metadataOf(without, Type::ProductOccurrence, "solid"), (Texts{"Units=Millimeter"}))
        << "the unit is no attribute of the file";
    EXPECT_EQ(metadataOf(without, Type::ProductOccurrence, "top"), (Texts{"Units=Millimeter"}));
}

TEST_F(ImportOptionsTest, ConstructionAndReferencesAreAdded) {
    const Imported without = everything();
    EXPECT_TRUE(names(without, Type::Plane).empty());
    EXPECT_TRUE(names(without, Type::CoordinateSystem).empty());
    const Imported with = everything(ImportOptionsKit().SetConstructionAndReferences(true));
    EXPECT_EQ(names(with, Type::Plane), (Texts{"middle"}));
    EXPECT_EQ(names(with, Type::CoordinateSystem).size(), 3U) << "the origin of each part";
    EXPECT_EQ(names(with, Type::BrepModel), names(without, Type::BrepModel));
}

TEST_F(ImportOptionsTest, PmiIsLeftOut) {
    const Imported read = everything(ImportOptionsKit().SetPMI(false));
    EXPECT_TRUE(names(read, Type::PmiMask).empty());
}

TEST_F(ImportOptionsTest, FeatureTreesAreAdded) {
    const Imported with = everything(ImportOptionsKit().SetFeatureTrees(true));
    EXPECT_EQ(metadataOf(with, Type::ProductOccurrence, "solid"),
              (Texts{"Feature=round hole H7", "Material=steel", "Units=Millimeter"}));
}

TEST_F(ImportOptionsTest, BodiesBecomeMeshes) {
    for (const BRepMode exact : {BRepMode::BRepOnly, BRepMode::BRepAndTessellation}) {
        const Imported read = everything(ImportOptionsKit().SetBRepMode(exact));
        EXPECT_EQ(names(read, Type::BrepModel).size(), 2U);
        EXPECT_TRUE(names(read, Type::PolyBrepModel).empty());
    }
    const Imported meshes = everything(ImportOptionsKit().SetBRepMode(BRepMode::TessellationOnly));
    EXPECT_TRUE(names(meshes, Type::BrepModel).empty());
    EXPECT_EQ(names(meshes, Type::PolyBrepModel), (Texts{"Mesh 1", "hull"}));
    EXPECT_EQ(names(meshes, Type::Curve), (Texts{"wire"}));
    const auto body = import_test::find(meshes, Type::PolyBrepModel, "Mesh 1");
    const auto* const identity = meshes.model->identity(body.Id());
    ASSERT_NE(identity, nullptr);
    EXPECT_NEAR(identity->volumeMm3, 6000.0, 1e-6);
}

std::size_t triangles(const Imported& imported) {
    std::size_t sum = 0;
    for (const HPS::Component& body : imported.component.GetAllSubcomponents(Type::PolyBrepModel)) {
        for (TopExp_Explorer face(imported.model->shape(body.Id()), TopAbs_FACE); face.More();
             face.Next()) {
            TopLoc_Location location;
            const auto mesh = BRep_Tool::Triangulation(TopoDS::Face(face.Current()), location);
            if (!mesh.IsNull()) sum += static_cast<std::size_t>(mesh->NbTriangles());
        }
    }
    return sum;
}

TEST_F(ImportOptionsTest, TessellationLevelsMakeFinerMeshes) {
    std::size_t coarser = 0;
    for (const Level level : {Level::ExtraLow, Level::Medium, Level::ExtraHigh}) {
        const Imported read = import(
            support::realFile("Gearbox1"),
            ImportOptionsKit().SetBRepMode(BRepMode::TessellationOnly).SetTessellationLevel(level));
        ASSERT_EQ(read.result, HPS::IOResult::Success);
        const std::size_t found = triangles(read);
        EXPECT_GT(found, coarser);
        coarser = found;
    }
}

TEST_F(ImportOptionsTest, ThePmiColourIsForPmiThatHasNone) {
    const Imported plain = everything();
    EXPECT_EQ(metadataOf(plain, Type::PmiDimension, "Diameter"), Texts{});
    EXPECT_EQ(metadataOf(plain, Type::PmiDimension, "Radius"), (Texts{"Color=#00FF00"}));
    const HPS::RGBColor red{1.0F, 0.0F, 0.0F};
    const Imported colored = everything(ImportOptionsKit().SetPMIDefaultColor(red, false));
    EXPECT_EQ(metadataOf(colored, Type::PmiDimension, "Diameter"), (Texts{"Color=#FF0000"}));
    EXPECT_EQ(metadataOf(colored, Type::PmiDimension, "Radius"), (Texts{"Color=#00FF00"}));
    const Imported all = everything(ImportOptionsKit().SetPMIDefaultColor(red, true));
    EXPECT_EQ(metadataOf(all, Type::PmiDimension, "Radius"), (Texts{"Color=#FF0000"}));
}

TEST_F(ImportOptionsTest, AllOffLeavesTheProducts) {
    const Imported read = everything(ImportOptionsKit()
                                         .SetSolids(false)
                                         .SetSurfaces(false)
                                         .SetWireframes(false)
                                         .SetAttributes(false)
                                         .SetPMI(false));
    EXPECT_EQ(import_test::count(read, Type::RepresentationItemMask), 0U);
    EXPECT_EQ(import_test::count(read, Type::PmiMask), 0U);
    EXPECT_EQ(import_test::count(read, Type::PartDefinition), 3U);
}

TEST_F(ImportOptionsTest, MeshesOfTheFileAreBodiesOfTheirKind) {
    const std::string text = import_test::tetrahedronFile();
    const Imported read = importText(text);
    EXPECT_EQ(names(read, Type::RepresentationItemMask), (Texts{"tetra"}));
    EXPECT_EQ(names(read, Type::PolyBrepModel), (Texts{"tetra"}));
    const auto body = import_test::find(read, Type::PolyBrepModel, "tetra");
    const auto* const identity = read.model->identity(body.Id());
    ASSERT_NE(identity, nullptr);
    EXPECT_NEAR(identity->volumeMm3, 1.0 / 6.0, 1e-9);
    EXPECT_TRUE(
        names(importText(text, ImportOptionsKit().SetSolids(false)), Type::PolyBrepModel).empty());
}

}  // namespace
