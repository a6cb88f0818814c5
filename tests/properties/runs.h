#pragma once

#include <string>

#include <gtest/gtest.h>

#include "tests/support/cli_runner.h"
#include "tests/support/compare_report.h"

/// What the properties share: one run of the program, checked for order, and its report.
namespace properties {

struct Compared {
    support::CliResult run;
    support::CompareReport report;
};

/// Compares two files. Anything but exit code 0 or 1 with a report, and anything left behind, is
/// a failure of the test.
inline void compareFiles(const std::string& reference, const std::string& compare, Compared& made,
                         const support::CliRequest& extra = {}) {
    support::CliRequest request = extra;
    request.arguments = {"--json", "--", reference, compare};
    request.timeoutMs = 300000;
    made.run = support::runProgram(request);
    ASSERT_TRUE(made.run.exitCode == 0 || made.run.exitCode == 1) << made.run.description();
    ASSERT_TRUE(made.run.leftFiles.empty()) << made.run.description();
    ASSERT_TRUE(made.run.leftProcesses.empty()) << made.run.description();
    const auto report = support::CompareReport::parse(made.run.standardOutput);
    ASSERT_TRUE(report) << made.run.description();
    made.report = *report;
    ASSERT_EQ(made.report.exitCode, made.run.exitCode) << made.run.description();
    ASSERT_FALSE(made.report.instances.empty()) << "a comparison that looked at no geometry";
}

/// Nothing differs: exit code 0, every node the same, every instance unchanged.
inline void expectNoDifference(const Compared& compared) {
    using support::CompareReport;
    EXPECT_EQ(compared.run.exitCode, 0) << compared.run.description();
    EXPECT_FALSE(compared.report.different);
    const auto& instances = compared.report.instances;
    EXPECT_EQ(compared.report.instancesThatAre("unchanged"), instances.size());
    const std::map<std::string, std::size_t> allSame = {{"same", compared.report.reference.size()}};
    EXPECT_EQ(CompareReport::states(compared.report.reference), allSame)
        << CompareReport::lines(compared.report.reference);
    EXPECT_EQ(CompareReport::states(compared.report.compare), allSame)
        << CompareReport::lines(compared.report.compare);
}

}  // namespace properties
