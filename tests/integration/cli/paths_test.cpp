#include <gtest/gtest.h>

#include <filesystem>

#include "tests/integration/cli/cli_files.h"
#include "tests/support/cli_runner.h"
#include "tests/support/compare_report.h"

namespace {

using support::CliResult;
using support::ScratchFolder;

struct OddName {
    const char* label;
    std::string name;   ///< of the reference file
    std::string shown;  ///< how a report prints it
};

void PrintTo(const OddName& odd, std::ostream* stream) {
    *stream << odd.label;
}

class CliPaths : public testing::TestWithParam<OddName> {};

TEST_P(CliPaths, FileOfThatNameComparesAndIsNamedAsGiven) {
    const ScratchFolder scratch;
    const std::string reference = scratch.write(GetParam().name, cli_files::box(10));
    const std::string compare = scratch.write("plain.step", cli_files::box(12));
    const CliResult result = support::runProgram({.arguments = {reference, compare}});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_NE(result.standardOutput.find("/" + GetParam().shown + "\n"), std::string::npos)
        << result.description();
    EXPECT_NE(result.standardOutput.find("  File Name   " + GetParam().shown + "  "),
              std::string::npos)
        << result.description();
    EXPECT_TRUE(result.leftFiles.empty()) << result.description();
    const CliResult swapped = support::runProgram({.arguments = {compare, reference}});
    EXPECT_EQ(swapped.exitCode, 1) << swapped.description();
}

TEST_P(CliPaths, DamagedFileOfThatNameIsNamedAsGiven) {
    const ScratchFolder scratch;
    const std::string reference = scratch.write(GetParam().name, "no STEP at all");
    const std::string compare = scratch.write("plain.step", cli_files::box(12));
    const CliResult result = support::runProgram({.arguments = {reference, compare}});
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_NE(result.standardError.find(GetParam().shown), std::string::npos)
        << result.description();
}

const OddName kOddNames[] = {
    {"Spaces", "two  words .step", "two  words .step"},
    {"DoubleQuotes", "12\" pipe \"new\".step", "12\" pipe \"new\".step"},
    {"SingleQuotes", "it's.step", "it's.step"},
    {"NonAscii", "Getriebegeh\xc3\xa4use \xe9\xbd\xbf\xe8\xbd\xae \xd1\x88.step",
     "Getriebegeh\xc3\xa4use \xe9\xbd\xbf\xe8\xbd\xae \xd1\x88.step"},
    {"RawBytes", "latin\xe4\xff.step", "latin\\xe4\\xff.step"},
    {"LineFeedAndEscape", "two\nlines\x1b[31m.step", "two\\nlines\\x1b[31m.step"},
    {"PercentAndBraces", "100%s {0} [a,b].step", "100%s {0} [a,b].step"},
    {"Backslash", "folder\\file.step", "folder\\file.step"},
    {"NoExtension", "model", "model"},
    {"OnlyDot", ".step", ".step"},
    {"UpperCase", "MODEL.STEP", "MODEL.STEP"},
};

INSTANTIATE_TEST_SUITE_P(OddNames, CliPaths, testing::ValuesIn(kOddNames),
                         [](const auto& each) { return std::string(each.param.label); });

TEST(CliLongPaths, ThousandCharactersWork) {
    const ScratchFolder scratch;
    std::string folder;
    while (folder.size() < 1000) folder += std::string(99, 'd') + "/";
    const std::string reference = scratch.write(folder + "reference.step", cli_files::box(10));
    const std::string compare = scratch.write(folder + "compare.step", cli_files::box(12));
    ASSERT_GT(reference.size(), 1000U);
    const CliResult result = support::runProgram({.arguments = {reference, compare}});
    EXPECT_EQ(result.exitCode, 1) << result.description();
}

TEST(CliRelativePaths, NamesAreReadFromTheWorkingFolder) {
    const ScratchFolder scratch;
    scratch.write("a.step", cli_files::box(10));
    scratch.write("b.step", cli_files::box(10));
    const CliResult result = support::runProgram(
        {.arguments = {"a.step", "./b.step"}, .workingFolder = scratch.path().string()});
    EXPECT_EQ(result.exitCode, 0) << result.description();
    EXPECT_EQ(result.standardOutput.rfind("Reference: a.step\nCompare:   ./b.step\n", 0), 0U);
}

TEST(CliRelativePaths, NamesThatBeginWithADashFollowTwoDashes) {
    const ScratchFolder scratch;
    scratch.write("-a.step", cli_files::box(10));
    scratch.write("--json", cli_files::box(10));
    const CliResult result = support::runProgram(
        {.arguments = {"--", "-a.step", "--json"}, .workingFolder = scratch.path().string()});
    EXPECT_EQ(result.exitCode, 0) << result.description();
}

TEST(CliRelativePaths, LinksAreFollowed) {
    const ScratchFolder scratch;
    const std::string file = scratch.write("file.step", cli_files::box(10));
    const auto link = scratch.path() / "link.step";
    std::filesystem::create_symlink(file, link);
    const CliResult result = support::runProgram({.arguments = {file, link.string()}});
    EXPECT_EQ(result.exitCode, 0) << result.description();
}

TEST(CliQuotedPaths, NamesThatDifferByAQuoteOnlyAreTwoFiles) {
    const ScratchFolder scratch;
    const std::string plain = scratch.write("a.step", cli_files::box(10));
    const std::string quoted = scratch.write("a\".step", cli_files::box(12));
    const CliResult result = support::runProgram({.arguments = {plain, quoted}});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    const CliResult same = support::runProgram({.arguments = {quoted, quoted}});
    EXPECT_EQ(same.exitCode, 2) << same.description();
    EXPECT_NE(same.standardError.find("different reference and compare"), std::string::npos);
}

}  // namespace
