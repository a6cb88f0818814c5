#include "workflow/compare_files_dialog.h"

#include "platform/bxt/services.h"
#include "tests/unit/workflow/workflow_fixture.h"

namespace {

using workflow::CompareFilesDialog;
using workflow::FormatList;
using State = support::FakeDialog::State;

class FilePairDialog : public WorkflowTest {
protected:
    int show(support::FakeDialog::Script script) {
        services.toolkit->scripts.push_back(std::move(script));
        return dialog.DoModal();
    }
    CompareFilesDialog dialog{{L"STEP Files", L"*.stp", L"All Supported Files", L"*.stp;"}};
};

TEST_F(FilePairDialog, UsesTheTemplateOfTheLanguage) {
    for (const auto& [language, id] : {std::pair{L"fr", 177},
                                       {L"de", 175},
                                       {L"ja", 178},
                                       {L"ko", 188},
                                       {L"zh", 193},
                                       {L"es", 207},
                                       {L"pt", 208},
                                       {L"en", 103},
                                       {L"xx", 103}}) {
        bxt::services().language = language;
        int shown = 0;
        show([&](State& prompt) { shown = prompt.shape.id; });
        EXPECT_EQ(shown, id);
    }
}

TEST_F(FilePairDialog, ShowsCueBannersAlsoWhileFocused) {
    show([](State& prompt) {
        EXPECT_EQ(prompt.cues[1001], L"<provide reference file name>");
        EXPECT_EQ(prompt.cues[1002], L"<provide compare file name>");
        EXPECT_TRUE(prompt.cueWhileFocused[1001]);
        EXPECT_TRUE(prompt.cueWhileFocused[1002]);
    });
}

TEST_F(FilePairDialog, StartsWithAClearedMessage) {
    dialog.message = L"left over";
    show([](State& prompt) { EXPECT_EQ(prompt.texts[1015], L""); });
}

TEST_F(FilePairDialog, BothBrowseButtonsOfferTheSameFilter) {
    show([](State& prompt) {
        for (const int id : {1001, 1002}) {
            EXPECT_EQ(prompt.browse[id].filter,
                      L"All Supported Files(*.stp;)|*.stp;|STEP Files(*.stp)|*.stp||");
            EXPECT_TRUE(prompt.browse[id].hideReadOnly);
            EXPECT_TRUE(prompt.browse[id].overwritePrompt);
        }
    });
}

TEST_F(FilePairDialog, TheBrowseImageFollowsTheDisplaysScale) {
    for (const auto& [dpi, image] : {std::pair{96, 203U}, {120, 204U}, {144, 205U}, {192, 206U}}) {
        bxt::services().dotsPerInch = dpi;
        show([image = image](State& prompt) {
            EXPECT_EQ(prompt.browse[1001].image, image);
            EXPECT_EQ(prompt.browse[1002].image, image);
        });
    }
}

TEST_F(FilePairDialog, WithAReferenceTheFocusGoesToTheCompareFile) {
    show([](State& prompt) { EXPECT_EQ(prompt.focus, 0); });
    dialog.referencePath = L"/data/a.stp";
    show([](State& prompt) {
        EXPECT_EQ(prompt.focus, 1002);
        EXPECT_EQ(prompt.texts[1001], L"/data/a.stp");
        EXPECT_EQ(prompt.texts[1002], L"");
    });
}

TEST_F(FilePairDialog, TheButtonNeedsBothPaths) {
    show([](State& prompt) {
        EXPECT_TRUE(prompt.enabled[1]);
        prompt.type(1001, L"/a");
        EXPECT_FALSE(prompt.enabled[1]);
        prompt.type(1002, L"/b");
        EXPECT_TRUE(prompt.enabled[1]);
        prompt.type(1001, L"");
        EXPECT_FALSE(prompt.enabled[1]);
    });
}

TEST_F(FilePairDialog, TypingKeepsTheTexts) {
    show([this](State& prompt) {
        prompt.type(1001, L"/a");
        EXPECT_EQ(dialog.referencePath, L"/a");
        EXPECT_EQ(prompt.texts[1001], L"/a");
        prompt.type(1002, L"/b");
        EXPECT_EQ(dialog.comparePath, L"/b");
    });
}

TEST_F(FilePairDialog, EqualPathsKeepItOpenWithAMessage) {
    const int result = show([this](State& prompt) {
        prompt.type(1001, L"/a");
        prompt.type(1002, L"/a");
        prompt.click(1);
        EXPECT_FALSE(prompt.ended);
        EXPECT_EQ(prompt.texts[1015], L"Please provide different reference and compare file name");
        EXPECT_EQ(dialog.message, prompt.texts[1015]);
    });
    EXPECT_NE(result, 1);
}

TEST_F(FilePairDialog, TheMessageStaysWhenAPathChanges) {
    const int result = show([](State& prompt) {
        prompt.type(1001, L"/a");
        prompt.type(1002, L"/a");
        prompt.click(1);
        prompt.type(1002, L"/b");
        EXPECT_EQ(prompt.texts[1015], L"Please provide different reference and compare file name");
        prompt.click(1);
    });
    EXPECT_EQ(result, 1);
}

TEST_F(FilePairDialog, PathsThatDifferOnlyInCaseAreDifferent) {
    EXPECT_EQ(show([](State& prompt) {
                  prompt.type(1001, L"/data/A.stp");
                  prompt.type(1002, L"/data/a.stp");
                  prompt.click(1);
              }),
              1);
}

TEST_F(FilePairDialog, TwoEmptyPathsAtTheStartAreEqual) {
    show([](State& prompt) {
        EXPECT_TRUE(prompt.enabled[1]);
        prompt.click(1);
        EXPECT_FALSE(prompt.ended);
        EXPECT_EQ(prompt.texts[1015], L"Please provide different reference and compare file name");
    });
}

TEST_F(FilePairDialog, CancellingIsNotOne) {
    EXPECT_NE(show([](State&) {}), 1);
}

TEST_F(FilePairDialog, OtherControlsDoNothing) {
    show([](State& prompt) {
        prompt.texts[1001] = L"/a";
        prompt.events->onTextChanged(1015);
        EXPECT_TRUE(prompt.enabled[1]);
        prompt.click(1001);
        EXPECT_FALSE(prompt.ended);
    });
    EXPECT_EQ(dialog.referencePath, L"");
}

TEST_F(FilePairDialog, PressingReadsPathsThatNobodyAnnounced) {
    const int result = show([](State& prompt) {
        prompt.texts[1001] = L"/a";
        prompt.texts[1002] = L"/b";
        prompt.click(1);
    });
    EXPECT_EQ(result, 1);
    EXPECT_EQ(dialog.referencePath, L"/a");
    EXPECT_EQ(dialog.comparePath, L"/b");
}

TEST_F(FilePairDialog, WithoutFormatsTheBrowserOffersAllFiles) {
    EXPECT_EQ(CompareFilesDialog::BrowserFilter({}), L"All Files (*.*)|*.*||");
}

TEST_F(FilePairDialog, EntriesWithoutANameAreLeftOut) {
    EXPECT_EQ(CompareFilesDialog::BrowserFilter({L"", L"*.x", L"JT", L"*.jt", L"All", L"*.jt;"}),
              L"All(*.jt;)|*.jt;|JT(*.jt)|*.jt||");
}

TEST_F(FilePairDialog, TheLastEntryComesFirstAndOnlyOnce) {
    EXPECT_EQ(CompareFilesDialog::BrowserFilter({L"All", L"*.a;"}), L"All(*.a;)|*.a;||");
    EXPECT_EQ(CompareFilesDialog::BrowserFilter({L"A", L"*.a", L"B", L"*.b", L"All", L"*.a;*.b;"}),
              L"All(*.a;*.b;)|*.a;*.b;|A(*.a)|*.a|B(*.b)|*.b||");
}

}  // namespace
