#include "tests/support/real_data.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace support {
namespace {

constexpr std::string_view kSamples = "samples/";

constexpr RealFile kFiles[] = {
    {"Gearbox1", "samples/gearbox_reference.step", true},
    {"Gearbox2", "samples/gearbox_compare.step", true},
    {"FrameworkCase1",
     "A-revisions/Framework-Laptop-13__printable_case_full_8416__rev1_2022-08-31_0d1a746.stp",
     true},
    {"FrameworkCase2",
     "A-revisions/Framework-Laptop-13__printable_case_full_8416__rev2_2022-09-13_0ec7f17.stp",
     true},
    {"MountingPlate1",
     "A-revisions/"
     "SO-ARM100__Seeedstudio_Mounting_Plate_SO101_57e6__rev1_2025-04-28_67ede2e.step",
     true},
    {"MountingPlate2",
     "A-revisions/"
     "SO-ARM100__Seeedstudio_Mounting_Plate_SO101_57e6__rev2_2025-09-02_787c515.step",
     true},
    {"RotationPitch1", "A-revisions/SO-ARM100__Rotation_Pitch__1__Rotation_Pitch_08i.step", true},
    {"RotationPitch2", "A-revisions/SO-ARM100__Rotation_Pitch__2__Rotation_Pitch_SO101.step", true},
    {"WristRoll1", "A-revisions/SO-ARM100__Wrist_Roll_Follower__1__Wrist_Roll_08c_v1.step", true},
    {"WristRoll2", "A-revisions/SO-ARM100__Wrist_Roll_Follower__2__Wrist_Roll_Follower_SO101.step",
     true},
    {"TotemBottom1",
     "A-revisions/TOTEM__TOTEMcase_v08_6mm_BLE_Bottom_L_6571__rev1_2023-03-13_5675039.step", true},
    {"TotemBottom2",
     "A-revisions/TOTEM__TOTEMcase_v08_6mm_BLE_Bottom_L_6571__rev2_2024-11-01_8217851.step", true},
    {"TotemTop1", "A-revisions/TOTEM__top_left_v07_variants__1__TOTEM_case_v07_top_left.step",
     true},
    {"TotemTop2", "A-revisions/TOTEM__top_left_v07_variants__2__TOTEM_case_v07_topL_noPow.step",
     true},
    {"PatchWall1",
     "A-revisions/EnragedRabbitProject__6x_PatchWall_1-x_M6_51e3__rev1_2023-07-01_574e7e9.step",
     true},
    {"PatchWall2",
     "A-revisions/EnragedRabbitProject__6x_PatchWall_1-x_M6_51e3__rev2_2023-09-23_0228762.step",
     true},
    {"BaseFoot1",
     "A-revisions/EnragedRabbitProject__2x_BaseFoot_2c1b__rev1_2023-06-29_7621b3d.step", true},
    {"BaseFoot2",
     "A-revisions/EnragedRabbitProject__2x_BaseFoot_2c1b__rev2_2023-09-23_0228762.step", true},
    {"BasePart1",
     "A-revisions/EnragedRabbitProject__1x_Base_part1_399c__rev1_2023-06-29_7621b3d.step", true},
    {"BasePart2",
     "A-revisions/EnragedRabbitProject__1x_Base_part1_399c__rev2_2023-09-23_0228762.step", true},
    {"LockClip1",
     "A-revisions/EnragedRabbitProject__3x_LockClip_475a__rev1_2023-06-29_7621b3d.step", true},
    {"LockClip2",
     "A-revisions/EnragedRabbitProject__3x_LockClip_475a__rev2_2023-09-23_0228762.step", true},
    {"Miniscope1",
     "A-revisions/Miniscope-v4__MS_v4_ETL_LED_Driver_v2_f5b2__rev1_2019-11-04_b529a14.step", false},
    {"Miniscope2",
     "A-revisions/Miniscope-v4__MS_v4_ETL_LED_Driver_v2_f5b2__rev2_2019-11-07_cecccfc.step", false},
    {"CadquerySimple1", "A-revisions/cadquery__simple_4701__rev1_2021-07-12_7ae261d.step", true},
    {"CadquerySimple2", "A-revisions/cadquery__simple_4701__rev2_2021-08-31_529dccb.step", true},
    {"CadqueryNested1", "A-revisions/cadquery__nested_9ed3__rev1_2021-07-04_407e2a3.step", true},
    {"CadqueryNested2", "A-revisions/cadquery__nested_9ed3__rev2_2021-08-31_529dccb.step", true},
    {"Tetrahedron1",
     "A-revisions/OCCT__tessellated_tetrahedron_ap242_4667__rev1_2025-07-18_154c51f.step", true},
    {"Tetrahedron2",
     "A-revisions/OCCT__tessellated_tetrahedron_ap242_4667__rev2_2025-07-18_8176b12.step", true},
    {"As11", "A-revisions/OCCT__as1_by_system__1__bug21802_as1-oc-214.stp", true},
    {"As12", "A-revisions/OCCT__as1_by_system__2__as1-oc-214-mat.stp", true},
    {"As13", "A-revisions/OCCT__as1_by_system__3__trj7_as1-hc-214.stp", true},
    {"As14", "A-revisions/OCCT__as1_by_system__4__trj6_as1-hc-214.stp", true},
    {"As15", "A-revisions/OCCT__as1_by_system__5__tr10_r0901_ec.stp", true},
    {"Ftc081", "B-pmi/OCCT__ftc_08_tg_exports__1__nist_ftc_08_asme1_ap242-2.stp", true},
    {"Ftc082", "B-pmi/OCCT__ftc_08_tg_exports__2__bug33661_nist_ftc_08_asme1_ap242-e1-tg.stp",
     true},
    {"BaseInterface1",
     "A-revisions/trimesh__base_interface_AP203_vs_AP214__1__base_interface_AP203.STEP", true},
    {"BaseInterface2",
     "A-revisions/trimesh__base_interface_AP203_vs_AP214__2__base_interface_AP214.STEP", true},
};

constexpr RealPair kPairs[] = {
    {"Gearbox", "Gearbox1", "Gearbox2", true, true},
    {"FrameworkCase", "FrameworkCase1", "FrameworkCase2", true, true},
    {"MountingPlate", "MountingPlate1", "MountingPlate2", true, true},
    {"RotationPitch", "RotationPitch1", "RotationPitch2", true, true},
    {"WristRoll", "WristRoll1", "WristRoll2", true, false},
    {"TotemBottom", "TotemBottom1", "TotemBottom2", true, true},
    {"TotemTop", "TotemTop1", "TotemTop2", true, true},
    {"PatchWall", "PatchWall1", "PatchWall2", true, true},
    {"BaseFoot", "BaseFoot1", "BaseFoot2", true, true},
    {"BasePart", "BasePart1", "BasePart2", true, true},
    {"LockClip", "LockClip1", "LockClip2", true, true},
    {"Miniscope", "Miniscope1", "Miniscope2", false, true},
    {"CadquerySimple", "CadquerySimple1", "CadquerySimple2", true, true},
    {"CadqueryNested", "CadqueryNested1", "CadqueryNested2", true, true},
    {"Tetrahedron", "Tetrahedron1", "Tetrahedron2", true, true},
    {"As11With2", "As11", "As12", true, true},
    {"As11With3", "As11", "As13", false, true},
    {"As11With4", "As11", "As14", false, true},
    {"As11With5", "As11", "As15", false, true},
    {"As12With3", "As12", "As13", true, true},
    {"As12With4", "As12", "As14", false, true},
    {"As12With5", "As12", "As15", false, true},
    {"As13With4", "As13", "As14", true, true},
    {"As13With5", "As13", "As15", false, true},
    {"As14With5", "As14", "As15", true, true},
    {"Ftc08", "Ftc081", "Ftc082", true, true},
    {"BaseInterface", "BaseInterface1", "BaseInterface2", true, true},
};

}  // namespace

const std::vector<RealFile>& stepFiles() {
    static const std::vector<RealFile> files(std::begin(kFiles), std::end(kFiles));
    return files;
}

const std::vector<RealPair>& stepPairs() {
    static const std::vector<RealPair> pairs(std::begin(kPairs), std::end(kPairs));
    return pairs;
}

void PrintTo(const RealFile& file, std::ostream* stream) {
    *stream << file.path;
}

void PrintTo(const RealPair& pair, std::ostream* stream) {
    *stream << pair.reference << " against " << pair.compare;
}

std::filesystem::path realDataFolder() {
    const char* folder = std::getenv("BEXTORA_TEST_DATA");
    return folder ? folder : "";
}

std::string pathOf(const RealFile& file) {
    if (file.path.starts_with(kSamples)) {
        return (std::filesystem::path(BEXTORA_SOURCE_FOLDER) / file.path).string();
    }
    const std::filesystem::path folder = realDataFolder();
    return folder.empty() ? std::string() : (folder / file.path).string();
}

std::string realFile(std::string_view label) {
    for (const RealFile& file : kFiles) {
        if (file.label == label) return pathOf(file);
    }
    return {};
}

bool fullRun() {
    const char* wanted = std::getenv("BEXTORA_TEST_FULL");
    return wanted && *wanted != '\0' && std::string_view(wanted) != "0";
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace support
