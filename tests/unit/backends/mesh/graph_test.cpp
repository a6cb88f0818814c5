#include "backends/mesh/graph.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/unit/backends/mesh/files.h"

namespace {

using mesh::Matrix;
using mesh::Scene;

mesh::Body tetrahedron() {
    return {"",
            {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
            {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}}};
}

/// A root that uses one part with these placements.
Scene used(const std::vector<Matrix>& placements) {
    Scene scene;
    scene.definitions.resize(2);
    scene.definitions[1].bodies.push_back(tetrahedron());
    for (const Matrix& placement : placements) {
        scene.definitions[0].usages.push_back({1, placement});
    }
    return scene;
}

Matrix scaled(double x, double y, double z) {
    return {x, 0, 0, 0, y, 0, 0, 0, z, 0, 0, 0};
}

bool isRotation(const Matrix& m) {
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            double dot = 0.0;
            for (std::size_t row = 0; row < 3; ++row) dot += m[3 * row + i] * m[3 * row + k];
            if (std::abs(dot - (i == k ? 1.0 : 0.0)) > 1e-9) return false;
        }
    }
    const double det = m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
                       m[2] * (m[3] * m[7] - m[4] * m[6]);
    return std::abs(det - 1.0) < 1e-9;
}

mesh::Point moved(const Matrix& m, const mesh::Point& p) {
    mesh::Point out{};
    for (std::size_t row = 0; row < 3; ++row) {
        out[row] = m[3 * row] * p[0] + m[3 * row + 1] * p[1] + m[3 * row + 2] * p[2] + m[9 + row];
    }
    return out;
}

TEST(MeshGraph, InstancesShareOneDefinition) {
    Matrix there = mesh::kIdentity;
    there[9] = 5.0;
    const auto out = mesh::placed(used({mesh::kIdentity, there, there}), mesh::kIdentity).scene;
    ASSERT_EQ(out.definitions.size(), 2U);
    const auto& usages = out.definitions[out.root].usages;
    ASSERT_EQ(usages.size(), 3U);
    EXPECT_EQ(usages[0].definition, usages[2].definition);
    EXPECT_EQ(usages[1].placement[9], 5.0);
}

TEST(MeshGraph, ScalesGoIntoThePoints) {
    const auto out =
        mesh::placed(used({scaled(2, 2, 2), scaled(2, 2, 2), mesh::kIdentity}), mesh::kIdentity)
            .scene;
    ASSERT_EQ(out.definitions.size(), 3U) << "one definition for each size";
    const auto& usages = out.definitions[out.root].usages;
    EXPECT_EQ(usages[0].definition, usages[1].definition);
    EXPECT_NE(usages[0].definition, usages[2].definition);
    EXPECT_EQ(usages[0].placement, mesh::kIdentity);
    EXPECT_NEAR(meshtest::sixVolumes(out.definitions[usages[0].definition].bodies[0]), 8.0, 1e-12);
    EXPECT_NEAR(meshtest::sixVolumes(out.definitions[usages[2].definition].bodies[0]), 1.0, 1e-12);
}

TEST(MeshGraph, MirroredBodiesStillFaceOutwards) {
    for (const Matrix& mirror : {scaled(-1, 1, 1), scaled(-1, -1, -1), scaled(1, -3, 1)}) {
        const auto out = mesh::placed(used({mirror}), mesh::kIdentity).scene;
        const auto& usage = out.definitions[out.root].usages[0];
        EXPECT_TRUE(isRotation(usage.placement));
        EXPECT_GT(meshtest::sixVolumes(out.definitions[usage.definition].bodies[0]), 0.5);
    }
}

TEST(MeshGraph, AnyMapEndsWhereItShould) {
    // A shear within a turn within a squeeze: the corner (0, 0, 1) must arrive at the same place.
    const Matrix shear = {1, 0.5, 0, 0, 2, 0.25, 0, 0, 1, 7, 8, 9};
    const Matrix turn = {0, -1, 0, 1, 0, 0, 0, 0, 1, 1, 2, 3};
    const Matrix squeeze = {3, 0, 0, 0, 1, 0, 0, 0, 0.5, -1, -2, -3};
    Scene scene;
    scene.definitions.resize(4);
    scene.definitions[3].bodies.push_back(tetrahedron());
    scene.definitions[2].usages.push_back({3, shear});
    scene.definitions[1].usages.push_back({2, turn});
    scene.definitions[0].usages.push_back({1, squeeze});
    const auto out = mesh::placed(std::move(scene), mesh::kIdentity).scene;
    Matrix world = mesh::kIdentity;
    std::uint32_t at = out.root;
    while (!out.definitions[at].usages.empty()) {
        const auto& usage = out.definitions[at].usages[0];
        EXPECT_TRUE(isRotation(usage.placement));
        world = mesh::product(world, usage.placement);
        at = usage.definition;
    }
    const mesh::Point expected = moved(squeeze, moved(turn, moved(shear, {0, 0, 1})));
    const mesh::Point got = moved(world, out.definitions[at].bodies[0].pointsMm[3]);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(got[i], expected[i], 1e-12);
}

TEST(MeshGraph, NoiseOfSinglePrecisionIsNoScale) {
    const float c = std::cos(0.3F);
    const float s = std::sin(0.3F);
    const Matrix turn = {static_cast<double>(c),
                         -static_cast<double>(s),
                         0,
                         static_cast<double>(s),
                         static_cast<double>(c),
                         0,
                         0,
                         0,
                         1,
                         0,
                         0,
                         0};
    const auto out = mesh::placed(used({turn, mesh::kIdentity}), mesh::kIdentity).scene;
    EXPECT_EQ(out.definitions.size(), 2U);
    EXPECT_TRUE(isRotation(out.definitions[out.root].usages[0].placement));
}

TEST(MeshGraph, RootPlacementGoesIntoWhatTheRootHolds) {
    const Matrix there = {0, -1, 0, 1, 0, 0, 0, 0, 1, 10, 20, 30};
    const auto assembly = mesh::placed(used({mesh::kIdentity}), there).scene;
    EXPECT_EQ(assembly.definitions[assembly.root].usages[0].placement, there);
    Scene part;
    part.definitions.resize(1);
    part.definitions[0].bodies.push_back(tetrahedron());
    const auto out = mesh::placed(std::move(part), there).scene;
    EXPECT_EQ(out.definitions[0].bodies[0].pointsMm[1], (mesh::Point{10, 21, 30}));
}

TEST(MeshGraph, UsagesThatLeadBackAreLeftOut) {
    Scene scene = used({mesh::kIdentity, mesh::kIdentity});
    scene.definitions[0].usages.push_back({0, mesh::kIdentity});
    scene.definitions[1].usages.push_back({0, mesh::kIdentity});
    const auto out = mesh::placed(std::move(scene), mesh::kIdentity).scene;
    EXPECT_EQ(out.definitions[out.root].usages.size(), 2U);
    EXPECT_EQ(out.gaps,
              (std::vector<std::string>{
                  "2 usages lead back into the assembly that it is part of and was left out."}));
}

TEST(MeshGraph, PlacementsThatAreNoNumbersAreLeftOut) {
    Matrix bad = mesh::kIdentity;
    bad[4] = std::numeric_limits<double>::quiet_NaN();
    Matrix far = mesh::kIdentity;
    far[9] = 1e300;
    const auto out = mesh::placed(used({bad, far, mesh::kIdentity}), mesh::kIdentity).scene;
    EXPECT_EQ(out.definitions[out.root].usages.size(), 1U);
    EXPECT_EQ(out.gaps.size(), 1U);
    EXPECT_EQ(mesh::placed(used({mesh::kIdentity}), bad).scene.gaps.size(), 1U);
}

TEST(MeshGraph, BodiesScaledBeyondLengthsAreLeftOut) {
    const auto out = mesh::placed(used({scaled(1e13, 1e13, 1e13)}), mesh::kIdentity).scene;
    EXPECT_EQ(meshtest::trianglesIn(out), 0U);
    EXPECT_EQ(out.gaps.size(), 1U);
}

TEST(MeshGraph, FlattenedUsagesAreNoError) {
    const auto out = mesh::placed(used({scaled(1, 1, 0), scaled(0, 0, 0)}), mesh::kIdentity).scene;
    EXPECT_EQ(out.definitions[out.root].usages.size(), 2U);
}

TEST(MeshGraph, TwentyThousandLevelsAreFine) {
    constexpr std::uint32_t kLevels = 20'000;
    Scene scene;
    scene.definitions.resize(kLevels);
    for (std::uint32_t i = 0; i + 1 < kLevels; ++i) {
        scene.definitions[i].usages.push_back({i + 1, scaled(-1, 1, 1)});
    }
    scene.definitions.back().bodies.push_back(tetrahedron());
    EXPECT_EQ(mesh::placed(std::move(scene), mesh::kIdentity).scene.definitions.size(), kLevels);
}

TEST(MeshGraph, PartsAtMoreSizesThanCanBeToldApartAreRefused) {
    // Each level uses the next one at two sizes of their own, so that sizes double with it.
    Scene scene;
    scene.definitions.resize(60);
    for (std::uint32_t i = 0; i + 1 < scene.definitions.size(); ++i) {
        const double size = 1.0 + 1e-3 * (i + 1);
        scene.definitions[i].usages.push_back({i + 1, mesh::kIdentity});
        scene.definitions[i].usages.push_back({i + 1, scaled(size, size * size, 1)});
    }
    scene.definitions.back().bodies.push_back(tetrahedron());
    const auto out = mesh::placed(std::move(scene), mesh::kIdentity);
    ASSERT_TRUE(out.refusal);
    EXPECT_EQ(out.refusal->code, "too-large");
}

}  // namespace
