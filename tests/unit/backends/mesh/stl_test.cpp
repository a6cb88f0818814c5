#include <limits>

#include <gtest/gtest.h>

#include "tests/unit/backends/mesh/files.h"

namespace {

using mesh::Format;
using meshtest::binaryStl;
using meshtest::tetrahedron;

mesh::Outcome readStl(const std::string& bytes) {
    return meshtest::read(Format::Stl, bytes);
}

std::string facet(const std::string& vertices) {
    return "facet normal 0 0 1\n outer loop\n" + vertices + " endloop\nendfacet\n";
}
const std::string kVertices = "vertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\n";

TEST(MeshStl, BinaryFilesAreWelded) {
    const auto out = readStl(binaryStl(tetrahedron(2.0F)));
    ASSERT_FALSE(out.refusal);
    ASSERT_EQ(out.scene.definitions.size(), 1U);
    const auto& part = out.scene.definitions[0];
    EXPECT_EQ(part.name, "");
    ASSERT_EQ(part.bodies.size(), 1U);
    EXPECT_EQ(part.bodies[0].pointsMm.size(), 4U);
    EXPECT_TRUE(meshtest::isClosed(part.bodies[0]));
    EXPECT_NEAR(meshtest::sixVolumes(part.bodies[0]), 8.0, 1e-12);
    EXPECT_EQ(out.scene.unitName, "Millimeter");
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 4}));
    EXPECT_TRUE(out.scene.gaps.empty());
}

TEST(MeshStl, HeaderThatBeginsWithSolidMayStillBeBinary) {
    const std::string bytes = binaryStl(tetrahedron(), "solid exported by something");
    EXPECT_EQ(mesh::recognise(bytes), Format::Stl);
    const auto out = readStl(bytes);
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 4U);
    ASSERT_EQ(out.scene.metadata.size(), 1U);
    EXPECT_EQ(out.scene.metadata[0].second, "solid exported by something");
}

TEST(MeshStl, DisjointSolidsOfABinaryFileAreBodies) {
    auto triangles = tetrahedron();
    for (const auto& t : tetrahedron(1.0F, 5.0F)) triangles.push_back(t);
    EXPECT_EQ(readStl(binaryStl(triangles)).scene.definitions[0].bodies.size(), 2U);
}

TEST(MeshStl, SurplusIsAGap) {
    const auto out = readStl(binaryStl(tetrahedron()) + "tail");
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 4U);
    EXPECT_EQ(out.scene.gaps,
              (std::vector<std::string>{"4 bytes behind the 4 declared triangles were not read."}));
}

TEST(MeshStl, ShortfallIsReadInPart) {
    std::string bytes = binaryStl(tetrahedron());
    bytes.resize(bytes.size() - 60);
    const auto out = readStl(bytes);
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 2}));
    EXPECT_EQ(out.scene.gaps, (std::vector<std::string>{"2 of 4 triangles were read."}));
}

TEST(MeshStl, PromisesTakeNoMemory) {
    const auto out = readStl(binaryStl(tetrahedron(), "x", 0xFFFFFFFFLL));
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{0xFFFFFFFF, 4}));
}

TEST(MeshStl, RandomBytesAreRefused) {
    std::uint64_t state = 1;
    for (int file = 0; file < 200; ++file) {
        std::string bytes;
        for (int i = 0; i < 50 + file * 20; ++i) {
            state = state * 6364136223846793005ULL + 1442695040888963407ULL;
            bytes += static_cast<char>(state >> 56);
        }
        const auto out = readStl(bytes);
        ASSERT_TRUE(out.refusal) << file;
        EXPECT_EQ(out.refusal->code, "not-this-format");
        EXPECT_NE(mesh::recognise(bytes), Format::Stl);
    }
}

TEST(MeshStl, FilesWithoutTrianglesAreEmpty) {
    for (const std::string& bytes :
         {binaryStl({}), std::string("solid\nendsolid\n"), std::string("solid only a name")}) {
        const auto out = readStl(bytes);
        ASSERT_TRUE(out.refusal);
        EXPECT_EQ(out.refusal->code, "empty");
        EXPECT_EQ(out.refusal->text, "holds no triangles.");
    }
}

TEST(MeshStl, CornersThatAreNoNumbersAreAGap) {
    auto triangles = tetrahedron();
    triangles[3][1][0] = std::numeric_limits<float>::quiet_NaN();
    const auto out = readStl(binaryStl(triangles));
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 3}));
    EXPECT_EQ(out.scene.gaps.size(), 1U);
    for (auto& t : triangles) t[0][0] = std::numeric_limits<float>::infinity();
    const auto none = readStl(binaryStl(triangles));
    ASSERT_TRUE(none.refusal);
    EXPECT_EQ(none.refusal->code, "damaged");
    EXPECT_EQ(none.refusal->text, "is damaged: none of its 4 triangles can be used.");
}

TEST(MeshStl, FlatTrianglesAreCountedAndNoGap) {
    auto triangles = tetrahedron();
    triangles.push_back({{{1, 0, 0}, {1, 0, 0}, {0, 1, 0}}});
    const auto out = readStl(binaryStl(triangles));
    EXPECT_EQ(out.scene.counts.flatTriangles, 1U);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{5, 5}));
    EXPECT_TRUE(out.scene.gaps.empty());
    EXPECT_TRUE(meshtest::isClosed(out.scene.definitions[0].bodies[0]));
}

TEST(MeshStl, TextSolidsArePartsWithTheirNames) {
    const std::string bytes = "SOLID  First one \r\n" + facet(kVertices) +
                              "EndSolid First one\r\nsolid \xC3\xA4\n" + facet(kVertices) +
                              facet("vertex 5 0 0\nvertex 6 0 0\nvertex 5 1 0\n") + "endsolid";
    EXPECT_EQ(mesh::recognise(bytes), Format::Stl);
    const auto out = readStl(bytes);
    ASSERT_FALSE(out.refusal);
    ASSERT_EQ(out.scene.definitions.size(), 3U);
    EXPECT_EQ(out.scene.definitions[0].name, "First one");
    EXPECT_EQ(out.scene.definitions[1].name, "\xC3\xA4");
    EXPECT_EQ(out.scene.definitions[1].bodies.size(), 2U);
    EXPECT_EQ(out.scene.definitions[2].usages.size(), 2U);
    EXPECT_EQ(out.scene.root, 2U);
    EXPECT_TRUE(out.scene.gaps.empty());
}

TEST(MeshStl, WritersTakeLibertiesWithText) {
    const std::string bytes = "solid a\ncolor 1 0 0\n" + facet(kVertices) +
                              "FACET NORMAL nan nan nan OUTER LOOP VERTEX +1 0e0 0 VERTEX 2. 0 0 "
                              "VERTEX 1 1 -0.5E+1 ENDLOOP ENDFACET\nend solid a\nsolid b\n" +
                              facet(kVertices) + "endsolid b\n";
    const auto out = readStl(bytes);
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{3, 3}));
    EXPECT_TRUE(out.scene.gaps.empty()) << out.scene.gaps[0];
    EXPECT_EQ(out.scene.definitions.size(), 3U);
}

TEST(MeshStl, TextAndBinaryFilesOfTheSameNumbersGiveTheSamePoints) {
    std::string text = "solid\n";
    for (const auto& t : tetrahedron(0.1F)) {
        std::string vertices;
        for (const auto& corner : t) {
            vertices += "vertex";
            for (const float c : corner) vertices += c == 0.0F ? " 0" : " 0.100000001";
            vertices += '\n';
        }
        text += facet(vertices);
    }
    const auto fromText = readStl(text + "endsolid\n");
    const auto fromBinary = readStl(binaryStl(tetrahedron(0.1F)));
    EXPECT_EQ(fromText.scene.definitions[0].bodies[0].pointsMm,
              fromBinary.scene.definitions[0].bodies[0].pointsMm);
}

TEST(MeshStl, DamagedFacetsAreAGapWithTheirLine) {
    const std::string bytes = "solid a\n" + facet(kVertices) +
                              "facet normal 0 0 1\nouter loop\nvertex 0 x 0\nendloop\nendfacet\n" +
                              facet(kVertices) + "endsolid a\n";
    const auto out = readStl(bytes);
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{3, 2}));
    EXPECT_EQ(out.scene.gaps,
              (std::vector<std::string>{"1 facet was not read, the first in line 11."}));
}

TEST(MeshStl, TextThatBreaksOffIsReadInPart) {
    std::string bytes = "solid a\n" + facet(kVertices) + facet(kVertices);
    bytes.resize(bytes.size() - 20);
    const auto out = readStl(bytes);
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{2, 1}));
    EXPECT_EQ(out.scene.gaps.size(), 2U);
}

TEST(MeshStl, TextWithHugeNumbersIsRead) {
    const auto out = readStl("solid\n" + facet("vertex 1e999 0 0\nvertex 1 0 0\nvertex 0 1 0\n") +
                             facet(kVertices) + "endsolid\n");
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{2, 1}));
}

}  // namespace
