#include <gtest/gtest.h>

#include "tests/faults/bad_input/bad_input.h"
#include "tests/support/compare_report.h"
#include "tests/support/step_builder.h"

using bad_input::Side;

namespace {

class BadAssembly : public bad_input::OnEitherSide {};

constexpr std::size_t kDeep = 20000;

}  // namespace

TEST_P(BadAssembly, ContainingItselfIsNamed) {
    for (const std::size_t length : {1U, 2U, 5U}) {
        for (const bool belowARoot : {false, true}) {
            const auto run = compareBytes(support::cyclicAssembly(length, belowARoot));
            bad_input::printOutcome("circle of " + std::to_string(length) +
                                        (belowARoot ? " below a root" : " without a root"),
                                    GetParam(), run);
            bad_input::expectAnswered(run, "bad.stp");
            // Refused or cut, but never passed over in silence.
            EXPECT_NE(run.standardError.find("bad.stp"), std::string::npos) << run.description();
        }
    }
}

TEST_P(BadAssembly, DoublingTwentySixTimesStaysWithinItsLimits) {
    const auto run = compareBytes(support::doublingAssembly(26));
    bad_input::printOutcome("2^26 instances", GetParam(), run);
    bad_input::expectAnswered(run, "bad.stp");
    EXPECT_LT(run.peakKiB, (std::int64_t{1} << 20) + (std::int64_t{1} << 19));
}

TEST_P(BadAssembly, TwentyThousandLevelsAreAnswered) {
    const auto run = compareBytes(support::chainAssembly(kDeep));
    bad_input::printOutcome("20,000 levels against a small assembly", GetParam(), run);
    bad_input::expectAnswered(run, "bad.stp");
}

INSTANTIATE_TEST_SUITE_P(Sides, BadAssembly, testing::Values(Side::Reference, Side::Compare),
                         bad_input::sideName);

TEST(DeepAssembly, OfTwentyThousandLevelsEqualsItsCopy) {
    const support::ScratchFolder scratch;
    const std::string deep = support::chainAssembly(kDeep);
    const auto run = bad_input::compare(scratch.write("a.stp", deep), scratch.write("b.stp", deep));
    bad_input::printOutcome("20,000 levels against their copy", Side::Reference, run);
    bad_input::expectAnswered(run, "a.stp");
    EXPECT_NE(run.exitCode, 1) << run.description().substr(0, 4000);
}

TEST(DeepAssembly, OfTwoThousandLevelsEqualsItsCopy) {
    const support::ScratchFolder scratch;
    const std::string deep = support::chainAssembly(2000);
    const auto run = bad_input::compare(scratch.write("a.stp", deep), scratch.write("b.stp", deep));
    EXPECT_EQ(run.exitCode, 0) << run.description().substr(0, 4000);
}

TEST(DoublingAssembly, OfTenLevelsEqualsItsCopyWithAllItsInstances) {
    const support::ScratchFolder scratch;
    const std::string wide = support::doublingAssembly(10);
    support::CliRequest request;
    request.arguments = {"--json"};
    const auto run =
        bad_input::compare(scratch.write("a.stp", wide), scratch.write("b.stp", wide), request);
    EXPECT_EQ(run.exitCode, 0) << run.description();
    const auto report = support::CompareReport::parse(run.standardOutput);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->instancesThatAre("unchanged"), 1024U);
}
