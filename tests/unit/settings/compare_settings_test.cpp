#include "shell/settings/compare_settings.h"

#include <gtest/gtest.h>

#include "resources/string_table.h"
#include "tests/support/scripted_host_services.h"

namespace {

using support::FakeKeyStore;

const std::wstring kKey = L"Software\\Bextora\\bextora\\Settings\\Compare";

struct Row {
    const wchar_t* name;
    bool bxt::Settings::*field;
};

constexpr Row kRows[] = {
    {L"PSCompare", &bxt::Settings::psCompare},
    {L"PMICompare", &bxt::Settings::pmiCompare},
    {L"AttribCompare", &bxt::Settings::attribCompare},
    {L"PSCompareReport", &bxt::Settings::psCompareReport},
    {L"PMICompareReport", &bxt::Settings::pmiCompareReport},
    {L"AttribCompareReport", &bxt::Settings::attribCompareReport},
    {L"3DReport", &bxt::Settings::threeDReport},
    {L"IncludeRefFile", &bxt::Settings::includeRefFile},
    {L"IncludeCmpFile", &bxt::Settings::includeCmpFile},
};

class CompareSettings : public testing::Test {
protected:
    CompareSettings() { resources::install(); }
    ~CompareSettings() override { resources::uninstall(); }

    void setAll(bool value) {
        for (const Row& row : kRows) (*switches).*row.field = value;
    }
    FakeKeyStore::Values& values() { return services.store->keys[kKey]; }

    support::TestServices services;
    std::shared_ptr<bxt::Settings> switches = std::make_shared<bxt::Settings>();
};

TEST_F(CompareSettings, TheObjectHoldsTheNineInARow) {
    const auto* first = reinterpret_cast<const char*>(&switches->psCompare);
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        const bool& field = (*switches).*kRows[i].field;
        EXPECT_EQ(reinterpret_cast<const char*>(&field) - first, static_cast<std::ptrdiff_t>(i));
    }
}

TEST_F(CompareSettings, AFreshObjectHasTheSectionsOn) {
    EXPECT_TRUE(switches->psCompare && switches->pmiCompare && switches->attribCompare);
}

TEST_F(CompareSettings, SaveWritesNineNumbersInOrderAndClosesTheKey) {
    setAll(true);
    switches->pmiCompare = false;
    switches->includeCmpFile = false;
    settings::SaveCompareSettings(switches);
    const std::vector<std::string> expected = {
        "store.create Software\\Bextora\\bextora\\Settings\\Compare write",
        "key.write PSCompare 1",
        "key.write PMICompare 0",
        "key.write AttribCompare 1",
        "key.write PSCompareReport 1",
        "key.write PMICompareReport 1",
        "key.write AttribCompareReport 1",
        "key.write 3DReport 1",
        "key.write IncludeRefFile 1",
        "key.write IncludeCmpFile 0",
        "key.close",
    };
    EXPECT_EQ(services.log->entries(), expected);
}

TEST_F(CompareSettings, LoadReadsNineNumbersInOrderWithFullAccess) {
    settings::LoadCompareSettings(switches);
    const std::vector<std::string> expected = {
        "store.create Software\\Bextora\\bextora\\Settings\\Compare full",
        "key.read PSCompare",
        "key.read PMICompare",
        "key.read AttribCompare",
        "key.read PSCompareReport",
        "key.read PMICompareReport",
        "key.read AttribCompareReport",
        "key.read 3DReport",
        "key.read IncludeRefFile",
        "key.read IncludeCmpFile",
        "key.close",
    };
    EXPECT_EQ(services.log->entries(), expected);
}

TEST_F(CompareSettings, EachValueReachesItsOwnField) {
    for (const Row& wanted : kRows) {
        values().clear();
        values()[wanted.name] = 1;
        setAll(false);
        settings::LoadCompareSettings(switches);
        for (const Row& row : kRows) {
            EXPECT_EQ((*switches).*row.field, row.field == wanted.field) << row.name;
        }
    }
}

TEST_F(CompareSettings, EachFieldReachesItsOwnValue) {
    for (const Row& wanted : kRows) {
        setAll(false);
        (*switches).*wanted.field = true;
        settings::SaveCompareSettings(switches);
        for (const Row& row : kRows) {
            EXPECT_EQ(values()[row.name], row.field == wanted.field ? 1U : 0U) << row.name;
        }
    }
}

TEST_F(CompareSettings, MissingValueKeepsTheField) {
    for (const bool before : {false, true}) {
        setAll(before);
        settings::LoadCompareSettings(switches);
        for (const Row& row : kRows) EXPECT_EQ((*switches).*row.field, before) << row.name;
    }
}

TEST_F(CompareSettings, StoredTwoReadsAsOnAndIsWrittenBackAsOne) {
    values()[L"3DReport"] = 2;
    switches->threeDReport = false;
    settings::LoadCompareSettings(switches);
    EXPECT_TRUE(switches->threeDReport);
    settings::SaveCompareSettings(switches);
    EXPECT_EQ(values()[L"3DReport"], 1U);
}

TEST_F(CompareSettings, ReadingLeavesAnEmptyKeyBehind) {
    settings::LoadCompareSettings(switches);
    ASSERT_EQ(services.store->keys.count(kKey), 1U);
    EXPECT_TRUE(values().empty());
    services.store->keys.clear();
    std::vector<bool> sections;
    settings::ReadSectionSwitches(sections);
    ASSERT_EQ(services.store->keys.count(kKey), 1U);
    EXPECT_TRUE(values().empty());
}

TEST_F(CompareSettings, RefusedStoreChangesNothing) {
    services.store->refuse = true;
    setAll(false);
    settings::LoadCompareSettings(switches);
    settings::SaveCompareSettings(switches);
    std::vector<bool> sections;
    settings::ReadSectionSwitches(sections);
    for (const Row& row : kRows) EXPECT_FALSE((*switches).*row.field);
    EXPECT_TRUE(sections.empty());
    EXPECT_TRUE(services.store->keys.empty());
}

TEST_F(CompareSettings, WithoutAStoreOrAnObjectNothingHappens) {
    settings::LoadCompareSettings(nullptr);
    settings::SaveCompareSettings(nullptr);
    EXPECT_TRUE(services.log->entries().empty());
    os::services().keyStore.reset();
    settings::SaveCompareSettings(switches);
    settings::LoadCompareSettings(switches);
    std::vector<bool> sections;
    settings::ReadSectionSwitches(sections);
    EXPECT_TRUE(sections.empty());
}

TEST_F(CompareSettings, SectionSwitchesComeInOrder) {
    values() = {{L"PSCompare", 0}, {L"PMICompare", 7}, {L"AttribCompare", 1}, {L"3DReport", 1}};
    std::vector<bool> sections;
    settings::ReadSectionSwitches(sections);
    EXPECT_EQ(sections, (std::vector<bool>{false, true, true}));
    const std::vector<std::string> expected = {
        "store.create Software\\Bextora\\bextora\\Settings\\Compare full",
        "key.read PSCompare",
        "key.read PMICompare",
        "key.read AttribCompare",
        "key.close",
    };
    EXPECT_EQ(services.log->entries(), expected);
}

TEST_F(CompareSettings, EmptyKeyGivesNoSectionSwitches) {
    values();
    std::vector<bool> sections;
    settings::ReadSectionSwitches(sections);
    EXPECT_TRUE(sections.empty());
}

TEST_F(CompareSettings, OneStoredSectionSwitchGivesOneEntry) {
    values()[L"PSCompare"] = 0;
    std::vector<bool> sections;
    settings::ReadSectionSwitches(sections);
    EXPECT_EQ(sections, std::vector<bool>{false});
}

TEST_F(CompareSettings, SectionSwitchesAreAppended) {
    values()[L"PMICompare"] = 1;
    std::vector<bool> sections = {false};
    settings::ReadSectionSwitches(sections);
    EXPECT_EQ(sections, (std::vector<bool>{false, true}));
}

TEST_F(CompareSettings, NothingIsCached) {
    std::vector<bool> first;
    settings::ReadSectionSwitches(first);
    values()[L"PSCompare"] = 1;
    std::vector<bool> second;
    settings::ReadSectionSwitches(second);
    EXPECT_TRUE(first.empty());
    EXPECT_EQ(second, std::vector<bool>{true});
}

TEST_F(CompareSettings, TheDialogTakesAMissingSwitchAsOn) {
    const settings::DialogSwitches fresh = settings::ReadDialogSwitches();
    EXPECT_TRUE(fresh.productStructure && fresh.pmi && fresh.attributes);
    EXPECT_EQ(services.store->keys.count(kKey), 1U);
    values()[L"PMICompare"] = 0;
    settings::DialogSwitches read = settings::ReadDialogSwitches();
    EXPECT_TRUE(read.productStructure && read.attributes);
    EXPECT_FALSE(read.pmi);
    values() = {{L"PSCompare", 0}, {L"PMICompare", 2}, {L"AttribCompare", 0}};
    read = settings::ReadDialogSwitches();
    EXPECT_TRUE(read.pmi);
    EXPECT_FALSE(read.productStructure || read.attributes);
    services.store->refuse = true;
    read = settings::ReadDialogSwitches();
    EXPECT_TRUE(read.productStructure && read.pmi && read.attributes);
}

TEST_F(CompareSettings, ReportsKeepWhatIsNotStored) {
    settings::ReportSwitches read;
    read.pmi = false;
    values() = {{L"3DReport", 0}, {L"IncludeCmpFile", 2}, {L"PSCompare", 0}};
    settings::LoadReportSwitches(read);
    EXPECT_FALSE(read.threeDResult);
    EXPECT_TRUE(read.compareFile);
    EXPECT_FALSE(read.pmi);
    EXPECT_TRUE(read.productStructure);
    EXPECT_FALSE(read.referenceFile);
}

TEST_F(CompareSettings, PrecisionComesFromTheWorkspaceThatReadingMakes) {
    const std::wstring workspace = L"Software\\Bextora\\bextora\\Workspace";
    EXPECT_EQ(settings::ReadNumberPrecision(3), 3);
    EXPECT_EQ(services.log->entries().front(),
              "store.create Software\\Bextora\\bextora\\Workspace read");
    services.store->keys.at(workspace)[L"DocPrec"] = 5;
    EXPECT_EQ(settings::ReadNumberPrecision(3), 5);
    services.store->keys.at(workspace)[L"DocPrec"] = 0xFFFFFFFFU;
    EXPECT_EQ(settings::ReadNumberPrecision(3), -1);
    services.store->refuse = true;
    EXPECT_EQ(settings::ReadNumberPrecision(3), 3);
    os::services().keyStore.reset();
    EXPECT_EQ(settings::ReadNumberPrecision(3), 3);
}

}  // namespace
