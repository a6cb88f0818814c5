#include "results/copy_text.h"

#include <fstream>
#include <iterator>

#include "platform/os/utf8.h"
#include "tests/unit/results/results_fixture.h"

namespace {

using results::ResultSection;

class CopyTextTest : public ResultsTest {
protected:
    std::wstring copied() {
        window().press(1303);
        return clipboard->text().value_or(L"nothing");
    }
    std::string lastStatus() { return services.log->entries().back(); }
    void onlyFiles() {
        for (const wchar_t* name : {L"PSCompare", L"PMICompare", L"AttribCompare"}) set(name, 0);
    }
};

TEST_F(CopyTextTest, EmptyListsAreHeadingsWithABlankLine) {
    create();
    EXPECT_EQ(copied(),
              L"File Information\r\n\r\nReference File     Value\r\n\r\nCompare File     Value\r\n"
              L"\r\nBill of Materials\r\n\r\n#     Part Name     Quantity\r\n\r\n"
              L"#     Part Name     Quantity\r\n\r\nAttributes\r\n\r\nName     Value\r\n\r\n"
              L"Name     Value\r\n\r\nPMI\r\n\r\n#     Part Name     Value\r\n\r\n"
              L"#     Part Name     Value\r\n\r\n");
}

TEST_F(CopyTextTest, EmptyAndMissingCellsReadAsADash) {
    std::wstring text;
    results::AppendAttributeText(rows({L"a", L"", L"c"}, {L"1", L""}, {}, {}), text);
    EXPECT_EQ(text,
              L"Attributes\r\n\r\nName     Value\r\na     1\r\n-     -\r\nc     -\r\n\r\n"
              L"Name     Value\r\n\r\n");
}

TEST_F(CopyTextTest, NumberedBlocksDoNotSayTheirSide) {
    std::wstring text;
    results::AppendPmiText(rows({L"D1"}, {L"A"}, {L"D2", L"D3"}, {L"B", L"C"}), text);
    EXPECT_EQ(text,
              L"PMI\r\n\r\n#     Part Name     Value\r\n1     D1     A\r\n\r\n"
              L"#     Part Name     Value\r\n1     D2     B\r\n2     D3     C\r\n\r\n");
}

TEST_F(CopyTextTest, AWholeRunReadsAsTheGoldenText) {
    create();
    dialog->SetBomData(rows({L"Bolt"}, {L"2"}, {L"Bolt", L"Nut"}, {L"2", L"1"}, {0}, {0, 2}));
    dialog->SetAttributeData(rows({L"Author"}, {L"M\u00fcller"}, {L"Author"}, {L""}, {3}, {3}));
    dialog->SetPmiData(rows({L"No PMI"}, {L"-"}, {L"Datum 1"}, {L"A"}, {0}, {2}));
    dialog->SetFileInfoData(fileInfo());
    dialog->SetVolumeData(100, L"mm", 150, L"mm");
    dialog->RefreshResults();
    setModels({"Bolt"}, {"Bolt", "Nut"});
    dialog->ShowSection(ResultSection::ProductStructure);
    std::ifstream in(BEXTORA_GOLDEN "/copy/results.txt", std::ios::binary);
    ASSERT_TRUE(in);
    const std::string golden{std::istreambuf_iterator<char>(in), {}};
    EXPECT_EQ(os::toUtf8(copied()), golden);
}

TEST_F(CopyTextTest, TheStructureIsThereOnlyOnceItWasBuilt) {
    create();
    setModels({"Bolt"}, {"Bolt"});
    EXPECT_EQ(copied().find(L"Product Structure"), std::wstring::npos);
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_NE(copied().find(L"Product Structure\r\n\r\nReference File - Product Structure\r\nTop"
                            L"\r\n        |- Bolt\r\n\r\nCompare File - Product Structure\r\n"),
              std::wstring::npos);
}

TEST_F(CopyTextTest, SectionsThatAreOffAreLeftOut) {
    onlyFiles();
    create();
    EXPECT_EQ(copied(),
              L"File Information\r\n\r\nReference File     Value\r\n\r\n"
              L"Compare File     Value\r\n\r\n");
    set(L"PMICompare", 1);
    dialog->RefreshResults();
    EXPECT_NE(copied().find(L"PMI\r\n"), std::wstring::npos);
    EXPECT_EQ(copied().find(L"Attributes"), std::wstring::npos);
}

TEST_F(CopyTextTest, PartModePrintsAllPartsInFull) {
    create();
    dialog->SetPartAttributeData({part(L"P", {{L"k", L"1", {}}, {L"m", L"", {}}}), part(L"R", {})},
                                 {part(L"P", {{L"k", L"1", {}}, {L"n", L"3", {}}})});
    dialog->ShowSection(ResultSection::Attributes);
    window().press(1314);
    EXPECT_TRUE(dialog->folding().Collapsed(L"P"));
    EXPECT_NE(copied().find(L"Part Level Attributes\r\n\r\nP\r\nName     Reference     Compare\r\n"
                            L"k     1     1\r\nm     -     \r\nn          3\r\n\r\n"
                            L"R\r\nName     Reference     Compare\r\n\r\nPMI\r\n"),
              std::wstring::npos);
}

TEST_F(CopyTextTest, PartModeWithoutReferencePartsHasNoAttributeBlock) {
    create();
    dialog->SetPartAttributeData({}, {part(L"P", {{L"k", L"1", {}}})});
    dialog->ShowSection(ResultSection::Attributes);
    window().press(1314);
    EXPECT_EQ(copied().find(L"Attributes"), std::wstring::npos);
}

TEST_F(CopyTextTest, TheOutcomeIsSaidAndCountedEitherWay) {
    create();
    copied();
    EXPECT_EQ(clipboard->text()->substr(0, 4), L"File");
    setModels({}, {});
    copied();
    EXPECT_EQ(lastStatus(), "status Compare results copied to clipboard.");
    clipboard->setTaken(true);
    window().press(1303);
    EXPECT_EQ(lastStatus(), "status Failed to copy to clipboard ");
    ui::services().clipboard.reset();
    window().press(1303);
    EXPECT_EQ(events, std::vector<std::wstring>(4, L"Compare/Copy to Clipboard"));
    EXPECT_EQ(toolkit->waitCursorDepth(), 0);
}

TEST_F(CopyTextTest, FlatteningListsNamesByLevelAndTheTextsOfStates) {
    setModels({"Bolt", "Pin"}, {"Bolt"});
    dialog->EnsureTrees();
    results::Texts names;
    results::Texts states;
    results::FlattenPSTreeForExport(dialog->engine().referenceRoot(), names, states);
    EXPECT_EQ(names, (results::Texts{L"Top", L"          Bolt", L"          Pin"}));
    EXPECT_EQ(states, (results::Texts{L"Modified", L"Same", L"Deleted"}));
    results::FlattenPSTreeForExport(nullptr, names, states);
    EXPECT_EQ(names.size(), 3U);
}

TEST_F(CopyTextTest, ATreeThatIsNotThereIsItsCaption) {
    std::wstring text;
    results::AppendTreeText(nullptr, L"Reference File", text);
    EXPECT_EQ(text, L"Reference File - Product Structure\r\n\r\n");
}

TEST_F(CopyTextTest, BlanksInFrontOfANameCountAsDepth) {
    extract::AssemblyNode root;
    extract::AssemblyNode top;
    top.level = 0;
    top.parent = &root;
    top.displayName = L"   x ";
    root.children = {&top};
    std::wstring text;
    results::AppendTreeText(&root, L"C", text);
    EXPECT_EQ(text, L"C - Product Structure\r\n|- x \r\n\r\n");
}

TEST_F(CopyTextTest, OneTreeIsEnoughForTheStructureBlock) {
    create();
    dialog->SetReportContext(document, host, {}, HPS::CADModel(support::flatModel({"Nut"})));
    dialog->ShowSection(ResultSection::ProductStructure);
    EXPECT_NE(copied().find(L"Reference File - Product Structure\r\n\r\n"
                            L"Compare File - Product Structure\r\nTop\r\n        |- Nut\r\n"),
              std::wstring::npos);
}

}  // namespace
