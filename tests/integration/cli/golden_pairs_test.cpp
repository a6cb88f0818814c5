#include <gtest/gtest.h>

#include "tests/integration/cli/golden.h"
#include "tests/support/cli_runner.h"
#include "tests/support/real_data.h"

namespace {

using support::RealFile;
using support::RealPair;

/// Pairs of which every kind of row is in at least one, with small outputs.
constexpr std::string_view kPairs[] = {"MountingPlate", "BasePart",  "CadqueryNested",
                                       "RotationPitch", "As13With4", "BaseInterface"};

std::vector<RealPair> goldenPairs() {
    std::vector<RealPair> chosen;
    for (const RealPair& pair : support::stepPairs()) {
        for (const std::string_view label : kPairs) {
            if (pair.label == label) chosen.push_back(pair);
        }
    }
    return chosen;
}

/// Below the data folder, so that the rows with paths are the same everywhere.
std::string shortName(std::string_view label) {
    for (const RealFile& file : support::stepFiles()) {
        if (file.label == label) return std::string(file.path);
    }
    return {};
}

class GoldenPairs : public testing::TestWithParam<RealPair> {};

}  // namespace

TEST_P(GoldenPairs, SaveAndCopyAsTheyDid) {
    SKIP_WITHOUT_REAL_DATA();
    const support::ScratchFolder scratch;
    const std::string saved = (scratch.path() / "out.csv").string();
    support::CliRequest request;
    request.workingFolder = support::realDataFolder().string();
    request.arguments = {"--copy",
                         "--parts",
                         "--sections",
                         "structure",
                         "--report",
                         saved,
                         shortName(GetParam().reference),
                         shortName(GetParam().compare)};
    const support::CliResult result = support::runProgram(request);
    ASSERT_TRUE(result.exitCode == 0 || result.exitCode == 1) << result.description();
    const std::string label(GetParam().label);
    golden::expectEqual("pairs/" + label + ".txt", result.standardOutput);
    golden::expectEqual("pairs/" + label + ".csv", support::readFile(saved));
}

INSTANTIATE_TEST_SUITE_P(RealPairs, GoldenPairs, testing::ValuesIn(goldenPairs()),
                         [](const testing::TestParamInfo<RealPair>& pair) {
                             return std::string(pair.param.label);
                         });
