#include "apps/cli/json_report.h"

#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "tests/unit/apps/cli/sample_findings.h"

namespace {

using nlohmann::json;

json report(const SampleFindings& sample, bool changesOnly = false) {
    return json::parse(cli::jsonReport(sample.findings, changesOnly, cli::ExitOn()));
}

TEST(CliJsonReport, HoldsBothTreesWithStatesPeersAndMovedPaths) {
    const json all = report(SampleFindings());
    EXPECT_EQ(all["format"], 1);
    EXPECT_EQ(all["reference"], "old.step");
    const json& shaft = all["productStructure"]["reference"][1];
    EXPECT_EQ(shaft["displayName"], "Shaft");
    EXPECT_EQ(shaft["state"], "moved");
    EXPECT_EQ(shaft["depth"], 1);
    EXPECT_EQ(shaft["parent"], 0);
    EXPECT_EQ(shaft["peer"], 1);
    EXPECT_EQ(shaft["movedFromPath"], "Gearbox.Shaft");
    EXPECT_EQ(shaft["movedToPath"], "Box.Shaft");
    const json& root = all["productStructure"]["compare"][0];
    EXPECT_TRUE(root["parent"].is_null());
    EXPECT_TRUE(root["movedFromPath"].is_null());
    EXPECT_TRUE(all["productStructure"]["compare"][2]["peer"].is_null());
    EXPECT_EQ(all["productStructure"]["rows"][3], json({{"reference", nullptr}, {"compare", 2}}));
}

TEST(CliJsonReport, HoldsInstancesWithTheirMatchEvidence) {
    const json all = report(SampleFindings());
    const json& instances = all["geometry"]["instances"];
    ASSERT_EQ(instances.size(), 6U);
    EXPECT_EQ(instances[1]["state"], "moved");
    EXPECT_EQ(instances[1]["evidence"], "identity");
    EXPECT_EQ(instances[1]["displacementMm"], json({3.0, 4.0, 0.0}));
    EXPECT_EQ(instances[1]["rotationDeg"], 90.0);
    EXPECT_EQ(instances[1]["rotationAxis"], nlohmann::json({0.0, 0.0, 1.0}));
    EXPECT_EQ(instances[1]["motion"],
              "moved 5.0 mm along (0.6, 0.8, 0) and turned 90.0 deg about +Z");
    EXPECT_TRUE(instances[0]["motion"].is_null());
    EXPECT_EQ(instances[1]["meshAllowanceMm"], 0.0);
    EXPECT_EQ(instances[2]["evidence"], "same place");
    EXPECT_EQ(instances[2]["compare"]["volumeMm3"], 1100.0);
    EXPECT_TRUE(instances[3]["compare"].is_null());
    EXPECT_EQ(instances[3]["evidence"], "none");
    EXPECT_EQ(instances[5]["note"], "it is a mesh");
    EXPECT_EQ(all["geometry"]["notes"][0], "3 curves were not compared");
    EXPECT_EQ(all["messages"][0], "new.step: 2 layers could not be read");
}

TEST(CliJsonReport, SummaryCountsAndGivesTheExitCodeOfTheRule) {
    const SampleFindings sample;
    const json all = report(sample);
    EXPECT_EQ(all["summary"]["different"], true);
    EXPECT_EQ(all["summary"]["exitCode"], 1);
    EXPECT_EQ(all["summary"]["structure"]["added"], 1);
    EXPECT_EQ(all["summary"]["geometry"]["unchanged"], 1);
    SampleFindings same;
    same.structure = {};
    same.geometry.instances.resize(2);
    const json narrowed = json::parse(cli::jsonReport(same.findings, false, {true, true, false}));
    EXPECT_EQ(narrowed["summary"]["different"], true);
    EXPECT_EQ(narrowed["summary"]["exitCode"], 0);
}

TEST(CliJsonReport, ChangesOnlyKeepsTheIndicesOfTheWholeTree) {
    const json all = report(SampleFindings(), true);
    EXPECT_EQ(all["changesOnly"], true);
    EXPECT_EQ(all["productStructure"]["compare"].size(), 3U);
    EXPECT_EQ(all["productStructure"]["reference"][2]["index"], 2);
    EXPECT_EQ(all["productStructure"]["rows"].size(), 4U);
    EXPECT_EQ(all["geometry"]["instances"].size(), 5U);
    EXPECT_EQ(all["summary"]["geometry"]["unchanged"], 1);
}

TEST(CliJsonReport, StaysValidWithAnyNameAndAnyNumber) {
    SampleFindings sample;
    sample.structure.reference[0].displayName = std::wstring(L"\x1b\"\\\0\xdcff", 5);
    sample.findings.referenceName = "raw\xff.step";
    sample.geometry.instances[0].rotationDeg = std::numeric_limits<double>::quiet_NaN();
    sample.geometry.instances[0].reference.identity.volumeMm3 = 1e300;
    const std::string text = cli::jsonReport(sample.findings, false, cli::ExitOn());
    for (const char c : text) {
        EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << static_cast<int>(c);
    }
    const json all = json::parse(text);
    EXPECT_EQ(all["reference"], "raw\xef\xbf\xbd.step");
    EXPECT_TRUE(all["geometry"]["instances"][0]["rotationDeg"].is_null());
    EXPECT_EQ(all["geometry"]["instances"][0]["reference"]["volumeMm3"], 1e300);
}

}  // namespace
