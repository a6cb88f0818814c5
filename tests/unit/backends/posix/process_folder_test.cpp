#include "backends/posix/process_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "backends/posix/left_overs.h"
#include "tests/unit/backends/posix/support.h"

namespace {

using posix_test::namesIn;
using posix_test::pathExists;
using posix_test::Program;
using posix_test::ScopedVariable;
using posix_test::ScratchFolder;
using posix_test::writeFile;

std::string parentOf(const std::string& path) {
    return std::filesystem::path(path).parent_path();
}

class ProcessFolder : public testing::Test {
protected:
    ScratchFolder scratch;
    ScopedVariable temporary{"TMPDIR", scratch.path()};

    /// What a process that died leaves behind.
    std::string plant(const std::string& name, bool withLock) {
        std::string folder = scratch.file(name);
        std::filesystem::create_directories(folder + "/import-1/deep");
        writeFile(folder + "/import-1/deep/document.xbf", "data");
        if (withLock) writeFile(folder + "/lock", "");
        return folder;
    }

    static void makeOld(const std::string& path) {
        const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    }
};

TEST_F(ProcessFolder, GoesWithItsObject) {
    std::string path;
    {
        posix::ProcessFolder folder;
        ASSERT_TRUE(folder.make(scratch.path() + '/'));
        path = folder.path();
        writeFile(path + "/document.xbf", "data");
        EXPECT_TRUE(pathExists(path + "/lock"));
    }
    EXPECT_FALSE(pathExists(path));
}

TEST_F(ProcessFolder, MakingASecondOneGivesUpTheFirst) {
    posix::ProcessFolder folder;
    ASSERT_TRUE(folder.make(scratch.path() + '/'));
    const std::string first = folder.path();
    ASSERT_TRUE(folder.make(scratch.path() + '/'));
    EXPECT_NE(folder.path(), first);
    EXPECT_FALSE(pathExists(first));
}

TEST_F(ProcessFolder, CannotBeMadeWhereThereIsNoParent) {
    posix::ProcessFolder folder;
    EXPECT_FALSE(folder.make(scratch.file("missing/")));
    EXPECT_EQ(folder.path(), "");
}

TEST_F(ProcessFolder, GoesAtEveryKindOfNormalExit) {
    for (const char* const way : {"delete", "exit", "return"}) {
        Program program({"private-folders", way});
        const std::string first = program.readLine();
        const std::string second = program.readLine();
        ASSERT_TRUE(pathExists(first + "/document.xbf")) << way;
        ASSERT_TRUE(pathExists(second + "/document.xbf")) << way;
        program.closeInput();
        EXPECT_EQ(program.wait(), 0);
        EXPECT_TRUE(namesIn(scratch.path()).empty()) << way;
    }
}

TEST_F(ProcessFolder, OfACrashedProcessGoesAtTheNextStart) {
    Program program({"private-folders", "crash"});
    const std::string folder = parentOf(program.readLine());
    program.readLine();
    program.closeInput();
    ASSERT_TRUE(WIFSIGNALED(program.wait()));
    ASSERT_TRUE(pathExists(folder));
    EXPECT_EQ(Program({"sweep"}).wait(), 0);
    EXPECT_FALSE(pathExists(folder));
}

TEST_F(ProcessFolder, OfALivingProcessStays) {
    Program first({"private-folders", "return"});
    Program second({"private-folders", "return"});
    const std::string firstFolder = first.readLine();
    const std::string secondFolder = second.readLine();
    EXPECT_NE(parentOf(firstFolder), parentOf(secondFolder));
    EXPECT_EQ(Program({"sweep"}).wait(), 0);
    EXPECT_TRUE(pathExists(firstFolder + "/document.xbf"));
    EXPECT_TRUE(pathExists(secondFolder + "/document.xbf"));
    first.closeInput();
    EXPECT_EQ(first.wait(), 0);
    EXPECT_FALSE(pathExists(parentOf(firstFolder)));
    EXPECT_TRUE(pathExists(secondFolder + "/document.xbf"));
}

TEST_F(ProcessFolder, SweepersAndMakersAtOnceNeverMeet) {
    for (int round = 0; round < 10; ++round) {
        plant("bextora-1-dead" + std::to_string(round), true);
        std::vector<std::unique_ptr<Program>> programs;
        std::vector<std::string> folders;
        for (int i = 0; i < 4; ++i) {
            programs.push_back(
                std::make_unique<Program>(std::vector<std::string>{"private-folders", "return"}));
        }
        for (auto& program : programs) folders.push_back(program->readLine());
        for (auto& program : programs) program->readLine();
        for (const std::string& folder : folders) {
            ASSERT_TRUE(pathExists(folder + "/document.xbf")) << round << ' ' << folder;
        }
        for (auto& program : programs) program->closeInput();
        for (auto& program : programs) EXPECT_EQ(program->wait(), 0);
        ASSERT_TRUE(namesIn(scratch.path()).empty()) << round;
    }
}

TEST_F(ProcessFolder, SurvivesTheNormalExitOfAForkedChild) {
    Program program({"private-folders", "fork"});
    program.readLine();
    program.readLine();
    program.closeInput();
    EXPECT_EQ(program.readLine(), "kept");
    EXPECT_EQ(program.wait(), 0);
    EXPECT_TRUE(namesIn(scratch.path()).empty());
}

TEST_F(ProcessFolder, OnlyLeftOversAreRemoved) {
    const std::string dead = plant("bextora-123-abc", true);
    const std::string inTheMaking = plant("bextora-124-abc", false);
    const std::string neverMade = plant("bextora-125-abc", false);
    makeOld(neverMade);
    const std::string foreign = plant("something-else", true);
    writeFile(scratch.file("bextora-file"), "x");
    std::filesystem::create_directories(scratch.file("precious"));
    writeFile(scratch.file("precious/lock"), "");
    std::filesystem::create_directory_symlink(scratch.file("precious"),
                                              scratch.file("bextora-126-link"));
    posix::removeLeftOvers(scratch.path() + '/');
    EXPECT_FALSE(pathExists(dead));
    EXPECT_TRUE(pathExists(inTheMaking));
    EXPECT_FALSE(pathExists(neverMade));
    EXPECT_TRUE(pathExists(foreign));
    EXPECT_TRUE(pathExists(scratch.file("bextora-file")));
    EXPECT_TRUE(pathExists(scratch.file("bextora-126-link")));
    EXPECT_TRUE(pathExists(scratch.file("precious/lock")));
}

TEST_F(ProcessFolder, NumbersThatAreUsedAgainDecideNothing) {
    // Its owner died, and another process has got its number since.
    const std::string reused = plant("bextora-" + std::to_string(::getpid()) + "-abc", true);
    // Its owner lives under another number here than where it made the folder, as in a container.
    const std::string elsewhere = plant("bextora-4194303-abc", true);
    const posix::UniqueFd held(::open((elsewhere + "/lock").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(::flock(held.get(), LOCK_EX | LOCK_NB), 0);
    posix::removeLeftOvers(scratch.path() + '/');
    EXPECT_FALSE(pathExists(reused));
    EXPECT_TRUE(pathExists(elsewhere + "/import-1/deep/document.xbf"));
}

TEST_F(ProcessFolder, LinksInsideALeftOverAreNotFollowed) {
    const std::string dead = plant("bextora-123-abc", true);
    std::filesystem::create_directories(scratch.file("precious"));
    writeFile(scratch.file("precious/part.stp"), "x");
    std::filesystem::create_directory_symlink(scratch.file("precious"), dead + "/link");
    posix::removeLeftOvers(scratch.path() + '/');
    EXPECT_FALSE(pathExists(dead));
    EXPECT_TRUE(pathExists(scratch.file("precious/part.stp")));
}

TEST_F(ProcessFolder, OfAnotherUserStays) {
    const std::string dead = plant("bextora-123-abc", true);
    if (::chown(dead.c_str(), 12345, 12345) != 0) {
        GTEST_SKIP() << "only root can give a folder to another user";
    }
    posix::removeLeftOvers(scratch.path() + '/');
    EXPECT_TRUE(pathExists(dead));
}

TEST_F(ProcessFolder, MissingParentHasNoLeftOvers) {
    posix::removeLeftOvers(scratch.file("missing/"));
    EXPECT_TRUE(namesIn(scratch.path()).empty());
}

}  // namespace
