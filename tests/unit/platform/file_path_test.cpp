#include "platform/bxt/file_path.h"

#include <gtest/gtest.h>

#include "platform/bxt/services.h"
#include "platform/os/services.h"

namespace {

struct PathCase {
    std::wstring path, drive, folder, stem, extension;
};

class FilePath : public testing::TestWithParam<PathCase> {};

TEST_P(FilePath, SplitsIntoPartsThatMakeItAgain) {
    const PathCase& given = GetParam();
    const bxt::FilePath path(given.path);
    EXPECT_EQ(path.getDrive(), given.drive);
    EXPECT_EQ(path.getDir(), given.folder);
    EXPECT_EQ(path.getFName(), given.stem);
    EXPECT_EQ(path.getExt(), given.extension);
    EXPECT_EQ(path.getDrive() + path.getDir() + path.getFName() + path.getExt(), given.path);
}

INSTANTIATE_TEST_SUITE_P(
    Bxt, FilePath,
    testing::Values(
        PathCase{L"C:\\models\\gear.box.prt", L"C:", L"\\models\\", L"gear.box", L".prt"},
        PathCase{L"c:gear.prt", L"c:", L"", L"gear", L".prt"},
        PathCase{L"/home/u/gear.stp", L"/", L"home/u/", L"gear", L".stp"},
        PathCase{L"/gear.stp", L"/", L"", L"gear", L".stp"}, PathCase{L"/", L"/", L"", L"", L""},
        PathCase{L"", L"", L"", L"", L""}, PathCase{L"gear", L"", L"", L"gear", L""},
        PathCase{L"a/b\\gear.STEP", L"", L"a/b\\", L"gear", L".STEP"},
        PathCase{L"a.b/gear", L"", L"a.b/", L"gear", L""},
        PathCase{L"folder/", L"", L"folder/", L"", L""},
        PathCase{L"/u/.hidden", L"/", L"u/", L".hidden", L""},
        PathCase{L".hidden.stp", L"", L"", L".hidden", L".stp"},
        PathCase{L"gear.", L"", L"", L"gear", L"."},
        PathCase{L"\\\\server\\share\\gear.stp", L"", L"\\\\server\\share\\", L"gear", L".stp"},
        PathCase{L"1:\\gear.stp", L"", L"1:\\", L"gear", L".stp"},
        PathCase{L"/\u00FC \u4E2D/Z\u00FCnd spule.stp", L"/", L"\u00FC \u4E2D/", L"Z\u00FCnd spule",
                 L".stp"}));

TEST(FilePathLength, LongPathsAreNotCut) {
    const std::wstring folder(5000, L'f'), stem(5000, L's');
    const bxt::FilePath path(L"/" + folder + L"/" + stem + L".stp");
    EXPECT_EQ(path.getDir(), folder + L"/");
    EXPECT_EQ(path.getFName(), stem);
}

class TwoFolders : public os::Files {
public:
    bool exists(const std::wstring&) const override { return false; }
    std::wstring executablePath() const override { return L"/opt/app/bin/viewer"; }
    std::wstring tempFolder() const override { return L"/var/tmp/u/"; }
    wchar_t separator() const override { return L'/'; }
    std::wstring makePrivateFolder(const std::wstring&) override { return {}; }
};

TEST(FileUtils, AsksTheMachineForItsFolders) {
    EXPECT_EQ(bxt::FileUtils::getTempPath(), L"");
    EXPECT_EQ(bxt::FileUtils::getProcessPath(), L"");
    os::services().files = std::make_shared<TwoFolders>();
    EXPECT_EQ(bxt::FileUtils::getTempPath(), L"/var/tmp/u/");
    EXPECT_EQ(bxt::FileUtils::getProcessPath(), L"/opt/app/bin/");
    os::services().files = nullptr;
}

TEST(FileUtils, KnowsDrawingsByTheirExtension) {
    EXPECT_TRUE(bxt::FileUtils::is2DFile(L"/u/plan.DWG"));
    EXPECT_TRUE(bxt::FileUtils::is2DFile(L"plan.dxf"));
    EXPECT_FALSE(bxt::FileUtils::is2DFile(L"plan.dxf.stp"));
    EXPECT_FALSE(bxt::FileUtils::is2DFile(L"dwg"));
    EXPECT_FALSE(bxt::FileUtils::is2DFile(L""));
}

TEST(FileUtils, KnowsWhetherTheHostIsForDrawings) {
    EXPECT_FALSE(bxt::FileUtils::is2DViewer());
    bxt::services().viewerForDrawings = true;
    EXPECT_TRUE(bxt::FileUtils::is2DViewer());
    bxt::services().viewerForDrawings = false;
}

}  // namespace
