#include "tests/integration/pairs/expected_tree.h"

#include <gtest/gtest.h>

#include "tests/support/cli_runner.h"

namespace pairs {
namespace {

std::string cell(const std::vector<support::ReportNode>& tree, std::int32_t index) {
    if (index < 0) return "-";
    const auto& node = tree[static_cast<std::size_t>(index)];
    return node.displayName + " " + node.state;
}

}  // namespace

std::string drawn(const std::vector<support::ReportNode>& tree) {
    std::string text;
    for (const auto& node : tree) {
        text += std::string(2 * static_cast<std::size_t>(node.depth), ' ') + node.displayName +
                " | " + node.state + "\n";
    }
    return text;
}

std::vector<std::string> drawnRows(const support::CompareReport& report) {
    std::vector<std::string> lines;
    for (const auto& [reference, compare] : report.rows) {
        lines.push_back(cell(report.reference, reference) + " <> " + cell(report.compare, compare));
    }
    return lines;
}

std::string drawing(const char* text) {
    return *text == '\n' ? text + 1 : text;
}

void compareDifferingFiles(const std::string& reference, const std::string& compare,
                           support::CompareReport& report) {
    support::CliRequest request;
    request.arguments = {"--json", "--", reference, compare};
    const auto run = support::runProgram(request);
    ASSERT_EQ(run.exitCode, 1) << run.description();
    EXPECT_TRUE(run.leftFiles.empty()) << run.description();
    const auto parsed = support::CompareReport::parse(run.standardOutput);
    ASSERT_TRUE(parsed) << run.description();
    EXPECT_TRUE(parsed->different);
    report = *parsed;
}

}  // namespace pairs
