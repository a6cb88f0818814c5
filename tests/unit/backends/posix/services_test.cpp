#include <gtest/gtest.h>

#include "backends/posix/posix.h"
#include "tests/unit/backends/posix/support.h"

namespace {

using posix_test::ScopedVariable;
using posix_test::ScratchFolder;

TEST(PosixServices, AreAllThere) {
    ScratchFolder scratch;
    const ScopedVariable temporary("TMPDIR", scratch.path());
    posix::Options options;
    options.keyStoreFile = scratch.file("keystore.ini");
    const os::Services services = posix::makeServices(options);
    EXPECT_NE(services.clock, nullptr);
    EXPECT_NE(services.keyStore, nullptr);
    EXPECT_NE(services.workers, nullptr);
    EXPECT_NE(services.processes, nullptr);
    EXPECT_NE(services.debug, nullptr);
    EXPECT_NE(services.files, nullptr);
    EXPECT_NE(services.modules, nullptr);
}

TEST(PosixServices, UseTheOptions) {
    ScratchFolder scratch;
    posix::Options options;
    options.keyStoreFile = scratch.file("own.ini");
    options.helperPath = posix_test::testHelperPath();
    options.helperWallTimeMs = 100;
    const os::Services services = posix::makeServices(options);
    EXPECT_NE(services.keyStore->create(L"Software", os::KeyAccess::Full), nullptr);
    EXPECT_TRUE(posix_test::pathExists(scratch.file("own.ini")));
    const auto child = services.processes->startHelper({"hang"}, {});
    EXPECT_EQ(posix_test::waitForEnd(*child), os::ProcessEnd::TimeLimit);
    const auto patient = services.processes->startHelper({"hang"}, {0, 600'000});
    ASSERT_TRUE(posix_test::waitForLine(*patient));
    patient->wait(200);
    EXPECT_EQ(patient->poll(), os::ProcessEnd::Running) << "a caller's own limit comes first";
}

TEST(PosixServices, DefaultHelperStandsBesideTheProgram) {
    ScratchFolder scratch;
    posix::Options options;
    options.keyStoreFile = scratch.file("own.ini");
    const os::Services services = posix::makeServices(options);
    // No helper of that name stands beside this test, or it knows no such command.
    const auto child = services.processes->startHelper({"no-such-command"}, {});
    const os::ProcessEnd end = posix_test::waitForEnd(*child);
    EXPECT_TRUE(end == os::ProcessEnd::NotStarted || child->exitCode() != 0);
}

TEST(PosixServices, DefaultMemoryLimitIsAShareOfTheMachine) {
    ScratchFolder scratch;
    posix::Options options;
    options.keyStoreFile = scratch.file("own.ini");
    options.helperPath = posix_test::testHelperPath();
    const os::Services services = posix::makeServices(options);
    const auto child = services.processes->startHelper({"describe"}, {});
    std::string memory;
    while (const auto line = posix_test::waitForLine(*child)) {
        if (line->starts_with("memory=")) memory = line->substr(7);
    }
    if (memory == std::to_string(~std::uint64_t{0})) {
        GTEST_SKIP() << "this build's instrumentation allows no limit of address space";
    }
    const double all = static_cast<double>(::sysconf(_SC_PHYS_PAGES)) *
                       static_cast<double>(::sysconf(_SC_PAGESIZE));
    EXPECT_NEAR(std::stod(memory) / all, 0.45, 0.001);
}

}  // namespace
