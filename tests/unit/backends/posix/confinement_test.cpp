#include "backends/posix/confinement.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "backends/posix/file_rules.h"
#include "backends/posix/instrumented.h"
#include "tests/unit/backends/posix/support.h"

namespace {

using os::ProcessEnd;
using posix_test::pathExists;
using posix_test::readFile;
using posix_test::ScratchFolder;
using posix_test::startTestHelper;
using posix_test::waitForEnd;
using posix_test::writeFile;

struct Attempt {
    std::vector<std::string> lines;
    ProcessEnd end = ProcessEnd::Running;
    int code = 0;

    std::string last() const { return lines.empty() ? "" : lines.back(); }
};

/// A machine with an input, a folder of the helper's own, and things of others around them.
class Confinement : public testing::Test {
protected:
    ScratchFolder scratch;
    std::string input = scratch.file("input.step");
    std::string own = scratch.file("own");
    std::string other = scratch.file("other.step");
    std::string otherFolder = scratch.file("import-2");

    void SetUp() override {
        if (posix::fileRulesVersion() == 0) GTEST_SKIP() << "this kernel has no Landlock";
        writeFile(input, "input");
        writeFile(other, "secret");
        std::filesystem::create_directories(own);
        std::filesystem::create_directories(otherFolder);
        writeFile(otherFolder + "/document.xbf", "secret");
    }

    Attempt attempt(const std::string& action, const std::string& target = {}) {
        return run({"confined", action, input, own, target});
    }

    static Attempt run(const std::vector<std::string>& arguments) {
        const auto child = startTestHelper(arguments);
        Attempt result;
        while (const auto line = posix_test::waitForLine(*child)) result.lines.push_back(*line);
        result.end = waitForEnd(*child);
        result.code = child->exitCode();
        return result;
    }

    void expectRefused(const std::string& action, const std::string& target, int error) {
        const Attempt result = attempt(action, target);
        EXPECT_EQ(result.last(), "errno " + std::to_string(error)) << action << ' ' << target;
        EXPECT_EQ(result.end, ProcessEnd::Exited) << action;
    }

    void expectEnded(const std::string& action) {
        const Attempt result = attempt(action);
        EXPECT_EQ(result.last(), "confined") << action;
        EXPECT_EQ(result.end, ProcessEnd::Forbidden) << action;
        EXPECT_EQ(result.code, SIGSYS) << action;
    }
};

TEST_F(Confinement, LacksNothingOnAKernelThatHasAll) {
    EXPECT_EQ(attempt("nothing").lines, (std::vector<std::string>{"confined", "done"}));
}

TEST_F(Confinement, OpensNoSocketOfAnyKind) {
    for (const char* const kind :
         {"tcp", "tcp6", "udp", "unix", "netlink", "packet", "socketpair"}) {
        expectRefused(kind, {}, EACCES);
    }
    expectRefused("io_uring", {}, ENOSYS);
}

TEST_F(Confinement, ReadsNoOtherFile) {
    for (const std::string& path :
         {other, otherFolder + "/document.xbf", std::string("/etc/passwd"), own + "/../other.step",
          std::string("/proc/1/status")}) {
        expectRefused("read", path, EACCES);
    }
    for (const std::string& path : {scratch.path(), otherFolder, std::string("/etc")}) {
        expectRefused("list", path, EACCES);
    }
}

TEST_F(Confinement, ReadsNoOtherFileByALinkInItsOwnFolder) {
    std::filesystem::create_symlink(other, own + "/link");
    expectRefused("read", own + "/link", EACCES);
}

TEST_F(Confinement, WritesNothingOutsideItsFolder) {
    for (const std::string& path : {input, other, otherFolder + "/document.xbf"}) {
        expectRefused("write", path, EACCES);
        expectRefused("unlink", path, EACCES);
    }
    for (const std::string& path : {input + ".bak", scratch.file("new"), otherFolder + "/new",
                                    own + "/../new", std::string("/tmp/bextora-escaped")}) {
        for (const char* const way : {"create", "mkdir", "fifo"}) {
            expectRefused(way, path, EACCES);
            EXPECT_FALSE(pathExists(path)) << way << ' ' << path;
        }
    }
    EXPECT_EQ(readFile(input), "input");
    EXPECT_EQ(readFile(other), "secret");
}

TEST_F(Confinement, BringsNoForeignFileIntoItsFolder) {
    for (const char* const way : {"rename", "link"}) {
        const Attempt result = attempt(way, other);
        EXPECT_TRUE(result.last() == "errno " + std::to_string(EXDEV) ||
                    result.last() == "errno " + std::to_string(EACCES))
            << way << ' ' << result.last();
    }
    expectRefused("symlink", {}, EACCES);
    EXPECT_TRUE(std::filesystem::is_empty(own));
    EXPECT_EQ(readFile(other), "secret");
}

TEST_F(Confinement, ChangesNoRightsTimesOrLengths) {
    for (const std::string& path : {input, other}) {
        struct stat before {};
        struct stat after {};
        ASSERT_EQ(::stat(path.c_str(), &before), 0);
        for (const char* const way : {"chmod", "chown", "touch", "empty"}) {
            expectRefused(way, path, EPERM);
        }
        ASSERT_EQ(::stat(path.c_str(), &after), 0);
        EXPECT_EQ(after.st_mode, before.st_mode);
        EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
        EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
        EXPECT_EQ(after.st_size, before.st_size);
    }
}

TEST_F(Confinement, EndsWithAnAttemptToRunAProgram) {
    expectEnded("exec");
}

TEST_F(Confinement, StartsNoProcess) {
    if (posix::instrumentedBuild()) GTEST_SKIP() << "the leak checker starts a process";
    expectRefused("fork", {}, EPERM);
    const Attempt spawned = attempt("spawn");
    EXPECT_EQ(spawned.last(), "errno " + std::to_string(EPERM));
    EXPECT_EQ(attempt("system").last(), "errno " + std::to_string(EPERM));
}

TEST_F(Confinement, EndsWithAnAttemptToLookIntoOthersOrToChangeTheSystem) {
    for (const char* const way : {"read-parent", "mount", "unshare", "keys", "bpf"}) {
        expectEnded(way);
    }
    if (posix::instrumentedBuild()) GTEST_SKIP() << "the leak checker traces";
    expectEnded("trace");
}

TEST_F(Confinement, DoesNotSeeItsParentsMemory) {
    expectRefused("parent-memory", {}, EACCES);
    expectRefused("parent-environment", {}, EACCES);
}

TEST_F(Confinement, SignalsNobody) {
    for (const char* const way :
         {"kill-parent", "probe-parent", "kill-all", "thread-kill-parent"}) {
        expectRefused(way, {}, EPERM);
    }
}

TEST_F(Confinement, LiftsNoLimitAndKeepsItsPlace) {
    for (const char* const way : {"lift-limit", "become-root", "leave-group"}) {
        expectRefused(way, {}, EPERM);
    }
    if (posix::instrumentedBuild()) GTEST_SKIP() << "the leak checker changes its death signal";
    expectRefused("outlive-host", {}, EPERM);
}

TEST_F(Confinement, LeavesItsWorkPossible) {
    for (const char* const work :
         {"read-input", "own-folder", "threads", "memory", "maps", "chance", "library"}) {
        const Attempt result = attempt(work);
        EXPECT_EQ(result.last(), "done") << work;
        EXPECT_EQ(result.end, ProcessEnd::Exited) << work;
    }
    EXPECT_EQ(attempt("read-opened", other).last(), "done") << "what was open stays open";
}

TEST_F(Confinement, LeavesASignalOfItsOwnACrash) {
    const Attempt result = attempt("abort");
    EXPECT_EQ(result.end, ProcessEnd::Crashed);
    EXPECT_EQ(result.code, SIGABRT);
}

TEST_F(Confinement, WorksWithEveryVersionOfTheFileRules) {
    for (int version = 1; version <= posix::fileRulesVersion(); ++version) {
        std::filesystem::remove_all(own);
        std::filesystem::create_directories(own);
        const Attempt result = run({"restricted", std::to_string(version), input, own, other});
        EXPECT_EQ(result.lines, (std::vector<std::string>{"kept out", "works"})) << version;
    }
}

TEST_F(Confinement, HoldsForANameThatIsNotThere) {
    const Attempt result = run({"confined", "read", scratch.file("missing"), own, other});
    EXPECT_EQ(result.lines.front(), "confined");
    EXPECT_EQ(result.last(), "errno " + std::to_string(EACCES));
}

class OlderKernel : public Confinement {
protected:
    Attempt attemptWithout(const std::string& what, const std::string& action,
                           const std::string& target = {}) {
        posix_test::Program host({"without", what, posix_test::testHelperPath(), "relay",
                                  "confined", action, input, own, target});
        Attempt result;
        for (std::string line = host.readLine(); !line.empty(); line = host.readLine()) {
            result.lines.push_back(line);
        }
        return result;
    }
};

TEST_F(OlderKernel, WithoutFileRulesSaysSoAndKeepsTheRest) {
    const Attempt result = attemptWithout("landlock", "read", other);
    ASSERT_EQ(result.lines.size(), 3U);
    EXPECT_NE(result.lines[0].find("no Landlock"), std::string::npos);
    EXPECT_EQ(result.last(), "done");
    EXPECT_EQ(attemptWithout("landlock", "tcp").last(), "errno " + std::to_string(EACCES));
}

TEST_F(OlderKernel, WithoutFiltersSaysSoAndKeepsTheRest) {
    const Attempt result = attemptWithout("seccomp", "read", other);
    ASSERT_EQ(result.lines.size(), 3U);
    EXPECT_NE(result.lines[0].find("takes no filters"), std::string::npos);
    EXPECT_EQ(result.last(), "errno " + std::to_string(EACCES));
    EXPECT_EQ(attemptWithout("seccomp", "unix").last(), "done");
    // The file rules alone still stop programs, and TCP where the kernel knows how.
    EXPECT_EQ(attemptWithout("seccomp", "exec").last(), "errno " + std::to_string(EACCES));
}

TEST_F(OlderKernel, WithoutBothSaysEachOnceAndWorks) {
    const Attempt result = attemptWithout("both", "own-folder");
    ASSERT_EQ(result.lines.size(), 4U);
    EXPECT_EQ(result.lines[0].substr(0, 5), "lack ");
    EXPECT_EQ(result.lines[1].substr(0, 5), "lack ");
    EXPECT_EQ(result.last(), "done");
}

TEST(FileRules, GrowWithTheVersion) {
    struct Row {
        int version;
        std::uint64_t files;
        std::uint64_t network;
        std::uint64_t scopes;
    };
    for (const Row& row : {Row{0, 0, 0, 0}, Row{1, 0x1FFF, 0, 0}, Row{2, 0x3FFF, 0, 0},
                           Row{3, 0x7FFF, 0, 0}, Row{4, 0x7FFF, 3, 0}, Row{5, 0xFFFF, 3, 0},
                           Row{6, 0xFFFF, 3, 3}, Row{7, 0xFFFF, 3, 3}, Row{99, 0xFFFF, 3, 3}}) {
        const posix::FileRules rules = posix::fileRulesOf(row.version);
        EXPECT_EQ(rules.files, row.files) << row.version;
        EXPECT_EQ(rules.network, row.network) << row.version;
        EXPECT_EQ(rules.scopes, row.scopes) << row.version;
    }
}

TEST(StartedHelper, HasNoNetworkAndNoNewPrivilegesBeforeItsOwnCodeRuns) {
    const auto child = startTestHelper({"status"});
    std::vector<std::string> lines;
    while (const auto line = posix_test::waitForLine(*child)) lines.push_back(*line);
    EXPECT_EQ(lines, (std::vector<std::string>{"NoNewPrivs:\t1", "Seccomp:\t2",
                                               "socket " + std::to_string(EACCES)}));
}

TEST(StartedHelper, PastItsProcessorTimeReachedTheTimeLimit) {
    os::ProcessLimits limits;
    limits.processorTimeMs = 900;  // counts as a second
    const auto start = std::chrono::steady_clock::now();
    const auto child = startTestHelper({"spin"}, limits);
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::TimeLimit);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(700));
}

TEST(StartedHelper, GetsTheWallTimeOnEveryProcessorAsProcessorTime) {
    os::ProcessLimits limits;
    limits.wallTimeMs = 90'000;
    const auto child = startTestHelper({"describe"}, limits);
    std::string found;
    while (const auto line = posix_test::waitForLine(*child)) {
        if (line->starts_with("processor=")) found = *line;
    }
    EXPECT_EQ(found, "processor=" + std::to_string(90 * std::thread::hardware_concurrency()));
}

TEST(StartedHelper, LeavesNoCoreWhereItStood) {
    // A crash that the system would record: the working folder is where cores go by default.
    ScratchFolder folder;
    posix_test::Program host({"crash-in", folder.path()});
    EXPECT_EQ(host.readLine(), "crashed " + std::to_string(SIGSEGV));
    host.wait();
    EXPECT_TRUE(posix_test::namesIn(folder.path()).empty());
}

}  // namespace
