#include <gtest/gtest.h>

#include <filesystem>

#include "tests/integration/cli/cli_files.h"
#include "tests/support/cli_runner.h"

namespace {

using support::CliResult;
using support::ScratchFolder;

CliResult run(const std::vector<std::string>& arguments) {
    return support::runProgram({.arguments = arguments});
}

void expectTrouble(const CliResult& result, const std::string& named) {
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_TRUE(result.standardOutput.empty()) << result.description();
    EXPECT_NE(result.standardError.find(named), std::string::npos) << result.description();
    EXPECT_TRUE(result.leftFiles.empty()) << result.description();
    EXPECT_TRUE(result.leftProcesses.empty()) << result.description();
}

TEST(CliArguments, HelpShowsExamplesAndExitsWithZero) {
    const CliResult result = run({"--help"});
    EXPECT_EQ(result.exitCode, 0) << result.description();
    EXPECT_NE(result.standardOutput.find("Examples:"), std::string::npos);
    EXPECT_TRUE(result.standardError.empty());
}

TEST(CliArguments, VersionIsOneLine) {
    const CliResult result = run({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.standardOutput.rfind("bextora ", 0), 0U) << result.standardOutput;
}

TEST(CliArguments, BadArgumentsAreTrouble) {
    expectTrouble(run({}), "REFERENCE");
    expectTrouble(run({"one.step"}), "COMPARE");
    expectTrouble(run({"--frobnicate", "a", "b"}), "--frobnicate");
    expectTrouble(run({"--keep-result", "x.step", "a", "b"}), "x.step");
}

TEST(CliArguments, MissingFileIsNamedWithTheCause) {
    const ScratchFolder scratch;
    const std::string there = scratch.write("there.step", cli_files::box(10));
    const std::string missing = (scratch.path() / "missing.step").string();
    expectTrouble(run({there, missing}), missing + ": No such file or directory");
    expectTrouble(run({missing, there}), missing + ": No such file or directory");
    expectTrouble(run({"--json", missing, missing + "2"}), missing + "2: No such file");
}

TEST(CliArguments, EmptyNameIsRefused) {
    const ScratchFolder scratch;
    const std::string there = scratch.write("there.step", cli_files::box(10));
    expectTrouble(run({"", there}), "both files must be named");
    expectTrouble(run({there, ""}), "both files must be named");
}

TEST(CliArguments, SamePathTwiceGivesThePromptsOwnMessage) {
    const ScratchFolder scratch;
    const std::string there = scratch.write("there.step", cli_files::box(10));
    expectTrouble(run({there, there}), "Please provide different reference and compare file name");
}

TEST(CliArguments, DirectoryIsNamedWithTheCause) {
    const ScratchFolder scratch;
    const std::string there = scratch.write("there.step", cli_files::box(10));
    const std::string folder = (scratch.path() / "folder.step").string();
    std::filesystem::create_directory(folder);
    expectTrouble(run({folder, there}), folder);
    expectTrouble(run({there, folder}), folder);
}

TEST(CliArguments, WhatIsNoStepFileIsNamed) {
    const ScratchFolder scratch;
    const std::string there = scratch.write("there.step", cli_files::box(10));
    const std::string text = scratch.write("text.step", "Dear reader,\nthis is a letter.\n");
    const std::string empty = scratch.write("empty.step", "");
    expectTrouble(run({there, text}), text);
    expectTrouble(run({there, empty}), empty);
}

TEST(CliArguments, PartAgainstAssemblyShowsTheBoxAndAsksNoThirdTime) {
    const ScratchFolder scratch;
    const std::string assembly = scratch.write("assembly.step", cli_files::box(30));
    const std::string part = scratch.write("part.step", cli_files::part());
    const CliResult result = run({assembly, part});
    expectTrouble(result, "Comparing a part with an assembly is not supported.");
    EXPECT_NE(result.standardError.find("\"" + assembly + "\" is an assembly file."),
              std::string::npos)
        << result.description();
    EXPECT_NE(result.standardError.find("\"" + part + "\" is a part file."), std::string::npos);
    const CliResult swapped = run({part, assembly});
    expectTrouble(swapped, "\"" + part + "\" is a part file.");
}

TEST(CliArguments, LimitsReachTheHelpers) {
    if (support::kSanitized) GTEST_SKIP() << "a sanitizer reserves more than any limit allows";
    expectTrouble(run({"--memory-limit", "1M", cli_files::kReference, cli_files::kCompare}),
                  "gearbox_");
}

}  // namespace
