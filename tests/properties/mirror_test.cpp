#include <algorithm>

#include <gtest/gtest.h>

#include "tests/properties/runs.h"
#include "tests/support/real_data.h"

namespace {

using support::RealPair;
using support::ReportInstance;
using support::ReportNode;

std::string mirroredNodeState(const std::string& state) {
    if (state == "added") return "deleted";
    if (state == "deleted") return "added";
    return state;
}

std::string mirroredInstanceState(const std::string& state) {
    if (state == "only in reference") return "only in compare";
    if (state == "only in compare") return "only in reference";
    return state;
}

/// "depth name state" of every node, in tree order.
std::vector<std::string> nodeLines(const std::vector<ReportNode>& tree, bool mirrored) {
    std::vector<std::string> lines;
    for (const ReportNode& node : tree) {
        lines.push_back(std::to_string(node.depth) + " " + node.displayName + " " +
                        (mirrored ? mirroredNodeState(node.state) : node.state));
    }
    return lines;
}

/// What each instance is and where it stands, without an order: the report follows the reference.
std::vector<std::string> instanceLines(const std::vector<ReportInstance>& instances,
                                       bool mirrored) {
    std::vector<std::string> lines;
    for (const ReportInstance& each : instances) {
        const auto& first = mirrored ? each.compare : each.reference;
        const auto& second = mirrored ? each.reference : each.compare;
        lines.push_back((mirrored ? mirroredInstanceState(each.state) : each.state) + ": " +
                        first.path + " -> " + second.path);
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

class Mirror : public testing::TestWithParam<RealPair> {
protected:
    void SetUp() override {
        reference_ = support::realFile(GetParam().reference);
        compare_ = support::realFile(GetParam().compare);
        SKIP_UNLESS_THERE(!reference_.empty());
        SKIP_UNLESS_FULL(GetParam().small);
    }

    std::string reference_;
    std::string compare_;
};

std::string pairName(const testing::TestParamInfo<RealPair>& info) {
    return std::string(info.param.label);
}

std::vector<RealPair> comparablePairs(bool comparable) {
    std::vector<RealPair> chosen;
    for (const RealPair& pair : support::stepPairs()) {
        if (pair.compares == comparable) chosen.push_back(pair);
    }
    return chosen;
}

class PartAgainstAssembly : public Mirror {};

}  // namespace

TEST_P(Mirror, SwapsWhatIsOnlyOnOneSide) {
    properties::Compared forth;
    properties::Compared back;
    properties::compareFiles(reference_, compare_, forth);
    if (HasFatalFailure()) return;
    properties::compareFiles(compare_, reference_, back);
    if (HasFatalFailure()) return;
    EXPECT_EQ(forth.run.exitCode, back.run.exitCode);
    // The two table rows of an occurrence that lost or gained its subcomponents mark one side
    // only, but they too change places.
    EXPECT_EQ(nodeLines(forth.report.reference, false), nodeLines(back.report.compare, true));
    EXPECT_EQ(nodeLines(forth.report.compare, false), nodeLines(back.report.reference, true));
    EXPECT_EQ(instanceLines(forth.report.instances, false),
              instanceLines(back.report.instances, true));
}

TEST_P(PartAgainstAssembly, IsRefusedInBothDirections) {
    for (const bool swapped : {false, true}) {
        support::CliRequest request;
        request.arguments = {swapped ? compare_ : reference_, swapped ? reference_ : compare_};
        const auto run = support::runProgram(request);
        EXPECT_EQ(run.exitCode, 2) << run.description();
        EXPECT_NE(run.standardError.find("Comparing a part with an assembly is not supported."),
                  std::string::npos)
            << run.description();
        EXPECT_TRUE(run.leftFiles.empty()) << run.description();
    }
}

INSTANTIATE_TEST_SUITE_P(RealPairs, Mirror, testing::ValuesIn(comparablePairs(true)), pairName);
INSTANTIATE_TEST_SUITE_P(RealPairs, PartAgainstAssembly, testing::ValuesIn(comparablePairs(false)),
                         pairName);
