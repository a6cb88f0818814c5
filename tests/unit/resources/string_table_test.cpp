#include "resources/string_table.h"

#include <gtest/gtest.h>

#include "platform/bxt/resource_loader.h"
#include "platform/bxt/services.h"
#include "resources/texts.h"

namespace {

struct Row {
    std::uint32_t id;
    const wchar_t* text;
};

constexpr Row kExpected[] = {
    {130, L"<provide reference file name>"},
    {131, L"<provide compare file name>"},
    {132, L"All Files (*.*)|*.*||"},
    {133, L"Please provide different reference and compare file name"},
    {136, L"Tools"},
    {137, L"Compare"},
    {138, L"Select two variations of a model to compute differences in 3D geometry"},
    {140, L"Comparing..."},
    {141, L"Compare Models - Bextora"},
    {142, L"Comparison completed"},
    {143, L"Failed to open "},
    {144, L" in "},
    {145, L" seconds"},
    {146, L" milliseconds"},
    {148, L" is an assembly file."},
    {149, L" is a part file."},
    {152, L"Comparing a part with an assembly is not supported."},
    {153, L"Compare Models"},
    {154, L"Ready"},
    {159, L"Attributes"},
    {192, L"Comparison failed."},
    {209, L"&Open..."},
    {211, L"Compare Files"},
    {221, L"Reference File"},
    {222, L"Compare File"},
    {223, L"File Information"},
    {230, L"Bextora failed to open nfile"},
    {231, L"Quantity"},
    {232, L"Part Name"},
    {233, L"#"},
    {240, L"Name"},
    {241, L"Value"},
    {242, L"Value"},
    {249, L"PMI"},
    {275, L"Product Structure"},
    {307, L"Value"},
    {1150, L"Index"},
    {1151, L"Attributes"},
    {1152, L"Quantity"},
    {1153, L"Part Name"},
    {1156, L"Reference File"},
    {1157, L"Compare File"},
    {1158, L"PMI"},
    {1159, L"Value"},
    {1160, L"Bill of Materials"},
    {1162, L"Information"},
    {1163, L"File Attributes"},
    {1164, L"Saving..."},
    {1165, L"Compare results saved - "},
    {1166, L"Failed to save "},
    {1167, L"Compare results copied to clipboard."},
    {1168, L"Failed to copy to clipboard "},
    {1169, L"Part Level Attributes"},
    {1220, L"Software\\Bextora\\bextora\\Settings\\Compare"},
    {1221, L"PSCompare"},
    {1222, L"PMICompare"},
    {1223, L"AttribCompare"},
    {1234, L"PSCompareReport"},
    {1235, L"PMICompareReport"},
    {1236, L"AttribCompareReport"},
    {1243, L"3DReport"},
    {1244, L"IncludeRefFile"},
    {1245, L"IncludeCmpFile"},
    {1330, L"File Information"},
    {1331, L"PMI Name"},
    {1332, L"Property"},
    {1333, L"Reference"},
    {1344, L"Assembly"},
    {1345, L"Part"},
    {1346, L"Product Structure"},
    {1347, L"Attributes"},
    {1348, L"PMI"},
};

class StringTable : public testing::Test {
protected:
    void SetUp() override { resources::install(); }
    void TearDown() override {
        resources::uninstall();
        bxt::services() = {};
    }
};

TEST_F(StringTable, EveryTextReadsAsWritten) {
    for (const Row& row : kExpected) EXPECT_EQ(resources::text(row.id), row.text) << row.id;
    EXPECT_EQ(resources::englishTexts().size(), std::size(kExpected));
}

TEST_F(StringTable, IdsAscendSoThatEachIsFound) {
    const auto texts = resources::englishTexts();
    for (std::size_t i = 1; i < texts.size(); ++i) EXPECT_LT(texts[i - 1].id, texts[i].id);
}

TEST_F(StringTable, UnknownIdReadsEmpty) {
    EXPECT_EQ(resources::text(1), L"");
    EXPECT_EQ(resources::text(134), L"");
    EXPECT_EQ(resources::text(99999), L"");
}

TEST_F(StringTable, OtherModuleReadsEmpty) {
    EXPECT_EQ(bxtsgutils::ResourceLoader::getString(L"other.dll", 137), L"");
}

TEST_F(StringTable, LanguageWithoutTranslationReadsEnglish) {
    for (const wchar_t* language : {L"fr", L"de", L"ja", L"ko", L"zh", L"es", L"pt", L"xx", L""}) {
        bxt::services().language = language;
        EXPECT_EQ(resources::text(140), L"Comparing...");
        EXPECT_EQ(resources::englishText(140), L"Comparing...");
    }
}

TEST(StringTableInstallation, LastUninstallTakesTheTableAway) {
    resources::install();
    resources::install();
    resources::uninstall();
    EXPECT_EQ(resources::text(137), L"Compare");
    resources::uninstall();
    EXPECT_EQ(bxt::services().strings, nullptr);
    EXPECT_EQ(resources::text(137), L"");
    resources::uninstall();
    resources::install();
    EXPECT_EQ(resources::text(137), L"Compare");
    resources::uninstall();
}

class OtherTable : public bxt::StringTable {
public:
    std::optional<std::wstring> text(std::uint32_t, const std::wstring&) const override {
        return L"other";
    }
};

TEST(StringTableInstallation, UninstallLeavesAnotherTableAlone) {
    resources::install();
    const auto other = std::make_shared<OtherTable>();
    bxt::services().strings = other;
    resources::uninstall();
    EXPECT_EQ(bxt::services().strings, other);
    bxt::services() = {};
}

}  // namespace
