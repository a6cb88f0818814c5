#include "backends/headless/desktop.h"

#include <gtest/gtest.h>

#include "backends/headless/canvas.h"
#include "backends/headless/property_sheet.h"
#include "backends/headless/toolkit.h"
#include "platform/os/services.h"
#include "tests/support/fake_os.h"
#include "tests/unit/backends/headless/quiet_user.h"

namespace {

class Saver : public QuietUser {
public:
    std::optional<std::wstring> answerSaveFile(const ui::SaveFileOptions& options) override {
        asked = options;
        return path;
    }
    bool allowsReplacing(const std::wstring& target) override {
        replaced = target;
        return allows;
    }
    std::optional<std::wstring> path;
    ui::SaveFileOptions asked;
    std::wstring replaced;
    bool allows = true;
};

class HeadlessChooser : public testing::Test {
protected:
    ~HeadlessChooser() override { os::services().files = nullptr; }
    std::optional<std::wstring> choose(const std::wstring& answer) {
        user->path = answer;
        return chooser.chooseSaveFile({L"pdf", L"name", true, L"PDF|*.pdf|"});
    }
    std::shared_ptr<Saver> user = std::make_shared<Saver>();
    headless::FileChooser chooser{user};
};

TEST_F(HeadlessChooser, AddsTheDefaultExtensionWhereThereIsNone) {
    EXPECT_EQ(choose(L"/home/a.b/report"), L"/home/a.b/report.pdf");
    EXPECT_EQ(choose(L"report.csv"), L"report.csv");
    EXPECT_EQ(choose(L""), L"");
    EXPECT_EQ(user->asked.suggestedName, L"name");
    user->path.reset();
    EXPECT_FALSE(chooser.chooseSaveFile({}));
}

TEST_F(HeadlessChooser, AsksBeforeItReplacesAFile) {
    const auto files = std::make_shared<support::FakeFiles>(std::make_shared<support::CallLog>());
    files->existing.insert(L"/r.pdf");
    os::services().files = files;
    EXPECT_EQ(choose(L"/r"), L"/r.pdf");
    EXPECT_EQ(user->replaced, L"/r.pdf");
    user->allows = false;
    EXPECT_FALSE(choose(L"/r"));
    EXPECT_EQ(choose(L"/s"), L"/s.pdf");
}

TEST(HeadlessClipboard, HoldsTheLastTextUnlessSomebodyElseHasIt) {
    headless::Clipboard clipboard;
    EXPECT_FALSE(clipboard.text());
    EXPECT_TRUE(clipboard.setText(L"a"));
    clipboard.setTaken(true);
    EXPECT_FALSE(clipboard.setText(L"b"));
    EXPECT_EQ(clipboard.text(), L"a");
    clipboard.setTaken(false);
    EXPECT_TRUE(clipboard.setText(L"b"));
    EXPECT_EQ(clipboard.text(), L"b");
}

TEST(HeadlessCanvas, KnowsTheColourOfEveryPoint) {
    headless::Canvas canvas;
    EXPECT_FALSE(canvas.colourAt(0, 0));
    canvas.fillRect({0, 0, 10, 10}, 1);
    canvas.fillRect({5, 0, 10, 10}, 2);
    canvas.frameRect({0, 0, 10, 10}, 3);
    EXPECT_EQ(canvas.colourAt(4, 5), 1U);
    EXPECT_EQ(canvas.colourAt(5, 5), 2U);
    EXPECT_EQ(canvas.colourAt(0, 5), 3U);
    EXPECT_EQ(canvas.colourAt(9, 9), 3U);
    EXPECT_FALSE(canvas.colourAt(10, 5));
}

TEST(HeadlessSheet, PagesGetTheirWindowsWhenTheyAreActivated) {
    struct Page : ui::DialogEvents {
        void onInitDialog() override { ++inits; }
        void onOk() override { ++oks; }
        int inits = 0;
        int oks = 0;
    };
    headless::Toolkit toolkit(std::make_shared<QuietUser>(), L"Main");
    headless::PropertySheet sheet(toolkit);
    Page first;
    Page second;
    headless::Dialog* const one = sheet.addPage({}, L"One", first);
    headless::Dialog* const two = sheet.addPage({}, L"Two", second);
    EXPECT_EQ(sheet.activePage(), nullptr);
    sheet.activate(*two);
    sheet.activate(*two);
    EXPECT_EQ(second.inits, 1);
    EXPECT_EQ(first.inits, 0);
    EXPECT_EQ(sheet.activePage(), two);
    EXPECT_TRUE(two->hasWindow());
    EXPECT_FALSE(one->hasWindow());
    EXPECT_EQ(two->caption(), L"Two");
    sheet.pressOk();
    EXPECT_EQ(second.oks, 1);
    EXPECT_EQ(first.oks, 0);
    EXPECT_FALSE(two->hasWindow());
}

TEST(Scaling, RoundsToTheNearestPixel) {
    EXPECT_EQ(ui::scaledPx(18, 96), 18);
    EXPECT_EQ(ui::scaledPx(18, 120), 23);  // 22.5
    EXPECT_EQ(ui::scaledPx(22, 144), 33);
}

}  // namespace
