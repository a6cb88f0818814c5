#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/faults/bad_input/bad_input.h"
#include "tests/support/step_damage.h"

using bad_input::Side;

namespace {

constexpr std::uint32_t kNobody = 65534;

class BadFile : public bad_input::OnEitherSide {};

}  // namespace

TEST_P(BadFile, MissingIsNamed) {
    const auto run =
        bad_input::compareWithGood((scratch_.path() / "gone.stp").string(), GetParam());
    bad_input::printOutcome("missing file", GetParam(), run);
    bad_input::expectRefused(run, "gone.stp", "exist|missing|no such|not found");
}

TEST_P(BadFile, FolderIsNamed) {
    std::filesystem::create_directory(scratch_.path() / "folder.stp");
    const auto run =
        bad_input::compareWithGood((scratch_.path() / "folder.stp").string(), GetParam());
    bad_input::printOutcome("directory", GetParam(), run);
    bad_input::expectRefused(run, "folder.stp", "folder|directory");
}

TEST_P(BadFile, EmptyIsNamed) {
    const auto run = compareBytes("");
    bad_input::printOutcome("empty file", GetParam(), run);
    bad_input::expectRefused(run, "bad.stp", "empty");
}

TEST_P(BadFile, UnreadableIsNamed) {
    const std::string file = scratch_.write("secret.stp", bad_input::goodAssembly());
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    support::CliRequest request;
    if (geteuid() == 0) {
        // Permissions do not bind root: somebody else has to try.
        request.userId = kNobody;
        support::CliRequest version = request;
        version.arguments = {"--version"};
        if (support::runProgram(version).exitCode != 0) {
            GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: running as root, and another user "
                            "cannot run "
                         << support::programPath();
        }
    }
    const auto run = bad_input::compareWithGood(file, GetParam(), request);
    bad_input::printOutcome("unreadable file", GetParam(), run);
    bad_input::expectRefused(run, "secret.stp", "permission|read|access|allowed");
}

TEST_P(BadFile, DeviceIsRefused) {
    const auto run = bad_input::compareWithGood("/dev/zero", GetParam());
    bad_input::printOutcome("/dev/zero", GetParam(), run);
    bad_input::expectRefused(run, "/dev/zero", ".");
}

TEST_P(BadFile, PipeThatNobodyFillsIsRefused) {
    const std::string pipe = (scratch_.path() / "pipe.stp").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const auto run = bad_input::compareWithGood(pipe, GetParam());
    bad_input::printOutcome("named pipe", GetParam(), run);
    bad_input::expectRefused(run, "pipe.stp", ".");
}

TEST_P(BadFile, OtherFormatsAreNamed) {
    std::string noise(200000, '\0');
    support::Dice dice(11);
    for (char& byte : noise) byte = static_cast<char>(dice.below(256));
    const std::string others[] = {"solid cube\nfacet normal 0 0 1\nendsolid cube\n",
                                  "Hello, world.\n",
                                  noise,
                                  std::string(100000, '('),
                                  "\x7f\x45\x4c\x46",
                                  "ISO-10303-21",
                                  "<?xml version=\"1.0\"?><a/>"};
    for (const std::string& bytes : others) {
        const auto run = compareBytes(bytes);
        bad_input::printOutcome("not STEP: " + bytes.substr(0, 5), GetParam(), run);
        bad_input::expectRefused(run, "bad.stp", "step|format|damaged");
    }
}

TEST_P(BadFile, StepWithoutAnyModelIsRefused) {
    const auto run = compareBytes(
        "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\nFILE_NAME('','',(''),(''),'','','"
        "');\nFILE_SCHEMA(('AUTOMOTIVE_DESIGN'));\nENDSEC;\nDATA;\nENDSEC;\nEND-ISO-10303-21;\n");
    bad_input::printOutcome("STEP without data", GetParam(), run);
    bad_input::expectRefused(run, "bad.stp", ".");
}

INSTANTIATE_TEST_SUITE_P(Sides, BadFile, testing::Values(Side::Reference, Side::Compare),
                         bad_input::sideName);
