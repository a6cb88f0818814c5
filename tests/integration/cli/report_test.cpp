#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "tests/integration/cli/cli_files.h"
#include "tests/integration/cli/golden.h"
#include "tests/support/cli_runner.h"
#include "tests/support/real_data.h"

namespace {

namespace fs = std::filesystem;
using support::CliResult;
using support::ScratchFolder;
using Strings = std::vector<std::string>;

/// Runs the program with a configuration folder of the test's own, the samples at hand.
class CliReports : public testing::Test {
protected:
    CliResult run(Strings arguments) const {
        return support::runProgram({.arguments = std::move(arguments),
                                    .environment = {{"XDG_CONFIG_HOME", config().string()}},
                                    .workingFolder = BEXTORA_SAMPLES});
    }
    CliResult compare(Strings arguments) const {
        arguments.insert(arguments.end(), {"gearbox_reference.step", "gearbox_compare.step"});
        return run(std::move(arguments));
    }
    fs::path config() const { return scratch_.path() / "config"; }
    fs::path store() const { return config() / "bextora" / "keystore.ini"; }
    std::string at(const char* name) const { return (scratch_.path() / name).string(); }

    void expectRefused(const std::string& path, const std::string& sentence) const {
        const CliResult result = compare({"--report", path});
        EXPECT_EQ(result.exitCode, 2) << result.description();
        EXPECT_NE(result.standardError.find(sentence), std::string::npos) << result.description();
        EXPECT_NE(result.standardOutput.find("Summary:"), std::string::npos);
    }

    ScratchFolder scratch_;
};

TEST_F(CliReports, CopyPrintsTheCopiedTextAndNothingElse) {
    const CliResult result = compare({"--copy"});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_TRUE(result.standardError.empty()) << result.description();
    golden::expectEqual("gearbox/copy.txt", result.standardOutput);
    EXPECT_EQ(result.standardOutput.find("Product Structure"), std::string::npos);
}

TEST_F(CliReports, CopyShowsTheTreesOnceTheirSectionWasOpened) {
    const CliResult result = compare({"--copy", "--sections", "structure"});
    const std::size_t block = result.standardOutput.find("Product Structure\r\n\r\n");
    ASSERT_NE(block, std::string::npos) << result.description();
    EXPECT_NE(result.standardOutput.find("\r\n        |- Housing\r\n", block), std::string::npos)
        << result.description();
}

TEST_F(CliReports, CopyOfPartsHasThemInPlaceOfTheFilesAttributes) {
    const CliResult result = compare({"--copy", "--parts"});
    EXPECT_NE(result.standardOutput.find("Part Level Attributes\r\n\r\n"), std::string::npos);
    EXPECT_NE(result.standardOutput.find("Housing\r\nName     Reference     Compare\r\n"),
              std::string::npos);
    EXPECT_EQ(result.standardOutput.find("Header Author"), std::string::npos);
}

TEST_F(CliReports, ReportIsSavedBesideTheUsualOutput) {
    const CliResult result = compare({"--status", "--report", at("out.csv")});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_NE(result.standardOutput.find("Summary:"), std::string::npos);
    EXPECT_NE(result.standardError.find("status: Saving...\nstatus: Compare results saved - " +
                                        at("out.csv") + "\n"),
              std::string::npos)
        << result.description();
    golden::expectEqual("gearbox/report.csv", support::readFile(at("out.csv")));
}

TEST_F(CliReports, AReportThatIsThereIsReplaced) {
    scratch_.write("out.csv", std::string(1000000, 'x'));
    EXPECT_EQ(compare({"--report", at("out.csv")}).exitCode, 1);
    EXPECT_LT(fs::file_size(at("out.csv")), 100000U);
}

TEST_F(CliReports, OtherFormsAreRefusedInTheDialogsWords) {
    for (const char* name : {"out.pdf", "out.html", "out.txt", "out.CSV"}) {
        expectRefused(at(name), "bextora: Failed to save " + at(name) + "\n");
        EXPECT_FALSE(fs::exists(at(name)));
    }
    expectRefused(at("out"), "bextora: Failed to save " + at("out.pdf") + "\n");
}

TEST_F(CliReports, AFolderThatIsNotThereIsRefusedInTheDialogsWords) {
    expectRefused(at("none/out.csv"), "bextora: Failed to save " + at("none/out.csv") + "\n");
}

TEST_F(CliReports, AFullDiskIsTroubleThoughTheDialogSaysOtherwise) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "SKIPPED: this machine has no /dev/full";
    fs::create_symlink("/dev/full", at("out.csv"));
    const CliResult result = compare({"--status", "--report", at("out.csv")});
    EXPECT_EQ(result.exitCode, 2) << result.description();
    EXPECT_NE(result.standardError.find("status: Compare results saved - "), std::string::npos)
        << result.description();
    EXPECT_NE(result.standardError.find("out.csv could not be written whole"), std::string::npos)
        << result.description();
}

TEST_F(CliReports, SettingsListsNineSwitchesWithoutMakingAStore) {
    const CliResult result = run({"--settings"});
    EXPECT_EQ(result.exitCode, 0) << result.description();
    EXPECT_EQ(std::count(result.standardOutput.begin(), result.standardOutput.end(), '\n'), 9);
    EXPECT_FALSE(fs::exists(store()));
}

TEST_F(CliReports, SetHoldsForOneRun) {
    const CliResult off =
        compare({"--set", "PSCompare=0", "--set", "PMICompare=0", "--report", at("off.csv")});
    EXPECT_EQ(off.exitCode, 1) << off.description();
    EXPECT_EQ(off.standardOutput.find("Bill of materials"), std::string::npos);
    EXPECT_EQ(off.standardOutput.find("Product structure"), std::string::npos);
    EXPECT_EQ(off.standardOutput.find("PMI"), std::string::npos);
    EXPECT_NE(off.standardOutput.find("Attributes\n"), std::string::npos);
    const std::string table = support::readFile(at("off.csv"));
    EXPECT_EQ(table.find("Product Structure"), std::string::npos);
    EXPECT_EQ(table.find("\nPMI\r"), std::string::npos);
    EXPECT_NE(table.find("Part Level Attributes"), std::string::npos);
    const std::string stored = support::readFile(store());
    EXPECT_EQ(stored.find("PSCompare="), std::string::npos) << stored;
    EXPECT_NE(compare({}).standardOutput.find("Bill of materials"), std::string::npos);
}

TEST_F(CliReports, SaveHoldsForGood) {
    EXPECT_EQ(run({"--set", "pmicompare=0", "--set", "IncludeRefFile=1", "--save"}).exitCode, 0);
    const CliResult list = run({"--settings"});
    EXPECT_NE(list.standardOutput.find("PMICompare           0           "), std::string::npos)
        << list.description();
    EXPECT_NE(list.standardOutput.find("IncludeRefFile       1           "), std::string::npos);
    EXPECT_EQ(compare({}).standardOutput.find("PMI"), std::string::npos);
    const CliResult over = compare({"--set", "PMICompare=1"});
    EXPECT_NE(over.standardOutput.find("\nPMI\n"), std::string::npos) << over.description();
}

TEST_F(CliReports, SwitchesThatAreOffTakeTheirDifferencesAlong) {
    const CliResult result = compare({"--exit-on", "bom,attributes,pmi", "--set", "PSCompare=0",
                                      "--set", "PMICompare=0", "--set", "AttribCompare=0"});
    EXPECT_EQ(result.exitCode, 0) << result.description();
    EXPECT_EQ(compare({"--exit-on", "bom"}).exitCode, 1);
}

TEST_F(CliReports, ProgramsThatSaveAtOnceLoseNothing) {
    const Strings names = {"PSCompare",       "PMICompare",       "AttribCompare",
                           "PSCompareReport", "PMICompareReport", "AttribCompareReport",
                           "3DReport",        "IncludeRefFile",   "IncludeCmpFile"};
    std::vector<std::thread> programs;
    for (const std::string& name : names) {
        programs.emplace_back([&, name] {
            EXPECT_EQ(run({"--set", name + "=1", "--save"}).exitCode, 0) << name;
        });
    }
    for (std::thread& program : programs) program.join();
    const std::string list = run({"--settings"}).standardOutput;
    EXPECT_EQ(list.find("default"), std::string::npos) << list;
}

TEST_F(CliReports, AStoreThatCannotBeReadIsLeftAloneAndAllSectionsAreShown) {
    fs::create_directories(store());
    const CliResult saving = run({"--set", "PMICompare=0", "--save"});
    EXPECT_EQ(saving.exitCode, 2) << saving.description();
    EXPECT_NE(saving.standardError.find("can't be saved"), std::string::npos);
    EXPECT_TRUE(fs::is_directory(store()));
    const CliResult result = compare({});
    EXPECT_EQ(result.exitCode, 1) << result.description();
    EXPECT_NE(result.standardOutput.find("\nPMI\n"), std::string::npos);
    EXPECT_EQ(compare({"--set", "PMICompare=0"}).standardOutput.find("\nPMI\n"), std::string::npos);
}

TEST_F(CliReports, SpreadsheetsReadEveryField) {
    const char* const office = "/usr/bin/soffice";
    if (!fs::exists(office)) GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: needs " << office;
    compare({"--report", at("out.csv")});
    const CliResult converted = support::runProgram(
        office,
        {.arguments = {"--headless", "--convert-to", "csv:Text - txt - csv (StarCalc):44,34,76",
                       "--outdir", at("back"), at("out.csv")},
         .timeoutMs = 120000});
    ASSERT_EQ(converted.exitCode, 0) << converted.description();
    const std::string back = support::readFile(at("back/out.csv"));
    for (const char* field : {"575813.61 mm\xc2\xb3", "+ 0.76 %",
                              "Getriebe gr\xc3\xb6\xc3\x9f"
                              "e 2",
                              "\xe6\xad\xaf\xe8\xbb\x8a 18", "EN-GJL-300, grey cast iron"}) {
        EXPECT_NE(back.find(field), std::string::npos) << field;
    }
}

}  // namespace
