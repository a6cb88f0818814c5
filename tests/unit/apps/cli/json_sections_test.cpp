#include "apps/cli/json_sections.h"

#include <gtest/gtest.h>

#include "apps/cli/json_report.h"
#include "tests/unit/apps/cli/sample_lists.h"

namespace {

using nlohmann::json;

json report(const SampleLists& sample, const cli::Sections& sections, bool changesOnly = false) {
    cli::Findings findings;
    findings.lists = &sample.lists;
    return json::parse(cli::jsonReport(findings, changesOnly, {}, sections));
}

cli::Sections all() {
    cli::Sections sections;
    sections.parts = true;
    return sections;
}

TEST(CliJsonSections, HoldEveryRowOfBothSides) {
    const json made = report(SampleLists(), all());
    const json& bom = made["billOfMaterials"];
    ASSERT_EQ(bom["reference"].size(), 3U);
    EXPECT_EQ(
        bom["reference"][2],
        json({{"index", 2}, {"name", "Pin"}, {"value", "2"}, {"state", "only in reference"}}));
    EXPECT_EQ(bom["compare"][0]["value"], "10");
    EXPECT_EQ(bom["compare"][0]["state"], "same");
    EXPECT_EQ(made["attributes"]["compare"][0]["state"], "different");
    EXPECT_EQ(made["pmi"]["reference"][0]["name"], "Flatness");
    EXPECT_EQ(made["fileInformation"]["compare"][0]["value"], "/b");
}

TEST(CliJsonSections, VolumesAreNumbersOrNull) {
    const json volumes = report(SampleLists(), all())["fileInformation"]["volumes"];
    EXPECT_EQ(volumes["reference"], json({{"value", 1.0}, {"unit", "mm"}}));
    EXPECT_TRUE(volumes["compare"].is_null());
}

TEST(CliJsonSections, PartsHoldTheirAttributesAndNeighbours) {
    const json parts = report(SampleLists(), all())["parts"];
    EXPECT_EQ(parts["reference"][0]["name"], "Bolt");
    EXPECT_EQ(parts["reference"][0]["different"], true);
    EXPECT_EQ(parts["reference"][0]["attributes"][0],
              json({{"name", "Mass"}, {"value", "2"}, {"state", "different"}}));
    EXPECT_EQ(parts["rows"][1], json({{"reference", 2}, {"compare", 1}}));
    EXPECT_EQ(parts["rows"][2], json({{"reference", 1}, {"compare", nullptr}}));
}

TEST(CliJsonSections, ChangesOnlyKeepsIndicesAndOtherQuantities) {
    const json made = report(SampleLists(), all(), true);
    EXPECT_EQ(made["billOfMaterials"]["reference"].size(), 2U);
    EXPECT_EQ(made["billOfMaterials"]["reference"][0]["name"], "Bolt");
    EXPECT_EQ(made["billOfMaterials"]["compare"][1]["index"], 2);
    EXPECT_TRUE(made["pmi"]["reference"].empty());
    EXPECT_EQ(made["parts"]["reference"].size(), 2U);
    EXPECT_EQ(made["parts"]["reference"][0]["attributes"].size(), 1U);
    EXPECT_EQ(made["parts"]["rows"].size(), 2U);
}

TEST(CliJsonSections, OnlyWhatIsAskedForAndSwitchedOnIsThere) {
    SampleLists sample;
    json made = report(sample, *cli::parseSections("pmi"));
    EXPECT_TRUE(made.contains("pmi"));
    EXPECT_FALSE(made.contains("billOfMaterials"));
    EXPECT_FALSE(made.contains("parts"));
    EXPECT_TRUE(made["summary"].contains("billOfMaterials"));
    sample.lists.order = {0};
    made = report(sample, all());
    for (const char* name : {"pmi", "billOfMaterials", "parts", "attributes"}) {
        EXPECT_FALSE(made.contains(name)) << name;
        EXPECT_FALSE(made["summary"].contains(name)) << name;
    }
    EXPECT_TRUE(made.contains("fileInformation"));
}

TEST(CliJsonSections, SummaryCountsLines) {
    const json summary = report(SampleLists(), all())["summary"];
    EXPECT_EQ(summary["billOfMaterials"], json({{"referenceRows", 3},
                                                {"compareRows", 3},
                                                {"onlyInReference", 1},
                                                {"onlyInCompare", 1},
                                                {"different", 1}}));
    EXPECT_EQ(summary["attributes"]["different"], 1);
    EXPECT_EQ(summary["partAttributes"]["onlyInReference"], 1);
    EXPECT_EQ(summary["exitCode"], 1);
}

}  // namespace
