#include <signal.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <gtest/gtest.h>

#include "tests/faults/bad_input/bad_input.h"

using bad_input::Side;

namespace {

namespace fs = std::filesystem;

/// A disk of this many bytes; not mounted where the tests may not do that.
class SmallDisk {
public:
    SmallDisk(const fs::path& folder, std::size_t bytes) : folder_(folder) {
        fs::create_directories(folder);
        const std::string size = "size=" + std::to_string(bytes);
        mounted_ = mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
    }
    ~SmallDisk() {
        if (mounted_) umount2(folder_.c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool mounted() const { return mounted_; }

private:
    fs::path folder_;
    bool mounted_ = false;
};

std::string commandLineOf(pid_t process) {
    std::ifstream stream("/proc/" + std::to_string(process) + "/cmdline", std::ios::binary);
    std::string line((std::istreambuf_iterator<char>(stream)), {});
    for (char& c : line) c = c == '\0' ? ' ' : c;
    return line;
}

/// Kills the first helper whose command line holds `word`; how many it has killed.
class HelperKiller {
public:
    explicit HelperKiller(std::string word) : word_(std::move(word)) {}

    void operator()(pid_t host) {
        if (killed_ > 0) return;
        for (const pid_t process : support::descendantsOf(host)) {
            if (support::programOf(process).find("helper") == std::string::npos) continue;
            if (commandLineOf(process).find(word_) == std::string::npos) continue;
            if (kill(process, SIGKILL) == 0) ++killed_;
            return;
        }
    }
    int killed() const { return killed_; }

private:
    std::string word_;
    int killed_ = 0;
};

/// Another temporary folder will do; failing without saying what was missing will not.
void expectEqualOrNoTemporaryFolder(const support::CliResult& run) {
    if (run.exitCode == 0) {
        bad_input::expectOrder(run);
    } else {
        bad_input::expectRefused(run, "good.stp", "temporary folder");
    }
}

class Machine : public testing::Test {
protected:
    void SetUp() override {
        good_ = scratch_.write("good.stp", bad_input::goodAssembly());
        copy_ = scratch_.write("copy.stp", bad_input::goodAssembly());
        slow_ = scratch_.write("slow.stp", bad_input::slowAssembly());
    }

    support::CliResult killHelperOf(const std::string& word, int& killed) const {
        HelperKiller killer(word);
        support::CliRequest request;
        request.meanwhile = std::ref(killer);
        const auto run = bad_input::compare(slow_, copyOfSlow(), request);
        killed = killer.killed();
        return run;
    }

    std::string copyOfSlow() const {
        return scratch_.write("slow copy.stp", bad_input::slowAssembly());
    }

    support::ScratchFolder scratch_;
    std::string good_;
    std::string copy_;
    std::string slow_;
};

}  // namespace

TEST_F(Machine, FullDiskIsNamed) {
    const SmallDisk disk(scratch_.path() / "disk", 16384);
    if (!disk.mounted()) {
        GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: cannot mount a small disk: "
                     << std::strerror(errno);
    }
    support::CliRequest request;
    request.temporaryFolder = (scratch_.path() / "disk").string();
    const auto run = bad_input::compare(slow_, copyOfSlow(), request);
    bad_input::printOutcome("full disk", Side::Reference, run);
    bad_input::expectRefused(run, "slow", "space|disk|writ");
}

TEST_F(Machine, WriteThatFailsIsNamed) {
    support::CliRequest request;
    request.largestFileBytes = 4096;
    const auto run = bad_input::compare(slow_, copyOfSlow(), request);
    bad_input::printOutcome("files limited to 4 KiB", Side::Reference, run);
    bad_input::expectRefused(run, "slow", "space|disk|writ");
}

TEST_F(Machine, OutputThatCannotBeWrittenIsTrouble) {
    for (const char* form : {"--json", "--changes-only"}) {
        support::CliRequest request;
        request.arguments = {form};
        request.standardOutputFile = "/dev/full";
        const auto run = bad_input::compare(good_, slow_, request);
        bad_input::printOutcome("output to a full device", Side::Reference, run);
        bad_input::expectOrder(run);
        EXPECT_EQ(run.exitCode, 2) << run.description();
        EXPECT_FALSE(run.standardError.empty());
    }
}

TEST_F(Machine, TemporaryFolderThatIsNotThereIsNamed) {
    for (const std::string& folder :
         {(scratch_.path() / "no such folder").string(), good_, std::string("/proc")}) {
        support::CliRequest request;
        request.environment = {{"TMPDIR", folder}};
        const auto run = bad_input::compare(good_, copy_, request);
        bad_input::printOutcome("temporary folder " + fs::path(folder).filename().string(),
                                Side::Reference, run);
        expectEqualOrNoTemporaryFolder(run);
    }
}

TEST_F(Machine, TemporaryFolderWithoutWritePermissionIsNamed) {
    const fs::path folder = scratch_.path() / "read only";
    fs::create_directory(folder);
    fs::permissions(folder, fs::perms(0555));
    support::CliRequest request;
    request.environment = {{"TMPDIR", folder.string()}};
    if (geteuid() == 0) {
        request.userId = 65534;
        support::CliRequest version = request;
        version.arguments = {"--version"};
        if (support::runProgram(version).exitCode != 0) {
            GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: running as root, and another user "
                            "cannot run "
                         << support::programPath();
        }
    }
    const auto run = bad_input::compare(good_, copy_, request);
    bad_input::printOutcome("unwritable temporary folder", Side::Reference, run);
    expectEqualOrNoTemporaryFolder(run);
}

TEST_F(Machine, ImportHelperKilledFromOutsideNamesItsFile) {
    int killed = 0;
    const auto first = killHelperOf("slow.stp", killed);
    ASSERT_EQ(killed, 1);
    bad_input::printOutcome("import helper killed", Side::Reference, first);
    bad_input::expectRefused(first, "slow.stp", "kill|signal|crash|ended|died");
    const auto second = killHelperOf("slow copy.stp", killed);
    ASSERT_EQ(killed, 1);
    bad_input::printOutcome("import helper killed", Side::Compare, second);
    bad_input::expectRefused(second, "slow copy.stp", "kill|signal|crash|ended|died");
}

TEST_F(Machine, CompareHelperKilledFromOutsideIsReported) {
    int killed = 0;
    const auto run = killHelperOf("helper compare", killed);
    ASSERT_EQ(killed, 1) << run.description();
    bad_input::printOutcome("compare helper killed", Side::Reference, run);
    bad_input::expectRefused(run, "slow", "kill|signal|crash|ended|died");
}

TEST_F(Machine, HostKilledFromOutsideTakesItsHelpersAlongAndTheNextRunCleansUp) {
    const fs::path shared = scratch_.path() / "shared tmp";
    fs::create_directory(shared);
    support::CliRequest request;
    request.temporaryFolder = shared.string();
    bool killed = false;
    request.meanwhile = [&](pid_t host) {
        if (killed || support::descendantsOf(host).size() < 2) return;
        killed = kill(host, SIGKILL) == 0;
    };
    const auto dead = bad_input::compare(slow_, copyOfSlow(), request);
    ASSERT_TRUE(killed);
    EXPECT_EQ(dead.signal, SIGKILL);
    EXPECT_TRUE(dead.leftProcesses.empty()) << dead.description();

    support::CliRequest next;
    next.temporaryFolder = shared.string();
    const auto run = bad_input::compare(good_, copy_, next);
    bad_input::expectCompared(run);
}

TEST_F(Machine, InterruptEndsTheRunAndLeavesNothing) {
    for (const int sent : {SIGINT, SIGTERM}) {
        bool done = false;
        support::CliRequest request;
        request.meanwhile = [&](pid_t host) {
            if (!done && support::descendantsOf(host).size() >= 2) done = kill(host, sent) == 0;
        };
        const auto run = bad_input::compare(slow_, copyOfSlow(), request);
        ASSERT_TRUE(done);
        EXPECT_EQ(run.exitCode, 128 + sent) << run.description();
        EXPECT_LT(run.seconds, 10) << run.description();
        EXPECT_TRUE(run.leftFiles.empty()) << run.description();
        EXPECT_TRUE(run.leftProcesses.empty()) << run.description();
    }
}

TEST_F(Machine, TimeLimitIsNamed) {
    support::CliRequest request;
    const std::string large = scratch_.write("large.stp", bad_input::wall(5000));
    request.arguments = {"--time-limit", "1s", "--", large, good_};
    const auto run = support::runProgram(request);
    bad_input::printOutcome("time limit", Side::Reference, run);
    bad_input::expectRefused(run, "large.stp", "time");
}

TEST_F(Machine, MemoryLimitIsNamed) {
    if (support::kSanitized) GTEST_SKIP() << "a sanitizer reserves more than any limit allows";
    support::CliRequest request;
    const std::string large = scratch_.write("large.stp", bad_input::wall(5000));
    request.arguments = {"--memory-limit", "150M", "--", large, good_};
    const auto run = support::runProgram(request);
    bad_input::printOutcome("memory limit", Side::Reference, run);
    bad_input::expectRefused(run, "large.stp", "memory");
}

TEST_F(Machine, TwoRunsAtOnceDoNotDisturbEachOther) {
    const fs::path shared = scratch_.path() / "shared tmp";
    fs::create_directory(shared);
    const std::string copy = copyOfSlow();
    support::CliResult runs[2];
    std::thread threads[2];
    for (int i = 0; i < 2; ++i) {
        threads[i] = std::thread([&, i] {
            support::CliRequest request;
            request.temporaryFolder = shared.string();
            runs[i] = bad_input::compare(slow_, copy, request);
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const auto& run : runs) {
        EXPECT_EQ(run.exitCode, 0) << run.description();
        EXPECT_TRUE(run.leftProcesses.empty()) << run.description();
    }
    EXPECT_EQ(runs[0].standardOutput, runs[1].standardOutput);
    EXPECT_TRUE(fs::is_empty(shared));
}
