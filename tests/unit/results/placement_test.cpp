#include "results/placement.h"

#include "tests/unit/results/results_fixture.h"

namespace {

using results::PlaceBeside;
using results::ResultsDialogRect;

constexpr ui::PixelSize kScreen{1921, 1083};

class Placement : public ResultsTest {};

TEST_F(Placement, TheWantedRectangleGoesByScaleAndSections) {
    struct Row {
        int dpi, left, top, width, heights[3];
    };
    constexpr Row rows[] = {
        {96, 1152, 140, 650, {210, 340, 440}},  {119, 1152, 140, 650, {210, 340, 440}},
        {120, 1248, 205, 720, {245, 400, 500}}, {121, 1152, 140, 720, {245, 400, 500}},
        {143, 1152, 140, 720, {245, 400, 500}}, {144, 1248, 205, 720, {225, 400, 460}},
        {192, 1248, 205, 720, {225, 400, 460}},
    };
    for (const Row& row : rows) {
        for (std::size_t sections = 0; sections < 4; ++sections) {
            const int height = row.heights[std::min<std::size_t>(sections, 2)];
            EXPECT_EQ(ResultsDialogRect(sections, kScreen, row.dpi),
                      ui::rectAt(row.left, row.top, row.width, height))
                << row.dpi << " " << sections;
        }
    }
}

TEST_F(Placement, AtTheUsualScaleItIsSevenHundredWideAndNineHundredLeftOfTheEdge) {
    const ui::PixelRect main{0, 0, 1800, 1000};
    const ui::PixelRect placed =
        PlaceBeside(ResultsDialogRect(3, kScreen, 96), main, std::nullopt, 96);
    EXPECT_EQ(placed, ui::rectAt(900, 140, 700, 460));
}

TEST_F(Placement, MinimaGoByTheScale) {
    const ui::PixelRect tiny = ui::rectAt(5, 7, 1, 1);
    const ui::PixelRect main{0, 0, 2000, 1000};
    EXPECT_EQ(PlaceBeside(tiny, main, std::nullopt, 96), ui::rectAt(1100, 7, 700, 295));
    EXPECT_EQ(PlaceBeside(tiny, main, std::nullopt, 120), ui::rectAt(1050, 7, 750, 330));
    EXPECT_EQ(PlaceBeside(tiny, main, std::nullopt, 143), ui::rectAt(1050, 7, 750, 330));
    EXPECT_EQ(PlaceBeside(tiny, main, std::nullopt, 144), ui::rectAt(1000, 7, 800, 360));
}

TEST_F(Placement, ItStandsBelowTheRibbon) {
    const ui::PixelRect wanted = ui::rectAt(0, 140, 700, 440);
    const ui::PixelRect main{0, 0, 2000, 1000};
    EXPECT_EQ(PlaceBeside(wanted, main, 134, 96).top, 140);
    EXPECT_EQ(PlaceBeside(wanted, main, 136, 96).top, 141);
}

TEST_F(Placement, OnlyStoredSwitchesCountUnlessThereAreNone) {
    EXPECT_EQ(results::SwitchedOnSections(), 3U);
    set(L"PSCompare", 0);
    EXPECT_EQ(results::SwitchedOnSections(), 0U);
    set(L"PMICompare", 2);
    EXPECT_EQ(results::SwitchedOnSections(), 1U);
}

TEST_F(Placement, MovesTheWindow) {
    dialog->Place({0, 0, 10, 10});
    create();
    dialog->Place(ui::rectAt(900, 140, 700, 460));
    EXPECT_EQ(window().windowPlace(), ui::rectAt(900, 140, 700, 460));
    EXPECT_EQ(window().controlPlace(1302), ui::rectAt(540, 420, 140, 32));
}

}  // namespace
