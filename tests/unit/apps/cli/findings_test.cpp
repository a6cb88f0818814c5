#include "apps/cli/findings.h"

#include <gtest/gtest.h>

#include "tests/unit/apps/cli/sample_findings.h"

namespace {

using cli::Counts;
using cli::ExitOn;

TEST(CliFindings, EveryStateIsCounted) {
    const SampleFindings sample;
    const Counts counts = cli::count(sample.findings);
    EXPECT_EQ(counts.added, 1U);
    EXPECT_EQ(counts.deleted, 1U);
    EXPECT_EQ(counts.modified, 2U);
    EXPECT_EQ(counts.movedInReference, 1U);
    EXPECT_EQ(counts.movedInCompare, 1U);
    EXPECT_EQ(counts.rows, 5U);
    EXPECT_EQ(counts.differentRows, 4U);
    EXPECT_EQ(counts.unchanged, 1U);
    EXPECT_EQ(counts.moved, 1U);
    EXPECT_EQ(counts.changed, 1U);
    EXPECT_EQ(counts.onlyInReference, 1U);
    EXPECT_EQ(counts.onlyInCompare, 1U);
    EXPECT_EQ(counts.notCompared, 1U);
}

TEST(CliFindings, NothingAtAllIsNoDifference) {
    EXPECT_EQ(cli::exitCodeFor(cli::count({}), ExitOn()), 0);
}

TEST(CliFindings, EachDifferenceExitsWithOneUnlessItIsNotAskedFor) {
    struct Row {
        std::size_t Counts::*counter;
        bool structure;
        bool geometry;
        bool placement;
    };
    const Row rows[] = {
        {&Counts::added, true, false, false},
        {&Counts::deleted, true, false, false},
        {&Counts::modified, true, false, false},
        {&Counts::movedInReference, true, false, false},
        {&Counts::movedInCompare, true, false, false},
        {&Counts::changed, false, true, false},
        {&Counts::onlyInReference, false, true, false},
        {&Counts::onlyInCompare, false, true, false},
        {&Counts::notCompared, false, true, false},
        {&Counts::moved, false, false, true},
        {&Counts::unchanged, false, false, false},
        {&Counts::rows, false, false, false},
    };
    for (const Row& row : rows) {
        Counts counts;
        counts.*row.counter = 1;
        const bool any = row.structure || row.geometry || row.placement;
        EXPECT_EQ(cli::exitCodeFor(counts, ExitOn()), any ? 1 : 0);
        EXPECT_EQ(cli::exitCodeFor(counts, {true, false, false}), row.structure ? 1 : 0);
        EXPECT_EQ(cli::exitCodeFor(counts, {false, true, false}), row.geometry ? 1 : 0);
        EXPECT_EQ(cli::exitCodeFor(counts, {false, false, true}), row.placement ? 1 : 0);
    }
}

TEST(CliFindings, ExitOnListTakesTheThreeWords) {
    const auto two = cli::parseExitOn("placement,structure");
    ASSERT_TRUE(two);
    EXPECT_TRUE(two->structure);
    EXPECT_FALSE(two->geometry);
    EXPECT_TRUE(two->placement);
    for (const char* list : {"", ",", "structure,", "Structure", "all", " structure"}) {
        EXPECT_FALSE(cli::parseExitOn(list)) << list;
    }
}

TEST(CliFindings, RowDiffersWhenOneSideDoes) {
    const SampleFindings sample;
    const std::vector<bool> expected = {true, true, false, true, true};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(cli::differs(sample.structure, sample.structure.rows[i]), expected[i]) << i;
    }
}

TEST(CliFindings, WordsOfStates) {
    EXPECT_STREQ(cli::stateWord(0), "same");
    EXPECT_STREQ(cli::stateWord(1), "added");
    EXPECT_STREQ(cli::stateWord(2), "deleted");
    EXPECT_STREQ(cli::stateWord(3), "modified");
    EXPECT_STREQ(cli::stateWord(4), "moved");
    EXPECT_STREQ(cli::stateWord(77), "same");
    EXPECT_STREQ(cli::stateWord(bxtexchange::GeometryState::NotCompared), "not compared");
    EXPECT_STREQ(cli::evidenceWord(bxtexchange::MatchEvidence::SamePlace), "same place");
    EXPECT_STREQ(cli::evidenceWord(bxtexchange::MatchEvidence::Faces), "same faces");
}

}  // namespace
