#include "backends/headless/dialog.h"

#include <gtest/gtest.h>

#include <vector>

#include "backends/headless/toolkit.h"
#include "tests/unit/backends/headless/quiet_user.h"

namespace {

using headless::Dialog;
using headless::Toolkit;

constexpr int kEdit = 1001;
constexpr int kOtherEdit = 1002;
constexpr int kLabel = 1015;
constexpr int kTree = 1360;
constexpr int kOk = 1;

ui::DialogTemplate shape() {
    ui::DialogTemplate made;
    made.id = 103;
    made.caption = L"Files";
    made.controls = {{-1, ui::ControlKind::GroupBox, {}, L"group"},
                     {kEdit, ui::ControlKind::FileEdit, {}, L""},
                     {kOtherEdit, ui::ControlKind::FileEdit, {}, L""},
                     {kLabel, ui::ControlKind::StaticText, {}, L"label"},
                     {kTree, ui::ControlKind::Tree, {}, L""},
                     {kOk, ui::ControlKind::DefaultButton, {}, L"Compare"}};
    return made;
}

class Events : public ui::DialogEvents {
public:
    void onInitDialog() override {
        ++inits;
        if (onInit) onInit();
    }
    void onTextChanged(int id) override { changed.push_back(id); }
    void onClicked(int id) override {
        clicked.push_back(id);
        if (onClick) onClick(id);
    }
    ui::ItemColours onPaintItem(int id, const ui::TreeItemData& item) override {
        return {true, static_cast<std::uint32_t>(id), static_cast<std::uint32_t>(item.text.size())};
    }
    void onCancel() override { ++cancels; }

    std::function<void()> onInit;
    std::function<void(int)> onClick;
    std::vector<int> changed;
    std::vector<int> clicked;
    int inits = 0;
    int cancels = 0;
};

class HeadlessDialog : public testing::Test {
protected:
    std::shared_ptr<QuietUser> user = std::make_shared<QuietUser>();
    Toolkit toolkit{user, L"Main"};
    Dialog dialog{shape(), toolkit};
    Events events;
};

TEST_F(HeadlessDialog, UnknownControlsAreIgnored) {
    dialog.setText(99, L"x");
    dialog.enable(99, true);
    dialog.setFocus(99);
    EXPECT_EQ(dialog.text(99), L"");
    EXPECT_FALSE(dialog.enabled(99));
    EXPECT_EQ(dialog.tree(99), nullptr);
    EXPECT_EQ(dialog.tree(kEdit), nullptr);
    EXPECT_FALSE(dialog.press(99));
    EXPECT_FALSE(dialog.type(99, L"x"));
    EXPECT_EQ(dialog.text(-1), L"");
}

TEST_F(HeadlessDialog, SettingATextFiresNothingButTypingDoes) {
    dialog.createModeless(events);
    dialog.setText(kEdit, L"set");
    EXPECT_TRUE(events.changed.empty());
    EXPECT_TRUE(dialog.type(kEdit, L"typed"));
    EXPECT_EQ(events.changed, (std::vector<int>{kEdit}));
    EXPECT_EQ(dialog.text(kEdit), L"typed");
    EXPECT_EQ(dialog.focus(), kEdit);
}

TEST_F(HeadlessDialog, DisabledControlsDoNotReact) {
    dialog.createModeless(events);
    dialog.enable(kOk, false);
    dialog.enable(kEdit, false);
    EXPECT_FALSE(dialog.press(kOk));
    EXPECT_FALSE(dialog.type(kEdit, L"x"));
    EXPECT_TRUE(events.clicked.empty());
    dialog.enable(kOk, true);
    EXPECT_TRUE(dialog.press(kOk));
    EXPECT_EQ(events.clicked, (std::vector<int>{kOk}));
}

TEST_F(HeadlessDialog, TextsCannotBeTypedIntoLabelsNorLabelsPressed) {
    dialog.createModeless(events);
    EXPECT_FALSE(dialog.type(kLabel, L"x"));
    EXPECT_FALSE(dialog.press(kLabel));
    EXPECT_EQ(dialog.text(kLabel), L"label");
}

TEST_F(HeadlessDialog, DefaultFocusIsTheFirstControlThatTakesIt) {
    dialog.createModeless(events);
    EXPECT_EQ(dialog.focus(), kEdit);
    dialog.setFocus(kLabel);
    EXPECT_EQ(dialog.focus(), kEdit);
    dialog.setFocus(kOtherEdit);
    EXPECT_EQ(dialog.focus(), kOtherEdit);
}

TEST_F(HeadlessDialog, FocusSetDuringInitStands) {
    events.onInit = [&] { dialog.setFocus(kOtherEdit); };
    dialog.createModeless(events);
    EXPECT_EQ(dialog.focus(), kOtherEdit);
}

TEST_F(HeadlessDialog, TreesAskForTheColoursOfTheirItems) {
    const ui::TreeItem item = dialog.tree(kTree)->insertLast(nullptr, {L"Bolt", nullptr});
    EXPECT_FALSE(dialog.paintedColours(kTree, item).changed);  // nothing paints without a window
    dialog.createModeless(events);
    const ui::ItemColours colours = dialog.paintedColours(kTree, item);
    EXPECT_TRUE(colours.changed);
    EXPECT_EQ(colours.text, static_cast<std::uint32_t>(kTree));
    EXPECT_EQ(colours.background, 4U);
    EXPECT_FALSE(dialog.paintedColours(kTree, nullptr).changed);
    EXPECT_FALSE(dialog.paintedColours(kEdit, item).changed);
}

TEST_F(HeadlessDialog, CueBannerShowsOnlyWhileTheEditIsEmpty) {
    dialog.createModeless(events);
    dialog.setCueBanner(kEdit, L"<name>", false);
    dialog.setCueBanner(kOtherEdit, L"<other>", true);
    EXPECT_EQ(dialog.shownCueBanner(kEdit), L"");  // it has the focus
    dialog.setFocus(kOtherEdit);
    EXPECT_EQ(dialog.shownCueBanner(kEdit), L"<name>");
    EXPECT_EQ(dialog.shownCueBanner(kOtherEdit), L"<other>");
    dialog.setText(kOtherEdit, L"x");
    EXPECT_EQ(dialog.shownCueBanner(kOtherEdit), L"");
}

TEST_F(HeadlessDialog, BrowseOptionsAreKept) {
    EXPECT_FALSE(dialog.browse(kEdit));
    dialog.setBrowse(kEdit, {L"All Files (*.*)|*.*||", true, true, 203});
    ASSERT_TRUE(dialog.browse(kEdit));
    EXPECT_EQ(dialog.browse(kEdit)->filter, L"All Files (*.*)|*.*||");
    EXPECT_EQ(dialog.browse(kEdit)->image, 203U);
}

TEST_F(HeadlessDialog, ModalReturnsWhatItWasEndedWith) {
    events.onClick = [&](int) { dialog.endModal(Dialog::kConfirmed); };
    user->onDialog = [](Dialog& open) {
        EXPECT_TRUE(open.visible());
        open.press(kOk);
        EXPECT_FALSE(open.open());
    };
    EXPECT_EQ(dialog.runModal(events), Dialog::kConfirmed);
    EXPECT_FALSE(dialog.hasWindow());
    EXPECT_FALSE(dialog.visible());
    EXPECT_EQ(events.inits, 1);
    EXPECT_EQ(events.cancels, 0);
}

TEST_F(HeadlessDialog, ModalThatTheUserLeavesOpenIsCancelled) {
    EXPECT_EQ(dialog.runModal(events), Dialog::kCancelled);
    EXPECT_EQ(user->dialogs, 1);
    EXPECT_EQ(events.cancels, 1);
}

TEST_F(HeadlessDialog, ModalEndedDuringInitIsNeverPutBeforeTheUser) {
    events.onInit = [&] { dialog.endModal(7); };
    EXPECT_EQ(dialog.runModal(events), 7);
    EXPECT_EQ(user->dialogs, 0);
}

TEST_F(HeadlessDialog, ModalCanRunTwice) {
    EXPECT_EQ(dialog.runModal(events), Dialog::kCancelled);
    events.onClick = [&](int) { dialog.endModal(Dialog::kConfirmed); };
    user->onDialog = [](Dialog& open) { open.press(kOk); };
    EXPECT_EQ(dialog.runModal(events), Dialog::kConfirmed);
    EXPECT_EQ(events.inits, 2);
}

TEST_F(HeadlessDialog, ModelessIsCreatedHiddenAndShownOnDemand) {
    EXPECT_FALSE(dialog.hasWindow());
    dialog.show(true);
    EXPECT_FALSE(dialog.visible());
    dialog.createModeless(events);
    EXPECT_TRUE(dialog.hasWindow());
    EXPECT_FALSE(dialog.visible());
    dialog.createModeless(events);
    EXPECT_EQ(events.inits, 1);
    dialog.show(true);
    EXPECT_TRUE(dialog.visible());
    EXPECT_EQ(toolkit.windows(), (std::vector<Dialog*>{&dialog}));
    dialog.destroyWindow();
    EXPECT_FALSE(dialog.hasWindow());
    EXPECT_TRUE(toolkit.windows().empty());
}

TEST_F(HeadlessDialog, ForegroundAndCaptionFollowTheTopmostWindow) {
    Dialog second(shape(), toolkit);
    toolkit.setActiveWindowCaption(L"Main now");
    EXPECT_EQ(toolkit.mainCaption(), L"Main now");
    dialog.createModeless(events);
    second.createModeless(events);
    dialog.show(true);
    second.show(true);
    dialog.bringToForeground();
    EXPECT_EQ(toolkit.windows(), (std::vector<Dialog*>{&second, &dialog}));
    toolkit.setActiveWindowCaption(L"Result");
    EXPECT_EQ(dialog.caption(), L"Result");
    EXPECT_EQ(second.caption(), L"Files");
    EXPECT_EQ(toolkit.mainCaption(), L"Main now");
}

TEST_F(HeadlessDialog, DestroyedDialogLeavesTheWindows) {
    {
        Dialog brief(shape(), toolkit);
        brief.createModeless(events);
        brief.show(true);
    }
    EXPECT_TRUE(toolkit.windows().empty());
}

TEST_F(HeadlessDialog, TreeBelongsToItsControl) {
    ui::TreeControl* tree = dialog.tree(kTree);
    ASSERT_NE(tree, nullptr);
    tree->insertLast(nullptr, {L"item"});
    EXPECT_EQ(dialog.tree(kTree)->itemCount(), 1U);
}

TEST(HeadlessToolkit, MessageBoxGoesToTheUserAndIsKept) {
    const auto user = std::make_shared<QuietUser>();
    Toolkit toolkit(user, L"Main");
    EXPECT_EQ(toolkit.messageBox(L"text", L"caption", 0x50010), 1);
    ASSERT_EQ(user->boxes.size(), 1U);
    EXPECT_EQ(user->boxes[0].style, 0x50010U);
    EXPECT_EQ(toolkit.messageBoxes()[0].text, L"text");
    EXPECT_EQ(toolkit.messageBoxes()[0].caption, L"caption");
}

TEST(HeadlessToolkit, WaitCursorIsCounted) {
    Toolkit toolkit(std::make_shared<QuietUser>(), L"Main");
    toolkit.beginWaitCursor();
    toolkit.beginWaitCursor();
    toolkit.endWaitCursor();
    EXPECT_EQ(toolkit.waitCursorDepth(), 1);
    toolkit.endWaitCursor();
    toolkit.endWaitCursor();
    EXPECT_EQ(toolkit.waitCursorDepth(), 0);
    toolkit.setWaitCursor();
    EXPECT_EQ(toolkit.waitCursorSets(), 1);
}

TEST(HeadlessToolkit, MakesDialogsOfTheTemplate) {
    Toolkit toolkit(std::make_shared<QuietUser>(), L"Main");
    const auto made = toolkit.createDialog(shape());
    EXPECT_EQ(made->text(kOk), L"Compare");
    EXPECT_TRUE(made->enabled(kOk));
}

}  // namespace
