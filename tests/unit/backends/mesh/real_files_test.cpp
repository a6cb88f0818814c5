// Triangles of real files, counted beforehand by other means: sizes of binary files, words of text
// files, declarations of headers and of JSON, elements of XML.

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/real_data.h"
#include "tests/unit/backends/mesh/files.h"

namespace {

struct RealMesh {
    const char* path;
    std::uint64_t declared;
    std::uint64_t read;
    const char* refusal = "";
};

constexpr RealMesh kTable[] = {
    {"D-other-formats/3mf-samples__dodeca_chain_loop_d102__rev1_2018-05-16_1a9a61a.3mf", 7680,
     7680},
    {"D-other-formats/3mf-samples__dodeca_chain_loop_d102__rev2_2018-09-14_665e20d.3mf", 7680,
     7680},
    {"D-other-formats/3mf-samples__heartgears_5191__rev1_2018-05-16_1a9a61a.3mf", 30636, 30636},
    {"D-other-formats/3mf-samples__heartgears_5191__rev2_2018-09-14_665e20d.3mf", 30636, 30636},
    {"D-other-formats/3mf-samples__multiprop-opaque_bbc8__rev1_2020-06-09_f6266ef.3mf", 12, 12},
    {"D-other-formats/3mf-samples__multiprop-opaque_bbc8__rev2_2020-06-16_8ed7a54.3mf", 12, 12},
    {"D-other-formats/OCCT__bug32867_Diamond.glb", 182, 182},
    {"D-other-formats/OCCT__shape.stl", 494, 494},
    {"D-other-formats/build123d__heart_token_200d__rev1_2024-07-26_5b8f0e9.glb", 6620, 0,
     "damaged"},  // its buffer stands in a file that is not there
    {"D-other-formats/build123d__heart_token_200d__rev2_2024-08-08_8b38324.glb", 6620, 6620},
    {"D-other-formats/open_robot_actuator_hardware__body_structure_biped_bottom_7a7a__rev1_"
     "2020-06-26_02fbc7d.STL",
     7776, 7776},
    {"D-other-formats/open_robot_actuator_hardware__body_structure_biped_bottom_7a7a__rev2_"
     "2020-07-06_d3bda6f.STL",
     9364, 9364},
    {"D-other-formats/open_robot_actuator_hardware__body_structure_side_f35a__rev1_2020-04-27_"
     "df9db93.STL",
     5580, 5580},
    {"D-other-formats/open_robot_actuator_hardware__body_structure_side_f35a__rev2_2020-06-10_"
     "f4629d3.STL",
     5572, 5572},
    {"D-other-formats/open_robot_actuator_hardware__structure_front_plate_5381__rev1_"
     "2020-06-08_f7634c5.STL",
     3410, 3410},
    {"D-other-formats/open_robot_actuator_hardware__structure_front_plate_5381__rev2_"
     "2020-11-27_ae5e045.STL",
     3228, 3228},
    {"D-other-formats/trimesh__featuretype_a93e__rev1_2014-09-01_0055d18.STL", 3476, 3476},
    {"D-other-formats/trimesh__featuretype_a93e__rev2_2014-12-14_d839ebe.STL", 3476, 3476},
    {"D-other-formats/trimesh__featuretype_formats__2__featuretype.STL", 3476, 3476},
    {"D-other-formats/trimesh__featuretype_formats__3__featuretype.ply", 3476, 3476},
    {"D-other-formats/trimesh__featuretype_formats__4__featuretype.3MF", 2208, 2208},
    {"D-other-formats/trimesh__fuze_18b0__rev1_2019-03-21_ae681fb.ply", 1000, 1000},
    {"D-other-formats/trimesh__fuze_18b0__rev2_2022-08-05_95ff5dd.ply", 1000, 1000},
    {"D-other-formats/trimesh__fuze_7350__rev1_2018-12-06_6e444e4.obj", 1000, 1000},
    {"D-other-formats/trimesh__fuze_7350__rev2_2025-08-12_ca293a6.obj", 1000, 1000},
    {"D-other-formats/trimesh__fuze_ascii_0400__rev1_2019-03-21_ae681fb.ply", 1000, 1000},
    {"D-other-formats/trimesh__fuze_ascii_0400__rev2_2022-08-05_95ff5dd.ply", 1000, 1000},
    {"D-other-formats/trimesh__groups_a4fa__rev1_2017-08-12_83aa8f0.obj", 2308, 2308},
    {"D-other-formats/trimesh__groups_a4fa__rev2_2026-03-23_96cbf39.obj", 2308, 2308},
    {"D-other-formats/trimesh__joined_tetrahedra_bdef__rev1_2017-12-15_6f4d1a1.obj", 8, 8},
    {"D-other-formats/trimesh__joined_tetrahedra_bdef__rev2_2017-12-15_af6199f.obj", 8, 8},
    {"D-other-formats/trimesh__large_block__1__large_block.STL", 12, 12},
    {"D-other-formats/trimesh__large_block__2__large_block_obb.STL", 12, 12},
    {"D-other-formats/trimesh__large_block__3__large_block_qbb.STL", 12, 12},
    {"D-other-formats/trimesh__quadknot_e4e9__rev1_2017-08-27_c56fe2e.obj", 2880, 2880},
    {"D-other-formats/trimesh__quadknot_e4e9__rev2_2025-08-12_ca293a6.obj", 2880, 2880},
    {"D-other-formats/trimesh__rgb_cube_with_primitives_e595__rev1_2021-05-24_7f313b3.gltf", 12,
     12},
    {"D-other-formats/trimesh__rgb_cube_with_primitives_e595__rev2_2022-07-02_c285643.gltf", 12,
     12},
    {"D-other-formats/trimesh__two_objects_mixed_case_names_593b__rev1_2024-01-20_c1abe45.stl", 8,
     8},
    {"D-other-formats/trimesh__two_objects_mixed_case_names_593b__rev2_2024-02-19_e7c5af7.stl", 24,
     24},
    {"D-other-formats/trimesh__unit_sphere_6c75__rev1_2015-04-09_e8ceb65.STL", 3796, 3796},
    {"D-other-formats/trimesh__unit_sphere_6c75__rev2_2016-03-15_3f7649f.STL", 1280, 1280},
    {"C-broken-odd/mayo__cube.gltf", 12, 0, "damaged"},  // so does its buffer
    {"C-broken-odd/mayo__cube.obj", 12, 12},
    {"C-broken-odd/mayo__cube.ply", 12, 12},
    {"C-broken-odd/mayo__face_trsf_scale_almost_1.stl", 3918, 3918},
    {"C-broken-odd/trimesh__busted.STL", 3878, 3878},
    {"C-broken-odd/trimesh__cube_and_sphere_same_name.3mf", 5132, 5132},
    {"C-broken-odd/trimesh__empty.obj", 0, 0, "unknown"},
    {"C-broken-odd/trimesh__empty.ply", 0, 0, "empty"},
    {"C-broken-odd/trimesh__empty.stl", 0, 0, "empty"},
    {"C-broken-odd/trimesh__empty_nodes.glb", 0, 0, "empty"},
    {"C-broken-odd/trimesh__mirror.ply", 286, 286},
    {"C-broken-odd/trimesh__nancolor.obj", 12, 12},
    {"C-broken-odd/trimesh__negative_indices.obj", 12, 12},
    {"C-broken-odd/trimesh__notenoughindices.obj", 2, 1},
    {"C-broken-odd/trimesh__obj_empty.obj", 0, 0, "unknown"},
    {"C-broken-odd/trimesh__obj_points.obj", 0, 0, "empty"},
    {"C-broken-odd/trimesh__obj_wireframe.obj", 0, 0, "empty"},
    {"C-broken-odd/trimesh__obj_with_no_face_in_chunk.obj", 1, 1},
    {"C-broken-odd/trimesh__ply_empty_ascii.ply", 0, 0, "empty"},
    {"C-broken-odd/trimesh__ply_empty_bin.ply", 0, 0, "empty"},
    {"C-broken-odd/trimesh__ply_empty_header.ply", 0, 0, "empty"},
    {"C-broken-odd/trimesh__ply_points_ascii.ply", 0, 0, "empty"},
    {"C-broken-odd/trimesh__ply_points_bin.ply", 0, 0, "empty"},
    {"C-broken-odd/trimesh__points_emptyascii.ply", 0, 0, "empty"},
    {"C-broken-odd/trimesh__points_emptyface.ply", 0, 0, "empty"},
    {"C-broken-odd/trimesh__soup.stl", 100, 100},
    {"C-broken-odd/trimesh__stl_empty_ascii.stl", 0, 0, "empty"},
    {"C-broken-odd/trimesh__stl_empty_bin.stl", 0, 0, "empty"},
};

bool isMeshFile(const std::filesystem::path& path) {
    std::string end = path.extension().string();
    std::transform(end.begin(), end.end(), end.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return end == ".stl" || end == ".obj" || end == ".ply" || end == ".gltf" || end == ".glb" ||
           end == ".3mf";
}

TEST(MeshRealFiles, HaveTheTrianglesThatTheyDeclare) {
    SKIP_WITHOUT_REAL_DATA();
    for (const RealMesh& row : kTable) {
        const std::string bytes = support::readFile(support::realDataFolder() / row.path);
        const auto format = mesh::recognise(bytes);
        if (!format) {
            EXPECT_STREQ(row.refusal, "unknown") << row.path;
            continue;
        }
        const auto out = mesh::read(*format, bytes, {});
        EXPECT_EQ(out.refusal ? out.refusal->code : "", row.refusal) << row.path;
        if (out.refusal) continue;
        EXPECT_EQ(out.scene.counts.triangles, (mesh::Count{row.declared, row.read})) << row.path;
        EXPECT_EQ(out.scene.gaps.empty(), row.declared == row.read) << row.path;
        EXPECT_EQ(meshtest::trianglesIn(out.scene) + out.scene.counts.flatTriangles, row.read)
            << row.path;
    }
}

TEST(MeshRealFiles, AreAllInTheTable) {
    SKIP_WITHOUT_REAL_DATA();
    for (const char* folder : {"D-other-formats", "C-broken-odd"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(support::realDataFolder() / folder)) {
            if (!isMeshFile(entry.path())) continue;
            const std::string path = folder + ("/" + entry.path().filename().string());
            EXPECT_TRUE(std::any_of(std::begin(kTable), std::end(kTable), [&](const RealMesh& row) {
                return row.path == path;
            })) << path;
        }
    }
}

TEST(MeshRealFiles, CasesForValidatorsEndWithACauseOrACount) {
    SKIP_WITHOUT_REAL_DATA();
    std::size_t files = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(support::realDataFolder() / "C-broken-odd" / "gltf")) {
        const std::string bytes = support::readFile(entry.path());
        const auto out = mesh::read(mesh::Format::Gltf, bytes, {});
        ++files;
        if (out.refusal) {
            EXPECT_FALSE(out.refusal->text.empty()) << entry.path();
        } else {
            EXPECT_GT(meshtest::trianglesIn(out.scene), 0U) << entry.path();
        }
    }
    EXPECT_GT(files, 100U);
}

}  // namespace
