#include "workflow/import_settings.h"

#include "tests/unit/workflow/workflow_fixture.h"

namespace {

using HPS::Exchange::BRepMode;
using HPS::Exchange::ImportOptions;
using HPS::Exchange::ImportOptionsKit;
using HPS::Exchange::Tessellation::Level;

const std::wstring kKey = L"Software\\Bextora\\viewer\\Settings\\Import";

struct SwitchRow {
    const wchar_t* name;
    bool ImportOptions::*field;
};

constexpr SwitchRow kSwitches[] = {
    {L"Read Solids", &ImportOptions::solids},
    {L"Import Surfaces", &ImportOptions::surfaces},
    {L"Read Wireframes", &ImportOptions::wireframes},
    {L"Read Attributes", &ImportOptions::attributes},
    {L"Import construction and references", &ImportOptions::constructionAndReferences},
    {L"Read PMI", &ImportOptions::pmi},
    {L"Read Feature Trees", &ImportOptions::featureTrees},
};

class ImportSettings : public WorkflowTest {
protected:
    ImportOptions applied() {
        ImportOptionsKit kit = ImportOptionsKit::GetDefault();
        workflow::ApplyImportSettings(job, kit);
        return kit.Options();
    }
    support::FakeKeyStore::Values& values() { return services.store->keys[kKey]; }
    std::wstring key() {
        std::wstring out = L"before";
        workflow::ImportSettingsKey(job, out);
        return out;
    }
    extract::CompareJob job;
};

TEST_F(ImportSettings, TheKeyHoldsTheStemOfTheExecutable) {
    EXPECT_EQ(key(), kKey);
    services.files->executable = L"C:\\Program Files\\Bextora\\Bextora Pro.exe";
    EXPECT_EQ(key(), L"Software\\Bextora\\Bextora Pro\\Settings\\Import");
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"plain", L"plain"},
        {L"/opt/app.d/host", L"host"},
        {L"/opt/app/host.v2.exe", L"host.v2"},
        {L"/opt/app/host-6.7", L"host-6"},
        {L"/opt/app/\u00dcbersicht", L"\u00dcbersicht"},
        {L"/opt/app/.host", L".host"},
        {L"", L""},
    };
    for (const auto& [executable, stem] : rows) {
        services.files->executable = executable;
        EXPECT_EQ(key(), std::wstring(L"Software\\Bextora\\") + stem + L"\\Settings\\Import");
    }
}

TEST_F(ImportSettings, LongExecutablePathsAreNotCut) {
    const std::wstring stem(300, L'v');
    services.files->executable = L"/" + std::wstring(1000, L'd') + L"/" + stem + L".exe";
    EXPECT_EQ(key(), L"Software\\Bextora\\" + stem + L"\\Settings\\Import");
    services.store->keys[key()][L"Read PMI"] = 0;
    EXPECT_FALSE(applied().pmi);
}

TEST_F(ImportSettings, EachExecutableHasSettingsOfItsOwn) {
    values()[L"Read PMI"] = 0;
    EXPECT_FALSE(applied().pmi);
    services.files->executable = L"/opt/bextora/bin/other";
    EXPECT_EQ(applied(), ImportOptions());
}

TEST_F(ImportSettings, ReadInTheOrderOfTheTableWithFullAccess) {
    values();
    applied();
    EXPECT_EQ(log().entries(),
              (Entries{"store.open Software\\Bextora\\viewer\\Settings\\Import full",
                       "key.read Read Solids", "key.read Import Surfaces",
                       "key.read Read Wireframes", "key.read Read Attributes",
                       "key.read Import construction and references", "key.read Read PMI",
                       "key.read Read Feature Trees", "key.read Set Tessellation Level",
                       "key.read Set Reading Mode", "key.read PMI Color", "key.close"}));
}

TEST_F(ImportSettings, WithoutTheKeyTheLibrarysDefaultsStand) {
    EXPECT_EQ(applied(), ImportOptions());
    EXPECT_TRUE(services.store->keys.empty());
}

TEST_F(ImportSettings, AKeyThatCannotBeOpenedFullyLeavesTheDefaults) {
    values()[L"Read Solids"] = 0;
    services.store->refuseFull = true;
    EXPECT_EQ(applied(), ImportOptions());
}

TEST_F(ImportSettings, WithoutAStoreTheDefaultsStand) {
    os::services().keyStore.reset();
    EXPECT_EQ(applied(), ImportOptions());
}

TEST_F(ImportSettings, AnEmptyKeyMeansTheTablesDefaults) {
    values();
    const ImportOptions options = applied();
    for (const SwitchRow& row : kSwitches) EXPECT_TRUE(options.*row.field);
    EXPECT_EQ(options.tessellationLevel, static_cast<Level>(2));
    EXPECT_EQ(options.brepMode, static_cast<BRepMode>(2));
    ASSERT_TRUE(options.pmiDefaultColor);
    EXPECT_EQ(*options.pmiDefaultColor, (HPS::RGBColor{0.0F, 0.0F, 0.0F}));
    EXPECT_FALSE(options.pmiColorOverridesFile);
}

TEST_F(ImportSettings, EachSwitchReachesItsOwnOption) {
    for (const SwitchRow& wanted : kSwitches) {
        values().clear();
        values()[wanted.name] = 0;
        const ImportOptions options = applied();
        for (const SwitchRow& row : kSwitches) {
            EXPECT_EQ(options.*row.field, row.field != wanted.field);
        }
    }
}

TEST_F(ImportSettings, OnlyTheLowestByteOfASwitchCounts) {
    const std::pair<std::uint32_t, bool> rows[] = {
        {0, false},  {1, true},           {2, true},           {255, true},    {256, false},
        {257, true}, {0xFFFFFF00, false}, {0x80000000, false}, {0x100, false}, {0x1FF, true},
    };
    for (const auto& [stored, expected] : rows) {
        for (const SwitchRow& row : kSwitches) {
            values()[row.name] = stored;
            EXPECT_EQ(applied().*row.field, expected) << stored;
        }
    }
}

TEST_F(ImportSettings, NumbersGoThroughUnchanged) {
    for (const std::uint32_t stored : {0U, 1U, 3U, 4U, 99U, 256U, 4294967295U}) {
        values()[L"Set Tessellation Level"] = stored;
        values()[L"Set Reading Mode"] = stored;
        EXPECT_EQ(static_cast<std::uint32_t>(applied().tessellationLevel), stored);
        EXPECT_EQ(static_cast<std::uint32_t>(applied().brepMode), stored);
    }
}

TEST_F(ImportSettings, TheColorIsPackedFromRedUpwards) {
    const std::pair<std::uint32_t, HPS::RGBColor> rows[] = {
        {255, {1.0F, 0.0F, 0.0F}},
        {0x00FF00, {0.0F, 1.0F, 0.0F}},
        {0xFF0000, {0.0F, 0.0F, 1.0F}},
        {0xFF000000, {0.0F, 0.0F, 0.0F}},
        {0x336699, {153.0F / 255.0F, 102.0F / 255.0F, 51.0F / 255.0F}},
    };
    for (const auto& [stored, color] : rows) {
        values()[L"PMI Color"] = stored;
        EXPECT_EQ(applied().pmiDefaultColor, color) << stored;
        EXPECT_FALSE(applied().pmiColorOverridesFile);
    }
}

}  // namespace
