#include "workflow/file_pair.h"

#include "tests/unit/workflow/workflow_fixture.h"

namespace {

using workflow::BuildFileFilters;
using workflow::FormatList;
using workflow::IsComparableFormat;

constexpr const wchar_t* kExcluded[] = {
    L"Autodesk 3D Studio",
    L"*.3ds",
    L"3DXML Files",
    L"*.3dxml",
    L"CADDS Files",
    L"*._pd",
    L"CATIA V4 Files",
    L"*.model;*.dlv;*.exp;*.session",
    L"CGR Files",
    L"*.cgr",
    L"Collada Files",
    L"*.dae",
    L"Autocad Files",
    L"*.dwg;*.dxf",
    L"I-DEAS Files",
    L"*.arc;*.unv;*.mf1;*.prt;*.pkg",
    L"KMZ Files",
    L"*.kmz",
    L"Wavefront Obj",
    L"*.obj",
    L"OneSpace Designer Files",
    L"*.pkg;*.bdl",
    L"PLMXML File",
    L"*.plmxml",
    L"PRC 3D Reviewer Files",
    L"*.prc",
    L"PRW 3D Reviewer Files",
    L"*.prw",
    L"Rhino Files",
    L"*.3dm",
    L"Sketchup Files",
    L"*.skp",
    L"Solid Edge Files",
    L"*.par;*.asm;*.pwd;*.psm",
    L"STL Files",
    L"*.stl",
    L"Universal 3D Files",
    L"*.u3d",
    L"VDA Files",
    L"*.vda",
    L"VRML Files",
    L"*.wrl;*.vrml",
};

TEST(ComparableFormat, EachNameAndPatternOfTheTableIsShutOut) {
    EXPECT_EQ(std::size(kExcluded), 42U);
    for (const wchar_t* text : kExcluded) EXPECT_FALSE(IsComparableFormat(text));
}

TEST(ComparableFormat, SinglePatternsOfLongerRowsAreNot) {
    for (const wchar_t* text :
         {L"*.par", L"*.asm", L"*.dwg", L"*.dxf", L"*.pkg", L"*.wrl", L"*.model", L"*.prt"}) {
        EXPECT_TRUE(IsComparableFormat(text));
    }
}

TEST(ComparableFormat, CaseAndWholeTextCount) {
    for (const wchar_t* text : {L"*.STL", L"stl files", L"*.stl;", L" *.stl", L".stl", L"", L"STL",
                                L"STEP Files", L"*.stp;*.step"}) {
        EXPECT_TRUE(IsComparableFormat(text));
    }
}

TEST(FileFilters, AnEmptyListLeavesTheFiltersUntouched) {
    FormatList filters = {L"kept"};
    BuildFileFilters({}, filters);
    EXPECT_EQ(filters, FormatList{L"kept"});
}

TEST(FileFilters, KeepOrderAndEndWithAllSupportedFiles) {
    FormatList filters;
    BuildFileFilters({L"STEP Files", L"*.stp;*.step", L"JT Files", L"*.jt"}, filters);
    EXPECT_EQ(filters, (FormatList{L"STEP Files", L"*.stp;*.step", L"JT Files", L"*.jt",
                                   L"All Supported Files", L"*.stp;*.step;*.jt;"}));
}

TEST(FileFilters, SkipEmptyTextsAndTheHostsOwnAllEntry) {
    FormatList filters;
    BuildFileFilters({L"", L"All Supported Files", L"JT Files", L"*.jt"}, filters);
    EXPECT_EQ(filters, (FormatList{L"JT Files", L"*.jt", L"All Supported Files", L"*.jt;"}));
}

TEST(FileFilters, SkipFormatsThatCannotBeCompared) {
    FormatList filters;
    BuildFileFilters({L"STL Files", L"*.stl", L"JT Files", L"*.jt", L"VRML Files", L"*.wrl;*.vrml"},
                     filters);
    EXPECT_EQ(filters, (FormatList{L"JT Files", L"*.jt", L"All Supported Files", L"*.jt;"}));
}

TEST(FileFilters, WithNothingLeftTheLastEntryStandsAlone) {
    FormatList filters;
    BuildFileFilters({L"STL Files", L"*.stl"}, filters);
    EXPECT_EQ(filters, (FormatList{L"All Supported Files", L""}));
}

TEST(FileFilters, OnlyTextsWithAStarAndADotArePatterns) {
    FormatList filters;
    BuildFileFilters({L"A", L"*", L"B", L"*.", L"C", L"x*.y", L"D", L".*"}, filters);
    EXPECT_EQ(filters.back(), L"*.;x*.y;");
    EXPECT_EQ(filters.size(), 10U);
}

class ChooseFiles : public WorkflowTest {
protected:
    int choosePrompt(const std::wstring& documentFile, support::FakeDialog::Script script = {}) {
        services.toolkit->scripts.clear();
        services.toolkit->scripts.emplace_back([&](support::FakeDialog::State& prompt) {
            offered = prompt.texts[1001];
            if (script) script(prompt);
        });
        return workflow::ChooseFiles(filters, documentFile, reference, other);
    }
    FormatList filters = {L"All Supported Files", L"*.stp;"};
    std::wstring offered = L"untouched";
    std::wstring reference = L"before";
    std::wstring other = L"before";
};

TEST_F(ChooseFiles, WithoutADocumentNothingIsOffered) {
    choosePrompt(L"");
    EXPECT_EQ(offered, L"");
}

TEST_F(ChooseFiles, AComparableDocumentWithADriveIsOffered) {
    for (const wchar_t* file : {L"/data/a.stp", L"C:\\data\\a.stp", L"/data/a.par"}) {
        choosePrompt(file);
        EXPECT_EQ(offered, file);
    }
}

TEST_F(ChooseFiles, ADocumentWithoutADriveIsNotOffered) {
    for (const wchar_t* file : {L"data/a.stp", L"a.stp", L"\\\\server\\share\\a.stp"}) {
        choosePrompt(file);
        EXPECT_EQ(offered, L"") << std::string(file, file + std::wstring(file).size());
    }
}

TEST_F(ChooseFiles, ADocumentWithoutAnExtensionIsNotOffered) {
    choosePrompt(L"/data/model");
    EXPECT_EQ(offered, L"");
}

TEST_F(ChooseFiles, AnStlDocumentIsNotOfferedAndAParDocumentIs) {
    choosePrompt(L"/data/a.stl");
    EXPECT_EQ(offered, L"");
    choosePrompt(L"/data/a.par");
    EXPECT_EQ(offered, L"/data/a.par");
    choosePrompt(L"/data/a.STL");
    EXPECT_EQ(offered, L"/data/a.STL");
}

TEST_F(ChooseFiles, BothOutputsAreWrittenAlsoAfterACancel) {
    EXPECT_NE(choosePrompt(L"/data/a.stp"), 1);
    EXPECT_EQ(reference, L"/data/a.stp");
    EXPECT_EQ(other, L"");
}

TEST_F(ChooseFiles, ConfirmingReturnsOne) {
    EXPECT_EQ(choosePrompt(L"",
                           [](support::FakeDialog::State& prompt) {
                               prompt.type(1001, L"/a");
                               prompt.type(1002, L"/b");
                               prompt.click(1);
                           }),
              1);
    EXPECT_EQ(reference, L"/a");
    EXPECT_EQ(other, L"/b");
}

TEST_F(ChooseFiles, DoubleQuotesGoWhereverTheyStand) {
    choosePrompt(L"", [](support::FakeDialog::State& prompt) {
        prompt.type(1001, L"\"/data/a \"b\".stp\"");
        prompt.type(1002, L"\"\"/b");
        prompt.click(1);
    });
    EXPECT_EQ(reference, L"/data/a b.stp");
    EXPECT_EQ(other, L"/b");
}

TEST_F(ChooseFiles, PathsThatDifferOnlyInQuotesPassThePrompt) {
    const int result = choosePrompt(L"", [](support::FakeDialog::State& prompt) {
        prompt.type(1001, L"/a");
        prompt.type(1002, L"\"/a\"");
        prompt.click(1);
    });
    EXPECT_EQ(result, 1);
    EXPECT_EQ(reference, other);
}

TEST_F(ChooseFiles, WithoutAToolkitNothingIsChosen) {
    ui::services().toolkit.reset();
    EXPECT_NE(workflow::ChooseFiles(filters, L"", reference, other), 1);
    EXPECT_EQ(reference, L"");
    EXPECT_EQ(other, L"");
}

}  // namespace
