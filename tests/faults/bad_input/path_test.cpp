#include <filesystem>

#include <gtest/gtest.h>

#include "tests/faults/bad_input/bad_input.h"
#include "tests/support/compare_report.h"

using bad_input::Side;

namespace {

struct OddPath {
    const char* label;
    std::string path;
};

void PrintTo(const OddPath& odd, std::ostream* stream) {
    *stream << odd.label;
}

/// A thousand characters and more, in parts that a file system takes.
std::string longPath() {
    std::string path;
    for (int i = 0; i < 5; ++i) path += std::string(200, static_cast<char>('a' + i)) + "/";
    return path + "long.stp";
}

class OddPaths : public testing::TestWithParam<OddPath> {
protected:
    support::ScratchFolder scratch_;
};

}  // namespace

TEST_P(OddPaths, Work) {
    const std::string odd = scratch_.write(GetParam().path, bad_input::goodAssembly());
    for (const Side side : {Side::Reference, Side::Compare}) {
        support::CliRequest request;
        request.arguments = {"--json"};
        const auto run = bad_input::compareWithGood(odd, side, request);
        bad_input::printOutcome(std::string("path: ") + GetParam().label, side, run);
        bad_input::expectOrder(run);
        EXPECT_EQ(run.exitCode, 0) << run.description();
        const auto report = support::CompareReport::parse(run.standardOutput);
        ASSERT_TRUE(report) << run.description();
        EXPECT_EQ(report->instancesThatAre("unchanged"), 3U);
    }
}

TEST_P(OddPaths, AreNamedWhenTheFileIsBad) {
    const std::string odd = scratch_.write(GetParam().path, "no model");
    for (const Side side : {Side::Reference, Side::Compare}) {
        const auto run = bad_input::compareWithGood(odd, side);
        bad_input::expectOrder(run);
        EXPECT_EQ(run.exitCode, 2) << run.description();
        for (const char c : run.standardError) {
            EXPECT_TRUE(static_cast<unsigned char>(c) >= 0x20 || c == '\n')
                << "a raw control character";
        }
    }
}

TEST_P(OddPaths, WorkRelativeToTheWorkingFolder) {
    scratch_.write(GetParam().path, bad_input::goodAssembly());
    scratch_.write("copy/" + GetParam().path, bad_input::goodAssembly());
    support::CliRequest request;
    request.workingFolder = scratch_.path().string();
    const auto run = bad_input::compare(GetParam().path, "copy/" + GetParam().path, request);
    bad_input::expectOrder(run);
    EXPECT_EQ(run.exitCode, 0) << run.description();
}

INSTANTIATE_TEST_SUITE_P(
    Paths, OddPaths,
    testing::Values(OddPath{"Spaces", " two  words /a file .stp"},
                    OddPath{"Quotes", "it's \"quoted\" `so`/the 'part'.stp"},
                    OddPath{"NonAscii", "Größe/Zahnrad 変速機 шестерня 𝛑.stp"},
                    OddPath{"Long", longPath()},
                    OddPath{"Shell", "$(touch x);&|*?[a]{b}~#%/x=y\\z.stp"},
                    OddPath{"Dash", "-rf.stp"},
                    OddPath{"ControlCharacters", "bell\a tab\t escape\x1b[31m/line\nfeed.stp"},
                    OddPath{"NoExtensionOfStep", "archive.v2.old/part.STP"},
                    OddPath{"NotUtf8", "caf\xe9/r\xe9vision.stp"}),
    [](const testing::TestParamInfo<OddPath>& test) { return std::string(test.param.label); });
