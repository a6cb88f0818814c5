#include "apps/cli/section_text.h"

#include <gtest/gtest.h>

#include "apps/cli/text_report.h"
#include "tests/unit/apps/cli/sample_lists.h"

namespace {

cli::TextReportOptions all() {
    cli::TextReportOptions options;
    options.sections.parts = true;
    return options;
}

TEST(CliSections, ShowEveryRowOfBothSidesWithItsState) {
    const SampleLists sample;
    EXPECT_EQ(cli::sectionsReport(sample.lists, all()), R"(File information
             REFERENCE  COMPARE
  File Path  /a         /b        different
  Volume     1.00 mm³   1.00 mm³  same

Bill of materials
          REFERENCE  COMPARE
  Bolt    8          10       other quantity
  Nut     1          1        same
  Pin     2                   only in reference
  Washer             3        only in compare

Attributes
                     REFERENCE  COMPARE
  Author             Ann        Bob       different
  Header File Name   a.stp      b.stp     different
  Header Time Stamp  today      tomorrow  different

Attributes of parts
            REFERENCE  COMPARE
  Bolt                          different
    Mass    2          3        different
    Finish  zinc       zinc     same
  Nut                           same
    Mass    1          1        same
  Pin                           only in reference
    Mass    1                   only in reference

PMI
            REFERENCE  COMPARE
  Flatness  0.1        0.1      same

)");
}

TEST(CliSections, ChangesOnlyLeavesOutWhatIsTheSame) {
    const SampleLists sample;
    auto options = all();
    options.changesOnly = true;
    EXPECT_EQ(cli::sectionsReport(sample.lists, options), R"(File information
             REFERENCE  COMPARE
  File Path  /a         /b       different

Bill of materials
          REFERENCE  COMPARE
  Bolt    8          10       other quantity
  Pin     2                   only in reference
  Washer             3        only in compare

Attributes
                     REFERENCE  COMPARE
  Author             Ann        Bob       different
  Header File Name   a.stp      b.stp     different
  Header Time Stamp  today      tomorrow  different

Attributes of parts
          REFERENCE  COMPARE
  Bolt                        different
    Mass  2          3        different
  Pin                         only in reference
    Mass  1                   only in reference

PMI
  no differences

)");
}

TEST(CliSections, OnlyWhatIsAskedForAndSwitchedOnIsShown) {
    SampleLists sample;
    cli::TextReportOptions options;
    options.sections = *cli::parseSections("bom,pmi");
    std::string text = cli::sectionsReport(sample.lists, options);
    EXPECT_EQ(text.rfind("Bill of materials", 0), 0U);
    EXPECT_EQ(text.find("Attributes"), std::string::npos);
    EXPECT_EQ(text.find("File information"), std::string::npos);
    sample.lists.order = {0, 2, 3};
    text = cli::sectionsReport(sample.lists, options);
    EXPECT_EQ(text.rfind("PMI", 0), 0U);
    sample.lists.order = {0, 1, 4, 3};
    EXPECT_EQ(cli::sectionsReport(sample.lists, all()).find("Attributes"), std::string::npos);
}

TEST(CliSections, PartsAreShownOnDemandOnly) {
    const SampleLists sample;
    EXPECT_EQ(cli::sectionsReport(sample.lists, {}).find("Attributes of parts"), std::string::npos);
}

TEST(CliSections, EmptyListsHaveNothingToShow) {
    bxtsg::SectionsOutcome lists;
    lists.order = {0, 1, 4, 2, 3};
    const std::string text = cli::sectionsReport(lists, all());
    EXPECT_NE(text.find("PMI\n  nothing in either file\n"), std::string::npos) << text;
    EXPECT_NE(text.find("Attributes of parts\n  nothing in either file\n"), std::string::npos);
}

TEST(CliSections, SidesThatDisagreeAreBothHeard) {
    bxtsg::SectionsOutcome lists;
    lists.order = {3};
    lists.pmi = {{L"a"}, {L"1"}, {L"a"}, {L"1"}, {1}, {2}};
    const std::string text = cli::sectionsReport(lists, {});
    EXPECT_NE(text.find("only in reference / only in compare"), std::string::npos) << text;
}

TEST(CliSections, TextsFromAFileNeverReachTheTerminalRaw) {
    SampleLists sample;
    sample.lists.attributes.referenceNames[0] = L"\x1b]0;evil\a";
    sample.lists.attributes.compareValues[0] = L"line\nbreak\x9b";
    sample.lists.referenceParts[0].attributes[0].key = L"\x1b[2J";
    sample.lists.compareParts[0].name = L"\u202e";
    for (const char c : cli::sectionsReport(sample.lists, all())) {
        EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << static_cast<int>(c);
    }
}

TEST(CliSections, ColoursFollowTheStates) {
    const SampleLists sample;
    auto options = all();
    options.colour = true;
    const std::string text = cli::sectionsReport(sample.lists, options);
    EXPECT_NE(text.find("\x1b[31monly in reference\x1b[0m"), std::string::npos);
    EXPECT_NE(text.find("\x1b[32monly in compare\x1b[0m"), std::string::npos);
    EXPECT_NE(text.find("\x1b[33mother quantity\x1b[0m"), std::string::npos);
    EXPECT_NE(text.find("\x1b[33mdifferent\x1b[0m"), std::string::npos);
}

TEST(CliSections, SummaryNamesWhatDiffersInEachList) {
    SampleLists sample;
    cli::Findings findings;
    findings.lists = &sample.lists;
    const std::string text = cli::textReport(findings, {});
    EXPECT_NE(text.find("Summary: files differ; bill of materials: 1 only in reference, 1 only in "
                        "compare, 1 other quantity; attributes: 1 different; attributes of parts: "
                        "1 only in reference, 1 different; PMI: same; 3D: nothing to compare\n"),
              std::string::npos)
        << text;
    sample.lists.order = {0, 3};
    EXPECT_NE(cli::textReport(findings, {}).find("Summary: no differences; PMI: same; 3D: "),
              std::string::npos);
}

TEST(CliSections, TheStructureIsLeftOutWhenItIsNotAskedFor) {
    bxtsg::ProductStructureOutcome structure;
    cli::Findings findings;
    findings.structure = &structure;
    cli::TextReportOptions options;
    EXPECT_NE(cli::textReport(findings, options).find("Product structure\n"), std::string::npos);
    options.sections.structure = false;
    EXPECT_EQ(cli::textReport(findings, options).find("Product structure\n"), std::string::npos);
}

}  // namespace
