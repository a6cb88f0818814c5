// What files of other formats than STEP say about themselves, on the root occurrence.

#include <algorithm>

#include "platform/hps/component_type.h"
#include "tests/integration/data/data_imports.h"
#include "tests/support/iges_builder.h"
#include "tests/support/real_data.h"

namespace {

using Texts = std::vector<std::string>;

class FormatMetadata : public data_test::DataImports {
protected:
    /// Metadata of the root occurrence as "name=value", sorted, without those of its geometry.
    Texts ofFile(const std::string& path) {
        const auto read = import(path);
        EXPECT_EQ(read.result, HPS::IOResult::Success) << read.cause.text;
        if (!read.model) return {};
        return import_test::metadata(
            read.component.GetAllSubcomponents(HPS::ComponentType::ProductOccurrence)[0]);
    }
    Texts ofText(const std::string& name, const std::string& bytes) {
        return ofFile(scratch.write(name, bytes));
    }
};

constexpr const char* kObj = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

TEST_F(FormatMetadata, GlobalSectionOfIges) {
    support::IgesBuilder builder;
    builder.add(110, "0.,0.,0.,10.,0.,0.");
    EXPECT_EQ(
        ofText("a.igs",
               builder.write("1H,,1H;,4HPart,8Htest.igs,6HSystem,3H9.1,32,38,6,308,15,8HReceiver,"
                             "1.,1,4HINCH,1,0.01,15H20260101.000000,1E-6,1000.,5HAda L,7HMachine,"
                             "11,6,15H20260102.000000,8HProtocol;")),
        (Texts{"Header Application Protocol=Protocol", "Header Author=Ada L",
               "Header Description=A test", "Header Drafting Standard=DIN",
               "Header File Name=test.igs", "Header Modified=20260102.000000",
               "Header Organization=Machine", "Header Originating System=System",
               "Header Preprocessor=9.1", "Header Product ID=Part",
               "Header Receiver Product ID=Receiver", "Header Schema=IGES 5.3",
               "Header Time Stamp=20260101.000000", "Header Unit=INCH", "Units=Inch"}));
}

TEST_F(FormatMetadata, NumbersOfTheGlobalSectionThatMeanNothingAreLeftOut) {
    support::IgesBuilder builder;
    builder.add(110, "0.,0.,0.,10.,0.,0.");
    const Texts found =
        ofText("a.igs", builder.write("1H,,1H;,,,,,32,38,6,308,15,,1.,2,2HMM,1,0.01,,1E-6,1000.,"
                                      "8HA\x1b[2J\tB ,,99,-3,;"));
    EXPECT_EQ(found, (Texts{"Header Author=A [2J B", "Header Description=A test", "Header Unit=MM",
                            "Units=Millimeter"}));
}

TEST_F(FormatMetadata, RemarksAtTheHeadOfObjAndPly) {
    EXPECT_EQ(ofText("a.obj", std::string("# made by hand\n# in Berlin\n") + kObj),
              (Texts{"Comment 2=in Berlin", "Comment=made by hand", "Units=Millimeter"}));
    EXPECT_EQ(ofText("a.ply",
                     "ply\nformat ascii 1.0\ncomment made by hand\nobj_info 7\n"
                     "element vertex 3\nproperty float x\nproperty float y\nproperty float z\n"
                     "element face 1\nproperty list uchar int vertex_index\nend_header\n"
                     "0 0 0\n1 0 0\n0 1 0\n3 0 1 2\n"),
              (Texts{"Comment=made by hand", "Information=7", "Units=Millimeter"}));
}

TEST_F(FormatMetadata, HeaderOfBinaryStl) {
    std::string bytes = "exported by a system";
    bytes.resize(80);
    bytes += std::string("\1\0\0\0", 4);
    const float numbers[12] = {0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0};
    bytes.append(reinterpret_cast<const char*>(numbers), sizeof numbers);
    bytes.resize(bytes.size() + 2);
    EXPECT_EQ(ofText("a.stl", bytes), (Texts{"Header=exported by a system", "Units=Millimeter"}));
}

TEST_F(FormatMetadata, AttributesCanBeLeftOut) {
    HPS::Exchange::ImportOptionsKit options;
    options.SetAttributes(false);
    const auto read =
        import(scratch.write("a.obj", std::string("# made by hand\n") + kObj), options);
    ASSERT_TRUE(read.model);
    EXPECT_EQ(import_test::metadata(
                  read.component.GetAllSubcomponents(HPS::ComponentType::ProductOccurrence)[0]),
              Texts{"Units=Millimeter"});
}

TEST_F(FormatMetadata, RealFilesSayWhoWroteThem) {
    SKIP_WITHOUT_REAL_DATA();
    std::size_t files = 0;
    std::size_t assets = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(support::realDataFolder() / "D-other-formats")) {
        const std::string kind = entry.path().extension().string();
        if (kind != ".glb" && kind != ".gltf" && kind != ".3mf" && kind != ".igs") continue;
        SCOPED_TRACE(entry.path());
        const auto read = import(entry.path().string());
        if (read.result != HPS::IOResult::Success) continue;
        ++files;
        const Texts found = import_test::metadata(
            read.component.GetAllSubcomponents(HPS::ComponentType::ProductOccurrence)[0]);
        const auto says = [&found](const char* start) {
            return std::any_of(found.begin(), found.end(), [start](const std::string& text) {
                return text.starts_with(start);
            });
        };
        EXPECT_TRUE(says("Units="));
        EXPECT_TRUE(kind != ".igs" || says("Header Preprocessor="));
        // One of them has an empty asset.
        assets += says("glTF version=2.0") ? 1 : 0;
    }
    EXPECT_GE(files, 10U);
    EXPECT_GE(assets, 3U);
}

}  // namespace
