#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "apps/cli/host_services.h"
#include "apps/cli/plugin_module.h"
#include "backends/headless/application.h"
#include "backends/headless/dialog.h"
#include "platform/bxt/compare_outcome.h"
#include "platform/os/utf8.h"
#include "tests/support/cli_runner.h"
#include "tests/support/real_data.h"

namespace {

constexpr int kFileInfo = 1319;
constexpr int kBom = 1305;
constexpr int kAttributes = 1309;
constexpr int kCompareAttributes = 1310;
constexpr int kPmi = 1315;
constexpr int kTree = 1360;
constexpr int kSave = 1302;
constexpr int kCopy = 1303;
constexpr int kPartRadio = 1314;

/// Types two paths into the prompt and says where to save.
class StoryUser final : public headless::User {
public:
    void answerDialog(headless::Dialog& prompt) override {
        prompt.type(1001, reference);
        prompt.type(1002, compare);
        prompt.press(1);
    }
    int answerMessageBox(const headless::MessageBox&) override { return 1; }
    std::optional<std::wstring> answerSaveFile(const ui::SaveFileOptions& options) override {
        suggestion = options.suggestedName;
        return savePath;
    }
    void seeStatusText(const std::wstring& text) override { status = text; }

    std::wstring reference;
    std::wstring compare;
    std::wstring savePath;
    std::wstring suggestion;
    std::wstring status;
};

/// The real plug-in in a host without a screen, and a user before its dialogs.
class UserStory : public testing::Test {
protected:
    UserStory() {
        setenv("XDG_CONFIG_HOME", scratch_.path().c_str(), 1);
        setenv("BEXTORA_LANG", "en", 1);
    }
    void SetUp() override {
        services_ = std::make_unique<cli::HostServices>(cli::Options(), log_);
        services_->installDesktop(user_);
        application_ = std::make_shared<headless::Application>(user_, cli::fileFormats());
        std::string error;
        module_ = cli::PluginModule::load(cli::pluginPath(), error);
        ASSERT_TRUE(module_) << error;
        application_->addView(&module_->plugin());
        first_ = application_->activeDocument();
    }
    void TearDown() override {
        application_->closeAll();
        if (module_) application_->removeView(&module_->plugin());
        module_.reset();
        application_.reset();
        services_.reset();
    }
    void command() { module_->plugin().onCommand(nullptr, 101, application_); }
    void run(const char* reference, const char* compare) {
        user_->reference = os::toWide(std::string(BEXTORA_SAMPLES "/") + reference);
        user_->compare = os::toWide(std::string(BEXTORA_SAMPLES "/") + compare);
        command();
    }
    bool dialogIsOpen() const { return !services_->toolkit().windows().empty(); }
    headless::Dialog& dialog() { return *services_->toolkit().windows().back(); }
    /// Clicks the tab of that position.
    void clickTab(int position) {
        dialog().clickAt({dialog().clientSize().width * (2 * position + 1) / 10, 10});
    }
    std::size_t rows(int list) { return dialog().list(list)->rowCount(); }
    std::wstring cell(int list, std::size_t row, std::size_t column) {
        return dialog().list(list)->text(row, column);
    }
    int rowOf(int list, const std::wstring& text) {
        for (std::size_t row = 0; row < rows(list); ++row) {
            if (cell(list, row, 0) == text) return static_cast<int>(row);
        }
        return -1;
    }
    std::wstring copied() {
        dialog().press(kCopy);
        EXPECT_EQ(user_->status, L"Compare results copied to clipboard.");
        return services_->clipboard().text().value_or(L"");
    }

    support::ScratchFolder scratch_;
    cli::Console console_{false};
    cli::FileNames names_;
    cli::RunLog log_{console_, names_};
    std::shared_ptr<StoryUser> user_ = std::make_shared<StoryUser>();
    std::unique_ptr<cli::HostServices> services_;
    std::shared_ptr<headless::Application> application_;
    std::unique_ptr<cli::PluginModule> module_;
    std::shared_ptr<headless::Document> first_;
};

TEST_F(UserStory, ARunIsReadSectionBySection) {
    run("gearbox_reference.step", "gearbox_compare.step");
    ASSERT_TRUE(dialogIsOpen());
    EXPECT_EQ(dialog().shape().id, 1300);
    EXPECT_EQ(dialog().windowPlace(), ui::rectAt(1020, 140, 700, 460));
    EXPECT_TRUE(dialog().controlVisible(kFileInfo));
    EXPECT_EQ(dialog().text(1321), L"Reference");
    EXPECT_EQ(rows(kFileInfo), 4U);
    EXPECT_EQ(cell(kFileInfo, 1, 1), L"gearbox_reference.step");
    EXPECT_EQ(cell(kFileInfo, 2, 1), L"575813.61 mm\u00b3");
    EXPECT_EQ(cell(kFileInfo + 1, 3, 1), L"+ 0.76 %");

    clickTab(1);
    EXPECT_TRUE(dialog().controlVisible(kBom));
    EXPECT_FALSE(dialog().controlVisible(kFileInfo));
    EXPECT_EQ(rows(kBom), 12U);
    EXPECT_EQ(cell(kBom, 2, 1), L"Bolt M8x25");
    EXPECT_EQ(cell(kBom, 2, 2), L"8");

    EXPECT_EQ(dialog().tree(kTree)->itemCount(), 0U);
    clickTab(2);
    EXPECT_TRUE(dialog().controlVisible(kTree));
    EXPECT_GT(dialog().tree(kTree)->itemCount(), 20U);

    clickTab(3);
    EXPECT_TRUE(dialog().controlVisible(kAttributes));
    EXPECT_EQ(rows(kAttributes), 11U);
    clickTab(4);
    EXPECT_TRUE(dialog().controlVisible(kPmi));
    EXPECT_EQ(rows(kPmi), 4U);
    EXPECT_EQ(rows(kPmi + 1), 5U);
    EXPECT_EQ(dialog().listBox(1301)->text(3), L"PMI (1)");
}

TEST_F(UserStory, PartsAreOpenedAndClosed) {
    run("gearbox_reference.step", "gearbox_compare.step");
    ASSERT_TRUE(dialogIsOpen());
    clickTab(3);
    ASSERT_TRUE(dialog().press(kPartRadio));
    const std::size_t closed = rows(kAttributes);
    const int shaft = rowOf(kAttributes, L"\u25b6 Antriebswelle");
    ASSERT_GE(shaft, 0);
    dialog().clickRow(kCompareAttributes, shaft);
    EXPECT_EQ(rowOf(kAttributes, L"\u25bc Antriebswelle"), shaft);
    // Three attributes and an empty row.
    EXPECT_EQ(rows(kAttributes), closed + 4);
    EXPECT_EQ(rows(kCompareAttributes), closed + 4);
    dialog().clickRow(kAttributes, shaft);
    EXPECT_EQ(rows(kAttributes), closed);

    const int housing = rowOf(kAttributes, L"Housing");
    ASSERT_GE(housing, 0) << "a part that differs has no mark";
    dialog().clickRow(kAttributes, housing);
    EXPECT_EQ(rows(kAttributes), closed);
    const std::wstring text = copied();
    EXPECT_NE(text.find(L"Part Level Attributes\r\n"), std::wstring::npos);
    EXPECT_NE(text.find(L"Antriebswelle\r\nName     Reference     Compare\r\n"),
              std::wstring::npos);
    clickTab(0);
    clickTab(3);
    EXPECT_EQ(rows(kAttributes), 11U);
}

TEST_F(UserStory, ResultsAreCopiedAndSaved) {
    run("gearbox_reference.step", "gearbox_compare.step");
    ASSERT_TRUE(dialogIsOpen());
    EXPECT_EQ(copied().find(L"Product Structure"), std::wstring::npos);
    user_->savePath = (scratch_.path() / "saved.csv").wstring();
    ASSERT_TRUE(dialog().press(kSave));
    EXPECT_EQ(user_->suggestion, L"gearbox_reference - Compare Results");
    EXPECT_EQ(user_->status, L"Compare results saved - " + user_->savePath);
    const std::string bytes = support::readFile(scratch_.path() / "saved.csv");
    EXPECT_EQ(bytes.substr(0, 18), "\xef\xbb\xbfInformation\r\r\n\"");
    EXPECT_NE(copied().find(L"Product Structure"), std::wstring::npos);
    user_->savePath = (scratch_.path() / "none" / "saved.csv").wstring();
    dialog().press(kSave);
    EXPECT_EQ(user_->status, L"Failed to save " + user_->savePath);
}

TEST_F(UserStory, ASecondRunFillsTheSameDialogAnew) {
    run("gearbox_reference.step", "gearbox_compare.step");
    ASSERT_TRUE(dialogIsOpen());
    const headless::Dialog* const before = &dialog();
    clickTab(3);
    dialog().press(kPartRadio);
    application_->activate(first_);
    run("gearbox_compare.step", "gearbox_reference.step");
    EXPECT_EQ(&dialog(), before);
    EXPECT_EQ(services_->toolkit().windows().size(), 1U);
    EXPECT_TRUE(dialog().controlVisible(kFileInfo));
    EXPECT_EQ(cell(kFileInfo, 1, 1), L"gearbox_compare.step");
    EXPECT_EQ(cell(kFileInfo + 1, 3, 1), L"- 0.75 %");
    EXPECT_EQ(rows(kPmi), 5U);
    EXPECT_EQ(dialog().tree(kTree)->itemCount(), 0U);
    clickTab(3);
    EXPECT_EQ(rows(kAttributes), 11U) << "Assembly mode again";
}

TEST_F(UserStory, TheDialogLivesWithItsDocument) {
    run("gearbox_reference.step", "gearbox_compare.step");
    ASSERT_TRUE(dialogIsOpen());
    const auto result = application_->activeDocument();
    const auto outcome = result->getAs<bxtsg::SCCompareOutcome>(bxtsg::code::CompareOutcome);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->sections().billOfMaterials.referenceNames.size(), 12U);
    dialog().pressKey(ui::Key::Escape);
    EXPECT_FALSE(dialogIsOpen());
    command();
    EXPECT_TRUE(dialogIsOpen()) << "in a result the command only raises the dialog";
    application_->close(first_);
    EXPECT_TRUE(dialogIsOpen());
    application_->close(result);
    EXPECT_FALSE(dialogIsOpen());
}

}  // namespace
