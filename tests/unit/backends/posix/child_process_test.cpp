#include "backends/posix/child_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <filesystem>
#include <map>
#include <thread>

#include "backends/posix/child_processes.h"
#include "backends/posix/line_buffer.h"
#include "tests/unit/backends/posix/support.h"

namespace {

using namespace std::chrono_literals;
using os::ProcessEnd;
using posix_test::comesTrue;
using posix_test::processGone;
using posix_test::ScratchFolder;
using posix_test::startTestHelper;
using posix_test::waitForEnd;
using posix_test::waitForLine;

using Clock = std::chrono::steady_clock;

pid_t pidIn(const std::optional<std::string>& line) {
    return line && line->starts_with("pid ") ? std::stoi(line->substr(4)) : -1;
}

std::vector<std::string> allLines(os::ChildProcess& child) {
    std::vector<std::string> lines;
    while (const auto line = waitForLine(child)) lines.push_back(*line);
    return lines;
}

TEST(ChildProcess, ExitCodeIsTold) {
    for (const int code : {0, 1, 2, 126, 255}) {
        const auto child = startTestHelper({"exit", std::to_string(code)});
        EXPECT_EQ(waitForEnd(*child), ProcessEnd::Exited);
        EXPECT_EQ(child->exitCode(), code);
        EXPECT_EQ(child->poll(), ProcessEnd::Exited);
    }
}

TEST(ChildProcess, CodeOfRefusedMemoryIsAMemoryLimit) {
    const auto child = startTestHelper({"exit", std::to_string(os::kMemoryLimitExitCode)});
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::MemoryLimit);
    EXPECT_EQ(child->exitCode(), os::kMemoryLimitExitCode);
}

TEST(ChildProcess, SignalOfACrashIsTold) {
    for (const int number : {SIGSEGV, SIGABRT, SIGFPE, SIGKILL}) {
        const auto child = startTestHelper({"crash", std::to_string(number)});
        EXPECT_EQ(waitForEnd(*child), ProcessEnd::Crashed) << number;
        EXPECT_EQ(child->exitCode(), number);
    }
}

TEST(ChildProcess, ProgramThatCannotBeStartedSaysSo) {
    ScratchFolder scratch;
    posix_test::writeFile(scratch.file("text"), "no program");
    std::filesystem::permissions(scratch.file("text"), std::filesystem::perms::owner_all);
    for (const std::string& path : {scratch.file("missing"), scratch.path(), scratch.file("text"),
                                    std::string(), std::string("/bin/sh\0x", 9)}) {
        posix::PosixChildProcesses processes(path, {}, false);
        const auto child = processes.startHelper({"lines", "1"}, {});
        ASSERT_NE(child, nullptr);
        EXPECT_EQ(child->poll(), ProcessEnd::NotStarted) << path;
        child->wait(10'000);
        EXPECT_EQ(child->nextLine(), std::nullopt);
        EXPECT_EQ(child->exitCode(), 0);
        child->kill();
        EXPECT_EQ(child->poll(), ProcessEnd::NotStarted);
    }
}

TEST(ChildProcess, ProgramWhoseLibrariesAreMissingCountsAsNotStarted) {
    const auto child = startTestHelper({"exit", "127"});
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::NotStarted);
}

TEST(ChildProcess, ArgumentsThatDoNotFitAreNotCut) {
    const auto child = startTestHelper({"echo", std::string("a\0b", 3)});
    EXPECT_EQ(child->poll(), ProcessEnd::NotStarted);
    const auto large = startTestHelper({"echo", std::string(std::size_t{16} << 20, 'x')});
    EXPECT_EQ(large->poll(), ProcessEnd::NotStarted);
}

TEST(ChildProcess, ArgumentsArriveAsTheyAre) {
    const std::vector<std::string> arguments = {"",          " ",
                                                "two words", "'quoted' \"twice\"",
                                                "$HOME;*",   "\xC3\xA4\xE9\xBD\xBF",
                                                "\xFF\xFE",  std::string(5000, 'l')};
    std::vector<std::string> all = {"echo"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const auto child = startTestHelper(all);
    EXPECT_EQ(allLines(*child), arguments);
}

TEST(ChildProcess, LinesComeInOrderAndCanBeReadAfterTheEnd) {
    const auto child = startTestHelper({"lines", "500"});
    // The end is waited for without reading a line.
    ASSERT_TRUE(comesTrue([&] { return child->poll() != ProcessEnd::Running; }));
    for (int i = 0; i < 500; ++i) ASSERT_EQ(child->nextLine(), "line " + std::to_string(i));
    EXPECT_EQ(child->nextLine(), std::nullopt);
    EXPECT_EQ(child->poll(), ProcessEnd::Exited);
}

TEST(ChildProcess, HelperIsNotHeldUpByAHostThatOnlyPolls) {
    // Far more than a pipe holds.
    const auto child = startTestHelper({"lines", "100000"});
    ASSERT_TRUE(comesTrue([&] { return child->poll() != ProcessEnd::Running; }));
    int count = 0;
    while (child->nextLine()) ++count;
    EXPECT_EQ(count, 100'000);
}

TEST(ChildProcess, CrashKeepsTheLinesBeforeIt) {
    const auto child = startTestHelper({"crash", std::to_string(SIGSEGV)});
    EXPECT_EQ(waitForLine(*child), "about to crash");
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::Crashed);
}

TEST(ChildProcess, LineThatWasCutOffByTheEndIsDropped) {
    for (const int number : {SIGKILL, SIGSEGV}) {
        const auto child = startTestHelper({"half", std::to_string(number)});
        EXPECT_EQ(allLines(*child), std::vector<std::string>{"whole"});
    }
}

TEST(ChildProcess, OverlongLineIsCutAndTheNextOneIsWhole) {
    const auto child = startTestHelper({"long", "1000000"});
    EXPECT_EQ(waitForLine(*child), "before");
    EXPECT_EQ(waitForLine(*child), std::string(posix::LineBuffer::kLongestLine, 'x'));
    EXPECT_EQ(waitForLine(*child), "after");
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::Exited);
}

TEST(ChildProcess, LinesOfSeveralThreadsStayWhole) {
    const auto child = startTestHelper({"threads", "50"});
    std::map<char, int> counts;
    for (const std::string& line : allLines(*child)) {
        // Longer than what the system writes in one piece by itself.
        ASSERT_EQ(line, std::string(10'000, line.front()));
        ++counts[line.front()];
    }
    EXPECT_EQ(counts, (std::map<char, int>{{'a', 50}, {'b', 50}, {'c', 50}, {'d', 50}}));
}

TEST(ChildProcess, FloodIsHeldUpAndDoesNotKeepAPollBusy) {
    const auto child = startTestHelper({"flood"});
    for (int i = 0; i < 300; ++i) {
        const auto before = Clock::now();
        ASSERT_EQ(child->poll(), ProcessEnd::Running);
        ASSERT_LT(Clock::now() - before, 5s);
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(child->nextLine(), std::string(1000, 'f'));
    child->kill();
    EXPECT_EQ(child->poll(), ProcessEnd::Killed);
}

TEST(ChildProcess, KillEndsItAtOnce) {
    for (const char* const way : {"hang", "spin"}) {
        const auto child = startTestHelper({way});
        ASSERT_TRUE(waitForLine(*child));
        child->kill();
        EXPECT_EQ(child->poll(), ProcessEnd::Killed) << "kill returns when the process is gone";
        child->kill();
        EXPECT_EQ(child->poll(), ProcessEnd::Killed);
    }
}

TEST(ChildProcess, KillAfterTheEndChangesNothing) {
    const auto child = startTestHelper({"exit", "3"});
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::Exited);
    child->kill();
    EXPECT_EQ(child->poll(), ProcessEnd::Exited);
    EXPECT_EQ(child->exitCode(), 3);
}

TEST(ChildProcess, KillFromAnotherThreadWakesAWait) {
    const auto child = startTestHelper({"hang"});
    ASSERT_TRUE(waitForLine(*child));
    std::thread killer([&] {
        std::this_thread::sleep_for(30ms);
        child->kill();
    });
    const auto before = Clock::now();
    child->wait(60'000);
    EXPECT_LT(Clock::now() - before, 30s);
    killer.join();
    EXPECT_EQ(child->poll(), ProcessEnd::Killed);
}

TEST(ChildProcess, DestructionKillsAndLeavesNoZombie) {
    auto child = startTestHelper({"hang"});
    const pid_t pid = pidIn(waitForLine(*child));
    ASSERT_GT(pid, 0);
    ASSERT_FALSE(processGone(pid));
    child.reset();
    EXPECT_TRUE(processGone(pid));
}

TEST(ChildProcess, WhatTheHelperStartedItselfEndsWithIt) {
    for (const char* const way : {"hang", "exit"}) {
        auto child = startTestHelper({"grandchild", way});
        const pid_t grandchild = pidIn(waitForLine(*child));
        ASSERT_GT(grandchild, 0);
        if (std::string(way) == "hang") child->kill();
        waitForEnd(*child);
        // Its collection is the business of the system's first process.
        EXPECT_TRUE(comesTrue([&] {
            const std::string stat =
                posix_test::readFile("/proc/" + std::to_string(grandchild) + "/stat");
            return stat.empty() || stat.find(") Z ") != std::string::npos;
        })) << way;
    }
}

TEST(ChildProcess, WaitReturnsAtOnceWhenALineIsThere) {
    const auto child = startTestHelper({"hang"});
    const auto before = Clock::now();
    child->wait(60'000);
    EXPECT_LT(Clock::now() - before, 30s);
    EXPECT_TRUE(child->nextLine());
}

TEST(ChildProcess, WaitReturnsAfterItsTime) {
    const auto child = startTestHelper({"hang"});
    ASSERT_TRUE(waitForLine(*child));
    const auto before = Clock::now();
    child->wait(50);
    EXPECT_GE(Clock::now() - before, 50ms);
    EXPECT_LT(Clock::now() - before, 30s);
    child->wait(0);
    EXPECT_EQ(child->poll(), ProcessEnd::Running);
}

TEST(ChildProcess, WaitReturnsAtOnceAfterTheEnd) {
    const auto child = startTestHelper({"exit", "0"});
    const auto before = Clock::now();
    child->wait(60'000);
    child->wait(60'000);
    EXPECT_LT(Clock::now() - before, 30s);
    EXPECT_EQ(child->poll(), ProcessEnd::Exited);
}

TEST(ChildProcess, WaitDoesNotSpinWhenTheChannelIsClosed) {
    const auto child = startTestHelper({"close-channel"});
    child->wait(500);
    const std::clock_t before = std::clock();
    child->wait(500);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 20);
    EXPECT_EQ(child->poll(), ProcessEnd::Running);
}

TEST(ChildProcess, PollDoesNotBlock) {
    const auto child = startTestHelper({"hang"});
    for (int i = 0; i < 1000; ++i) {
        const auto before = Clock::now();
        ASSERT_EQ(child->poll(), ProcessEnd::Running);
        ASSERT_LT(Clock::now() - before, 5s);
    }
}

TEST(ChildProcess, HelperLivesOnWhenTheThreadThatStartedItEnds) {
    std::unique_ptr<os::ChildProcess> child;
    posix::PosixChildProcesses processes(posix_test::testHelperPath(), {}, false);
    std::thread([&] { child = processes.startHelper({"hang"}, {}); }).join();
    ASSERT_TRUE(waitForLine(*child));
    child->wait(100);
    EXPECT_EQ(child->poll(), ProcessEnd::Running);
}

TEST(ChildProcess, HelperLivesOnWhenItsStarterIsDestroyed) {
    const auto child = startTestHelper({"hang"});  // the starter was local there
    ASSERT_TRUE(waitForLine(*child));
    child->wait(100);
    EXPECT_EQ(child->poll(), ProcessEnd::Running);
}

TEST(ChildProcess, HelpersRunAtTheSameTime) {
    std::vector<std::unique_ptr<os::ChildProcess>> children;
    for (int i = 0; i < 8; ++i) children.push_back(startTestHelper({"hang"}));
    for (const auto& child : children) EXPECT_TRUE(waitForLine(*child));
    for (const auto& child : children) EXPECT_EQ(child->poll(), ProcessEnd::Running);
}

TEST(ChildProcess, EndIsSeenEvenIfSomebodyElseCollectsIt) {
    const auto child = startTestHelper({"hang"});
    const pid_t pid = pidIn(waitForLine(*child));
    ::kill(pid, SIGKILL);
    ASSERT_EQ(::waitpid(pid, nullptr, 0), pid);
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::Crashed);
}

class HelperSurroundings : public testing::Test {
protected:
    static std::map<std::string, std::string> describe(bool showOutput = false) {
        posix::PosixChildProcesses processes(posix_test::testHelperPath(), {}, showOutput);
        const auto child = processes.startHelper({"describe"}, {std::uint64_t{3} << 30, 0});
        std::map<std::string, std::string> facts;
        for (const std::string& line : allLines(*child)) {
            const std::size_t equals = line.find('=');
            facts[line.substr(0, equals)] = line.substr(equals + 1);
        }
        return facts;
    }
};

TEST_F(HelperSurroundings, AreItsOwn) {
    // Things that must not be inherited: descriptors, an ignored signal, leave for core files.
    const posix::UniqueFd open(::open("/dev/null", O_RDONLY));
    const posix::UniqueFd high(::fcntl(open.get(), F_DUPFD, 50));
    rlimit core{};
    ::getrlimit(RLIMIT_CORE, &core);
    const rlimit allowed{core.rlim_max, core.rlim_max};
    ::setrlimit(RLIMIT_CORE, &allowed);
    const auto oldHandler = ::signal(SIGUSR1, SIG_IGN);
    auto facts = describe();
    ::signal(SIGUSR1, oldHandler);
    ::setrlimit(RLIMIT_CORE, &core);
    EXPECT_EQ(facts["descriptors"], "0,1,2,3");
    EXPECT_EQ(facts["stdin"], "/dev/null");
    EXPECT_EQ(facts["stdout"], "/dev/null");
    EXPECT_EQ(facts["stderr"], "/dev/null");
    EXPECT_EQ(facts["group"], "own");
    EXPECT_EQ(facts["core"], "0");
    EXPECT_EQ(facts["death"], std::to_string(SIGKILL));
    EXPECT_EQ(facts["usr1"], "default");
    EXPECT_EQ(facts["term"], "free");
    if (posix::memoryLimitWorks()) {
        EXPECT_EQ(facts["memory"], std::to_string(std::uint64_t{3} << 30));
    }
}

TEST_F(HelperSurroundings, ChannelIsNotPassedOnByTheHelper) {
    auto facts = describe();
    EXPECT_EQ(facts["variable"], "gone");
    EXPECT_EQ(facts["inherited"], "no");
    EXPECT_EQ(facts["pipe"], "ignored");
}

TEST_F(HelperSurroundings, OutputGoesToStandardErrorForDevelopersOnly) {
    for (const bool wanted : {false, true}) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        posix::PosixChildProcesses processes(posix_test::testHelperPath(), {}, wanted);
        const auto child = processes.startHelper({"print"}, {});
        EXPECT_EQ(allLines(*child), std::vector<std::string>{"printed"});
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), wanted ? "to output\nto error\n" : "");
    }
}

TEST_F(HelperSurroundings, HostMayRunWithoutStandardStreams) {
    // In a process of its own: closes its streams, then starts a helper and tells by its exit code
    // whether the helper's line arrived.
    const pid_t host = ::fork();
    if (host == 0) {
        for (const int fd : {0, 1, 2, 3}) ::close(fd);
        posix::StartRequest request;
        request.program = posix_test::testHelperPath();
        request.arguments = {"describe"};
        posix::StartedChild started = posix::startChild(request);
        std::string text;
        char chunk[4096];
        ::fcntl(started.channel.get(), F_SETFL, 0);
        for (ssize_t got = 0; (got = ::read(started.channel.get(), chunk, sizeof chunk)) > 0;) {
            text.append(chunk, static_cast<std::size_t>(got));
        }
        ::_exit(text.starts_with("descriptors=0,1,2,3\nstdin=/dev/null\n") ? 0 : 1);
    }
    int status = -1;
    ::waitpid(host, &status, 0);
    EXPECT_EQ(status, 0);
}

}  // namespace
