#include "tests/unit/workflow/workflow_fixture.h"

namespace {

class Lifetime : public WorkflowTest {};

TEST_F(Lifetime, ANewWorkflowHasItsInitialState) {
    EXPECT_FALSE(state().resultPending);
    EXPECT_TRUE(state().fileFilters.empty());
    ASSERT_NE(state().compareJob, nullptr);
    EXPECT_EQ(state().resultsDialog, nullptr);
    EXPECT_EQ(state().pendingRecord, nullptr);
    EXPECT_FALSE(state().activeIs2D);
    EXPECT_EQ(state().activeFactory, nullptr);
    EXPECT_EQ(state().resultFactory, nullptr);
}

TEST_F(Lifetime, ANewJobHasItsInitialState) {
    const extract::CompareJob& job = *state().compareJob;
    EXPECT_EQ(job.referencePath, L"");
    EXPECT_EQ(job.comparePath, L"");
    EXPECT_EQ(job.sourceFactory, nullptr);
    EXPECT_EQ(job.heldObject, nullptr);
    EXPECT_TRUE(job.compareNotifier.Empty());
    EXPECT_TRUE(job.referenceNotifier.Empty());
    EXPECT_EQ(job.modelUnitCache, -1.0);
}

/// Writes its end into the log.
std::shared_ptr<void> witness(const support::Log& log, const char* entry) {
    return {nullptr, [log, entry](void*) { log->add(entry); }};
}

template <typename Class>
std::shared_ptr<Class> witnessed(const support::Log& log, const char* entry) {
    return {witness(log, entry), nullptr};
}

TEST_F(Lifetime, AJobLetsGoOfImportsThenOfWhatItShares) {
    auto job = std::make_unique<extract::CompareJob>();
    const HPS::Exchange::ImportOptionsKit kit;
    job->referenceNotifier = HPS::Exchange::File::Import("/r", kit);
    job->compareNotifier = HPS::Exchange::File::Import("/c", kit);
    job->sourceFactory = witnessed<bxtsg::IFactory>(services.log, "sourceFactory.delete");
    job->heldObject = witness(services.log, "heldObject.delete");
    log().clear();
    job.reset();
    EXPECT_EQ(log().entries(), (Entries{"import.release /r", "import.release /c",
                                        "heldObject.delete", "sourceFactory.delete"}));
}

TEST_F(Lifetime, StateGoesFromTheResultToTheRecord) {
    auto all = std::make_unique<workflow::WorkflowState>();
    all->pendingRecord = witnessed<bxtsg::SCComprae>(services.log, "pendingRecord.delete");
    all->activeFactory = witnessed<bxtsg::IFactory>(services.log, "activeFactory.delete");
    all->resultFactory = witnessed<bxtsg::IFactory>(services.log, "resultFactory.delete");
    all.reset();
    EXPECT_EQ(log().entries(),
              (Entries{"resultFactory.delete", "activeFactory.delete", "pendingRecord.delete"}));
}

TEST_F(Lifetime, SharedStateStartsEmpty) {
    const workflow::SharedState fresh;
    EXPECT_EQ(fresh.sharedReferencePath + fresh.sharedComparePath + fresh.sharedResultPath, L"");
    EXPECT_EQ(fresh.sharedStatusManager, nullptr);
    EXPECT_EQ(fresh.sharedApplication, nullptr);
    EXPECT_EQ(fresh.sharedComparer, nullptr);
}

TEST_F(Lifetime, OneJobServesAllRunsAndKeepsItsUnit) {
    const extract::CompareJob* job = state().compareJob.get();
    state().compareJob->modelUnitCache = 25.4;
    runPair();
    choose(L"/data/ref2.stp", L"/data/cmp2.stp");
    run();
    EXPECT_EQ(state().compareJob.get(), job);
    EXPECT_EQ(job->modelUnitCache, 25.4);
    EXPECT_EQ(job->referencePath, L"/data/ref2.stp");
}

TEST_F(Lifetime, NotifiersAreReassignedByTheNextImport) {
    runPair();
    // The dialog and the published outcome hold models, not imports.
    log().clear();
    runPair();
    EXPECT_EQ(log().withPrefix("import.release"),
              (Entries{"import.release /data/cmp.stp", "import.release /data/ref.stp"}));
    EXPECT_GT(log().position("import.release /data/cmp.stp"),
              log().position("import.start /data/cmp.stp"));
}

TEST_F(Lifetime, EndingLetsGoOfComparerThenDialogThenJob) {
    runPair();
    comparerAnswers(-1);
    runPair();
    ASSERT_EQ(services.comparer->alive, 1);
    log().clear();
    compare.reset();
    EXPECT_EQ(log().entries(),
              (Entries{"comparer.delete", "dialog1300.destroyWindow", "dialog1300.delete",
                       "import.release /data/ref.stp", "import.release /data/cmp.stp"}));
    EXPECT_EQ(workflow::shared().sharedComparer, nullptr);
}

TEST_F(Lifetime, EndingWithoutARunTouchesNeitherDialogNorComparer) {
    compare.reset();
    EXPECT_TRUE(log().entries().empty());
}

TEST_F(Lifetime, EndingReleasesTheJobsSourceBeforeResultAndActiveFactory) {
    host->activate(host->addDocument("sourceDocument", L""));
    choosePair();
    compare->onCommand(nullptr, 101, host);
    host->sendHint(1, host->addDocument("activeDocument", L""));
    host->activate(nullptr);
    log().clear();
    compare.reset();
    EXPECT_EQ(log().withPrefix("s"), Entries{"sourceDocument.delete"});
    const auto all = log().entries();
    EXPECT_EQ(Entries(all.end() - 3, all.end()),
              (Entries{"sourceDocument.delete", "result.delete", "activeDocument.delete"}));
}

TEST_F(Lifetime, ADestroyedWindowIsNotDestroyedAgain) {
    runPair();
    state().resultsDialog->DestroyWindow();
    log().clear();
    compare.reset();
    EXPECT_EQ(log().count("dialog1300.destroyWindow"), 0U);
    EXPECT_EQ(log().count("dialog1300.delete"), 1U);
}

TEST_F(Lifetime, AComparerLivesForOneResult) {
    runPair();
    EXPECT_EQ(services.comparer->made, 1);
    EXPECT_EQ(services.comparer->alive, 0);
    host->activate(host->addDocument("source", L"/data/open.stp"));
    runPair();
    EXPECT_EQ(services.comparer->made, 2);
    EXPECT_EQ(services.comparer->alive, 0);
}

TEST_F(Lifetime, AComparerSurvivesARunWithoutAResult) {
    for (const Status status : {-1, -2, -3, 9}) {
        comparerAnswers(status);
        runPair();
    }
    EXPECT_EQ(services.comparer->made, 1);
    EXPECT_EQ(services.comparer->alive, 1);
}

}  // namespace
