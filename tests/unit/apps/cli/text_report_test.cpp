#include "apps/cli/text_report.h"

#include <gtest/gtest.h>

#include "tests/unit/apps/cli/sample_findings.h"

namespace {

TEST(CliTextReport, ShowsBothTreesTheInstancesTheNotesAndTheSummary) {
    const SampleFindings sample;
    EXPECT_EQ(cli::textReport(sample.findings, {}),
              R"(Reference: old.step
Compare:   new.step

Product structure
  REFERENCE             COMPARE
  Gearbox     modified  Gearbox     modified
    Shaft     moved       Shaft     moved     Gearbox.Shaft -> Box.Shaft
    Bolt (1)  same        Bolt (1)  same
                          Cover     added
    Pin       deleted

3D comparison
  unchanged          Gearbox / Bolt (1)                 identity
  moved              Gearbox / Shaft                    identity    moved 5.0 mm along (0.6, 0.8, 0) and turned 90.0 deg about +Z
  changed            Gearbox / Lid -> Gearbox / Lid v2  same place  volume +100.000 mm3 (+10.0 %), faces 6 -> 8
  only in reference  Gearbox / Pin
  only in compare    Gearbox / Cover
  not compared       Gearbox / Scan                     identity    it is a mesh

Notes
  new.step: 2 layers could not be read
  3 curves were not compared

Summary: files differ; structure: 1 added, 1 deleted, 2 modified, 1 moved; 3D: 1 changed, 1 moved, 1 only in reference, 1 only in compare, 1 not compared, 1 unchanged
)");
}

TEST(CliTextReport, ChangesOnlyLeavesOutWhatIsTheSame) {
    const SampleFindings sample;
    const std::string text = cli::textReport(sample.findings, {true, false});
    EXPECT_EQ(text.find("Bolt"), std::string::npos);
    EXPECT_NE(text.find("Shaft"), std::string::npos);
    EXPECT_NE(text.find("1 unchanged"), std::string::npos);
}

TEST(CliTextReport, ChangesOnlySaysSoWhenThereAreNone) {
    SampleFindings sample;
    sample.structure.rows = {{3, 3}};
    sample.geometry.instances.resize(1);
    const std::string text = cli::textReport(sample.findings, {true, false});
    EXPECT_NE(text.find("Product structure\n  no differences\n"), std::string::npos) << text;
    EXPECT_NE(text.find("3D comparison\n  no differences\n"), std::string::npos) << text;
}

TEST(CliTextReport, EmptyFilesHaveNothingToShow) {
    const bxtsg::ProductStructureOutcome structure;
    const bxtsg::SCGeometryResult geometry;
    cli::Findings findings;
    findings.structure = &structure;
    findings.geometry = &geometry;
    const std::string text = cli::textReport(findings, {});
    EXPECT_NE(text.find("nothing in either file"), std::string::npos);
    EXPECT_NE(text.find("no bodies in either file"), std::string::npos);
    EXPECT_NE(text.find("Summary: no differences; structure: same; 3D: nothing to compare\n"),
              std::string::npos);
}

TEST(CliTextReport, ColoursFollowTheStates) {
    const SampleFindings sample;
    const std::string text = cli::textReport(sample.findings, {false, true});
    EXPECT_NE(text.find("\x1b[32madded\x1b[0m"), std::string::npos);
    EXPECT_NE(text.find("\x1b[31mdeleted\x1b[0m"), std::string::npos);
    EXPECT_NE(text.find("\x1b[33mmodified\x1b[0m"), std::string::npos);
    EXPECT_NE(text.find("\x1b[33mmoved\x1b[0m"), std::string::npos);
    EXPECT_EQ(text.find("m    Bolt"), std::string::npos);
    EXPECT_EQ(cli::textReport(sample.findings, {}).find('\x1b'), std::string::npos);
}

TEST(CliTextReport, NamesFromAFileNeverReachTheTerminalRaw) {
    SampleFindings sample;
    sample.structure.reference[0].displayName = L"\x1b]0;evil\a\u202e";
    sample.structure.reference[1].movedFromPath = L"\x9b";
    sample.geometry.instances[0].reference.path = L"\x1b[2J";
    sample.geometry.instances[5].note = L"\x1b";
    sample.geometry.notes = {L"\x1b"};
    sample.findings.messages = {"\x1b"};
    sample.findings.referenceName = "\x1b.step";
    const std::string text = cli::textReport(sample.findings, {});
    for (const char c : text) {
        EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << static_cast<int>(c);
    }
    EXPECT_NE(text.find("\\x1b]0;evil\\x07\\u{202e}"), std::string::npos);
    EXPECT_NE(text.find("\\x9b -> Box.Shaft"), std::string::npos);
}

TEST(CliTextReport, DeepRowsSayTheirLevelInsteadOfGrowingWider) {
    SampleFindings sample;
    sample.structure.reference[1].level = 5 * 20000;
    sample.structure.compare[1].level = 5 * 20000;
    const std::string text = cli::textReport(sample.findings, {});
    EXPECT_NE(text.find("[level 20000] Shaft"), std::string::npos);
    EXPECT_LT(text.size(), 4000U);
}

TEST(CliTextReport, AmbiguousMatchSaysSo) {
    SampleFindings sample;
    sample.geometry.instances[1].ambiguous = true;
    EXPECT_NE(cli::textReport(sample.findings, {}).find("another match was as good"),
              std::string::npos);
}

TEST(CliTextReport, ChangeWithoutAMoveHasNoMove) {
    SampleFindings sample;
    sample.geometry.instances[2].displacementMm = {1e-9, 0, 0};
    EXPECT_EQ(cli::textReport(sample.findings, {}).find("by 0.000"), std::string::npos);
    EXPECT_EQ(cli::textReport(sample.findings, {}).find("centroid"), std::string::npos);
}

TEST(CliTextReport, ShiftOfAChangedBodyIsThatOfItsCentroid) {
    SampleFindings sample;
    sample.geometry.instances[2].displacementMm = {0.0, 0.015, -0.02};
    const std::string text = cli::textReport(sample.findings, {});
    EXPECT_NE(text.find(", centroid shifted by 0.025 mm (0.000, 0.015, -0.020)\n"),
              std::string::npos)
        << text;
}

TEST(CliTextReport, ABodyThatIsOpenOnOneSideHasNoDifferenceOfVolume) {
    SampleFindings sample;
    auto& changed = sample.geometry.instances[2];
    changed.compare.identity.volumeMm3 = 0.0;
    changed.displacementMm = {0.0, 0.0, 30.0};
    const std::string text = cli::textReport(sample.findings, {});
    EXPECT_NE(text.find("same place  closed in reference, open in compare, faces 6 -> 8\n"),
              std::string::npos)
        << text;
    std::swap(changed.reference.identity, changed.compare.identity);
    EXPECT_NE(cli::textReport(sample.findings, {}).find("open in reference, closed in compare"),
              std::string::npos);
}

TEST(CliTextReport, GeometryAloneTellsWhatHappenedToTheFaces) {
    SampleFindings sample;
    auto& changed = sample.geometry.instances[2];
    changed.hasFaceDifference = true;
    changed.faces = {12, 3, 0, 1, 0.05, L"1 planar face removed; 3 toroidal faces turned"};
    sample.geometry.lengthToleranceMm = 0.001;
    const std::string text = cli::textReport(sample.findings, {false, false, true});
    EXPECT_EQ(text.find("Product structure"), std::string::npos);
    EXPECT_NE(text.find("3D comparison within 0.001 mm\n"), std::string::npos) << text;
    EXPECT_NE(text.find("  12 faces unchanged, 3 changed, 1 removed; at most 0.050 mm apart\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("  1 planar face removed\n"), std::string::npos) << text;
    EXPECT_NE(text.find("  3 toroidal faces turned\n"), std::string::npos) << text;
    // Without the option it stays one line per instance.
    const std::string brief = cli::textReport(sample.findings, {});
    EXPECT_NE(brief.find("1 planar face removed; 3 toroidal faces turned"), std::string::npos);
    EXPECT_EQ(brief.find("faces unchanged"), std::string::npos);
}

}  // namespace
