#include "backends/mesh/bodies.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "backends/mesh/polygon.h"
#include "backends/mesh/welder.h"
#include "tests/unit/backends/mesh/files.h"

namespace {

using mesh::Body;
using mesh::LeftOut;
using mesh::Soup;

/// Two tetrahedra that share no point.
Soup twoTetrahedra() {
    Soup soup;
    for (const double x : {0.0, 5.0}) {
        const auto n = static_cast<std::uint32_t>(soup.pointsMm.size());
        soup.pointsMm.insert(soup.pointsMm.end(), {{x, 0, 0}, {x + 1, 0, 0}, {x, 1, 0}, {x, 0, 1}});
        soup.triangles.insert(
            soup.triangles.end(),
            {{n, n + 2, n + 1}, {n, n + 1, n + 3}, {n, n + 3, n + 2}, {n + 1, n + 2, n + 3}});
    }
    return soup;
}

TEST(MeshBodies, EqualPointsBecomeOneAndNegativeZeroIsZero) {
    Soup soup;
    soup.pointsMm = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-0.0, 0, -0.0}, {0, 1, 0}, {0, 0, 1}};
    soup.triangles = {{0, 1, 2}, {3, 4, 5}};
    const Soup out = mesh::welded(soup);
    EXPECT_EQ(out.pointsMm.size(), 4U);
    EXPECT_EQ(out.triangles[1], (mesh::Triangle{0, 2, 3}));
    EXPECT_FALSE(std::signbit(out.pointsMm[0][0]));
}

TEST(MeshBodies, NearPointsStayApart) {
    Soup soup;
    soup.pointsMm = {{0, 0, 0}, {std::numeric_limits<double>::denorm_min(), 0, 0}, {1e-300, 0, 0}};
    EXPECT_EQ(mesh::welded(soup).pointsMm.size(), 3U);
}

TEST(MeshBodies, WelderKeepsNumbersWhileItGrows) {
    mesh::Welder<float> welder(0);
    for (int round = 0; round < 2; ++round) {
        for (std::uint32_t i = 0; i < 10'000; ++i) {
            ASSERT_EQ(welder.number(static_cast<float>(i), 0.5F, -1.0F), i);
        }
    }
    EXPECT_EQ(welder.points().size(), 10'000U);
}

TEST(MeshBodies, PointsThatAreNoNumbersAreOnePointToo) {
    mesh::Welder<double> welder(0);
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(welder.number(none, 0.0, 0.0), 0U);
    EXPECT_EQ(welder.number(none, 0.0, 0.0), 0U);
}

TEST(MeshBodies, PiecesThatShareNoPointAreBodies) {
    LeftOut leftOut;
    const auto bodies = mesh::splitBodies(twoTetrahedra(), leftOut);
    ASSERT_EQ(bodies.size(), 2U);
    EXPECT_EQ(bodies[0].triangles.size(), 4U);
    EXPECT_EQ(bodies[1].pointsMm.size(), 4U);
    EXPECT_EQ(bodies[1].pointsMm[0][0], 5.0);
    EXPECT_NEAR(meshtest::sixVolumes(bodies[1]), 1.0, 1e-12);
}

TEST(MeshBodies, PiecesThatTouchInOnePointAreOneBody) {
    Soup soup = twoTetrahedra();
    for (auto& point : soup.pointsMm) {
        if (point[0] >= 5.0) point[0] -= 4.0;
    }
    LeftOut leftOut;
    EXPECT_EQ(mesh::splitBodies(mesh::welded(soup), leftOut).size(), 1U);
}

TEST(MeshBodies, NamesAreThoseOfTheFirstTriangle) {
    Soup soup = twoTetrahedra();
    soup.runs = {{0, "left"}, {4, "right"}, {6, "late"}};
    LeftOut leftOut;
    const auto bodies = mesh::splitBodies(soup, leftOut);
    EXPECT_EQ(bodies[0].name, "left");
    EXPECT_EQ(bodies[1].name, "right");
}

TEST(MeshBodies, RunsMoveAlongWhenTrianglesAreLeftOut) {
    Soup soup = twoTetrahedra();
    soup.triangles.insert(soup.triangles.begin(), {0, 0, 1});
    soup.runs = {{0, "left"}, {5, "right"}};
    LeftOut leftOut;
    const auto bodies = mesh::splitBodies(soup, leftOut);
    EXPECT_EQ(leftOut.flat, 1U);
    EXPECT_EQ(bodies[0].name, "left");
    EXPECT_EQ(bodies[1].name, "right");
}

TEST(MeshBodies, FlatTrianglesAreCountedAndDropped) {
    Soup soup = twoTetrahedra();
    soup.triangles.push_back({1, 1, 2});
    soup.triangles.push_back({4, 5, 4});
    LeftOut leftOut;
    EXPECT_EQ(mesh::splitBodies(soup, leftOut).size(), 2U);
    EXPECT_EQ(leftOut.flat, 2U);
    EXPECT_EQ(leftOut.absurd, 0U);
}

TEST(MeshBodies, CornersThatAreNoLengthsAreCountedAndDropped) {
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), 1.1e12, -1e300}) {
        Soup soup = twoTetrahedra();
        soup.pointsMm[7][2] = bad;
        LeftOut leftOut;
        const auto bodies = mesh::splitBodies(soup, leftOut);
        EXPECT_EQ(leftOut.absurd, 3U) << bad;
        ASSERT_EQ(bodies.size(), 2U) << bad;
        EXPECT_EQ(bodies[1].triangles.size(), 1U) << bad;
        EXPECT_EQ(bodies[1].pointsMm.size(), 3U) << bad;
    }
}

TEST(MeshBodies, PointsThatNothingUsesAreNoBody) {
    Soup soup = twoTetrahedra();
    soup.pointsMm.push_back({9, 9, 9});
    LeftOut leftOut;
    EXPECT_EQ(mesh::splitBodies(soup, leftOut).size(), 2U);
    EXPECT_TRUE(mesh::splitBodies({{{1, 2, 3}}, {}, {}}, leftOut).empty());
}

TEST(MeshBodies, TooManyPiecesStayOneBody) {
    Soup soup;
    for (std::uint32_t i = 0; i <= mesh::kMostPieces; ++i) {
        const double x = i;
        soup.pointsMm.insert(soup.pointsMm.end(), {{x, 0, 0}, {x, 1, 0}, {x, 0, 1}});
        soup.triangles.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    }
    LeftOut leftOut;
    EXPECT_EQ(mesh::splitBodies(soup, leftOut).size(), 1U);
    soup.triangles.pop_back();
    EXPECT_EQ(mesh::splitBodies(soup, leftOut).size(), mesh::kMostPieces);
}

TEST(MeshBodies, ClosedMeansTwoTrianglesAtEverySide) {
    LeftOut leftOut;
    Body body = mesh::splitBodies(twoTetrahedra(), leftOut)[0];
    EXPECT_TRUE(meshtest::isClosed(body));
    Body open = body;
    open.triangles.pop_back();
    EXPECT_FALSE(meshtest::isClosed(open));
    Body doubled = body;
    doubled.triangles.push_back(doubled.triangles[0]);
    EXPECT_FALSE(meshtest::isClosed(doubled));
    Body twice = body;
    twice.triangles.insert(twice.triangles.end(), body.triangles.begin(), body.triangles.end());
    EXPECT_FALSE(meshtest::isClosed(twice)) << "four triangles at each side";
    EXPECT_FALSE(mesh::isClosed({}, 5));
    // A triangle that was squeezed to a line counts with the two sides that it has left.
    Body squeezed = body;
    squeezed.triangles.push_back({1, 1, 2});
    EXPECT_FALSE(meshtest::isClosed(squeezed));
    const std::vector<mesh::Triangle> point = {{1, 1, 1}};
    EXPECT_FALSE(mesh::isClosed(point, 3));
}

TEST(MeshPolygon, ConvexPolygonsBecomeFans) {
    const std::vector<mesh::Point> points = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
    std::vector<mesh::Triangle> out;
    mesh::addPolygon(std::vector<std::uint32_t>{0, 1, 2, 3}, points, out);
    EXPECT_EQ(out, (std::vector<mesh::Triangle>{{0, 1, 2}, {0, 2, 3}}));
}

TEST(MeshPolygon, NotchesStayOutside) {
    // An arrow head whose notch a fan from the first corner would cover; area by the shoelace rule.
    const std::vector<mesh::Point> points = {{0, 0, 0}, {2, 2, 0}, {0, 4, 0}, {1, 2, 0}};
    for (std::uint32_t first = 0; first < 4; ++first) {
        std::vector<std::uint32_t> corners;
        for (std::uint32_t i = 0; i < 4; ++i) corners.push_back((first + i) % 4);
        std::vector<mesh::Triangle> out;
        mesh::addPolygon(corners, points, out);
        double area = 0.0;
        for (const auto& [a, b, c] : out) {
            const double twice = (points[b][0] - points[a][0]) * (points[c][1] - points[a][1]) -
                                 (points[b][1] - points[a][1]) * (points[c][0] - points[a][0]);
            EXPECT_GT(twice, 0.0) << first;
            area += twice / 2.0;
        }
        EXPECT_NEAR(area, 2.0, 1e-12) << first;
    }
}

TEST(MeshPolygon, FewerThanThreeCornersAreNothing) {
    const std::vector<mesh::Point> points = {{0, 0, 0}, {2, 0, 0}};
    std::vector<mesh::Triangle> out;
    mesh::addPolygon(std::vector<std::uint32_t>{0, 1}, points, out);
    mesh::addPolygon(std::vector<std::uint32_t>{}, points, out);
    EXPECT_TRUE(out.empty());
}

TEST(MeshPolygon, PolygonsThatCrossThemselvesEndAllTheSame) {
    const std::vector<mesh::Point> points = {
        {0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}, {1, -1, 0}};
    std::vector<mesh::Triangle> out;
    mesh::addPolygon(std::vector<std::uint32_t>{0, 1, 2, 3, 4}, points, out);
    EXPECT_EQ(out.size(), 3U);
}

}  // namespace
