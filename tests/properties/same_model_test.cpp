#include <filesystem>

#include <gtest/gtest.h>

#include "tests/properties/runs.h"
#include "tests/support/real_data.h"
#include "tests/support/step_text.h"

namespace {

using support::RealFile;

class SameModel : public testing::TestWithParam<RealFile> {
protected:
    void SetUp() override {
        file_ = support::pathOf(GetParam());
        SKIP_UNLESS_THERE(!file_.empty());
        SKIP_UNLESS_FULL(GetParam().small);
        ASSERT_TRUE(std::filesystem::exists(file_)) << file_;
    }

    std::string file_;
    support::ScratchFolder scratch_;
    properties::Compared compared_;
};

}  // namespace

TEST_P(SameModel, EqualsACopyUnderAnotherName) {
    const std::string copy = scratch_.write("another name.stp", support::readFile(file_));
    properties::compareFiles(file_, copy, compared_);
    if (HasFatalFailure()) return;
    properties::expectNoDifference(compared_);
}

TEST_P(SameModel, EqualsItselfRenumberedAndShuffled) {
    const auto text = support::StepText::parse(support::readFile(file_));
    ASSERT_TRUE(text);
    const auto other = support::renumberedAndShuffled(*text, 20240901);
    const std::string shuffled = scratch_.write("shuffled.stp", other.write());
    properties::compareFiles(file_, shuffled, compared_);
    if (HasFatalFailure()) return;
    properties::expectNoDifference(compared_);
}

TEST_P(SameModel, KeepsEveryInstanceWhenRewrittenByAnotherSystem) {
    const std::string rewritten = (scratch_.path() / "rewritten.stp").string();
    support::CliRequest request;
    request.arguments = {file_, rewritten};
    request.timeoutMs = 300000;
    const auto wrote = support::runProgram(STEP_REWRITE_FILE, request);
    if (wrote.exitCode == 5) GTEST_SKIP() << "only triangles, which the rewriting system drops";
    ASSERT_EQ(wrote.exitCode, 0) << wrote.description();
    properties::compareFiles(file_, rewritten, compared_);
    if (HasFatalFailure()) return;
    const auto& report = compared_.report;
    EXPECT_EQ(report.instancesThatAre("unchanged"), report.instances.size())
        << compared_.run.description();
}

INSTANTIATE_TEST_SUITE_P(RealFiles, SameModel, testing::ValuesIn(support::stepFiles()),
                         [](const testing::TestParamInfo<RealFile>& test) {
                             return std::string(test.param.label);
                         });
