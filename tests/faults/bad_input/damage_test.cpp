#include <gtest/gtest.h>

#include "tests/faults/bad_input/bad_input.h"
#include "tests/support/real_data.h"
#include "tests/support/step_damage.h"

using bad_input::Side;

namespace {

/// An assembly with sub-assemblies, curved faces, attributes and PMI.
std::string victim() {
    return support::readFile(support::realFile("Gearbox1"));
}

class Damage : public bad_input::OnEitherSide {};

/// Seeds are run in a few groups, so that they can run beside each other.
class BitFlips : public testing::TestWithParam<unsigned> {};

constexpr unsigned kGroups = 4;
constexpr unsigned kSeedsOfAGroup = 3;
constexpr unsigned kSeedsOfAFullGroup = 50;

}  // namespace

TEST_P(Damage, TruncatedFilesAreNamed) {
    const std::string whole = victim();
    for (const unsigned percent : {5U, 30U, 60U, 90U, 99U}) {
        const auto run = compareBytes(support::truncated(whole, percent));
        bad_input::printOutcome("truncated at " + std::to_string(percent) + " %", GetParam(), run);
        bad_input::expectAnswered(run, "bad.stp");
        if (run.exitCode == 2) continue;
        // Whatever could still be read, the user must learn that the file is not whole.
        EXPECT_NE(run.standardError.find("bad.stp"), std::string::npos) << run.description();
    }
}

TEST_P(Damage, NumbersThatAreNoneAndHugeNumbersAreAnswered) {
    const auto text = support::StepText::parse(victim());
    ASSERT_TRUE(text);
    for (const char* number : {"NaN", "NAN.", "INF", "1.E300", "-1.E300", "1.E400", "1.E-320"}) {
        const auto run = compareBytes(support::withCoordinate(*text, number, 3, 5));
        bad_input::printOutcome(std::string("coordinate ") + number, GetParam(), run);
        bad_input::expectAnswered(run, "bad.stp");
    }
}

TEST_P(Damage, EveryCoordinateHugeOrNoneIsAnswered) {
    const auto text = support::StepText::parse(victim());
    ASSERT_TRUE(text);
    for (const char* number : {"NaN", "1.E300"}) {
        const auto run = compareBytes(support::withCoordinate(*text, number, 5000, 5));
        bad_input::printOutcome(std::string("all coordinates ") + number, GetParam(), run);
        bad_input::expectAnswered(run, "bad.stp");
    }
}

TEST_P(Damage, WrongReferencesAreAnswered) {
    const auto text = support::StepText::parse(victim());
    ASSERT_TRUE(text);
    for (std::uint64_t seed = 0; seed < (support::fullRun() ? 30U : 3U); ++seed) {
        const auto run = compareBytes(support::withWrongReferences(*text, 1 + 10 * seed, seed));
        bad_input::printOutcome("wrong references, seed " + std::to_string(seed), GetParam(), run);
        bad_input::expectAnswered(run, "bad.stp");
    }
}

INSTANTIATE_TEST_SUITE_P(Sides, Damage, testing::Values(Side::Reference, Side::Compare),
                         bad_input::sideName);

TEST_P(BitFlips, AreAnswered) {
    const std::string whole = victim();
    const support::ScratchFolder scratch;
    const std::string good = scratch.write("good.stp", whole);
    const unsigned seeds = support::fullRun() ? kSeedsOfAFullGroup : kSeedsOfAGroup;
    for (unsigned i = 0; i < seeds; ++i) {
        const unsigned seed = GetParam() + kGroups * i;
        // One flipped bit often goes unnoticed, many seldom do; both must be borne.
        const std::size_t flips = std::size_t{1} << (seed % 8);
        const Side side = seed / 8 % 2 == 0 ? Side::Reference : Side::Compare;
        const std::string bad =
            scratch.write("bad.stp", support::withFlippedBits(whole, flips, seed));
        const auto run =
            side == Side::Reference ? bad_input::compare(bad, good) : bad_input::compare(good, bad);
        bad_input::printOutcome(
            "seed " + std::to_string(seed) + ", " + std::to_string(flips) + " bits", side, run);
        SCOPED_TRACE("seed " + std::to_string(seed));
        bad_input::expectAnswered(run, "bad.stp");
    }
}

INSTANTIATE_TEST_SUITE_P(Groups, BitFlips, testing::Range(0U, kGroups));

namespace {

class BrokenOdd : public testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(BrokenOdd, IsAnsweredOnEitherSide) {
    SKIP_WITHOUT_REAL_DATA();
    const std::string file = (support::realDataFolder() / "C-broken-odd" / GetParam()).string();
    const std::string part =
        (support::realDataFolder() / "A-singles/OCCT__bm2_pe_t4-A.stp").string();
    for (const Side side : {Side::Reference, Side::Compare}) {
        const auto run = side == Side::Reference ? bad_input::compare(file, part)
                                                 : bad_input::compare(part, file);
        bad_input::printOutcome(GetParam(), side, run);
        bad_input::expectAnswered(run, file);
    }
    const support::ScratchFolder scratch;
    const std::string copy = scratch.write("copy.stp", support::readFile(file));
    const auto self = bad_input::compare(file, copy);
    bad_input::printOutcome(std::string(GetParam()) + " with its copy", Side::Reference, self);
    // The first of the two failures ends the run.
    const bool copyFirst = self.standardError.find("copy.stp") != std::string::npos;
    bad_input::expectAnswered(self, copyFirst ? copy : file);
    EXPECT_NE(self.exitCode, 1) << self.description();
}

INSTANTIATE_TEST_SUITE_P(
    Files, BrokenOdd,
    testing::Values("OCCT__OCC26308-Face.stp", "OCCT__bug24746_ENI.stp",
                    "OCCT__bug25169_box-openshell.stp", "OCCT__bug27333_simple.stp",
                    "OCCT__bug28414_bug_toroidal_surface.stp", "OCCT__bug28454_directives.stp",
                    "OCCT__bug29478.stp", "OCCT__bug29715_slow.stp",
                    "OCCT__bug31000_InSensitive.stp", "OCCT__bug32314_corrupted.stp",
                    "OCCT__bug33665.step", "OCCT__xr1-db-214_0.stp", "mayo__#332_file.stp",
                    "mayo__cube.step"),
    [](const testing::TestParamInfo<const char*>& test) {
        std::string name = test.param;
        for (char& c : name) c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
        return name;
    });

TEST(BrokenOddFolder, EveryStepFileOfTheFolderIsListed) {
    SKIP_WITHOUT_REAL_DATA();
    std::size_t found = 0;
    for (const auto& file :
         std::filesystem::directory_iterator(support::realDataFolder() / "C-broken-odd")) {
        const auto extension = file.path().extension();
        found += extension == ".stp" || extension == ".step" ? 1 : 0;
    }
    EXPECT_EQ(found, 14U);
}
