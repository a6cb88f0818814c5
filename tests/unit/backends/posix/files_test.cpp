#include "backends/posix/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/os/utf8.h"
#include "tests/unit/backends/posix/support.h"

namespace {

using posix_test::pathExists;
using posix_test::ScopedVariable;
using posix_test::ScratchFolder;
using posix_test::writeFile;

class Files : public testing::Test {
protected:
    ScratchFolder scratch;
    ScopedVariable temporary{"TMPDIR", scratch.path()};
    posix::PosixFiles files;

    bool exists(const std::string& bytes) { return files.exists(os::toWide(bytes)); }
};

TEST_F(Files, ExistenceCoversFilesAndFolders) {
    writeFile(scratch.file("part.stp"), "x");
    EXPECT_TRUE(exists(scratch.file("part.stp")));
    EXPECT_TRUE(exists(scratch.path()));
    EXPECT_TRUE(exists(scratch.path() + '/'));
    EXPECT_FALSE(exists(scratch.file("missing.stp")));
    EXPECT_FALSE(exists(""));
}

TEST_F(Files, DanglingLinkCannotBeReached) {
    std::filesystem::create_symlink(scratch.file("nowhere"), scratch.file("link"));
    EXPECT_FALSE(exists(scratch.file("link")));
}

TEST_F(Files, BackslashOfAJoinedPathSeparates) {
    std::filesystem::create_directories(scratch.file("bin/Bextora"));
    writeFile(scratch.file("bin/Bextora/x.png"), "x");
    EXPECT_TRUE(exists(scratch.file("bin") + "\\Bextora\\x.png"));
    EXPECT_TRUE(exists(scratch.file("bin/Bextora/") + "..\\..\\bin"));
    EXPECT_FALSE(exists(scratch.file("bin") + "\\Bextora\\y.png"));
}

TEST_F(Files, NameThatReallyHoldsABackslashIsFoundAsItIs) {
    writeFile(scratch.file("odd\\name"), "x");
    EXPECT_TRUE(exists(scratch.file("odd\\name")));
}

TEST_F(Files, ZeroInAPathDoesNotCutIt) {
    writeFile(scratch.file("part"), "x");
    EXPECT_FALSE(files.exists(os::toWide(scratch.file("part")) + std::wstring(1, L'\0') + L"rest"));
}

TEST_F(Files, LongPathsAreNotCut) {
    std::string folder = scratch.path();
    while (folder.size() < 1500) folder += '/' + std::string(150, 'd');
    std::filesystem::create_directories(folder);
    writeFile(folder + "/part.stp", "x");
    EXPECT_TRUE(exists(folder + "/part.stp"));
    EXPECT_FALSE(exists(folder + "/part.stq"));
    const std::string tooLong = scratch.path() + '/' + std::string(300, 'n');
    EXPECT_FALSE(exists(tooLong));
}

TEST_F(Files, NamesOfAnyBytesAreFound) {
    for (const std::string name :
         {"Zahnr\xC3\xA4"
          "der",
          "\xE9\xBD\xBF\xE8\xBD\xAE", "latin1 \xE4\xFF", "two  spaces 'quoted' \"twice\""}) {
        EXPECT_FALSE(exists(scratch.file(name)));
        writeFile(scratch.file(name), "x");
        EXPECT_TRUE(exists(scratch.file(name))) << name;
    }
}

TEST_F(Files, ExecutablePathIsTheRunningProgram) {
    const std::wstring path = files.executablePath();
    EXPECT_TRUE(files.exists(path));
    EXPECT_TRUE(path.ends_with(L"/test_posix")) << os::toUtf8(path);
    EXPECT_EQ(path.front(), L'/');
}

TEST_F(Files, SeparatorIsTheMachines) {
    EXPECT_EQ(files.separator(), L'/');
}

TEST_F(Files, TempFolderFollowsTheVariableAndEndsWithASeparator) {
    EXPECT_EQ(files.tempFolder(), os::toWide(scratch.path() + '/'));
    const ScopedVariable withSlash("TMPDIR", scratch.path() + '/');
    EXPECT_EQ(posix::PosixFiles().tempFolder(), os::toWide(scratch.path() + '/'));
}

TEST_F(Files, TempFolderFallsBackWhenTheVariableIsOfNoUse) {
    writeFile(scratch.file("file"), "x");
    for (const std::string& useless :
         {std::string(), scratch.file("missing"), scratch.file("file"), std::string("relative")}) {
        const ScopedVariable variable("TMPDIR", useless);
        EXPECT_EQ(posix::PosixFiles().tempFolder(), L"/tmp/") << useless;
    }
    const ScopedVariable unset("TMPDIR", std::nullopt);
    EXPECT_EQ(posix::PosixFiles().tempFolder(), L"/tmp/");
}

TEST_F(Files, PrivateFolderIsNewEmptyAndOnlyForThisUser) {
    const std::string first = os::toUtf8(files.makePrivateFolder(L"import"));
    const std::string second = os::toUtf8(files.makePrivateFolder(L"import"));
    EXPECT_NE(first, second);
    for (const std::string& folder : {first, second}) {
        struct stat status {};
        ASSERT_EQ(::stat(folder.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0700U);
        EXPECT_EQ(status.st_uid, ::geteuid());
        EXPECT_TRUE(posix_test::namesIn(folder).empty());
        EXPECT_NE(folder.back(), '/');
        const std::string parent = std::filesystem::path(folder).parent_path();
        ASSERT_EQ(::stat(parent.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0700U);
        const std::string prefix = scratch.path() + "/bextora-" + std::to_string(::getpid()) + '-';
        EXPECT_TRUE(parent.starts_with(prefix)) << parent;
    }
    EXPECT_EQ(std::filesystem::path(first).parent_path(),
              std::filesystem::path(second).parent_path());
}

TEST_F(Files, PurposeCannotLeadOutOfThePrivateFolder) {
    const std::wstring hostile = L"../../\\evil\n" + std::wstring(5000, L'\u00e4');
    const std::string folder = os::toUtf8(files.makePrivateFolder(hostile));
    EXPECT_TRUE(pathExists(folder));
    EXPECT_EQ(std::filesystem::path(folder).parent_path().parent_path(), scratch.path());
    EXPECT_TRUE(pathExists(os::toUtf8(files.makePrivateFolder(L""))));
}

TEST_F(Files, PrivateFolderIsEmptyPathWhenItCannotBeMade) {
    std::filesystem::remove_all(scratch.path());
    EXPECT_EQ(files.makePrivateFolder(L"import"), L"");
}

TEST_F(Files, PrivateFolderComesBackAfterACleanerTookItAway) {
    const std::string first = os::toUtf8(files.makePrivateFolder(L"import"));
    std::filesystem::remove_all(std::filesystem::path(first).parent_path());
    const std::string second = os::toUtf8(files.makePrivateFolder(L"import"));
    EXPECT_TRUE(pathExists(second));
}

}  // namespace
