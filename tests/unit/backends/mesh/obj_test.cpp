#include <gtest/gtest.h>

#include "tests/unit/backends/mesh/files.h"

namespace {

using mesh::Format;

mesh::Outcome readObj(const std::string& bytes) {
    return meshtest::read(Format::Obj, bytes);
}

const std::string kTetrahedron = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\n";
const std::string kFaces = "f 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";
const std::string kNewestFaces = "f -4 -2 -3\nf -4 -3 -1\nf -4 -1 -2\nf -3 -2 -1\n";

TEST(MeshObj, FacesBecomeAClosedBody) {
    const std::string bytes = "# made by hand\n" + kTetrahedron + kFaces;
    EXPECT_EQ(mesh::recognise(bytes), Format::Obj);
    const auto out = readObj(bytes);
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(out.scene.definitions.size(), 1U);
    EXPECT_EQ(out.scene.definitions[0].name, "");
    EXPECT_TRUE(meshtest::isClosed(out.scene.definitions[0].bodies[0]));
    EXPECT_NEAR(meshtest::sixVolumes(out.scene.definitions[0].bodies[0]), 1.0, 1e-12);
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{4, 4}));
    EXPECT_EQ(out.scene.counts.vertices, (mesh::Count{4, 4}));
}

TEST(MeshObj, RemarksBeforeTheFirstStatementAreMetadata) {
    using Metadata = std::vector<mesh::Metadata>;
    const auto of = [](const std::string& head) {
        return readObj(head + kTetrahedron + "# 4 vertices\n" + kFaces).scene.metadata;
    };
    EXPECT_EQ(of(""), Metadata{});
    EXPECT_EQ(of("####\n#\n\n# made\tby hand #2\r\n#in Gr\xFCn\n"),
              (Metadata{{"Comment", "made by hand #2"}, {"Comment", "in Gr\u00FCn"}}));
    std::string many;
    for (int i = 0; i < 1000; ++i) many += "# line\n";
    EXPECT_EQ(of(many).size(), 16U);
}

TEST(MeshObj, ObjectsAreParts) {
    const auto out = readObj("o one\n" + kTetrahedron + kFaces + "o two\nv 5 0 0\nv 6 0 0\n" +
                             "v 5 1 0\nv 5 0 1\n" + kNewestFaces + "o one\nf 1 2 3\n");
    ASSERT_EQ(out.scene.definitions.size(), 3U);
    EXPECT_EQ(out.scene.definitions[0].name, "one");
    EXPECT_EQ(out.scene.definitions[0].bodies[0].triangles.size(), 5U) << "both runs of it";
    EXPECT_EQ(out.scene.definitions[1].name, "two");
    EXPECT_EQ(out.scene.definitions[1].bodies[0].pointsMm[0][0], 5.0);
    EXPECT_EQ(out.scene.definitions[2].usages.size(), 2U);
}

TEST(MeshObj, GroupsArePartsWhereNoObjectsAre) {
    const auto out = readObj(kTetrahedron + "g a\nf 1 3 2\ng b c\nf 1 2 4\n");
    ASSERT_EQ(out.scene.definitions.size(), 3U);
    EXPECT_EQ(out.scene.definitions[0].name, "a");
    EXPECT_EQ(out.scene.definitions[1].name, "b c");
}

TEST(MeshObj, GroupsNameTheBodiesOfAnObject) {
    const auto out = readObj("o all\n" + kTetrahedron + "v 9 0 0\nv 9 1 0\nv 9 0 1\ng a\n" +
                             kFaces + "g b\nf 5 6 7\n");
    ASSERT_EQ(out.scene.definitions.size(), 1U);
    ASSERT_EQ(out.scene.definitions[0].bodies.size(), 2U);
    EXPECT_EQ(out.scene.definitions[0].bodies[0].name, "a");
    EXPECT_EQ(out.scene.definitions[0].bodies[1].name, "b");
}

TEST(MeshObj, FormsOfAFacesCornersAreEqual) {
    const auto out = readObj(kTetrahedron + "vt 0 0\nvn 0 0 1\nf 1/1 3/1 2/1\nf 1//1 2//1 4//1\n" +
                             "f 1/1/1 4/1/1 3/1/1\nf \\\n 2 3 \\\n 4 # the last\n");
    EXPECT_TRUE(meshtest::isClosed(out.scene.definitions[0].bodies[0]));
}

TEST(MeshObj, VerticesMayCarryMoreThanThreeNumbers) {
    const auto out = readObj("v 0 0 0 1.0\nv 1 0 0 0.5 0.5 nan\nv 0 1 0\nf 1 2 3\n");
    EXPECT_EQ(out.scene.counts.vertices, (mesh::Count{3, 3}));
    EXPECT_TRUE(out.scene.gaps.empty());
}

TEST(MeshObj, PolygonsAreCutIntoTriangles) {
    const auto out = readObj("v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nv -1 1 0\nf 1 2 3 4 5\n");
    EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{3, 3}));
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 3U);
}

TEST(MeshObj, VerticesMayStandBehindTheirFaces) {
    EXPECT_EQ(meshtest::trianglesIn(readObj(kFaces + kTetrahedron).scene), 4U);
}

TEST(MeshObj, DamagedFacesAreAGapWithTheFirstLine) {
    struct Row {
        const char* face;
        const char* why;
    };
    for (const Row& row : {Row{"f 1 2 99", "no such vertex"}, Row{"f 1 2 0", "none has number 0"},
                           Row{"f 1 2 -9", "before the first"}, Row{"f 1 2", "two corners"},
                           Row{"f 1 2 x", "no number"}, Row{"f", "no corners"},
                           Row{"f 1 2 4294967298", "beyond 32 bits"}}) {
        const auto out = readObj(kTetrahedron + row.face + "\n" + kFaces);
        ASSERT_FALSE(out.refusal) << row.why;
        EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{5, 4})) << row.why;
        ASSERT_EQ(out.scene.gaps.size(), 1U) << row.why;
        EXPECT_EQ(out.scene.gaps[0], "1 face was not read, the first in line 5.") << row.why;
    }
}

TEST(MeshObj, DamagedVerticesKeepTheirNumber) {
    const auto out = readObj("v 0 0 0\nv what 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 4\nf 1 2 3\n");
    ASSERT_FALSE(out.refusal);
    EXPECT_EQ(meshtest::trianglesIn(out.scene), 1U);
    EXPECT_EQ(out.scene.counts.vertices, (mesh::Count{4, 3}));
    EXPECT_EQ(out.scene.gaps.size(), 2U);
}

TEST(MeshObj, PointsAndLinesAreNothingToCompare) {
    for (const char* rest : {"l 1 2 3\n", "p 1\np 2\n"}) {
        const auto out = readObj(kTetrahedron + rest);
        ASSERT_TRUE(out.refusal);
        EXPECT_EQ(out.refusal->code, "empty");
        EXPECT_EQ(out.refusal->text, "holds points and lines only, no faces.");
    }
    EXPECT_EQ(readObj(kTetrahedron).refusal->text, "holds no triangles.");
}

TEST(MeshObj, CurvedSurfacesAreAGap) {
    const auto out = readObj(kTetrahedron + kFaces + "surf 0 1 0 1 1 2 3 4\n");
    EXPECT_EQ(out.scene.gaps.size(), 1U);
}

TEST(MeshObj, OtherTextIsNotRecognised) {
    for (const char* text : {"", "# only a comment\n", "hello world\n", "v\n", "violet 1 2 3\n"}) {
        EXPECT_FALSE(mesh::recognise(text)) << text;
    }
}

TEST(MeshObj, NoTextIsRefused) {
    const auto out = readObj(std::string("\0\1\2\3", 4));
    ASSERT_TRUE(out.refusal);
    EXPECT_EQ(out.refusal->code, "not-this-format");
}

}  // namespace
