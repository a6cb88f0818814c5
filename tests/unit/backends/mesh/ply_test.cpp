#include <gtest/gtest.h>

#include "tests/unit/backends/mesh/files.h"

namespace {

using mesh::Format;
using meshtest::bytesOf;

mesh::Outcome readPly(const std::string& bytes) {
    return meshtest::read(Format::Ply, bytes);
}

constexpr float kPoints[4][3] = {{0, 0, 0}, {0.1F, 0, 0}, {0, 1, 0}, {0, 0, 1}};
constexpr int kFaces[4][3] = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};

std::string header(const std::string& encoding, long long vertices = 4, long long faces = 4) {
    return "ply\nformat " + encoding + " 1.0\ncomment by hand\nelement vertex " +
           std::to_string(vertices) + "\nproperty float x\nproperty float y\nproperty uchar red\n" +
           "property float z\nelement face " + std::to_string(faces) +
           "\nproperty list uchar int vertex_indices\nproperty list uchar float texcoord\n" +
           "end_header\n";
}

std::string text(long long vertices = 4, long long faces = 4) {
    std::string out = header("ascii", vertices, faces);
    for (const auto& p : kPoints) {
        out += p[0] == 0.0F ? "0 " : "0.1 ";
        out += std::to_string(static_cast<int>(p[1])) + " 255 " +
               std::to_string(static_cast<int>(p[2])) + "\n";
    }
    for (const auto& f : kFaces) {
        out += "3 " + std::to_string(f[0]) + ' ' + std::to_string(f[1]) + ' ' +
               std::to_string(f[2]) + " 1 0.5\n";
    }
    return out;
}

std::string binary(bool big, long long vertices = 4, long long faces = 4) {
    std::string out = header(big ? "binary_big_endian" : "binary_little_endian", vertices, faces);
    for (const auto& p : kPoints) {
        out += bytesOf(p[0], big) + bytesOf(p[1], big) + '\xFF' + bytesOf(p[2], big);
    }
    for (const auto& f : kFaces) {
        out += '\3';
        for (const int corner : f) out += bytesOf(corner, big);
        out += '\1' + bytesOf(0.5F, big);
    }
    return out;
}

TEST(MeshPly, TextAndBothByteOrdersGiveTheSameBody) {
    const auto expected = readPly(text());
    ASSERT_FALSE(expected.refusal) << expected.refusal->text;
    const auto& body = expected.scene.definitions[0].bodies[0];
    EXPECT_EQ(body.pointsMm.size(), 4U);
    EXPECT_TRUE(meshtest::isClosed(body));
    EXPECT_EQ(body.pointsMm[1][0], static_cast<double>(0.1F));
    for (const bool big : {false, true}) {
        const auto out = readPly(binary(big));
        ASSERT_FALSE(out.refusal) << out.refusal->text;
        EXPECT_EQ(out.scene.definitions[0].bodies[0].pointsMm, body.pointsMm);
        EXPECT_EQ(out.scene.definitions[0].bodies[0].triangles, body.triangles);
        EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 4}));
        EXPECT_TRUE(out.scene.gaps.empty());
        EXPECT_EQ(mesh::recognise(binary(big)), Format::Ply);
    }
}

TEST(MeshPly, CommentsAreMetadata) {
    EXPECT_EQ(readPly(text()).scene.metadata,
              (std::vector<mesh::Metadata>{{"Comment", "by hand"}}));
}

TEST(MeshPly, LineEndsMayBeThoseOfWindows) {
    std::string bytes;
    for (const char c : text()) bytes += c == '\n' ? std::string("\r\n") : std::string(1, c);
    EXPECT_EQ(meshtest::trianglesIn(readPly(bytes).scene), 4U);
}

TEST(MeshPly, CoordinatesMayBeDoubles) {
    const auto out = readPly(
        "ply\nformat ascii 1.0\nelement vertex 3\nproperty double x\nproperty double y\n"
        "property double z\nelement face 1\nproperty list uchar uint vertex_index\nend_header\n"
        "0.1 0 0\n1 0 0\n0 1 0\n3 0 1 2\n");
    EXPECT_EQ(out.scene.definitions[0].bodies[0].pointsMm[0][0], 0.1);
}

TEST(MeshPly, TriangleStripsAreCutApart) {
    const auto out = readPly(
        "ply\nformat ascii 1.0\nelement vertex 5\nproperty float x\nproperty float y\n"
        "property float z\nelement tristrips 1\nproperty list int int vertex_indices\n"
        "end_header\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n0 2 0\n9 0 1 2 3 4 -1 0 1 2\n");
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    const auto& triangles = out.scene.definitions[0].bodies[0].triangles;
    EXPECT_EQ(triangles, (std::vector<mesh::Triangle>{{0, 1, 2}, {1, 3, 2}, {2, 3, 4}, {0, 1, 2}}));
}

TEST(MeshPly, PolygonsAreCutIntoTriangles) {
    const auto out = readPly(
        "ply\nformat ascii 1.0\nelement vertex 4\nproperty float x\nproperty float y\n"
        "property float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n"
        "0 0 0\n1 0 0\n1 1 0\n0 1 0\n4 0 1 2 3\n");
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 2U);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{2, 2}));
}

TEST(MeshPly, ElementsOfOtherKindsAreSkipped) {
    const auto out = readPly(
        "ply\nformat ascii 1.0\nelement nothing 4000000000\nelement camera 1\n"
        "property list uchar float rows\nproperty float zoom\nelement vertex 3\nproperty float x\n"
        "property float y\nproperty float z\nelement face 1\n"
        "property list uchar int vertex_indices\nend_header\n2 1 2 3\n0 0 0\n1 0 0\n0 1 0\n"
        "3 0 1 2\n");
    ASSERT_FALSE(out.refusal) << out.refusal->text;
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 1U);
}

TEST(MeshPly, FacesMayStandBeforeTheirVertices) {
    const auto out = readPly(
        "ply\nformat ascii 1.0\nelement face 1\nproperty list uchar int vertex_indices\n"
        "element vertex 3\nproperty float x\nproperty float y\nproperty float z\nend_header\n"
        "3 0 1 2\n0 0 0\n1 0 0\n0 1 0\n");
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 1U);
}

TEST(MeshPly, FilesThatBreakOffAreReadInPart) {
    for (const bool big : {false, true}) {
        std::string bytes = binary(big);
        bytes.resize(bytes.size() - 30);
        const auto out = readPly(bytes);
        ASSERT_FALSE(out.refusal) << out.refusal->text;
        EXPECT_EQ(meshtest::trianglesIn(out.scene), 2U);
        EXPECT_EQ(out.scene.gaps[0], "2 of 4 faces were read.");
    }
    std::string bytes = text();
    bytes.resize(bytes.size() - 8);
    const auto out = readPly(bytes);
    EXPECT_EQ(out.scene.gaps[0], "3 of 4 faces were read.");
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 3U);
}

TEST(MeshPly, TextThatIsNoNumberIsNamedByItsLine) {
    std::string bytes = text();
    bytes.replace(bytes.rfind("3 1 2 3"), 1, "x");
    const auto out = readPly(bytes);
    ASSERT_EQ(out.scene.gaps.size(), 2U);
    EXPECT_NE(out.scene.gaps[1].find("line 20 "), std::string::npos) << out.scene.gaps[1];
}

TEST(MeshPly, PromisesTakeNoMemory) {
    for (const std::string& bytes : {binary(false, 4, 4'000'000'000), text(4, 4'000'000'000)}) {
        const auto out = readPly(bytes);
        ASSERT_FALSE(out.refusal) << out.refusal->text;
        EXPECT_EQ(out.scene.gaps[0], "4 of 4000000000 faces were read.");
        EXPECT_EQ(meshtest::trianglesIn(out.scene), 4U);
    }
    EXPECT_TRUE(readPly(binary(true, 4'000'000'000, 4'000'000'000)).refusal);
}

TEST(MeshPly, ListsThatPromiseMoreThanThereIsEndTheData) {
    const auto out = readPly(
        "ply\nformat binary_little_endian 1.0\nelement vertex 1\nproperty list uint uchar x\n"
        "element face 1\nproperty list uchar int vertex_indices\nend_header\n" +
        bytesOf(0xFFFFFFFFU) + "abc");
    ASSERT_TRUE(out.refusal);
    EXPECT_EQ(out.refusal->code, "damaged");
}

TEST(MeshPly, CornersThatAreNotThereAreAGap) {
    const auto out = readPly(
        "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
        "property float z\nelement face 4\nproperty list uchar int vertex_indices\nend_header\n"
        "0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n3 0 1 3\n3 0 1 -1\n2 0 1\n");
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 1U);
    EXPECT_EQ(out.scene.gaps,
              (std::vector<std::string>{
                  "3 faces were not read: corners are missing or name no vertex."}));
}

TEST(MeshPly, LinesThatAreLongerThanDeclaredAreAWarning) {
    const auto out = readPly(
        "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
        "property float z\nelement face 2\nproperty list uchar int vertex_indices\nend_header\n"
        "0 0 0\n1 0 0\n0 1 0\n3 0 1 2 9 9\n3 0 2 1 9 9\n");
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 2U);
    EXPECT_TRUE(out.scene.gaps.empty());
    EXPECT_EQ(out.scene.warnings.size(), 1U);
}

TEST(MeshPly, DataBehindTheEndAreAGap) {
    EXPECT_EQ(readPly(binary(false) + "more").scene.gaps.size(), 1U);
    EXPECT_EQ(readPly(text() + "1 2 3\n").scene.gaps.size(), 1U);
    EXPECT_TRUE(readPly(text() + " \n\n").scene.gaps.empty());
}

TEST(MeshPly, FilesWithoutFacesAreEmpty) {
    EXPECT_EQ(readPly(text(4, 0).substr(0, text(4, 0).find("3 0 2 1"))).refusal->text,
              "holds points only, no faces.");
    const std::string nothing = "ply\nformat ascii 1.0\nend_header\n";
    EXPECT_EQ(readPly(nothing).refusal->code, "empty");
}

TEST(MeshPly, DamagedHeadersAreNamedByTheirLine) {
    struct Row {
        const char* header;
        const char* line;
    };
    for (const Row& row :
         {Row{"ply\nformat ascii 1.0\nelement vertex x\nend_header\n", "line 3"},
          Row{"ply\nformat morse 1.0\nend_header\n", "line 2"},
          Row{"ply\nformat ascii 1.0\nproperty float x\nend_header\n", "line 3"},
          Row{"ply\nformat ascii 1.0\nelement vertex 1\nproperty quad x\nend_header\n", "line 4"},
          Row{"ply\nformat ascii 1.0\nelement face 1\nproperty list float int x\nend_header\n",
              "line 4"},
          Row{"ply\nformat ascii 1.0\nsomething else\nend_header\n", "line 3"},
          Row{"ply\nend_header\n", "line 2"}, Row{"ply\nformat ascii 1.0\n", "line 2"}}) {
        const auto out = readPly(row.header);
        ASSERT_TRUE(out.refusal) << row.header;
        EXPECT_EQ(out.refusal->code, "damaged");
        EXPECT_NE(out.refusal->text.find(row.line), std::string::npos)
            << row.header << out.refusal->text;
    }
    EXPECT_EQ(readPly("plywood").refusal->code, "not-this-format");
}

}  // namespace
