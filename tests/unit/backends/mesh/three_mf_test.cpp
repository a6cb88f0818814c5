#include <gtest/gtest.h>

#include "tests/unit/backends/mesh/zip.h"

namespace {

using mesh::Format;

mesh::Outcome readThreeMf(const std::string& bytes) {
    return meshtest::read(Format::ThreeMf, bytes);
}

const std::string kMesh =
    R"(<mesh><vertices><vertex x="0" y="0" z="0"/><vertex x="1" y="0" z="0"/>)"
    R"(<vertex x="0" y="1" z="0"/><vertex x="0" y="0" z="1"/></vertices><triangles>)"
    R"(<triangle v1="0" v2="2" v3="1"/><triangle v1="0" v2="1" v3="3"/>)"
    R"(<triangle v1="0" v2="3" v3="2"/><triangle v1="1" v2="2" v3="3"/></triangles></mesh>)";

std::string model(const std::string& resources, const std::string& items,
                  const std::string& unit = "millimeter", const std::string& more = {}) {
    return R"(<?xml version="1.0" encoding="UTF-8"?><model unit=")" + unit +
           R"(" xmlns="http://schemas.microsoft.com/3dmanufacturing/core/2015/02")" +
           (resources.find(" p:") == resources.npos
                ? ">"
                : R"( xmlns:p="http://schemas.microsoft.com/3dmanufacturing/production/2015/06">)") +
           more + "<resources>" + resources + "</resources><build>" + items + "</build></model>";
}

std::string object(int id, const std::string& content, const std::string& name = {}) {
    return R"(<object id=")" + std::to_string(id) + R"(" type="model")" +
           (name.empty() ? "" : R"( name=")" + name + "\"") + ">" + content + "</object>";
}

std::string package(const std::string& modelText,
                    const std::vector<std::pair<std::string, std::string>>& more = {}) {
    std::vector<std::pair<std::string, std::string>> files = {
        {"[Content_Types].xml",
         R"(<?xml version="1.0" encoding="UTF-8"?><Types xmlns="http://schemas.openxmlformats.org/)"
         R"(package/2006/content-types"><Default Extension="rels" ContentType="application/)"
         R"(vnd.openxmlformats-package.relationships+xml"/><Default Extension="model" )"
         R"(ContentType="application/vnd.ms-package.3dmanufacturing-3dmodel+xml"/></Types>)"},
        {"_rels/.rels",
         R"(<?xml version="1.0" encoding="UTF-8"?><Relationships xmlns="http://schemas.)"
         R"(openxmlformats.org/package/2006/relationships"><Relationship Target="/3D/3dmodel.)"
         R"(model" Id="rel0" Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/)"
         R"(3dmodel"/></Relationships>)"},
        {"3D/3dmodel.model", modelText}};
    files.insert(files.end(), more.begin(), more.end());
    return meshtest::zip(files);
}

TEST(MeshThreeMf, ABuildItemIsAPart) {
    const std::string bytes =
        package(model(object(1, kMesh, "Bracket"), R"(<item objectid="1"/>)"));
    EXPECT_EQ(mesh::recognise(bytes), Format::ThreeMf);
    const auto out = readThreeMf(bytes);
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    const auto& root = out.scene.definitions[out.scene.root];
    EXPECT_EQ(root.name, "Bracket");
    ASSERT_EQ(root.bodies.size(), 1U);
    EXPECT_NEAR(meshtest::sixVolumes(root.bodies[0]), 1.0, 1e-12);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 4}));
    EXPECT_TRUE(out.scene.gaps.empty());
    EXPECT_TRUE(out.scene.warnings.empty()) << out.scene.warnings[0];
}

TEST(MeshThreeMf, UnitsAreKept) {
    struct Row {
        const char* unit;
        const char* name;
        double mm;  ///< of a length of 1 in the file
        double unitMm;
    };
    for (const Row& row :
         {Row{"micron", "Millimeter", 0.001, 1.0}, Row{"millimeter", "Millimeter", 1.0, 1.0},
          Row{"centimeter", "Centimeter", 10.0, 10.0}, Row{"inch", "Inch", 25.4, 25.4},
          Row{"foot", "Foot", 304.8, 304.8}, Row{"meter", "Meter", 1000.0, 1000.0}}) {
        const auto out =
            readThreeMf(package(model(object(1, kMesh), R"(<item objectid="1"/>)", row.unit)));
        ASSERT_FALSE(out.refusal) << row.unit << out.refusal->text;
        EXPECT_EQ(out.scene.unitName, row.name);
        EXPECT_EQ(out.scene.unitMm, row.unitMm);
        EXPECT_NEAR(out.scene.definitions[out.scene.root].bodies[0].pointsMm[1][0], row.mm, 1e-9);
    }
}

TEST(MeshThreeMf, ComponentsAreUsagesWithPlacements) {
    const auto out = readThreeMf(package(
        model(object(1, kMesh, "Part") +
                  object(2,
                         R"(<components><component objectid="1"/><component objectid="1" )"
                         R"(transform="0 1 0 -1 0 0 0 0 1 10 20 30"/></components>)",
                         "Group"),
              R"(<item objectid="2"/><item objectid="1" transform="1 0 0 0 1 0 0 0 1 5 0 0"/>)",
              "centimeter")));
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    const auto& definitions = out.scene.definitions;
    const auto& root = definitions[out.scene.root];
    EXPECT_EQ(root.name, "");
    ASSERT_EQ(root.usages.size(), 2U);
    EXPECT_EQ(root.usages[1].placement[9], 50.0);
    const auto& group = definitions[root.usages[0].definition];
    EXPECT_EQ(group.name, "Group");
    ASSERT_EQ(group.usages.size(), 2U);
    EXPECT_EQ(group.usages[0].definition, root.usages[1].definition) << "one definition for all";
    // Rows of the format are images of the axes: X goes to Y.
    EXPECT_EQ(group.usages[1].placement, (mesh::Matrix{0, -1, 0, 1, 0, 0, 0, 0, 1, 100, 200, 300}));
    EXPECT_EQ(out.scene.counts.nodes, (mesh::Count{4, 4}));
    EXPECT_EQ(out.scene.counts.meshes, (mesh::Count{2, 2}));
}

TEST(MeshThreeMf, ObjectsThatAreNotBuiltAreNoParts) {
    const auto out = readThreeMf(package(
        model(object(1, kMesh, "built") + object(2, kMesh, "kept"), R"(<item objectid="1"/>)")));
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 4U);
    EXPECT_EQ(readThreeMf(package(model(object(1, kMesh), ""))).refusal->code, "empty");
}

TEST(MeshThreeMf, PartsOfOtherModelFilesAreRead) {
    const std::string uuid = R"( p:UUID="39cd8e7c-1d4c-4f8c-9b6a-0d5f5b1a1c0)";
    const std::string rels =
        R"(<?xml version="1.0" encoding="UTF-8"?><Relationships xmlns="http://schemas.)"
        R"(openxmlformats.org/package/2006/relationships"><Relationship Target="/3D/other.model" )"
        R"(Id="rel1" Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel"/>)"
        R"(</Relationships>)";
    const std::string main = model(
        R"(<object id="1" type="model")" + uuid + R"(1"><components><component )" +
            R"(p:path="/3D/other.model" objectid="7")" + uuid + R"(2"/></components></object>)",
        R"(<item objectid="1")" + uuid + R"(3"/>)");
    const std::string other = model(
        R"(<object id="7" type="model" name="elsewhere")" + uuid + R"(4">)" + kMesh + "</object>",
        "");
    const auto out = readThreeMf(
        package(main, {{"3D/_rels/3dmodel.model.rels", rels}, {"3D/other.model", other}}));
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 4U);
    EXPECT_TRUE(out.scene.gaps.empty());
}

TEST(MeshThreeMf, MetadataAreKept) {
    const auto out =
        readThreeMf(package(model(object(1, kMesh), R"(<item objectid="1"/>)", "millimeter",
                                  R"(<metadata name="Title">A title</metadata>)")));
    EXPECT_EQ(out.scene.metadata, (std::vector<mesh::Metadata>{{"Title", "A title"}}));
}

TEST(MeshThreeMf, DamagedPackagesAreRefusedWithTheReadersReason) {
    std::string bad = kMesh;
    bad.replace(bad.find(R"(v1="1")"), 6, R"(v1="9")");
    const std::string good = package(model(object(1, kMesh), R"(<item objectid="1"/>)"));
    for (const std::string& bytes :
         {package(model(object(1, bad), R"(<item objectid="1"/>)")),
          package(model(object(1, kMesh), R"(<item objectid="3"/>)")), package("<model"),
          good.substr(0, good.size() / 2), std::string("PK\3\4 .model")}) {
        const auto out = readThreeMf(bytes);
        ASSERT_TRUE(out.refusal);
        EXPECT_EQ(out.refusal->code, "damaged");
        EXPECT_GT(out.refusal->text.size(),
                  std::string("is damaged: the 3MF reader gave up ().").size());
    }
    EXPECT_EQ(readThreeMf("solid").refusal->code, "not-this-format");
}

TEST(MeshThreeMf, OtherArchivesAreNotRecognised) {
    EXPECT_FALSE(mesh::recognise(meshtest::zip({{"a.txt", "text"}})));
}

}  // namespace
