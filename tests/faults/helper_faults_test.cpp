// Helpers that are killed, run out of limits or lose their host.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <random>
#include <thread>

#include "backends/posix/child_processes.h"
#include "backends/posix/child_start.h"
#include "backends/posix/worker_threads.h"
#include "tests/unit/backends/posix/support.h"

namespace {

using namespace std::chrono_literals;
using os::ProcessEnd;
using posix_test::comesTrue;
using posix_test::Program;
using posix_test::ScratchFolder;
using posix_test::startTestHelper;
using posix_test::waitForEnd;
using posix_test::waitForLine;

using Clock = std::chrono::steady_clock;

constexpr std::uint64_t kMiB = std::uint64_t{1} << 20;

pid_t pidIn(const std::string& line) {
    return line.starts_with("pid ") ? std::stoi(line.substr(4)) : -1;
}

bool goneOrZombie(pid_t pid) {
    const std::string stat = posix_test::readFile("/proc/" + std::to_string(pid) + "/stat");
    return stat.empty() || stat.find(") Z ") != std::string::npos;
}

TEST(HelperFaults, KillFromOutsideIsACrash) {
    const auto child = startTestHelper({"hang"});
    const pid_t pid = pidIn(waitForLine(*child).value_or(""));
    ASSERT_GT(pid, 0);
    ::kill(pid, SIGKILL);
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::Crashed);
    EXPECT_EQ(child->exitCode(), SIGKILL);
}

TEST(HelperFaults, TimeLimitEndsAHangAndASpin) {
    for (const char* const way : {"hang", "spin"}) {
        const auto before = Clock::now();
        const auto child = startTestHelper({way}, {0, 300});
        EXPECT_EQ(waitForEnd(*child), ProcessEnd::TimeLimit) << way;
        EXPECT_GE(Clock::now() - before, 300ms);
        EXPECT_LT(Clock::now() - before, 30s);
    }
}

TEST(HelperFaults, TimeLimitWorksByPollAlone) {
    const auto child = startTestHelper({"hang"}, {0, 100});
    EXPECT_TRUE(comesTrue([&] { return child->poll() == ProcessEnd::TimeLimit; }));
}

TEST(HelperFaults, TimeLimitWakesALongWait) {
    const auto child = startTestHelper({"hang"}, {0, 200});
    ASSERT_TRUE(waitForLine(*child));
    const auto before = Clock::now();
    child->wait(60'000);
    EXPECT_LT(Clock::now() - before, 30s);
    EXPECT_EQ(child->poll(), ProcessEnd::TimeLimit);
}

TEST(HelperFaults, TimeLimitHoldsAgainstAFlood) {
    const auto child = startTestHelper({"flood"}, {0, 200});
    EXPECT_EQ(waitForEnd(*child), ProcessEnd::TimeLimit);
}

TEST(HelperFaults, EndInTimeIsNoTimeLimitHoweverLateOneLooks) {
    const auto child = startTestHelper({"exit", "5"}, {0, 1500});
    std::this_thread::sleep_for(2s);
    EXPECT_EQ(child->poll(), ProcessEnd::Exited);
    EXPECT_EQ(child->exitCode(), 5);
}

TEST(HelperFaults, KillFromOutsideBeforeTheTimeLimitKeepsItsCause) {
    const auto child = startTestHelper({"hang"}, {0, 1500});
    const pid_t pid = pidIn(waitForLine(*child).value_or(""));
    ASSERT_GT(pid, 0);
    ::kill(pid, SIGKILL);
    std::this_thread::sleep_for(2s);
    EXPECT_EQ(child->poll(), ProcessEnd::Crashed);
}

TEST(HelperFaults, KillAfterTheTimeLimitKeepsTheFirstCause) {
    const auto child = startTestHelper({"hang"}, {0, 50});
    std::this_thread::sleep_for(60ms);
    child->poll();
    child->kill();
    EXPECT_EQ(child->poll(), ProcessEnd::TimeLimit);
}

TEST(HelperFaults, MemoryLimitRefusesAllocations) {
    if (!posix::memoryLimitWorks()) {
        GTEST_SKIP() << "this build's instrumentation allows no limit of address space";
    }
    for (const char* const way : {"handler", "exception"}) {
        const auto child = startTestHelper({"allocate", way}, {512 * kMiB, 0});
        std::uint64_t most = 0;
        while (const auto line = waitForLine(*child)) most = std::stoull(line->substr(4));
        EXPECT_EQ(waitForEnd(*child), ProcessEnd::MemoryLimit) << way;
        EXPECT_GT(most, 128U);
        EXPECT_LE(most, 512U);
    }
}

TEST(HelperFaults, MemoryLimitTooSmallForTheProgramIsToldToo) {
    if (!posix::memoryLimitWorks()) {
        GTEST_SKIP() << "this build's instrumentation allows no limit of address space";
    }
    for (const std::uint64_t bytes : {4096 * std::uint64_t{1}, 1 * kMiB, 4 * kMiB}) {
        const auto child = startTestHelper({"exit", "0"}, {bytes, 0});
        const ProcessEnd end = waitForEnd(*child);
        EXPECT_TRUE(end == ProcessEnd::NotStarted || end == ProcessEnd::Crashed) << bytes;
    }
}

TEST(HelperFaults, HelpersDieWithTheirHost) {
    for (const char* const way : {"hang", "spin"}) {
        Program host({"host", way});
        const pid_t helper = pidIn(host.readLine());
        ASSERT_GT(helper, 0);
        ASSERT_FALSE(goneOrZombie(helper));
        host.kill();
        host.wait();
        EXPECT_TRUE(comesTrue([&] { return goneOrZombie(helper); })) << way;
    }
}

TEST(HelperFaults, HelperEndsAtItsNextLineWhenTheHostIsGone) {
    Program host({"host", "until-gone"});
    const pid_t helper = pidIn(host.readLine());
    ASSERT_GT(helper, 0);
    host.kill();
    host.wait();
    EXPECT_TRUE(comesTrue([&] { return goneOrZombie(helper); }));
}

/// What the program shares with its worker: plain fields, so that a race would be reported by the
/// thread sanitizer.
struct Shared {
    int lines = 0;
    std::string last;
};

TEST(HelperFaults, RunsKilledAtRandomMomentsLeaveNothingRunningAndNothingChanging) {
    ScratchFolder scratch;
    posix::PosixWorkerThreads workers;
    posix::PosixChildProcesses processes(posix_test::testHelperPath(), {}, false);
    std::mt19937 random(8);
    int early = 0;
    int late = 0;
    for (int round = 0; round < 200; ++round) {
        Shared shared;
        const std::string file = scratch.file(std::to_string(round));
        const auto worker = workers.start([&] {
            os::RunToken& token = *workers.current();
            const auto child = processes.startHelper({"grow", file}, {});
            const auto registration = token.onKill([&] { child->kill(); });
            while (child->poll() == ProcessEnd::Running) {
                child->wait(1000);
                while (const auto line = child->nextLine()) {
                    token.publish([&] {
                        ++shared.lines;
                        shared.last = *line;
                    });
                }
            }
            return 0U;
        });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 40'000));
        worker->terminate(0);
        const Shared seen = shared;
        const std::string written = posix_test::readFile(file);
        std::this_thread::sleep_for(500us);
        ASSERT_EQ(shared.lines, seen.lines) << round;
        ASSERT_EQ(shared.last, seen.last) << round;
        ASSERT_EQ(posix_test::readFile(file), written) << round;
        ++(seen.lines == 0 ? early : late);
    }
    EXPECT_GT(late, 0);
    EXPECT_GT(early, 0);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a helper was left behind";
}

TEST(HelperFaults, KillsAndPollsFromManyThreadsAgree) {
    std::mt19937 random(9);
    for (int round = 0; round < 50; ++round) {
        const auto child = startTestHelper({"grow", "/dev/null"});
        const auto delay = std::chrono::microseconds(random() % 20'000);
        std::vector<std::thread> killers;
        for (int i = 0; i < 3; ++i) {
            killers.emplace_back([&child, delay] {
                std::this_thread::sleep_for(delay);
                child->kill();
            });
        }
        while (child->poll() == ProcessEnd::Running) {
            child->wait(5);
            child->nextLine();
        }
        EXPECT_EQ(child->poll(), ProcessEnd::Killed);
        for (std::thread& killer : killers) killer.join();
        EXPECT_EQ(child->poll(), ProcessEnd::Killed);
    }
}

}  // namespace
