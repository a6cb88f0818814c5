#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/integration/pairs/expected_tree.h"
#include "tests/support/real_data.h"

// Two revisions of a printable laptop case. The expectations were worked out from the files' text:
// the second revision puts the whole assembly below a new one, renames every product, and deepens
// the two round pockets for pins in one cover by 3 mm; its author calls it an update of the pin
// depth.

namespace {

using support::CompareReport;
using support::ReportInstance;

class FrameworkCase : public testing::Test {
protected:
    void SetUp() override {
        SKIP_WITHOUT_REAL_DATA();
        pairs::compareDifferingFiles(support::realFile("FrameworkCase1"),
                                     support::realFile("FrameworkCase2"), report_);
    }

    std::vector<ReportInstance> thatAre(const std::string& state) const {
        std::vector<ReportInstance> found;
        for (const auto& each : report_.instances) {
            if (each.state == state) found.push_back(each);
        }
        return found;
    }

    CompareReport report_;
};

std::vector<std::string> lines(const std::string& line, std::size_t count) {
    return std::vector<std::string>(count, line);
}

}  // namespace

// The two single top nodes pair whatever their names. Below them no two names share a key
// (8_fw_top_asm_asm against 7_me_asm_asm_1_asm), so everything is on one side only, and the top
// nodes are modified by what lies below them.
TEST_F(FrameworkCase, ReferenceTreeIsDeletedBelowItsTop) {
    const std::string pins =
        "  CONNECT_PIN | deleted\n  CONNECT_PIN | deleted\n  CONNECT_PIN | deleted\n"
        "  CONNECT_PIN | deleted\n  CONNECT_PIN | deleted\n";
    EXPECT_EQ(pairs::drawn(report_.reference), pairs::drawing(R"(
7_ME_ASM_ASM | modified
  8_FW_TOP_ASM_ASM | deleted
    9_FW_TOP_COVER_MAIN | deleted
    9_FW_TOP_COVER_RIGHT | deleted
    9_FW_TOP_COVER_LEFT | deleted
  8_FW_BOTTOM_ASM_ASM | deleted
    9_FW_BOT_COVER_L | deleted
    9_FW_BOT_COVER_R | deleted
)") + pins + pins);
}

TEST_F(FrameworkCase, CompareTreeIsAddedBelowItsTop) {
    const std::string pins =
        "    CONNECT_PIN_1 | added\n    CONNECT_PIN_1 | added\n    CONNECT_PIN_1 | added\n"
        "    CONNECT_PIN_1 | added\n    CONNECT_PIN_1 | added\n";
    EXPECT_EQ(pairs::drawn(report_.compare), pairs::drawing(R"(
FW_PCB_BOX_FULL_UPDATE_ASM | modified
  7_ME_ASM_ASM_1_ASM | added
    8_FW_TOP_ASM_ASM_1_ASM | added
      9_FW_TOP_COVER_MAIN_1 | added
      9_FW_TOP_COVER_RIGHT_3 | added
      9_FW_TOP_COVER_LEFT_1 | added
    8_FW_BOTTOM_ASM_ASM_1_ASM | added
      9_FW_BOT_COVER_L_1 | added
      9_FW_BOT_COVER_R_1 | added
)") + pins + pins);
}

// The top nodes share no key but fill one row; below the top there is no filling: the compare
// side's rows come first, the reference's left-overs after them.
TEST_F(FrameworkCase, RowsShowTheTopsTogetherAndTheRestApart) {
    std::vector<std::string> wanted = {
        "7_ME_ASM_ASM modified <> FW_PCB_BOX_FULL_UPDATE_ASM modified",
        "- <> 7_ME_ASM_ASM_1_ASM added",
        "- <> 8_FW_TOP_ASM_ASM_1_ASM added",
        "- <> 9_FW_TOP_COVER_MAIN_1 added",
        "- <> 9_FW_TOP_COVER_RIGHT_3 added",
        "- <> 9_FW_TOP_COVER_LEFT_1 added",
        "- <> 8_FW_BOTTOM_ASM_ASM_1_ASM added",
        "- <> 9_FW_BOT_COVER_L_1 added",
        "- <> 9_FW_BOT_COVER_R_1 added",
    };
    const auto newPins = lines("- <> CONNECT_PIN_1 added", 10);
    wanted.insert(wanted.end(), newPins.begin(), newPins.end());
    wanted.insert(wanted.end(),
                  {"8_FW_TOP_ASM_ASM deleted <> -", "9_FW_TOP_COVER_MAIN deleted <> -",
                   "9_FW_TOP_COVER_RIGHT deleted <> -", "9_FW_TOP_COVER_LEFT deleted <> -",
                   "8_FW_BOTTOM_ASM_ASM deleted <> -", "9_FW_BOT_COVER_L deleted <> -",
                   "9_FW_BOT_COVER_R deleted <> -"});
    const auto oldPins = lines("CONNECT_PIN deleted <> -", 10);
    wanted.insert(wanted.end(), oldPins.begin(), oldPins.end());
    EXPECT_EQ(pairs::drawnRows(report_), wanted);
}

TEST_F(FrameworkCase, TopNodesAreEachOthersPeersAndNothingElseHasOne) {
    ASSERT_FALSE(report_.reference.empty());
    ASSERT_FALSE(report_.compare.empty());
    EXPECT_EQ(report_.reference[0].peer, 0);
    EXPECT_EQ(report_.compare[0].peer, 0);
    for (std::size_t i = 1; i < report_.reference.size(); ++i) {
        EXPECT_EQ(report_.reference[i].peer, -1);
    }
    for (std::size_t i = 1; i < report_.compare.size(); ++i) {
        EXPECT_EQ(report_.compare[i].peer, -1);
    }
}

// Fifteen bodies on each side: five covers and ten pins. All usages have the same placements in
// both files, and every body but one lies on the same surfaces, to the last digit that is written;
// the edges of some cylinders are split otherwise, which changes no surface and no face count.
TEST_F(FrameworkCase, OneCoverIsChangedAndTheRestIsWhereItWas) {
    EXPECT_EQ(report_.instances.size(), 15U);
    EXPECT_EQ(report_.instancesThatAre("unchanged"), 14U);
    const auto changed = thatAre("changed");
    ASSERT_EQ(changed.size(), 1U);
    EXPECT_EQ(changed[0].reference.path, "7_ME_ASM_ASM / 8_FW_TOP_ASM_ASM / 9_FW_TOP_COVER_RIGHT");
    EXPECT_EQ(changed[0].compare.path,
              "FW_PCB_BOX_FULL_UPDATE_ASM / 7_ME_ASM_ASM_1_ASM / 8_FW_TOP_ASM_ASM_1_ASM / "
              "9_FW_TOP_COVER_RIGHT_3");
    EXPECT_EQ(changed[0].reference.faceCount, 213);
    EXPECT_EQ(changed[0].compare.faceCount, 213);
}

// Two planes of the cover move from y = -0.15 to y = 2.85, each a full disc of radius 2.6: the
// floors of the pockets that take the pins. The rest of its surfaces is the same.
TEST_F(FrameworkCase, TheCoverLosesTheVolumeOfItsDeeperPockets) {
    const auto changed = thatAre("changed");
    ASSERT_EQ(changed.size(), 1U);
    const double discMm2 = std::numbers::pi * 2.6 * 2.6;
    EXPECT_NEAR(changed[0].reference.volumeMm3 - changed[0].compare.volumeMm3, 2 * discMm2 * 3.0,
                0.05);
}

// Renamed from CONNECT_PIN to CONNECT_PIN_1 and moved below another parent, the ten pins still
// pair by their shape and place.
TEST_F(FrameworkCase, PinsPairAcrossTheirNewNames) {
    std::size_t pins = 0;
    for (const auto& each : thatAre("unchanged")) {
        if (each.reference.path != "7_ME_ASM_ASM / CONNECT_PIN") continue;
        ++pins;
        EXPECT_EQ(each.compare.path,
                  "FW_PCB_BOX_FULL_UPDATE_ASM / 7_ME_ASM_ASM_1_ASM / CONNECT_PIN_1");
        EXPECT_EQ(each.reference.faceCount, 26);
        for (std::size_t i = 0; i < 12; ++i) {
            EXPECT_NEAR(each.reference.placement[i], each.compare.placement[i], 1e-6);
        }
    }
    EXPECT_EQ(pins, 10U);
}
