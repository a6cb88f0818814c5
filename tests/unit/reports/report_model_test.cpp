#include <gtest/gtest.h>

#include "reports/report_sections.h"
#include "reports/report_table.h"
#include "reports/state_colours.h"
#include "resources/string_table.h"
#include "tests/support/scripted_host_services.h"

namespace {

using extract::ItemDiffState;
using namespace reports;

const std::wstring kKey = L"Software\\Bextora\\bextora\\Settings\\Compare";

TEST(ReportTable, ColumnsStandInOneOrder) {
    const ReportTable table = BuildColumnTable({L"cn"}, {L"cv"}, {L"rn"}, {L"rv"});
    EXPECT_EQ(table, (ReportTable{{L"cn"}, {L"cv"}, {L"rn"}, {L"rv"}}));
    EXPECT_EQ(table[column::kReferenceName], Column{L"rn"});
}

TEST(ReportTable, IsEmptyWithoutFourColumnsOrWithoutAnyName) {
    EXPECT_TRUE(IsEmptyTable({}));
    EXPECT_TRUE(IsEmptyTable({{L"a"}, {L"b"}, {L"c"}}));
    EXPECT_TRUE(IsEmptyTable({{}, {L"b"}, {}, {L"d"}}));
    EXPECT_FALSE(IsEmptyTable({{}, {}, {L"c"}, {}}));
    EXPECT_FALSE(IsEmptyTable({{L"a"}, {}, {}, {}}));
    EXPECT_FALSE(IsEmptyTable({{L"a"}, {}, {}, {}, {}}));
}

class ReportOptionsTest : public testing::Test {
protected:
    ReportOptionsTest() { resources::install(); }
    ~ReportOptionsTest() override { resources::uninstall(); }
    ReportOptions load() {
        ReportOptions options;
        loadReportOptions(options);
        return options;
    }
    support::TestServices services;
};

TEST_F(ReportOptionsTest, AnEmptyKeyLeavesEverythingOnButTheTwoFiles) {
    const ReportOptions options = load();
    EXPECT_TRUE(options.includeProductStructure);
    EXPECT_TRUE(options.includePMI);
    EXPECT_TRUE(options.includeAttributes);
    EXPECT_TRUE(options.include3DResult);
    EXPECT_FALSE(options.includeReferenceFile);
    EXPECT_FALSE(options.includeCompareFile);
    EXPECT_EQ(services.store->keys.count(kKey), 1U);
}

TEST_F(ReportOptionsTest, EachSwitchReachesItsOwnFlag) {
    struct Row {
        const wchar_t* name;
        bool ReportOptions::*flag;
    };
    constexpr Row rows[] = {{L"PSCompareReport", &ReportOptions::includeProductStructure},
                            {L"PMICompareReport", &ReportOptions::includePMI},
                            {L"AttribCompareReport", &ReportOptions::includeAttributes},
                            {L"3DReport", &ReportOptions::include3DResult},
                            {L"IncludeRefFile", &ReportOptions::includeReferenceFile},
                            {L"IncludeCmpFile", &ReportOptions::includeCompareFile}};
    for (const Row& row : rows) {
        for (const std::uint32_t stored : {0U, 1U, 2U}) {
            services.store->keys[kKey] = {{row.name, stored}};
            const ReportOptions options = load();
            const ReportOptions defaults;
            for (const Row& other : rows) {
                const bool expected = other.flag == row.flag ? stored != 0 : defaults.*other.flag;
                EXPECT_EQ(options.*other.flag, expected) << stored;
            }
        }
    }
}

TEST_F(ReportOptionsTest, AreReadInOneOrderWithFullAccess) {
    load();
    EXPECT_EQ(
        services.log->entries(),
        (std::vector<std::string>{
            "store.create Software\\Bextora\\bextora\\Settings\\Compare full", "key.read 3DReport",
            "key.read IncludeRefFile", "key.read IncludeCmpFile", "key.read PSCompareReport",
            "key.read AttribCompareReport", "key.read PMICompareReport", "key.close"}));
}

TEST_F(ReportOptionsTest, AStoreThatCannotBeOpenedKeepsTheFlags) {
    services.store->refuse = true;
    ReportOptions options;
    options.includePMI = false;
    options.includeCompareFile = true;
    loadReportOptions(options);
    EXPECT_FALSE(options.includePMI);
    EXPECT_TRUE(options.includeCompareFile);
}

ReportContent fullContent() {
    ReportContent content;
    const ReportTable table = {{L"a"}, {L"b"}, {L"c"}, {L"d"}};
    content.fileInfo = content.bom = content.attributes = content.pmi = table;
    content.productStructure = table;
    content.referenceParts.resize(1);
    return content;
}

constexpr ReportSection kSections[] = {
    ReportSection::FileInformation, ReportSection::CompareResult,    ReportSection::ReferenceFile,
    ReportSection::CompareFile,     ReportSection::ProductStructure, ReportSection::BillOfMaterials,
    ReportSection::Attributes,      ReportSection::PartAttributes,   ReportSection::Pmi};

std::vector<ReportSection> shown(const ReportOptions& options, const ReportContent& content) {
    std::vector<ReportSection> sections;
    for (const ReportSection section : kSections) {
        if (ShowsSection(section, options, content)) sections.push_back(section);
    }
    return sections;
}

TEST(ReportSections, EverySwitchTakesItsOwnSectionsAway) {
    using S = ReportSection;
    const ReportContent content = fullContent();
    ReportOptions all{true, true, true, true, true, true};
    EXPECT_EQ(shown(all, content).size(), std::size(kSections));
    all.includeProductStructure = false;
    EXPECT_EQ(shown(all, content),
              (std::vector{S::FileInformation, S::CompareResult, S::ReferenceFile, S::CompareFile,
                           S::Attributes, S::PartAttributes, S::Pmi}));
    const ReportOptions none{false, false, false, false, false, false};
    EXPECT_EQ(shown(none, content), std::vector{S::FileInformation});
    EXPECT_EQ(shown({false, true, false, false, false, false}, content),
              (std::vector{S::FileInformation, S::Pmi}));
    EXPECT_EQ(shown({false, false, true, false, false, false}, content),
              (std::vector{S::FileInformation, S::Attributes, S::PartAttributes}));
    EXPECT_EQ(shown({false, false, false, true, false, false}, content),
              (std::vector{S::FileInformation, S::CompareResult}));
    EXPECT_EQ(shown({false, false, false, false, true, false}, content),
              (std::vector{S::FileInformation, S::ReferenceFile}));
    EXPECT_EQ(shown({false, false, false, false, false, true}, content),
              (std::vector{S::FileInformation, S::CompareFile}));
}

TEST(ReportSections, EmptyTablesShowNothing) {
    const ReportOptions options;
    EXPECT_EQ(shown(options, {}), std::vector{ReportSection::CompareResult});
    ReportContent content;
    const ReportTable threeColumns = {{L"a"}, {L"b"}, {L"c"}};
    content.fileInfo = {{}};
    content.bom = content.attributes = content.pmi = content.productStructure = threeColumns;
    EXPECT_EQ(shown(options, content),
              (std::vector{ReportSection::FileInformation, ReportSection::CompareResult}));
}

TEST(ReportSections, PartsOfOneSideAreEnoughAndNeedNoFileAttributes) {
    ReportContent content;
    content.compareParts.resize(1);
    EXPECT_TRUE(ShowsSection(ReportSection::PartAttributes, {}, content));
    EXPECT_FALSE(ShowsSection(ReportSection::Attributes, {}, content));
}

TEST(StateColours, TreeRowsGoByTheTextWithCase) {
    EXPECT_EQ(stateColourName(L"Added"), L"teal");
    EXPECT_EQ(stateColourName(L"Deleted"), L"red");
    EXPECT_EQ(stateColourName(L"Modified"), L"orange");
    EXPECT_EQ(stateColourName(L"Moved"), L"orange");
    for (const wchar_t* other : {L"Same", L"", L"moved", L"ADDED", L"Added "}) {
        EXPECT_EQ(stateColourName(other), L"black") << other;
    }
}

TEST(StateColours, TableRowsGoByTheNumber) {
    const wchar_t* const names[] = {L"black", L"red", L"teal", L"orange", L"black"};
    const RgbColour shades[] = {{0, 0, 0}, {255, 0, 0}, {0, 109, 91}, {255, 127, 0}, {0, 0, 0}};
    for (int code = 0; code < 5; ++code) {
        EXPECT_EQ(rowCodeColourName(static_cast<ItemDiffState>(code)), names[code]);
        EXPECT_EQ(rowCodeColour(static_cast<ItemDiffState>(code)), shades[code]);
    }
    EXPECT_EQ(rowCodeColourName(static_cast<ItemDiffState>(-1)), L"black");
}

TEST(StateColours, TextsBecomeTheNumbersOfTheSameColours) {
    const Column texts = {L"Added", L"Deleted", L"Modified", L"Moved", L"Same", L"", L"moved"};
    const States codes = stateTextToCode(texts);
    EXPECT_EQ(codes,
              (States{ItemDiffState::OnlyInCompare, ItemDiffState::OnlyInReference,
                      ItemDiffState::Different, ItemDiffState::Different, ItemDiffState::Unchanged,
                      ItemDiffState::Unchanged, ItemDiffState::Unchanged}));
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(stateColourName(texts[i]), rowCodeColourName(codes[i]));
    }
}

}  // namespace
