// The whole program, with helpers that are locked in, try to get out, and lose their host.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <thread>

#include "tests/support/cli_runner.h"

namespace {

namespace fs = std::filesystem;
using support::CliRequest;
using support::CliResult;
using support::runProgram;
using support::ScratchFolder;

const std::string kReference = std::string(SAMPLES) + "/gearbox_reference.step";
const std::string kCompare = std::string(SAMPLES) + "/gearbox_compare.step";

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::size_t entriesIn(const fs::path& folder) {
    std::error_code error;
    std::size_t count = 0;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        ++count;
    }
    return count;
}

/// Value of a line of a process's status.
std::string statusOf(pid_t process, const std::string& name) {
    std::ifstream in("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with(name + ":\t")) return line.substr(name.size() + 2);
    }
    return {};
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

bool kernelHasFileRules() {
    constexpr long createRuleset = 444;
    return ::syscall(createRuleset, nullptr, 0, 1) > 0;
}

/// Runs in which every helper tries to get out; see probe/probe.cpp.
class HostileHelpers : public testing::Test {
protected:
    void SetUp() override {
        if (support::kSanitized) {
            GTEST_SKIP() << "SKIPPED: a sanitizer lets no library be loaded before its own";
        }
        if (!kernelHasFileRules()) GTEST_SKIP() << "SKIPPED: this kernel has no Landlock";
        fs::create_directories(users);
        for (const char* const command : {"import", "compare", "keep"}) {
            scratch.write("users/victim-of-" + std::string(command), "victim");
        }
        ASSERT_EQ(::chmod(other.c_str(), 0640), 0);
        request.arguments = {kReference, kCompare, "--keep-result", (users / "kept.glb").string()};
        request.environment = {{"LD_PRELOAD", PROBE_LIBRARY},
                               {"PROBE_NOTES", notes.string()},
                               {"PROBE_READ", other},
                               {"PROBE_FOLDER", users.string()}};
    }

    /// By command and attempt, the error of each time; 0 is success.
    std::map<std::string, std::multiset<int>> attempts() const {
        std::map<std::string, std::multiset<int>> all;
        std::istringstream lines(readFile(notes));
        std::string command;
        std::string attempt;
        for (int error = 0; lines >> command >> attempt >> error;) {
            all[command + ' ' + attempt].insert(error);
        }
        return all;
    }

    const std::vector<std::string> kAttempts = {
        "local-socket", "network-socket", "datagram-socket", "read", "change",
        "rights",       "make",           "make-folder",     "list", "remove"};
    ScratchFolder scratch;
    fs::path users = scratch.path() / "users";
    fs::path notes = scratch.path() / "notes";
    std::string other = scratch.write("other.step", "secret");
    CliRequest request;
};

TEST_F(HostileHelpers, AreStoppedAtEveryAttemptAndTheirGoodWorkCounts) {
    const CliResult result = runProgram(request);
    EXPECT_EQ(result.exitCode, 1) << result.description();
    const auto all = attempts();
    for (const auto& [command, times] :
         {std::pair{"import", 2U}, std::pair{"compare", 1U}, std::pair{"keep", 1U}}) {
        for (const std::string& attempt : kAttempts) {
            const auto found = all.find(command + (' ' + attempt));
            ASSERT_NE(found, all.end()) << command << ' ' << attempt << '\n' << readFile(notes);
            EXPECT_EQ(found->second.size(), times) << command << ' ' << attempt;
            EXPECT_EQ(found->second.count(0), 0U) << command << " got through: " << attempt;
        }
    }
    EXPECT_EQ(readFile(other), "secret");
    EXPECT_EQ(fs::status(other).permissions(), static_cast<fs::perms>(0640));
    EXPECT_EQ(readFile(users / "kept.glb").substr(0, 4), "glTF");
    EXPECT_EQ(entriesIn(users), 4U) << "the three victims and what was to be kept";
    EXPECT_TRUE(result.leftFiles.empty()) << result.description();
}

TEST_F(HostileHelpers, WouldSucceedOnASystemThatOffersNothing) {
    // What shows that the attempts above are real ones.
    const std::vector<std::string> plain = request.arguments;
    request.arguments = {"without", "both", support::programPath()};
    request.arguments.insert(request.arguments.end(), plain.begin(), plain.end());
    const CliResult result = runProgram(POSIX_TEST_HELPER, request);
    EXPECT_EQ(result.exitCode, 1) << result.description();
    const auto all = attempts();
    for (const char* const command : {"import", "compare", "keep"}) {
        for (const std::string& attempt : kAttempts) {
            const auto found = all.find(command + (' ' + attempt));
            ASSERT_NE(found, all.end()) << command << ' ' << attempt << '\n' << readFile(notes);
            EXPECT_GE(found->second.count(0), 1U) << command << ' ' << attempt;
        }
    }
}

TEST_F(HostileHelpers, AreEndedWhenTheyStartAProgramAndTheCauseNamesFileAndPhase) {
    request.environment["PROBE_RUN"] = "/bin/true";
    const CliResult result = runProgram(request);
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_NE(result.standardError.find("gearbox_"), std::string::npos) << result.standardError;
    EXPECT_NE(result.standardError.find("no reader may"), std::string::npos)
        << result.standardError;
    EXPECT_FALSE(attempts().contains("import run")) << "it came back from the attempt";
    EXPECT_TRUE(result.leftFiles.empty()) << result.description();
}

TEST(ConfinedRuns, HelpersAtWorkHaveNoNewPrivilegesAndTwoFilters) {
    std::size_t locked = 0;
    std::size_t open = 0;
    bool two = false;
    CliRequest request;
    request.arguments = {kReference, kCompare};
    request.meanwhile = [&](pid_t program) {
        for (const pid_t helper : support::descendantsOf(program)) {
            if (support::programOf(helper).find("bextora-helper") == std::string::npos) continue;
            // Before its own code runs, a helper has the first filter already.
            const bool held =
                statusOf(helper, "NoNewPrivs") == "1" && statusOf(helper, "Seccomp") == "2";
            ++(held ? locked : open);
            two = two || statusOf(helper, "Seccomp_filters") == "2";
        }
    };
    const CliResult result = runProgram(request);
    EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_EQ(result.standardError.find("Landlock"), std::string::npos) << result.description();
    EXPECT_GT(locked, 0U);
    EXPECT_EQ(open, 0U) << "seen without the first filter";
    EXPECT_TRUE(two) << "no helper ever had the filter that it sets itself";
    EXPECT_TRUE(result.leftFiles.empty()) << result.description();
}

TEST(ConfinedRuns, SystemThatOffersNothingIsSaidOnceAndTheRunGoesOn) {
    CliRequest request;
    request.arguments = {"without", "both", support::programPath(), kReference, kCompare};
    const CliResult result = runProgram(POSIX_TEST_HELPER, request);
    EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_EQ(countOf(result.standardError, "no Landlock"), 1U) << result.standardError;
    EXPECT_EQ(countOf(result.standardError, "takes no filters"), 1U) << result.standardError;
}

TEST(ConfinedRuns, KeptResultThatCannotBeWrittenLeavesTheEarlierOne) {
    const ScratchFolder folder;
    const std::string target = folder.write("result.glb", "earlier");
    CliRequest request;
    request.arguments = {kReference, kCompare, "--keep-result", target};
    // Enough for the two imports and the result, too little for the scene.
    request.largestFileBytes = std::uint64_t{256} << 10;
    const CliResult result = runProgram(request);
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_NE(result.standardOutput.find("Summary:"), std::string::npos) << result.description();
    EXPECT_NE(result.standardError.find(target), std::string::npos) << result.standardError;
    EXPECT_EQ(fs::file_size(target), 7U) << "the earlier one is gone";
    EXPECT_EQ(entriesIn(folder.path()), 1U);
    EXPECT_TRUE(result.leftFiles.empty()) << result.description();
}

/// Hosts that share one folder for temporary files.
class LeftOvers : public testing::Test {
protected:
    CliRequest requestIn() const {
        CliRequest request;
        request.arguments = {kReference, kCompare};
        request.temporaryFolder = temporary.path().string();
        return request;
    }

    std::set<std::string> folders() const {
        std::set<std::string> names;
        std::error_code error;
        for (fs::directory_iterator it(temporary.path(), error), end; !error && it != end;
             it.increment(error)) {
            names.insert(it->path().filename().string());
        }
        return names;
    }

    /// A host that is killed once a helper works for it; the names of what it leaves.
    std::set<std::string> killOne() const {
        const std::set<std::string> before = folders();
        CliRequest request = requestIn();
        request.meanwhile = [this, before](pid_t program) {
            const bool works = !support::descendantsOf(program).empty();
            const std::string own = "bextora-" + std::to_string(program) + '-';
            for (const std::string& name : folders()) {
                if (works && name.starts_with(own)) ::kill(program, SIGKILL);
            }
        };
        const CliResult result = runProgram(request);
        EXPECT_EQ(result.signal, SIGKILL) << result.description();
        EXPECT_TRUE(result.leftProcesses.empty()) << result.description();
        std::set<std::string> left = folders();
        for (const std::string& name : before) left.erase(name);
        return left;
    }

    ScratchFolder temporary;
};

TEST_F(LeftOvers, OfAKilledHostGoAtTheNextStart) {
    const std::set<std::string> left = killOne();
    ASSERT_EQ(left.size(), 1U);
    const CliResult next = runProgram(requestIn());
    EXPECT_EQ(next.exitCode, 1) << next.description();
    EXPECT_TRUE(folders().empty()) << *folders().begin();
}

TEST_F(LeftOvers, OfAKilledHostGoWhileAnotherWorksAndItsOwnStay) {
    std::set<std::string> dead;
    std::set<std::string> seen;
    bool started = false;
    CliRequest first = requestIn();
    std::string own;
    first.meanwhile = [&](pid_t program) {
        if (started || support::descendantsOf(program).empty()) return;
        started = true;
        // This host stands still meanwhile as far as its temporary folder goes.
        ::kill(program, SIGSTOP);
        own = "bextora-" + std::to_string(program) + '-';
        dead = killOne();
        EXPECT_EQ(runProgram(requestIn()).exitCode, 1);
        seen = folders();
        ::kill(program, SIGCONT);
    };
    const CliResult result = runProgram(first);
    EXPECT_EQ(result.exitCode, 1) << result.description();
    ASSERT_TRUE(started);
    EXPECT_EQ(dead.size(), 1U);
    ASSERT_EQ(seen.size(), 1U) << "only the living host's folder is left";
    EXPECT_TRUE(seen.begin()->starts_with(own)) << *seen.begin();
    EXPECT_TRUE(folders().empty());
}

TEST_F(LeftOvers, TwoHostsAtOnceHaveAFolderEach) {
    CliResult results[2];
    std::size_t most = 0;
    CliRequest watching = requestIn();
    watching.meanwhile = [&](pid_t) { most = std::max(most, folders().size()); };
    std::thread other([&] { results[0] = runProgram(requestIn()); });
    results[1] = runProgram(watching);
    other.join();
    for (const CliResult& result : results) EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_EQ(most, 2U);
    EXPECT_TRUE(folders().empty());
}

}  // namespace
