#include "apps/cli/row_findings.h"

#include <gtest/gtest.h>

#include <string>

#include "apps/cli/findings.h"
#include "tests/unit/apps/cli/sample_lists.h"

namespace {

using cli::RowCounts;
using Texts = std::vector<std::wstring>;

/// "0:0 1:- -:1" for the lines of two lists of names.
std::string lines(const Texts& reference, const Texts& compare) {
    std::string text;
    const auto number = [](std::ptrdiff_t i) { return i < 0 ? "-" : std::to_string(i); };
    for (const cli::RowPair& pair : cli::pairRows(reference, compare)) {
        text += (text.empty() ? "" : " ") + number(pair.reference) + ":" + number(pair.compare);
    }
    return text;
}

TEST(CliRows, EqualNamesStandSideBySide) {
    EXPECT_EQ(lines({L"a", L"b", L"c"}, {L"a", L"b", L"c"}), "0:0 1:1 2:2");
    EXPECT_EQ(lines({L"a", L"c"}, {L"a", L"b", L"c"}), "0:0 -:1 1:2");
    EXPECT_EQ(lines({L"a", L"b", L"c"}, {L"a", L"c"}), "0:0 1:- 2:1");
    EXPECT_EQ(lines({}, {L"a", L"b"}), "-:0 -:1");
    EXPECT_EQ(lines({L"a"}, {}), "0:-");
    EXPECT_EQ(lines({}, {}), "");
}

TEST(CliRows, RepeatedNamesPairInTheirOrder) {
    EXPECT_EQ(lines({L"a", L"a"}, {L"a", L"a", L"a"}), "0:0 1:1 -:2");
    EXPECT_EQ(lines({L"a", L"a", L"b"}, {L"a", L"b"}), "0:0 1:- 2:1");
}

TEST(CliRows, AnotherOrderLosesAndDoublesNothing) {
    EXPECT_EQ(lines({L"b", L"a"}, {L"a", L"x", L"b"}), "-:1 0:2 1:0");
    EXPECT_EQ(lines({L"A"}, {L"a"}), "0:- -:0");
}

TEST(CliRows, CountsFollowTheStates) {
    const SampleLists sample;
    const RowCounts pmi = cli::countRows(sample.lists.pmi);
    EXPECT_EQ(pmi.referenceRows, 1U);
    EXPECT_FALSE(pmi.any());
    const RowCounts parts = cli::countParts(sample.lists);
    EXPECT_EQ(parts.referenceRows, 4U);
    EXPECT_EQ(parts.compareRows, 3U);
    EXPECT_EQ(parts.different, 1U);
    EXPECT_EQ(parts.onlyInReference, 1U);
    EXPECT_EQ(parts.onlyInCompare, 0U);
}

TEST(CliRows, AFilesOwnNameAndTimeCountForNothing) {
    SampleLists sample;
    const RowCounts counts = cli::countRows(sample.lists.attributes);
    EXPECT_EQ(counts.referenceRows, 3U);
    EXPECT_EQ(counts.different, 1U);
    sample.lists.attributes.referenceNames[1] = L"Header File Names";
    EXPECT_EQ(cli::countRows(sample.lists.attributes).different, 2U);
    // A file that does not say when it was written.
    sample.lists.attributes = {
        {L"Header Time Stamp", L"Header Modified"}, {L"x", L"y"}, {}, {}, {1, 1}, {}};
    EXPECT_FALSE(cli::countRows(sample.lists.attributes).any());
}

TEST(CliRows, QuantitiesCountInBillsOfMaterialsOnly) {
    const SampleLists sample;
    const RowCounts bom = cli::countBom(sample.lists.billOfMaterials);
    EXPECT_EQ(bom.different, 1U);
    EXPECT_EQ(bom.onlyInReference, 1U);
    EXPECT_EQ(bom.onlyInCompare, 1U);
    EXPECT_EQ(cli::countRows(sample.lists.billOfMaterials).different, 0U);
}

TEST(CliRows, SidesThatDisagreeCountOnceEach) {
    bxtsg::OutcomeRows rows = {{L"a"}, {L"1"}, {L"a"}, {L"2"}, {1}, {2}};
    EXPECT_EQ(cli::countRows(rows).onlyInReference, 1U);
    EXPECT_EQ(cli::countRows(rows).onlyInCompare, 1U);
    rows.referenceStates = {3};
    rows.compareStates = {3};
    EXPECT_EQ(cli::countRows(rows).different, 1U);
    rows.compareStates.clear();
    EXPECT_EQ(cli::countRows(rows).different, 1U);
}

TEST(CliRows, SectionsThatAreOffCountForNothing) {
    SampleLists sample;
    cli::Findings findings;
    findings.lists = &sample.lists;
    EXPECT_TRUE(cli::count(findings).bom.any());
    EXPECT_TRUE(cli::count(findings).attributes.any());
    EXPECT_TRUE(cli::count(findings).partAttributes.any());
    sample.lists.order = {0};
    const cli::Counts off = cli::count(findings);
    EXPECT_FALSE(off.bom.any() || off.attributes.any() || off.partAttributes.any());
    EXPECT_EQ(cli::exitCodeFor(off, {}), 0);
}

TEST(CliRows, FileInformationNeverCounts) {
    SampleLists sample;
    sample.lists.order = {0};
    sample.lists.fileInformation.referenceStates = {3, 3};
    cli::Findings findings;
    findings.lists = &sample.lists;
    EXPECT_EQ(cli::exitCodeFor(cli::count(findings), {}), 0);
}

TEST(CliRows, WordsOfStates) {
    EXPECT_STREQ(cli::rowWord(0), "same");
    EXPECT_STREQ(cli::rowWord(1), "only in reference");
    EXPECT_STREQ(cli::rowWord(2), "only in compare");
    EXPECT_STREQ(cli::rowWord(3), "different");
    EXPECT_STREQ(cli::rowWord(99), "same");
}

TEST(CliRows, EachListExitsWithOneUnlessItIsNotAskedFor) {
    struct Row {
        RowCounts cli::Counts::*list;
        bool cli::ExitOn::*rule;
    };
    for (const Row& row : {Row{&cli::Counts::bom, &cli::ExitOn::bom},
                           Row{&cli::Counts::attributes, &cli::ExitOn::attributes},
                           Row{&cli::Counts::partAttributes, &cli::ExitOn::attributes},
                           Row{&cli::Counts::pmi, &cli::ExitOn::pmi}}) {
        for (auto field :
             {&RowCounts::onlyInReference, &RowCounts::onlyInCompare, &RowCounts::different}) {
            cli::Counts counts;
            (counts.*row.list).*field = 1;
            EXPECT_EQ(cli::exitCodeFor(counts, {}), 1);
            cli::ExitOn rule;
            rule.*row.rule = false;
            EXPECT_EQ(cli::exitCodeFor(counts, rule), 0);
        }
        cli::Counts counts;
        (counts.*row.list).referenceRows = 1;
        EXPECT_EQ(cli::exitCodeFor(counts, {}), 0);
    }
}

}  // namespace
