#include "apps/cli/switches.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/fake_os.h"

namespace {

using support::FakeKeyStore;

class CliSwitches : public testing::Test {
protected:
    std::map<std::wstring, std::uint32_t>& stored() { return store->keys[cli::kSwitchesKey]; }

    support::Log log = std::make_shared<support::CallLog>();
    std::shared_ptr<FakeKeyStore> store = std::make_shared<FakeKeyStore>(log);
};

TEST_F(CliSwitches, OverlayReadsAsTheCommandLineWants) {
    stored()[L"PMICompare"] = 1;
    cli::SwitchOverlay overlay(store, {{"PMICompare", true}, {"PMICompare", false}});
    const auto key = overlay.create(cli::kSwitchesKey, os::KeyAccess::Full);
    ASSERT_TRUE(key);
    EXPECT_EQ(key->readNumber(L"PMICompare"), 0U);
    EXPECT_EQ(key->readNumber(L"pmicompare"), 0U);
    EXPECT_EQ(key->readNumber(L"PSCompare"), std::nullopt);
    EXPECT_EQ(stored()[L"PMICompare"], 1U);
}

TEST_F(CliSwitches, OverlayLeavesOtherKeysAndAllWritingToTheStore) {
    cli::SwitchOverlay overlay(store, {{"PMICompare", false}});
    const auto other = overlay.create(L"Software\\Other", os::KeyAccess::Full);
    ASSERT_TRUE(other);
    EXPECT_EQ(other->readNumber(L"PMICompare"), std::nullopt);
    const auto key = overlay.create(cli::kSwitchesKey, os::KeyAccess::Write);
    EXPECT_TRUE(key->writeNumber(L"PMICompare", 1));
    EXPECT_EQ(stored()[L"PMICompare"], 1U);
    EXPECT_EQ(key->readNumber(L"PMICompare"), 0U);
}

TEST_F(CliSwitches, OverlayWorksWithoutAStore) {
    cli::SwitchOverlay overlay(nullptr, {{"PSCompare", false}});
    const auto key = overlay.create(cli::kSwitchesKey, os::KeyAccess::Full);
    ASSERT_TRUE(key);
    EXPECT_EQ(key->readNumber(L"PSCompare"), 0U);
    EXPECT_EQ(key->readNumber(L"PMICompare"), std::nullopt);
    EXPECT_FALSE(key->writeNumber(L"PMICompare", 1));
    EXPECT_EQ(overlay.open(L"Software\\Other", os::KeyAccess::Read), nullptr);
}

TEST_F(CliSwitches, StoringWritesZeroAndOne) {
    EXPECT_TRUE(cli::storeSwitches(*store, {{"PSCompare", false}, {"IncludeRefFile", true}}));
    EXPECT_EQ(stored(),
              (std::map<std::wstring, std::uint32_t>{{L"PSCompare", 0}, {L"IncludeRefFile", 1}}));
}

TEST_F(CliSwitches, ListSaysNumberAndWhetherItIsStored) {
    stored()[L"PSCompare"] = 2;
    stored()[L"PMICompare"] = 0;
    const std::string text = cli::switchList(store.get());
    EXPECT_NE(text.find("  PSCompare            1           compare"), std::string::npos) << text;
    EXPECT_NE(text.find("  PMICompare           0           compare"), std::string::npos) << text;
    EXPECT_NE(text.find("  AttribCompare        1  default  compare"), std::string::npos) << text;
    EXPECT_NE(text.find("  IncludeRefFile       0  default  "), std::string::npos) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 9);
    EXPECT_NE(cli::switchList(nullptr).find("  PSCompare            1  default  compare"),
              std::string::npos);
}

TEST_F(CliSwitches, ListingCreatesNoKey) {
    cli::switchList(store.get());
    EXPECT_EQ(store->keys.count(cli::kSwitchesKey), 0U);
}

TEST(CliSwitchSetting, TakesANameOfEitherCaseAndZeroOrOne) {
    ASSERT_TRUE(cli::parseSwitch("pscompare=0"));
    EXPECT_EQ(cli::parseSwitch("pscompare=0")->name, "PSCompare");
    EXPECT_FALSE(cli::parseSwitch("pscompare=0")->on);
    EXPECT_TRUE(cli::parseSwitch("3DReport=1")->on);
    for (const char* text : {"", "PSCompare", "PSCompare=", "PSCompare=2", "PSCompare=01", "=1",
                             "Other=1", " PSCompare=1", "PSCompare = 1"}) {
        EXPECT_FALSE(cli::parseSwitch(text)) << text;
    }
}

}  // namespace
