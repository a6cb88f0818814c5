#include "tests/unit/results/results_fixture.h"

namespace {

using results::ResultSection;
using Strings = std::vector<std::string>;

class Save : public ResultsTest {
protected:
    void ready(const wchar_t* path = L"/home/r.csv") {
        auto record = std::make_shared<bxtsg::SCComprae>();
        record->setFiles(L"/data/new/b.stp", L"/data/old/a.v1.stp");
        document->attach(bxtsg::code::Compare, record);
        create();
        setModels({"Bolt"}, {"Bolt", "Nut"});
        dialog->SetFileInfoData(fileInfo());
        dialog->SetBomData(rows({L"Bolt"}, {L"2"}, {L"Bolt"}, {L"2"}, {0}, {0}));
        dialog->SetAttributeData(rows({L"Author"}, {L"a"}, {L"Author"}, {L"b"}, {3}, {3}));
        dialog->SetPartAttributeData({part(L"Bolt", {{L"k", L"v", {}}})}, {});
        dialog->SetPmiData(rows({L"D"}, {L"1"}, {L"D"}, {L"1"}, {0}, {0}));
        if (path) user->savePath = path;
        services.log->clear();
    }
    Strings statuses() {
        Strings all;
        for (const std::string& entry : services.log->entries()) {
            if (entry.rfind("status ", 0) == 0) all.push_back(entry.substr(7));
        }
        services.log->clear();
        return all;
    }
    Strings blocks(const std::wstring& path) {
        Strings titles;
        const std::string bytes = disk->files.at(path).substr(3);
        std::size_t at = 0;
        for (;;) {
            titles.push_back(bytes.substr(at, bytes.find('\r', at) - at));
            const std::size_t end = bytes.find("\r\r\n\r\r\n", at);
            if (end + 6 >= bytes.size()) return titles;
            at = end + 6;
        }
    }
};

TEST_F(Save, AsksWithTheReferencesNameAndThreeForms) {
    ready();
    window().press(1302);
    ASSERT_TRUE(user->asked);
    EXPECT_EQ(user->asked->suggestedName, L"a.v1 - Compare Results");
    EXPECT_EQ(user->asked->defaultExtension, L"pdf");
    EXPECT_EQ(user->asked->filter, L"3D PDF (*.pdf)|*.pdf|HTML (*.html)|*.html|CSV (*.csv)|*.csv|");
    EXPECT_TRUE(user->asked->overwritePrompt);
}

TEST_F(Save, WritesEverySectionAndSaysSo) {
    ready();
    window().press(1302);
    EXPECT_EQ(statuses(), (Strings{"Saving...", "Compare results saved - /home/r.csv"}));
    EXPECT_EQ(events, std::vector<std::wstring>{L"Compare/Save to CSV"});
    EXPECT_EQ(blocks(L"/home/r.csv"),
              (Strings{"Information", "Product Structure", "Bill of Materials", "Attributes",
                       "Part Level Attributes", "PMI"}));
    EXPECT_EQ(toolkit->waitCursorDepth(), 0);
}

TEST_F(Save, BuildsTheTreesOnceAndCopyShowsThemAfterwards) {
    ready();
    window().press(1303);
    EXPECT_EQ(clipboard->text()->find(L"Product Structure"), std::wstring::npos);
    EXPECT_EQ(dialog->engine().referenceRoot(), nullptr);
    window().press(1302);
    const auto* const root = dialog->engine().referenceRoot();
    ASSERT_NE(root, nullptr);
    window().press(1302);
    EXPECT_EQ(dialog->engine().referenceRoot(), root);
    window().press(1303);
    EXPECT_NE(clipboard->text()->find(L"Product Structure"), std::wstring::npos);
}

TEST_F(Save, SectionsThatAreOffHandOverNothing) {
    set(L"PSCompare", 0);
    ready();
    window().press(1302);
    EXPECT_EQ(blocks(L"/home/r.csv"),
              (Strings{"Information", "Attributes", "Part Level Attributes", "PMI"}));
    EXPECT_EQ(dialog->engine().referenceRoot(), nullptr);
    set(L"AttribCompare", 0);
    set(L"PMICompare", 0);
    dialog->RefreshResults();
    const reports::ReportContent content = dialog->BuildReportContent();
    EXPECT_EQ(content.bom, reports::BuildColumnTable({}, {}, {}, {}));
    EXPECT_EQ(content.pmi, reports::BuildColumnTable({}, {}, {}, {}));
    EXPECT_TRUE(content.productStructure.empty());
    EXPECT_TRUE(content.referenceParts.empty());
    EXPECT_EQ(content.fileInfo[reports::column::kCompareValue][1], L"b.stp");
}

TEST_F(Save, TheStructureTableIsAlignedWithTheTextsOfStates) {
    ready();
    const reports::ReportContent content = dialog->BuildReportContent();
    EXPECT_EQ(content.productStructure, (reports::ReportTable{{L"Top", L"  Bolt", L"  Nut"},
                                                              {L"Modified", L"Same", L"Added"},
                                                              {L"Top", L"  Bolt", L""},
                                                              {L"Same", L"Same", L""}}));
}

TEST_F(Save, WithoutDocumentOrRecordNothingHappens) {
    create();
    window().press(1302);
    setModels({"Bolt"}, {"Bolt"});
    services.log->clear();
    window().press(1302);
    EXPECT_FALSE(user->asked);
    EXPECT_TRUE(statuses().empty());
    EXPECT_TRUE(events.empty());
}

TEST_F(Save, ACancelledChoiceIsSilent) {
    ready(nullptr);
    window().press(1302);
    EXPECT_TRUE(user->asked);
    EXPECT_TRUE(statuses().empty());
    user->savePath = L"";
    window().press(1302);
    EXPECT_TRUE(statuses().empty());
    EXPECT_TRUE(disk->files.empty());
    EXPECT_EQ(toolkit->waitCursorDepth(), 0);
}

TEST_F(Save, UnknownExtensionsFailWithoutAnEvent) {
    ready();
    for (const wchar_t* path : {L"/r.txt", L"/r.CSV", L"/r.csv2"}) {
        user->savePath = path;
        window().press(1302);
        EXPECT_EQ(statuses()[1].rfind("Failed to save /r.", 0), 0U);
    }
    EXPECT_TRUE(events.empty());
    EXPECT_TRUE(disk->files.empty());
}

TEST_F(Save, UnknownExtensionsBuildTheTreesAllTheSame) {
    ready(L"/r.txt");
    window().press(1302);
    EXPECT_NE(dialog->engine().referenceRoot(), nullptr);
}

TEST_F(Save, TheUserWaitsWhileItIsWrittenAndIsToldBeforeItIsCounted) {
    ready();
    int depth = -1;
    std::string before;
    bxt::services().commandEvent = [&](const std::wstring&, const std::wstring&) {
        depth = toolkit->waitCursorDepth();
        before = services.log->entries().back();
    };
    window().press(1302);
    EXPECT_EQ(depth, 1);
    EXPECT_EQ(before, "status Compare results saved - /home/r.csv");
    window().press(1303);
    EXPECT_EQ(depth, 1);
    EXPECT_EQ(before, "status Compare results copied to clipboard.");
}

TEST_F(Save, StatesGoWithTheSectionsThatAreOn) {
    ready();
    dialog->SetBomData(rows({}, {}, {}, {}, {1}, {2}));
    dialog->SetAttributeData(rows({}, {}, {}, {}, {3}, {0, 3}));
    dialog->SetPmiData(rows({}, {}, {}, {}, {1, 1}, {2, 2}));
    reports::RowStates states = dialog->BuildRowStates();
    EXPECT_EQ(states.fileInfoReference, dialog->data().fileInfo.referenceStates);
    EXPECT_EQ(states.fileInfoCompare, dialog->data().fileInfo.compareStates);
    EXPECT_EQ(states.bomReference, dialog->data().bom.referenceStates);
    EXPECT_EQ(states.bomCompare, dialog->data().bom.compareStates);
    EXPECT_EQ(states.attributesReference, dialog->data().attributes.referenceStates);
    EXPECT_EQ(states.attributesCompare, dialog->data().attributes.compareStates);
    EXPECT_EQ(states.pmiReference, dialog->data().pmi.referenceStates);
    EXPECT_EQ(states.pmiCompare, dialog->data().pmi.compareStates);
    for (const wchar_t* name : {L"PSCompare", L"PMICompare", L"AttribCompare"}) set(name, 0);
    dialog->RefreshResults();
    states = dialog->BuildRowStates();
    EXPECT_FALSE(states.fileInfoReference.empty() || states.fileInfoCompare.empty());
    EXPECT_TRUE(states.bomReference.empty() && states.bomCompare.empty());
    EXPECT_TRUE(states.attributesReference.empty() && states.attributesCompare.empty());
    EXPECT_TRUE(states.pmiReference.empty() && states.pmiCompare.empty());
}

TEST_F(Save, TwoEmptyModelsHaveNoStructureToHandOver) {
    ready();
    dialog->SetReportContext(document, host, {}, {});
    EXPECT_TRUE(dialog->BuildReportContent().productStructure.empty());
    EXPECT_EQ(dialog->engine().referenceRoot(), nullptr);
}

TEST_F(Save, FormsWithoutAWriterFailAndAreCounted) {
    ready(L"/r.pdf");
    window().press(1302);
    EXPECT_EQ(services.log->count("key.read 3DReport"), 1U);
    EXPECT_EQ(statuses(), (Strings{"Saving...", "Failed to save /r.pdf"}));
    user->savePath = L"/r.html";
    window().press(1302);
    EXPECT_EQ(services.log->count("key.read 3DReport"), 1U);
    EXPECT_EQ(statuses(), (Strings{"Saving...", "Failed to save /r.html"}));
    EXPECT_TRUE(disk->files.empty());
    EXPECT_EQ(events, (std::vector<std::wstring>{L"Compare/Save to PDF", L"Compare/Save to HTML"}));
}

TEST_F(Save, AFileThatCannotBeWrittenFailsAndIsCounted) {
    ready();
    disk->refused.insert(L"/home/r.csv");
    window().press(1302);
    EXPECT_EQ(statuses(), (Strings{"Saving...", "Failed to save /home/r.csv"}));
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(Save, AFullDiskIsASuccessThatTheFileLayerKnowsBetter) {
    ready();
    disk->room = 10;
    window().press(1302);
    EXPECT_EQ(statuses()[1], "Compare results saved - /home/r.csv");
    EXPECT_TRUE(disk->takeFailure());
}

}  // namespace
