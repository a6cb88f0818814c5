#include <gtest/gtest.h>

#include "backends/headless/dialog.h"
#include "backends/headless/toolkit.h"
#include "tests/unit/backends/headless/quiet_user.h"

namespace {

using headless::Dialog;
using headless::Toolkit;

constexpr int kList = 1305;
constexpr int kBox = 1301;
constexpr int kCheck = 1216;
constexpr int kButton = 1302;
constexpr int kTree = 1360;

ui::DialogTemplate shape() {
    ui::DialogTemplate made;
    made.width = 420;
    made.height = 260;
    made.controls = {{kList, ui::ControlKind::List, {10, 74, 195, 158}, L""},
                     {kBox, ui::ControlKind::ListBox, {}, L""},
                     {kCheck, ui::ControlKind::CheckBox, {}, L"check"},
                     {kButton, ui::ControlKind::PushButton, {354, 240, 56, 16}, L"Save"}};
    return made;
}

struct Events : ui::DialogEvents {
    void onClicked(int id) override { heard.push_back("click " + std::to_string(id)); }
    bool onKeyDown(ui::Key key) override { return takesKeys && key == ui::Key::Escape; }
    void onCancel() override { heard.push_back("cancel"); }
    void onResized(ui::PixelSize size) override {
        heard.push_back("size " + std::to_string(size.width) + "x" + std::to_string(size.height));
    }
    void onMouseDown(ui::PixelPoint at) override {
        heard.push_back("mouse " + std::to_string(at.x) + "," + std::to_string(at.y));
    }
    void onSelectionChanged(int id) override { heard.push_back("select " + std::to_string(id)); }
    void onRowClicked(int, int row) override { heard.push_back("row " + std::to_string(row)); }
    void onScrolled(int id, ui::ScrollBy) override {
        heard.push_back("scroll " + std::to_string(id));
    }
    void onExpanded(int id, ui::TreeItem, bool open) override {
        heard.push_back((open ? "open " : "close ") + std::to_string(id));
    }
    ui::ItemColours onPaintRow(int, std::int32_t data) override {
        return {true, static_cast<ui::Colour>(data), 0};
    }
    std::vector<std::string> heard;
    bool takesKeys = false;
};

class HeadlessSurface : public testing::Test {
protected:
    void SetUp() override { dialog.createModeless(events); }
    std::vector<std::string> heard() { return std::exchange(events.heard, {}); }
    using Heard = std::vector<std::string>;

    Toolkit toolkit{std::make_shared<QuietUser>(), L"Main"};
    Dialog dialog{shape(), toolkit};
    Events events;
};

TEST_F(HeadlessSurface, DialogUnitsBecomePixels) {
    EXPECT_EQ(dialog.clientSize().width, 630);
    EXPECT_EQ(dialog.clientSize().height, 422);
    EXPECT_EQ(dialog.controlPlace(kButton), ui::rectAt(531, 390, 84, 26));
    EXPECT_EQ(dialog.list(kList)->clientWidthPx(), 292);
    toolkit.setDotsPerInch(192);
    const Dialog large(shape(), toolkit);
    EXPECT_EQ(large.clientSize().width, 1260);
}

TEST_F(HeadlessSurface, ControlsCanBeAddedLater) {
    EXPECT_EQ(dialog.tree(kTree), nullptr);
    dialog.addControl({kTree, ui::ControlKind::Tree, {}, L"", false});
    ASSERT_NE(dialog.tree(kTree), nullptr);
    EXPECT_FALSE(dialog.controlVisible(kTree));
    dialog.showControl(kTree, true);
    EXPECT_TRUE(dialog.controlVisible(kTree));
    const ui::TreeItem item = dialog.tree(kTree)->insertLast(nullptr, {L"a"});
    EXPECT_TRUE(dialog.openItem(kTree, item, true));
    dialog.tree(kTree)->turnWheel(1);
    EXPECT_EQ(heard(), (Heard{"open 1360", "scroll 1360"}));
}

TEST_F(HeadlessSurface, UnknownControlsAreIgnored) {
    dialog.setChecked(9, true);
    dialog.showControl(9, true);
    dialog.placeControl(9, {1, 2, 3, 4});
    dialog.setWeight(9, 600);
    dialog.setAnchors(9, {});
    EXPECT_FALSE(dialog.checked(9));
    EXPECT_FALSE(dialog.controlVisible(9));
    EXPECT_EQ(dialog.controlPlace(9), ui::PixelRect());
    EXPECT_EQ(dialog.list(9), nullptr);
    EXPECT_EQ(dialog.listBox(kList), nullptr);
    EXPECT_FALSE(dialog.choose(9, 0));
    EXPECT_FALSE(dialog.clickRow(9, 0));
    EXPECT_TRUE(heard().empty());
}

TEST_F(HeadlessSurface, PressingACheckBoxTurnsItOver) {
    EXPECT_TRUE(dialog.press(kCheck));
    EXPECT_TRUE(dialog.checked(kCheck));
    dialog.press(kCheck);
    EXPECT_FALSE(dialog.checked(kCheck));
    dialog.showControl(kCheck, false);
    EXPECT_FALSE(dialog.press(kCheck));
    EXPECT_EQ(heard(), (Heard{"click 1216", "click 1216"}));
}

TEST_F(HeadlessSurface, AnchoredControlsFollowTheEdges) {
    dialog.setAnchors(kButton, {1, 1, 1, 1});
    dialog.resizeByUser({730, 472});
    EXPECT_EQ(dialog.controlPlace(kButton), ui::rectAt(631, 440, 84, 26));
    EXPECT_EQ(dialog.controlPlace(kList).left, 15);
    dialog.resizeByUser({730, 472});
    EXPECT_EQ(heard(), (Heard{"size 730x472"}));
}

TEST_F(HeadlessSurface, TheUserCannotMakeItNarrowerThanAllowed) {
    dialog.setMinimumWidthPx(600);
    dialog.resizeByUser({100, 50});
    EXPECT_EQ(dialog.clientSize().width, 600);
    EXPECT_EQ(dialog.clientSize().height, 50);
    dialog.placeWindow(ui::rectAt(5, 6, 100, 50));
    EXPECT_EQ(dialog.windowPlace(), ui::rectAt(5, 6, 100, 50));
}

TEST_F(HeadlessSurface, TheUsersActionsReachTheEvents) {
    dialog.listBox(kBox)->insert(0, L"a");
    EXPECT_TRUE(dialog.choose(kBox, 0));
    EXPECT_FALSE(dialog.choose(kBox, 1));
    dialog.clickRow(kList, -1);
    dialog.clickAt({3, 4});
    dialog.list(kList)->turnWheel(1);
    EXPECT_EQ(heard(), (Heard{"select 1301", "row -1", "mouse 3,4", "scroll 1305"}));
}

TEST_F(HeadlessSurface, EscapeClosesUnlessTheEventsTakeIt) {
    dialog.pressKey(ui::Key::Other);
    EXPECT_TRUE(heard().empty());
    dialog.pressKey(ui::Key::Escape);
    EXPECT_EQ(heard(), (Heard{"cancel"}));
    events.takesKeys = true;
    dialog.pressKey(ui::Key::Escape);
    EXPECT_TRUE(heard().empty());
    dialog.pressKey(ui::Key::Cancel);
    EXPECT_EQ(heard(), (Heard{"cancel"}));
}

TEST_F(HeadlessSurface, RowsAskForTheirColoursByTheirNumber) {
    dialog.list(kList)->insertRow(0, L"a");
    dialog.list(kList)->setRowData(0, 7);
    EXPECT_EQ(dialog.paintedRowColours(kList, 0).text, 7U);
    EXPECT_FALSE(dialog.paintedRowColours(kList, 1).changed);
}

}  // namespace
