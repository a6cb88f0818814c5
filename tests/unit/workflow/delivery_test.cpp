#include "platform/bxt/compare_outcome.h"
#include "tests/unit/workflow/workflow_fixture.h"

namespace {

class Delivery : public WorkflowTest {
protected:
    Delivery() {
        services.importer->script = [](const std::string& path) {
            support::FakeImporter::Script script;
            const bool reference = path.find("ref") != std::string::npos;
            script.model = reference ? support::flatModel({"Bolt", "Nut"})
                                     : support::flatModel({"Bolt", "Washer", "Nut"});
            return script;
        };
    }
    std::shared_ptr<bxtsg::SCCompareOutcome> outcome() {
        return activeDocument().getAs<bxtsg::SCCompareOutcome>(200);
    }
};

TEST_F(Delivery, TheRecordNamesReferenceAndCompareFile) {
    runPair();
    const auto record = activeDocument().getAs<bxtsg::SCComprae>(29);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->refFile(), kReference);
    EXPECT_EQ(record->cmpFile(), kCompare);
}

TEST_F(Delivery, TheResultDocumentIsCalledAfterTheReference) {
    runPair();
    EXPECT_EQ(activeDocument().getAs<bxtsg::SCInfo>(8)->file(), L"ref");
}

TEST_F(Delivery, TheHostKnowsThatAResultIsBeingOpened) {
    bool duringHint = true;
    bool duringOpening = false;
    onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() == 3 && state().resultPending) {
            duringHint = host->data->compareResultOpening;
        }
    };
    host->onOpenDocument = [&] { duringOpening = host->data->compareResultOpening; };
    runPair();
    EXPECT_FALSE(duringHint);
    EXPECT_TRUE(duringOpening);
    EXPECT_TRUE(host->data->compareResultOpening);
}

TEST_F(Delivery, ADocumentThatDoesNotComeUpLeavesNothingBehind) {
    host->documentOpens = false;
    runPair();
    EXPECT_TRUE(log().contains("openDocument /results/1.xbf 1"));
    EXPECT_EQ(state().pendingRecord, nullptr);
    EXPECT_FALSE(host->data->compareResultOpening);
    EXPECT_FALSE(state().resultPending);
    EXPECT_EQ(state().resultsDialog, nullptr);
    EXPECT_EQ(state().resultFactory, nullptr);
    EXPECT_EQ(host->statusText, L"Comparison completed in 0 milliseconds");
    EXPECT_EQ(services.comparer->alive, 1);
}

TEST_F(Delivery, WithoutViewsTheDocumentsOwnHintOnlyEndsTheWait) {
    host->hints->views.clear();
    host->onOpenDocument = [&] { host->hints->views = {this}; };
    runPair();
    EXPECT_EQ(activeDocument().get(29), nullptr);
    EXPECT_EQ(state().pendingRecord, nullptr);
    EXPECT_FALSE(state().resultPending);
    EXPECT_FALSE(host->data->compareResultOpening);
    EXPECT_EQ(state().resultsDialog, nullptr);
}

TEST_F(Delivery, TheDialogGetsPathsContextAndFactory) {
    runPair();
    const auto& dialog = *state().resultsDialog;
    EXPECT_EQ(dialog.referencePath, kReference);
    EXPECT_EQ(dialog.comparePath, kCompare);
    EXPECT_EQ(state().resultFactory, host->active->factory());
    EXPECT_EQ(dialog.document(), host->active->document());
    EXPECT_EQ(dialog.application(), host);
    EXPECT_EQ(dialog.referenceModel(), state().compareJob->referenceNotifier.GetCADModel());
    EXPECT_EQ(dialog.compareModel(), state().compareJob->compareNotifier.GetCADModel());
    EXPECT_EQ(dialog.currentSection(), results::ResultSection::FileInformation);
}

TEST_F(Delivery, TheDialogIsMadeOnceAndReused) {
    runPair();
    const auto* dialog = state().resultsDialog.get();
    host->activate(host->addDocument("source", L"/data/open.stp"));
    choose(L"/data/ref2.stp", L"/data/cmp2.stp");
    run();
    EXPECT_EQ(state().resultsDialog.get(), dialog);
    EXPECT_EQ(log().count("dialog1300.create"), 1U);
    EXPECT_EQ(dialog->referencePath, L"/data/ref2.stp");
}

TEST_F(Delivery, ADialogWithoutAWindowGetsANewOne) {
    runPair();
    const auto* dialog = state().resultsDialog.get();
    state().resultsDialog->DestroyWindow();
    host->activate(host->addDocument("source", L"/data/open.stp"));
    runPair();
    EXPECT_EQ(state().resultsDialog.get(), dialog);
    EXPECT_EQ(log().count("dialog1300.create"), 2U);
    EXPECT_TRUE(results()->visible);
}

TEST_F(Delivery, NothingIsBuiltBeforeSomebodyAsks) {
    runPair();
    EXPECT_EQ(state().resultsDialog->engine().referenceRoot(), nullptr);
    ASSERT_TRUE(outcome());
    EXPECT_EQ(outcome()->referencePath(), kReference);
    EXPECT_EQ(outcome()->comparePath(), kCompare);
    EXPECT_EQ(state().resultsDialog->engine().referenceRoot(), nullptr);
    EXPECT_EQ(outcome()->productStructure().reference.size(), 3U);
    EXPECT_EQ(outcome()->productStructure().compare.size(), 4U);
    EXPECT_NE(state().resultsDialog->engine().referenceRoot(), nullptr);
}

TEST_F(Delivery, ARunKeepsTheOutcomeOfTheOneBefore) {
    runPair();
    const auto asked = outcome();
    EXPECT_EQ(asked->productStructure().rows.size(), 4U);
    host->activate(host->addDocument("source", L"/data/open.stp"));
    choose(L"/data/ref2.stp", L"/data/ref.stp");
    run();
    EXPECT_EQ(asked->productStructure().rows.size(), 4U);
    EXPECT_EQ(asked->referencePath(), kReference);
    EXPECT_EQ(outcome()->productStructure().rows.size(), 3U);
}

TEST_F(Delivery, AnOutcomeThatNobodyAskedForIsEmptiedByTheNextRun) {
    runPair();
    const auto first = outcome();
    host->activate(host->addDocument("source", L"/data/open.stp"));
    runPair();
    EXPECT_TRUE(first->productStructure().rows.empty());
    EXPECT_EQ(outcome()->productStructure().rows.size(), 4U);
}

TEST_F(Delivery, AnOutcomeOutlivesThePlugIn) {
    runPair();
    const auto kept = outcome();
    compare.reset();
    EXPECT_TRUE(kept->productStructure().rows.empty());
    EXPECT_EQ(kept->comparePath(), kCompare);
}

TEST_F(Delivery, WithoutAnActiveFrameTheDialogIsStillFilled) {
    host->onOpenDocument = [&] {
        host->sendHint(3, host->addDocument("taker", L""));
        host->documentOpens = false;
        host->activate(nullptr);
    };
    runPair();
    EXPECT_TRUE(results()->visible);
    EXPECT_EQ(state().resultFactory, nullptr);
}

}  // namespace
