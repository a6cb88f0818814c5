#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/integration/cli/cli_files.h"
#include "tests/integration/cli/golden.h"
#include "tests/integration/cli/schema_check.h"
#include "tests/support/cli_runner.h"
#include "tests/support/compare_report.h"
#include "tests/support/real_data.h"

namespace {

using cli_files::kCompare;
using cli_files::kReference;
using support::CliResult;
using support::ScratchFolder;

/// Runs inside the samples' folder, so that the paths in the output are the same everywhere.
CliResult runSamples(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"gearbox_reference.step", "gearbox_compare.step"});
    return support::runProgram({.arguments = arguments, .workingFolder = BEXTORA_SAMPLES});
}

TEST(CliSamplePair, PrintsTheExpectedResultAndExitsWithOne) {
    const CliResult result = runSamples({});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_TRUE(result.standardError.empty()) << result.description();
    EXPECT_TRUE(result.leftFiles.empty()) << result.description();
    EXPECT_TRUE(result.leftProcesses.empty()) << result.description();
    golden::expectEqual("gearbox/report.txt", result.standardOutput);
}

TEST(CliSamplePair, ChangesOnlyPrintsTheExpectedRows) {
    const CliResult result = runSamples({"--changes-only"});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    golden::expectEqual("gearbox/changes.txt", result.standardOutput);
}

TEST(CliSamplePair, TranscriptInTheReadmeIsWhatTheProgramPrints) {
    const CliResult result =
        support::runProgram({.arguments = {"--changes-only", "samples/gearbox_reference.step",
                                           "samples/gearbox_compare.step"},
                             .workingFolder = BEXTORA_ROOT});
    const std::string readme = support::readFile(BEXTORA_ROOT "/README.md");
    EXPECT_NE(readme.find("$ ./run --changes-only\n" + result.standardOutput + "```\n"),
              std::string::npos)
        << result.description();
}

TEST(CliSamplePair, ColoursAreThereOnDemandOnly) {
    EXPECT_EQ(runSamples({"--color", "auto"}).standardOutput.find('\x1b'), std::string::npos);
    EXPECT_EQ(runSamples({"--color", "never"}).standardOutput.find('\x1b'), std::string::npos);
    const std::string coloured = runSamples({"--color", "always"}).standardOutput;
    for (const char* colour : {"\x1b[31m", "\x1b[32m", "\x1b[33m"}) {
        EXPECT_NE(coloured.find(colour), std::string::npos);
    }
}

TEST(CliSamplePair, JsonAgreesWithItsSchema) {
    const auto schema = nlohmann::json::parse(support::readFile(BEXTORA_JSON_SCHEMA));
    for (const std::vector<std::string>& options : {std::vector<std::string>{"--json"},
                                                    {"--json", "--changes-only"},
                                                    {"--json", "--parts"},
                                                    {"--json", "--parts", "--changes-only"}}) {
        const CliResult result = runSamples(options);
        EXPECT_EQ(result.exitCode, 1) << result.description();
        const auto report = nlohmann::json::parse(result.standardOutput, nullptr, false);
        ASSERT_FALSE(report.is_discarded()) << result.description();
        for (const std::string& error : support::schemaErrors(schema, report))
            ADD_FAILURE() << error;
        EXPECT_FALSE(report["productStructure"]["rows"].empty());
        EXPECT_FALSE(report["geometry"]["instances"].empty());
        for (const char* list : {"fileInformation", "billOfMaterials", "attributes", "pmi"}) {
            EXPECT_FALSE(report[list]["compare"].empty()) << list;
        }
        const bool withParts = options.size() > 1 && options[1] == "--parts";
        EXPECT_EQ(report.contains("parts") && !report["parts"]["rows"].empty(), withParts);
        EXPECT_GT(report["fileInformation"]["volumes"]["reference"]["value"], 500000.0);
    }
}

TEST(CliSamplePair, JsonHoldsTheSectionsThatAreAskedFor) {
    const auto schema = nlohmann::json::parse(support::readFile(BEXTORA_JSON_SCHEMA));
    const CliResult result = runSamples({"--json", "--sections", "bom,pmi"});
    const auto report = nlohmann::json::parse(result.standardOutput, nullptr, false);
    ASSERT_FALSE(report.is_discarded()) << result.description();
    for (const std::string& error : support::schemaErrors(schema, report)) ADD_FAILURE() << error;
    EXPECT_TRUE(report.contains("billOfMaterials") && report.contains("pmi"));
    EXPECT_FALSE(report.contains("productStructure") || report.contains("geometry"));
    EXPECT_EQ(report["summary"]["billOfMaterials"]["different"], 1);
    EXPECT_EQ(report["summary"]["exitCode"], 1);
}

TEST(CliSamplePair, SectionsAreWhatIsPrinted) {
    const CliResult result = runSamples({"--sections", "bom,parts"});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    const std::string& text = result.standardOutput;
    EXPECT_NE(text.find("\nBill of materials\n"), std::string::npos);
    EXPECT_NE(text.find("  Bolt M8x25        8          10       other quantity\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\nAttributes of parts\n"), std::string::npos);
    for (const char* absent : {"\nProduct structure\n", "\nFile information\n", "\nPMI\n",
                               "\nAttributes\n", "\n3D comparison\n"}) {
        EXPECT_EQ(text.find(absent), std::string::npos) << absent;
    }
}

TEST(CliSamplePair, HelpStandsInTheDocumentsAsItIsPrinted) {
    const std::string help = support::runProgram({.arguments = {"--help"}}).standardOutput;
    const std::string page = support::readFile(BEXTORA_ROOT "/docs/08-command-line.md");
    EXPECT_NE(page.find("```\n$ bextora --help\n" + help + "```\n"), std::string::npos) << help;
}

TEST(CliSamplePair, JsonAndTextTellTheSameStory) {
    const auto report = support::CompareReport::parse(runSamples({"--json"}).standardOutput);
    ASSERT_TRUE(report);
    const std::string text = runSamples({}).standardOutput;
    for (const auto& node : report->reference) {
        EXPECT_NE(text.find(node.displayName), std::string::npos) << node.displayName;
    }
    EXPECT_EQ(report->exitCode, 1);
    EXPECT_TRUE(report->different);
    EXPECT_NE(text.find(std::to_string(report->instancesThatAre("unchanged")) + " unchanged"),
              std::string::npos);
}

TEST(CliSamplePair, ExitOnNarrowsTheExitCode) {
    const ScratchFolder scratch;
    const std::string low = scratch.write("low.step", cli_files::box(10));
    const std::string high = scratch.write("high.step", cli_files::box(11));
    const auto code = [&](const std::string& list) {
        return support::runProgram({.arguments = {"--exit-on", list, low, high}}).exitCode;
    };
    EXPECT_EQ(code("geometry"), 1);
    EXPECT_EQ(code("structure"), 0);
    EXPECT_EQ(code("placement"), 0);
    EXPECT_EQ(code("placement,geometry"), 1);
}

TEST(CliSamplePair, CopyUnderAnotherNameIsTheSame) {
    const ScratchFolder scratch;
    const std::string copy = scratch.write("copy.step", support::readFile(kReference));
    const CliResult result = support::runProgram({.arguments = {kReference, copy}});
    EXPECT_EQ(result.exitCode, 0) << result.description();
    EXPECT_NE(result.standardOutput.find("Summary: no differences"), std::string::npos)
        << result.standardOutput;
}

TEST(CliSamplePair, StatusShowsTheHostsTextsOnStandardError) {
    const CliResult result = runSamples({"--status"});
    EXPECT_EQ(result.exitCode, 1);
    const std::size_t comparing = result.standardError.find("status: Comparing...\n");
    const std::size_t completed = result.standardError.find("status: Comparison completed in ");
    ASSERT_NE(comparing, std::string::npos) << result.description();
    ASSERT_NE(completed, std::string::npos) << result.description();
    EXPECT_LT(comparing, completed);
}

TEST(CliSamplePair, KeepsTheResultAsDocumentOrScene) {
    const ScratchFolder scratch;
    const std::string document = (scratch.path() / "kept result.xbf").string();
    const std::string scene = (scratch.path() / "kept.glb").string();
    EXPECT_EQ(runSamples({"--keep-result", document}).exitCode, 1);
    EXPECT_EQ(support::readFile(document).substr(0, 7), "BINFILE");
    EXPECT_EQ(runSamples({"--keep-result", scene}).exitCode, 1);
    EXPECT_EQ(support::readFile(scene).substr(0, 4), "glTF");
}

TEST(CliSamplePair, ResultThatCannotBeKeptIsTroubleButTheReportIsPrinted) {
    const CliResult result = runSamples({"--keep-result", "/nonexistent/folder/kept.glb"});
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_NE(result.standardOutput.find("Summary:"), std::string::npos);
    EXPECT_NE(result.standardError.find("/nonexistent/folder/kept.glb"), std::string::npos)
        << result.description();
}

TEST(CliSamplePair, ProgressLineOfATerminalIsTakenAwayAgain) {
    const std::string program = "/usr/bin/script";
    if (!std::filesystem::exists(program)) GTEST_SKIP() << "SKIPPED: needs " << program;
    const CliResult result = support::runProgram(
        program,
        {.arguments = {"-qec", "\"$PROGRAM\" \"$REFERENCE\" \"$COMPARE\" >/dev/null", "/dev/null"},
         .environment = {{"TERM", "xterm"},
                         {"PROGRAM", support::programPath()},
                         {"REFERENCE", kReference},
                         {"COMPARE", kCompare}}});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_NE(result.standardOutput.find("comparing: "), std::string::npos) << result.description();
    const std::string erase = "\r\x1b[K";
    ASSERT_GE(result.standardOutput.size(), erase.size());
    EXPECT_EQ(result.standardOutput.substr(result.standardOutput.size() - erase.size()), erase)
        << result.description();
}

TEST(CliSamplePair, NoProgressIsWrittenIntoAPipe) {
    EXPECT_TRUE(runSamples({}).standardError.empty());
}

}  // namespace
