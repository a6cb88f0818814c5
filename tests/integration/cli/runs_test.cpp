#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "tests/integration/cli/cli_files.h"
#include "tests/support/cli_runner.h"
#include "tests/support/real_data.h"

namespace {

namespace fs = std::filesystem;
using cli_files::kCompare;
using cli_files::kReference;
using support::CliRequest;
using support::CliResult;
using support::ScratchFolder;

void expectNothingLeft(const CliResult& result) {
    EXPECT_TRUE(result.leftFiles.empty()) << result.description();
    EXPECT_TRUE(result.leftProcesses.empty()) << result.description();
}

bool isHelper(pid_t process) {
    return support::programOf(process) == "bextora-helper";
}

TEST(CliRuns, TwoAtOnceGiveTheSameAnswer) {
    const ScratchFolder temporary;
    const CliRequest request{.arguments = {kReference, kCompare},
                             .temporaryFolder = temporary.path().string()};
    CliResult first;
    CliResult second;
    std::thread other([&] { first = support::runProgram(request); });
    second = support::runProgram(request);
    other.join();
    EXPECT_EQ(first.exitCode, 1) << first.description();
    EXPECT_EQ(second.exitCode, 1) << second.description();
    EXPECT_EQ(first.standardOutput, second.standardOutput);
    EXPECT_TRUE(fs::is_empty(temporary.path()));
}

TEST(CliRuns, UnwritableTemporaryFolderIsTroubleWithACause) {
    // Not even root can make a folder there.
    const CliResult result =
        support::runProgram({.arguments = {kReference, kCompare}, .temporaryFolder = "/proc/tty"});
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_TRUE(result.standardOutput.empty());
    EXPECT_FALSE(result.standardError.empty());
}

TEST(CliRuns, HelperKilledFromOutsideIsAFailureThatNamesTheFile) {
    bool killed = false;
    const CliResult result =
        support::runProgram({.arguments = {kReference, kCompare}, .meanwhile = [&](pid_t program) {
                                 for (const pid_t process : support::descendantsOf(program)) {
                                     if (!killed && isHelper(process))
                                         killed = ::kill(process, SIGKILL) == 0;
                                 }
                             }});
    ASSERT_TRUE(killed);
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_NE(result.standardError.find("gearbox_"), std::string::npos) << result.description();
    expectNothingLeft(result);
}

class CliSignals : public testing::TestWithParam<int> {};

TEST_P(CliSignals, EndsARunInOrderAndLeavesNothing) {
    bool sent = false;
    const CliResult result =
        support::runProgram({.arguments = {kReference, kCompare}, .meanwhile = [&](pid_t program) {
                                 for (const pid_t process : support::descendantsOf(program)) {
                                     if (!sent && isHelper(process))
                                         sent = ::kill(program, GetParam()) == 0;
                                 }
                             }});
    ASSERT_TRUE(sent);
    EXPECT_EQ(result.exitCode, 128 + GetParam()) << result.description();
    EXPECT_TRUE(result.standardOutput.empty()) << result.description();
    EXPECT_NE(result.standardError.find("interrupted"), std::string::npos) << result.description();
    expectNothingLeft(result);
}

INSTANTIATE_TEST_SUITE_P(Signals, CliSignals, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(CliRuns, OutputThatCannotBeWrittenIsTrouble) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "SKIPPED: this machine has no /dev/full";
    const CliResult result = support::runProgram(
        "/bin/sh", {.arguments = {"-c", "exec \"$0\" \"$@\" >/dev/full", support::programPath(),
                                  kReference, kCompare}});
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_NE(result.standardError.find("standard output can't be written"), std::string::npos)
        << result.description();
    expectNothingLeft(result);
}

TEST(CliRuns, NeedsNoHome) {
    const CliResult result = support::runProgram(
        "/bin/sh", {.arguments = {"-c", "unset HOME XDG_CONFIG_HOME; exec \"$0\" \"$@\"",
                                  support::programPath(), kReference, kCompare}});
    EXPECT_EQ(result.exitCode, 1) << result.description();
}

/// The program and its platform library in a folder of their own, for a test to add to.
class CliPlugin : public testing::Test {
protected:
    void SetUp() override {
        const fs::path built = fs::path(support::programPath()).parent_path();
        for (const char* name : {"bextora", "bextora-helper", "libbextora_platform.so"}) {
            fs::copy_file(built / name, scratch_.path() / name);
        }
    }
    CliResult run() const {
        return support::runProgram((scratch_.path() / "bextora").string(),
                                   {.arguments = {kReference, kCompare}});
    }
    void expectRefused(const std::string& reason) const {
        const CliResult result = run();
        EXPECT_EQ(result.exitCode, 2) << result.description();
        EXPECT_NE(result.standardError.find(reason), std::string::npos) << result.description();
        EXPECT_NE(result.standardError.find("libcompareplugin.so"), std::string::npos)
            << result.description();
    }
    fs::path plugin() const { return scratch_.path() / "libcompareplugin.so"; }

    ScratchFolder scratch_;
};

TEST_F(CliPlugin, MissingOneIsNamed) {
    expectRefused("the compare plug-in is missing");
}

TEST_F(CliPlugin, ComparesWithoutTheExchangeLibraryAndSaysSo) {
    const fs::path built = fs::path(support::programPath()).parent_path();
    fs::copy_file(built / "libcompareplugin.so", plugin());
    const CliResult without = run();
    EXPECT_EQ(without.exitCode, 1) << without.description();
    EXPECT_NE(without.standardError.find("ERROR: function A3DComputePhysicalProperties is null\n"),
              std::string::npos)
        << without.description();
    EXPECT_NE(without.standardError.find("ERROR: 6 null functions\n"), std::string::npos)
        << without.description();

    fs::copy_file(built / "A3DLIBS.dll", scratch_.path() / "A3DLIBS.dll");
    const CliResult with = run();
    EXPECT_EQ(with.exitCode, 1) << with.description();
    EXPECT_EQ(with.standardError.find("ERROR"), std::string::npos) << with.description();
    // Nothing but the volumes comes from there.
    EXPECT_NE(with.standardOutput.find("575813.61 mm\xc2\xb3"), std::string::npos);
    EXPECT_EQ(without.standardOutput.find("mm\xc2\xb3"), std::string::npos);
    const auto bills = [](const CliResult& result) {
        return result.standardOutput.substr(result.standardOutput.find("Bill of materials"));
    };
    EXPECT_EQ(bills(with), bills(without));
}

TEST_F(CliPlugin, WhatIsNoLibraryIsRefused) {
    scratch_.write("libcompareplugin.so", "no library");
    expectRefused("can't be loaded");
}

TEST_F(CliPlugin, LibraryWithoutTheEntryPointsIsRefused) {
    fs::copy_file(BEXTORA_OTHER_LIBRARY, plugin());
    expectRefused("is no plug-in of interface version BXT_1");
}

TEST_F(CliPlugin, LibraryOfAnotherInterfaceVersionIsRefusedBeforeItIsCalled) {
    fs::copy_file(BEXTORA_NEWER_PLUGIN, plugin());
    expectRefused("is no plug-in of interface version BXT_1");
}

TEST_F(CliPlugin, LibraryThatMakesNoPluginIsRefused) {
    fs::copy_file(BEXTORA_BARREN_PLUGIN, plugin());
    expectRefused("could not be created");
}

}  // namespace
