#include <cmath>

#include <gtest/gtest.h>

#include "tests/unit/backends/mesh/files.h"

namespace {

using mesh::Format;
using meshtest::bytesOf;

mesh::Outcome readGltf(const std::string& bytes, const mesh::Beside& beside = {}) {
    return mesh::read(Format::Gltf, bytes, beside);
}

/// Four points of a tetrahedron in metres, then its corners as bytes, 16 bits and 32 bits.
std::string data() {
    std::string out;
    for (const int c : {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}) out += bytesOf(static_cast<float>(c));
    constexpr int kCorners[] = {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3};
    for (const int c : kCorners) out += static_cast<char>(c);
    for (const int c : kCorners) out += bytesOf(static_cast<std::uint16_t>(c));
    for (const int c : kCorners) out += bytesOf(static_cast<std::uint32_t>(c));
    return out;
}

std::string base64(const std::string& bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            bits =
                bits << 8U | (i + k < bytes.size() ? static_cast<std::uint8_t>(bytes[i + k]) : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            out += i + k > bytes.size() ? '=' : kDigits[bits >> (18 - 6 * k) & 63U];
        }
    }
    return out;
}

/// A file in parts, each of which a test may replace. Buffer view 0 holds the points, 1 to 3 the
/// corners in each type.
struct File {
    std::string asset = R"({"version":"2.0"})";
    std::string top = R"("scene":0,"scenes":[{"nodes":[0]}],)";
    std::string nodes = R"({"mesh":0})";
    std::string primitive = R"({"attributes":{"POSITION":0},"indices":1})";
    std::string meshName;
    std::string moreMeshes;
    std::string buffer = R"({"byteLength":132,"uri":"data:application/octet-stream;base64,)" +
                         base64(data()) + "\"}";
    std::string accessors = R"({"bufferView":0,"componentType":5126,"count":4,"type":"VEC3"},)"
                            R"({"bufferView":1,"componentType":5121,"count":12,"type":"SCALAR"},)"
                            R"({"bufferView":2,"componentType":5123,"count":12,"type":"SCALAR"},)"
                            R"({"bufferView":3,"componentType":5125,"count":12,"type":"SCALAR"})";

    std::string text() const {
        return R"({"asset":)" + asset + "," + top + R"("nodes":[)" + nodes + R"(],"meshes":[{)" +
               (meshName.empty() ? "" : R"("name":")" + meshName + "\",") + R"("primitives":[)" +
               primitive + "]}" + moreMeshes + R"(],"buffers":[)" + buffer +
               R"(],"bufferViews":[{"buffer":0,"byteLength":48},)"
               R"({"buffer":0,"byteOffset":48,"byteLength":12},)"
               R"({"buffer":0,"byteOffset":60,"byteLength":24},)"
               R"({"buffer":0,"byteOffset":84,"byteLength":48}],"accessors":[)" +
               accessors + "]}";
    }
};

std::string glb(const std::string& json, const std::string& binary, std::uint32_t version = 2) {
    std::string text = json;
    while (text.size() % 4 != 0) text += ' ';
    std::string out = "glTF" + bytesOf(version) +
                      bytesOf(static_cast<std::uint32_t>(28 + text.size() + binary.size()));
    out += bytesOf(static_cast<std::uint32_t>(text.size())) + "JSON" + text;
    out += bytesOf(static_cast<std::uint32_t>(binary.size())) + std::string("BIN\0", 4) + binary;
    return out;
}

mesh::Body onlyBody(const mesh::Outcome& out) {
    for (const auto& definition : out.scene.definitions) {
        if (!definition.bodies.empty()) return definition.bodies[0];
    }
    return {};
}

TEST(MeshGltf, MetresBecomeMillimetresAndYBecomesZ) {
    const auto out = readGltf(File().text());
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    EXPECT_EQ(out.scene.unitName, "Meter");
    EXPECT_EQ(out.scene.unitMm, 1000.0);
    const auto body = onlyBody(out);
    EXPECT_EQ(body.pointsMm,
              (std::vector<mesh::Point>{{0, 0, 0}, {1000, 0, 0}, {0, 0, 1000}, {0, -1000, 0}}));
    EXPECT_NEAR(meshtest::sixVolumes(body), 1e9, 1.0) << "faces outwards as in the file";
    EXPECT_TRUE(meshtest::isClosed(body));
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 4}));
    EXPECT_TRUE(out.scene.gaps.empty());
}

TEST(MeshGltf, IndicesMayHaveAnyOfTheirTypes) {
    for (const char* accessor : {"1", "2", "3"}) {
        File file;
        file.primitive = std::string(R"({"attributes":{"POSITION":0},"indices":)") + accessor + "}";
        EXPECT_EQ(onlyBody(readGltf(file.text())).triangles.size(), 4U) << accessor;
    }
}

TEST(MeshGltf, BuffersMayStandBesideTheFileOrInABinaryChunk) {
    File file;
    file.buffer = R"({"byteLength":132,"uri":"parts/a%20b.bin"})";
    const std::string bytes = data();
    std::string asked;
    const auto beside = [&](const std::string& path) {
        asked = path;
        return &bytes;
    };
    EXPECT_EQ(meshtest::trianglesIn(readGltf(file.text(), beside).scene), 4U);
    EXPECT_EQ(asked, "parts/a b.bin");
    EXPECT_EQ(mesh::filesBeside(file.text()), (std::vector<std::string>{"parts/a b.bin"}));
    file.buffer = R"({"byteLength":132})";
    EXPECT_EQ(meshtest::trianglesIn(readGltf(glb(file.text(), bytes)).scene), 4U);
    EXPECT_EQ(mesh::recognise(glb(file.text(), bytes)), Format::Gltf);
    EXPECT_EQ(mesh::recognise(file.text()), Format::Gltf);
}

TEST(MeshGltf, NoFileOutsideTheFoldersIsAskedFor) {
    for (const char* uri : {"../a.bin", "/etc/passwd", "a/../../b.bin", "file:///etc/passwd",
                            "http://example.com/a.bin", "..\\\\a.bin", "%2e%2e/a.bin", "a/%2E%2E/b",
                            "..", "a%00b", ""}) {
        File file;
        file.buffer = std::string(R"({"byteLength":132,"uri":")") + uri + "\"}";
        bool asked = false;
        const auto out = readGltf(file.text(), [&](const std::string&) {
            asked = true;
            return nullptr;
        });
        EXPECT_FALSE(asked) << uri;
        EXPECT_TRUE(mesh::filesBeside(file.text()).empty()) << uri;
        ASSERT_TRUE(out.refusal) << uri;
        EXPECT_EQ(out.refusal->code, "damaged") << uri;
    }
}

TEST(MeshGltf, MissingBuffersAreNamed) {
    File file;
    file.buffer = R"({"byteLength":132,"uri":"gone.bin"})";
    const auto out = readGltf(file.text(), [](const std::string&) { return nullptr; });
    ASSERT_TRUE(out.refusal);
    EXPECT_EQ(out.refusal->text,
              "is damaged: none of its 4 triangles can be used. Buffer 0 stands "
              "in \"gone.bin\", which cannot be read.");
}

TEST(MeshGltf, BuffersThatBreakOffAreReadInPart) {
    File file;
    file.buffer = R"({"byteLength":132})";
    file.primitive = R"({"attributes":{"POSITION":0},"indices":3})";
    const std::string all = glb(file.text(), data());
    const auto out = readGltf(all.substr(0, all.size() - 14));
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 2}));
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 2U);
    EXPECT_EQ(out.scene.gaps.size(), 4U) << "file, chunk, buffer, triangles";
}

TEST(MeshGltf, StripsAndFansBecomeTriangles) {
    File strip;
    strip.primitive = R"({"mode":5,"attributes":{"POSITION":0}})";
    EXPECT_EQ(onlyBody(readGltf(strip.text())).triangles,
              (std::vector<mesh::Triangle>{{0, 1, 2}, {1, 3, 2}}));
    File fan;
    fan.primitive = R"({"mode":6,"attributes":{"POSITION":0}})";
    EXPECT_EQ(onlyBody(readGltf(fan.text())).triangles,
              (std::vector<mesh::Triangle>{{0, 1, 2}, {0, 2, 3}}));
}

TEST(MeshGltf, PointsAndLinesAreCountedAsNotRead) {
    File file;
    for (int mode = 0; mode < 4; ++mode) {
        file.primitive +=
            R"(,{"mode":)" + std::to_string(mode) + R"(,"attributes":{"POSITION":0}})";
    }
    const auto out = readGltf(file.text());
    EXPECT_EQ(out.scene.gaps,
              (std::vector<std::string>{"4 primitives were not read: points or lines."}));
    file.primitive = R"({"mode":1,"attributes":{"POSITION":0}})";
    EXPECT_EQ(readGltf(file.text()).refusal->code, "empty");
}

TEST(MeshGltf, CompressedMeshesAreNamed) {
    File file;
    file.primitive += R"(,{"attributes":{"POSITION":0},"indices":1,)"
                      R"("extensions":{"KHR_draco_mesh_compression":{"bufferView":0}}})";
    file.top += R"("extensionsRequired":["KHR_draco_mesh_compression","KHR_materials_unlit"],)";
    const auto out = readGltf(file.text());
    EXPECT_EQ(out.scene.gaps,
              (std::vector<std::string>{
                  "It requires the extension KHR_draco_mesh_compression, which is not read.",
                  "1 primitive was not read: compressed by KHR_draco_mesh_compression."}));
}

TEST(MeshGltf, SparseAccessorsChangeSinglePoints) {
    File file;
    // The second index of buffer view 2 is 2, and the second point of view 0 replaces it.
    file.accessors.replace(file.accessors.find(R"("type":"VEC3"})"), 14,
                           R"("type":"VEC3","sparse":{"count":1,"indices":{"bufferView":2,)"
                           R"("byteOffset":2,"componentType":5123},"values":{"bufferView":0,)"
                           R"("byteOffset":12}}})");
    const auto body = onlyBody(readGltf(file.text()));
    EXPECT_EQ(body.pointsMm.size(), 3U) << "two points have become one";
    File zeros = file;
    zeros.accessors.erase(1, std::string(R"("bufferView":0,)").size());
    EXPECT_EQ(readGltf(zeros.text()).refusal->code, "damaged") << "all but one point are zero";
}

TEST(MeshGltf, QuantisedPointsAreScaled) {
    File file;
    // From the float 1 on: the bytes 0, 0, -128, 63 and zeros.
    file.accessors.replace(file.accessors.find("5126,\"count\":4"), 14,
                           "5120,\"byteOffset\":12,\"normalized\":true,\"count\":4");
    const auto out = readGltf(file.text());
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    const auto points = onlyBody(out).pointsMm;
    ASSERT_EQ(points.size(), 3U);
    EXPECT_EQ(points[0], (mesh::Point{0, 1000, 0}));
    EXPECT_NEAR(points[1][0], 1000.0 * 63 / 127, 1e-9);
}

TEST(MeshGltf, StridesAreKept) {
    std::string bytes;
    const meshtest::Corners triangle = meshtest::tetrahedron()[0];
    for (const auto& corner : triangle) {
        for (const float c : corner) bytes += bytesOf(c);
        bytes += "padding.";
    }
    File file;
    file.buffer = R"({"byteLength":60,"uri":"a.bin"})";
    file.primitive = R"({"attributes":{"POSITION":0}})";
    file.accessors = R"({"bufferView":0,"componentType":5126,"count":3,"type":"VEC3"})";
    const auto beside = [&bytes](const std::string&) { return &bytes; };
    std::string json = file.text();
    const std::string view = R"("byteLength":48})";
    json.replace(json.find(view), view.size(), R"("byteLength":60,"byteStride":20})");
    const auto out = readGltf(json, beside);
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    EXPECT_EQ(onlyBody(out).pointsMm,
              (std::vector<mesh::Point>{{0, 0, 0}, {0, 0, 1000}, {1000, 0, 0}}));
    json.replace(json.find(R"("byteStride":20)"), 15, R"("byteStride":4 )");
    EXPECT_EQ(readGltf(json, beside).refusal->code, "damaged") << "points overlap";
}

TEST(MeshGltf, NodesWithOneMeshAreInstancesOfOnePart) {
    File file;
    file.top = R"("scenes":[{"nodes":[0]}],)";
    file.meshName = "Bolt";
    file.nodes = R"({"name":"Top","children":[1,2,3]},{"mesh":0,"name":"Bolt:1"},)"
                 R"({"mesh":0,"translation":[1,2,3]},{"name":"camera","camera":0})";
    const auto out = readGltf(file.text());
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    const auto& root = out.scene.definitions[out.scene.root];
    EXPECT_EQ(root.name, "Top");
    ASSERT_EQ(root.usages.size(), 2U) << "a camera is no part";
    EXPECT_EQ(root.usages[0].definition, root.usages[1].definition);
    EXPECT_EQ(out.scene.definitions[root.usages[0].definition].name, "Bolt");
    EXPECT_EQ(root.usages[1].placement,
              (mesh::Matrix{1, 0, 0, 0, 1, 0, 0, 0, 1, 1000, -3000, 2000}));
    EXPECT_EQ(out.scene.counts.nodes, (mesh::Count{4, 4}));
}

TEST(MeshGltf, MeshesWithoutNamesAreNamedByTheirNodes) {
    File file;
    file.nodes = R"({"name":"Top","children":[1,2]},{"mesh":0,"name":"a"},{"mesh":0,"name":"b"})";
    const auto out = readGltf(file.text());
    const auto& root = out.scene.definitions[out.scene.root];
    EXPECT_EQ(out.scene.definitions[root.usages[0].definition].name, "a");
    EXPECT_EQ(out.scene.definitions[root.usages[1].definition].name, "b");
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 8U);
}

TEST(MeshGltf, NodesWithAMeshAndChildrenHoldBoth) {
    File file;
    file.nodes = R"({"name":"Top","mesh":0,"children":[1]},{"mesh":0,"name":"below"})";
    const auto out = readGltf(file.text());
    EXPECT_EQ(out.scene.definitions[out.scene.root].usages.size(), 2U);
}

TEST(MeshGltf, MatricesAndTurnsPlaceAlike) {
    // A quarter turn about the file's Y, which is Z here, and a move.
    const char* const forms[] = {
        R"({"mesh":0,"matrix":[0,0,-1,0, 0,1,0,0, 1,0,0,0, 1,2,3,1]})",
        R"({"mesh":0,"rotation":[0,0.70710678118,0,0.70710678118],"translation":[1,2,3]})"};
    for (const char* form : forms) {
        File file;
        file.nodes = std::string(R"({"children":[1,1]},)") + form;
        const auto out = readGltf(file.text());
        ASSERT_FALSE(out.refusal) << out.refusal->text;
        const auto& placement = out.scene.definitions[out.scene.root].usages[0].placement;
        const mesh::Matrix expected = {0, -1, 0, 1, 0, 0, 0, 0, 1, 1000, -3000, 2000};
        for (std::size_t i = 0; i < 12; ++i) EXPECT_NEAR(placement[i], expected[i], 1e-6) << i;
    }
}

TEST(MeshGltf, ScaledNodesBecomeScaledParts) {
    File file;
    file.nodes = R"({"mesh":0,"scale":[0.001,0.001,0.001]})";
    EXPECT_NEAR(meshtest::sixVolumes(onlyBody(readGltf(file.text()))), 1.0, 1e-9);
}

TEST(MeshGltf, SeveralTopNodesStandBelowAnAssembly) {
    File file;
    file.top = R"("scenes":[{"nodes":[0,1]},{"nodes":[]}],)";
    file.nodes = R"({"mesh":0},{"mesh":0})";
    const auto out = readGltf(file.text());
    EXPECT_EQ(out.scene.definitions[out.scene.root].usages.size(), 2U);
    EXPECT_EQ(out.scene.gaps, (std::vector<std::string>{"1 of 2 scenes was read."}));
    file.top = "";
    EXPECT_EQ(readGltf(file.text()).scene.definitions.size(), out.scene.definitions.size())
        << "without scenes all nodes on top are shown";
}

TEST(MeshGltf, CirclesOfNodesAreCut) {
    File file;
    file.nodes = R"({"name":"a","children":[1]},{"name":"b","mesh":0,"children":[0,1]})";
    const auto out = readGltf(file.text());
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    EXPECT_EQ(out.scene.gaps.size(), 1U);
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 4U);
}

TEST(MeshGltf, NodesThatAreNotThereAreCounted) {
    File file;
    file.nodes = R"({"children":[1,9,-1,"x"]},{"mesh":0},{"mesh":7})";
    const auto out = readGltf(file.text());
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    EXPECT_EQ(out.scene.gaps, (std::vector<std::string>{"3 nodes were not there."}));
}

TEST(MeshGltf, TwentyThousandLevelsAreFine) {
    File file;
    file.nodes.clear();
    constexpr int kLevels = 20'000;
    for (int i = 1; i < kLevels; ++i) {
        file.nodes += R"({"translation":[0,0,1],"children":[)" + std::to_string(i) + "]},";
    }
    file.nodes += R"({"mesh":0})";
    const auto out = readGltf(file.text());
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    EXPECT_EQ(out.scene.counts.nodes.read, static_cast<std::uint64_t>(kLevels));
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 4U);
}

TEST(MeshGltf, DeeplyNestedJsonIsNoDanger) {
    File file;
    file.asset = R"({"version":"2.0","extras":)" + std::string(300'000, '[') +
                 std::string(300'000, ']') + "}";
    EXPECT_EQ(meshtest::trianglesIn(readGltf(file.text()).scene), 4U);
}

TEST(MeshGltf, PromisesTakeNoMemory) {
    for (const char* accessor :
         {R"({"componentType":5126,"count":4000000000,"type":"VEC3"})",
          R"({"bufferView":0,"componentType":5126,"count":9e15,"type":"VEC3"})",
          R"({"bufferView":0,"byteOffset":9007199254740991,"componentType":5126,"count":4,)"
          R"("type":"VEC3"})"}) {
        File file;
        file.accessors.replace(0, file.accessors.find("},") + 1, accessor);
        const auto out = readGltf(file.text());
        EXPECT_TRUE(out.refusal || meshtest::trianglesIn(out.scene) == 4U) << accessor;
    }
}

TEST(MeshGltf, CornersThatAreNotThereAreAGap) {
    File file;
    file.accessors.replace(file.accessors.find("\"count\":4"), 9, "\"count\":3");
    const auto out = readGltf(file.text());
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 1}));
    EXPECT_EQ(out.scene.gaps.size(), 2U);
}

TEST(MeshGltf, AssetIsMetadata) {
    File file;
    file.asset =
        R"({"version":"2.0","minVersion":"2.0","generator":"by hand","copyright":"nobody"})";
    EXPECT_EQ(readGltf(file.text()).scene.metadata,
              (std::vector<mesh::Metadata>{{"Generator", "by hand"},
                                           {"glTF version", "2.0"},
                                           {"glTF least version", "2.0"},
                                           {"Copyright", "nobody"}}));
}

TEST(MeshGltf, OtherVersionsAreRefused) {
    File file;
    for (const char* asset : {R"({"version":"1.0"})", R"({"version":"2.1","minVersion":"2.1"})"}) {
        file.asset = asset;
        const auto out = readGltf(file.text());
        ASSERT_TRUE(out.refusal) << asset;
        EXPECT_EQ(out.refusal->code, "not-this-format");
    }
    file.asset = "{}";
    EXPECT_EQ(readGltf(file.text()).scene.warnings.size(), 1U);
    EXPECT_EQ(readGltf(glb("{}", "", 1)).refusal->code, "not-this-format");
}

TEST(MeshGltf, DamagedJsonIsNamedByItsLine) {
    std::string json = File().text();
    json.insert(json.find("\"nodes\":[{"), "\n\n");
    json.resize(json.size() - 2);
    EXPECT_EQ(readGltf(json).refusal->text, "is damaged: line 3 of its JSON cannot be read.");
    for (const char* text :
         {R"({"asset":{"version":"2.0"},"nodes":5,"meshes":[1,null],"scenes":{}})",
          R"({"asset":{"version":"2.0"},"nodes":[[],3],"meshes":"x"})",
          R"({"asset":{"version":"2.0"},"scenes":[{"nodes":[1e400]}]})"}) {
        EXPECT_TRUE(readGltf(text).refusal) << text;
    }
}

TEST(MeshGltf, DamagedContainersAreRefused) {
    const std::string good = glb(File().text(), data());
    for (std::size_t length = 4; length < good.find("BIN") - 4; length += 7) {
        const auto out = readGltf(good.substr(0, length));
        ASSERT_TRUE(out.refusal) << length;
        EXPECT_EQ(out.refusal->code, "damaged") << length;
    }
}

TEST(MeshGltf, SharedPointsAreReadOncePerMesh) {
    // Each primitive by itself would make this file one of 400 million points.
    File file;
    const std::string one = R"({"mode":6,"attributes":{"POSITION":0}})";
    file.primitive = one;
    for (int i = 0; i < 20'000; ++i) file.primitive += "," + one;
    const auto out = readGltf(file.text());
    EXPECT_EQ(out.scene.counts.vertices, (mesh::Count{4, 4}));
    EXPECT_EQ(out.scene.counts.triangles.read, 40'002U);
}

}  // namespace
