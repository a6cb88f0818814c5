#include "tests/unit/workflow/workflow_fixture.h"

namespace {

class ComparerStatus : public WorkflowTest {
protected:
    /// Status texts behind "Comparing...".
    Entries textsAfterComparing() {
        Entries all = log().withPrefix("status ");
        EXPECT_FALSE(all.empty());
        EXPECT_EQ(all.front(), "status Comparing...");
        all.erase(all.begin());
        return all;
    }
};

TEST_F(ComparerStatus, ZeroShowsTheResult) {
    comparerAnswers(0, L"/results/7.xbf");
    runPair();
    EXPECT_EQ(textsAfterComparing(), Entries{"status Comparison completed in 0 milliseconds"});
    EXPECT_TRUE(log().contains("caption Compare Models - Bextora"));
    EXPECT_TRUE(log().contains("openDocument /results/7.xbf 1"));
    EXPECT_TRUE(results()->visible);
    EXPECT_FALSE(state().resultPending);
}

TEST_F(ComparerStatus, MinusOneNamesTheReference) {
    comparerAnswers(-1);
    runPair();
    EXPECT_EQ(textsAfterComparing(), Entries{"status Failed to open /data/ref.stp"});
    EXPECT_EQ(log().count("caption"), 0U);
    EXPECT_EQ(log().count("open"), 0U);
    EXPECT_FALSE(state().resultPending);
}

TEST_F(ComparerStatus, MinusThreeOpensTheReferenceAlone) {
    comparerAnswers(-3);
    runPair();
    EXPECT_EQ(textsAfterComparing(), Entries{});
    EXPECT_EQ(log().withPrefix("open"), Entries{"openFile /data/ref.stp"});
    EXPECT_FALSE(state().resultPending);
}

TEST_F(ComparerStatus, MinusTwoOpensTheCompareFileAlone) {
    comparerAnswers(-2);
    runPair();
    EXPECT_EQ(textsAfterComparing(), Entries{});
    EXPECT_EQ(log().withPrefix("open"), Entries{"openFile /data/cmp.stp"});
    EXPECT_FALSE(state().resultPending);
}

TEST_F(ComparerStatus, AnyOtherValueShowsNothing) {
    for (const Status status : {3, 42, -4, 2147483647}) {
        log().clear();
        comparerAnswers(status);
        runPair();
        EXPECT_EQ(textsAfterComparing(), Entries{}) << status;
        EXPECT_EQ(log().count("open"), 0U) << status;
        EXPECT_EQ(log().count("box"), 0U) << status;
        EXPECT_EQ(log().count("caption"), 0U) << status;
        EXPECT_EQ(log().count("hint 3"), 0U) << status;
        EXPECT_FALSE(state().resultPending) << status;
    }
}

TEST_F(ComparerStatus, ASuccessIsReadAgainBeforeTheReaction) {
    const std::pair<Status, Entries> rows[] = {
        {-1, {}}, {-2, {"openFile /data/cmp.stp"}}, {-3, {"openFile /data/ref.stp"}}};
    for (const auto& [status, opened] : rows) {
        log().clear();
        services.toolkit->onCaption = [status = status] {
            workflow::shared().sharedStatus = status;
        };
        runPair();
        EXPECT_EQ(log().withPrefix("open"), opened) << status;
        EXPECT_FALSE(state().resultPending) << status;
    }
}

TEST_F(ComparerStatus, AFailedRunLeavesNoRecordAndNoDialog) {
    comparerAnswers(-1);
    runPair();
    EXPECT_EQ(state().pendingRecord, nullptr);
    EXPECT_EQ(state().resultsDialog, nullptr);
}

/// A run whose hint 3 never came back leaves its result pending.
class LeftOverResult : public ComparerStatus {
protected:
    LeftOverResult() {
        host->hints->views.clear();
        host->documentOpens = false;
        runPair();
        host->hints->views = {this};
        host->documentOpens = true;
        log().clear();
    }
};

TEST_F(LeftOverResult, IsPendingUntilTheNextRun) {
    EXPECT_TRUE(state().resultPending);
    choose(L"", L"");
    run();
    EXPECT_TRUE(state().resultPending);
}

TEST_F(LeftOverResult, IsForgottenBeforeTheNextRunsHints) {
    bool pendingAtHint = true;
    onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() == 24) pendingAtHint = state().resultPending;
    };
    comparerAnswers(42);
    runPair();
    EXPECT_FALSE(pendingAtHint);
    EXPECT_EQ(log().count("openDocument"), 0U);
}

TEST_F(LeftOverResult, IsForgottenByAFailedImport) {
    services.files->existing.clear();
    runPair();
    EXPECT_FALSE(state().resultPending);
}

class Mismatch : public ComparerStatus {
protected:
    /// The comparer answers these statuses in turn.
    void comparerAnswersInTurn(std::vector<Status> statuses) {
        services.comparer->body = [left = std::move(statuses)](Status& out) mutable {
            out = left.front();
            if (left.size() > 1) left.erase(left.begin());
            return std::wstring(L"/results/1.xbf");
        };
    }
};

TEST_F(Mismatch, OneNamesTheReferenceAsThePart) {
    comparerAnswers(1);
    runPair();
    EXPECT_EQ(log().withPrefix("box"),
              Entries{"box Compare Models | \"/data/ref.stp\" is a part file.\n"
                      "\"/data/cmp.stp\" is an assembly file.\n\n"
                      "Comparing a part with an assembly is not supported. | 327696"});
}

TEST_F(Mismatch, TwoNamesTheReferenceAsTheAssembly) {
    comparerAnswers(2);
    runPair();
    EXPECT_EQ(log().withPrefix("box"),
              Entries{"box Compare Models | \"/data/ref.stp\" is an assembly file.\n"
                      "\"/data/cmp.stp\" is a part file.\n\n"
                      "Comparing a part with an assembly is not supported. | 327696"});
}

TEST_F(Mismatch, BoxThenReadyThenThePromptAgain) {
    comparerAnswers(1);
    runPair();
    const auto all = log().entries();
    const auto box = std::find_if(all.begin(), all.end(), [](const std::string& entry) {
        return entry.rfind("box", 0) == 0;
    });
    ASSERT_NE(box, all.end());
    EXPECT_EQ(Entries(box + 1, all.end()),
              (Entries{"status Ready", "dialog103.modal", "dialog103.result 2", "dialog103.delete",
                       "cursor.end"}));
    EXPECT_FALSE(state().resultPending);
    EXPECT_EQ(state().pendingRecord, nullptr);
}

TEST_F(Mismatch, AGoodPairInTheSecondPromptRunsToTheEndOnce) {
    comparerAnswersInTurn({2, 0});
    choosePair();
    choose(L"/data/ref2.stp", L"/data/cmp2.stp");
    run();
    EXPECT_EQ(log().count("openDocument"), 1U);
    EXPECT_EQ(log().count("dialog1300.create"), 1U);
    EXPECT_EQ(log().count("result.attach 200"), 1U);
    EXPECT_EQ(state().resultsDialog->referencePath, L"/data/ref2.stp");
    EXPECT_EQ(state().resultsDialog->comparePath, L"/data/cmp2.stp");
    EXPECT_EQ(log().count("cursor.begin"), 2U);
    EXPECT_EQ(services.toolkit->waitCursorDepth, 0);
    // Behind the inner run's end the outer one only lets its wait cursor go.
    const auto all = log().entries();
    const int shown = log().position("dialog1300.foreground");
    EXPECT_EQ(Entries(all.begin() + shown + 1, all.end()),
              (Entries{"cursor.end", "cursor.end", "source.delete"}));
}

TEST_F(Mismatch, TheSecondPromptStartsFromTheActiveDocumentsFile) {
    comparerAnswers(1);
    choosePair();
    std::wstring offered;
    services.toolkit->scripts.emplace_back(
        [&](support::FakeDialog::State& prompt) { offered = prompt.texts[1001]; });
    run();
    EXPECT_EQ(offered, L"/data/open.stp");
}

TEST_F(Mismatch, EveryFurtherMismatchAsksAgain) {
    comparerAnswers(2);
    for (int i = 0; i < 5; ++i) choosePair();
    run();
    EXPECT_EQ(log().count("box"), 5U);
    EXPECT_EQ(log().count("dialog103.modal"), 6U);
    EXPECT_EQ(services.toolkit->waitCursorDepth, 0);
}

TEST_F(Mismatch, TheComparerOfTheOuterRunIsReusedByTheInnerOne) {
    comparerAnswersInTurn({1, 0});
    choosePair();
    choosePair();
    run();
    EXPECT_EQ(services.comparer->made, 1);
    EXPECT_EQ(services.comparer->alive, 0);
}

}  // namespace
