#include "tests/unit/workflow/workflow_fixture.h"

namespace {

namespace code = bxtsg::code;

class Workflow : public WorkflowTest {};

TEST_F(Workflow, EveryCallAndHintOfAGoodRunComesInOrder) {
    choosePair();
    compare->onCommand(nullptr, 101, host);
    const Entries expected = {
        "noteCommand 101",
        "notePlugin Compare Plugin",
        "dialog103.modal",
        "dialog103.result 1",
        "dialog103.delete",
        "cursor.begin",
        "files.exists /data/cmp.stp",
        "files.exists /data/ref.stp",
        "store.open Software\\Bextora\\viewer\\Settings\\Import full",
        "store.open Software\\Bextora\\viewer\\Settings\\Import full",
        "import.start /data/cmp.stp",
        "import.start /data/ref.stp",
        "sleep 500",
        "import.status /data/cmp.stp 0",
        "import.status /data/ref.stp 0",
        "import.model /data/cmp.stp",
        "import.model /data/ref.stp",
        "import.model /data/ref.stp",
        "import.model /data/cmp.stp",
        "cursor.set",
        "prepareFrame ref",
        "hint 24 source",
        "hint 5 source",
        "frameUnavailable",
        "prepareBackgroundWork",
        "status Comparing...",
        "worker.start",
        "comparer.make /opt/bextora/bin/..\\..\\Lang",
        "doComparision /data/ref.stp /data/cmp.stp",
        "setProgress 101",
        "setProgress 0",
        "runProgress Compare",
        "worker.close",
        "caption Compare Models - Bextora",
        "status Comparison completed in 0 milliseconds",
        "hint 3 source",
        "openDocument /results/1.xbf 1",
        "hint 3 result",
        "result.attach 29",
        "comparer.delete",
        "hint 25 result",
        "dialog1300.create",
        "store.create Software\\Bextora\\bextora\\Workspace read",
        "key.read DocPrec",
        "key.close",
        "store.create Software\\Bextora\\bextora\\Settings\\Compare full",
        "key.read PSCompare",
        "key.read PMICompare",
        "key.read AttribCompare",
        "key.close",
        "store.create Software\\Bextora\\bextora\\Settings\\Compare full",
        "key.read PSCompare",
        "key.read PMICompare",
        "key.read AttribCompare",
        "key.close",
        "result.attach 200",
        "dialog1300.show",
        "dialog1300.foreground",
        "cursor.end",
    };
    EXPECT_EQ(log().entries(), expected);
}

TEST_F(Workflow, TheWorkerMayEndBeforeTheProgressWindowOpens) {
    bool endedBefore = false;
    host->onRunProgress = [&] {
        endedBefore = host->ended();
        return 0;
    };
    runPair();
    EXPECT_TRUE(endedBefore);
    EXPECT_LT(log().position("setProgress 101"), log().position("setProgress 0"));
    EXPECT_TRUE(log().contains("openDocument /results/1.xbf 1"));
}

TEST_F(Workflow, TheWorkerMayEndWhileTheProgressWindowIsOpen) {
    const auto workers = services.useWorkers<support::ManualWorkers>();
    host->onRunProgress = [&] {
        EXPECT_FALSE(host->ended());
        workers->body();
        return host->ended() ? 0 : 2;
    };
    runPair();
    EXPECT_GT(log().position("setProgress 101"), log().position("runProgress Compare"));
    EXPECT_TRUE(log().contains("openDocument /results/1.xbf 1"));
}

TEST_F(Workflow, RunsOnARealThread) {
    services.useWorkers<support::ThreadedWorkers>();
    runPair();
    EXPECT_TRUE(log().contains("openDocument /results/1.xbf 1"));
    EXPECT_EQ(log().count("worker.terminate"), 0U);
    EXPECT_EQ(log().count("worker.close"), 1U);
}

TEST_F(Workflow, TheApplicationIsSharedBeforeThePromptIsShown) {
    std::shared_ptr<bxt::IApplication> atPrompt;
    services.toolkit->scripts.emplace_back(
        [&](support::FakeDialog::State&) { atPrompt = workflow::shared().sharedApplication; });
    run();
    EXPECT_EQ(atPrompt, host);
}

TEST_F(Workflow, TheFiltersAreBuiltOnceAndKept) {
    run();
    const workflow::FormatList first = state().fileFilters;
    EXPECT_EQ(first, (workflow::FormatList{L"STEP Files", L"*.stp;*.step", L"All Supported Files",
                                           L"*.stp;*.step;"}));
    host->data->fileFormats = {L"JT Files", L"*.jt"};
    run();
    EXPECT_EQ(state().fileFilters, first);
}

TEST_F(Workflow, AnEmptyFormatListIsTriedAgainInTheNextRun) {
    const auto formats = host->data->fileFormats;
    host->data->fileFormats.clear();
    run();
    EXPECT_TRUE(state().fileFilters.empty());
    host->data->fileFormats = formats;
    run();
    EXPECT_EQ(state().fileFilters.size(), 4U);
}

TEST_F(Workflow, AHostWithoutSchemasStillAsksForThePair) {
    activeDocument().schemas.clear();
    std::wstring offered = L"x";
    services.toolkit->scripts.emplace_back(
        [&](support::FakeDialog::State& prompt) { offered = prompt.texts[1001]; });
    run();
    EXPECT_EQ(offered, L"");
    EXPECT_TRUE(state().fileFilters.empty());
    runPair();
    EXPECT_TRUE(log().contains("dialog1300.show"));
}

TEST_F(Workflow, TheFileOfTheActiveDocumentIsOfferedAsTheReference) {
    std::wstring offered;
    services.toolkit->scripts.emplace_back(
        [&](support::FakeDialog::State& prompt) { offered = prompt.texts[1001]; });
    run();
    EXPECT_EQ(offered, L"/data/open.stp");
}

TEST_F(Workflow, ACancelledPromptLeavesEverythingAsItWas) {
    host->setStatusText(L"before");
    workflow::shared().sharedStatus = 5;
    log().clear();
    run();
    EXPECT_EQ(log().entries(),
              (Entries{"dialog103.modal", "dialog103.result 2", "dialog103.delete"}));
    EXPECT_EQ(host->statusText, L"before");
    EXPECT_FALSE(state().resultPending);
    EXPECT_EQ(state().pendingRecord, nullptr);
    EXPECT_EQ(state().compareJob->referencePath, L"");
    EXPECT_EQ(workflow::shared().sharedStatus, 5);
}

TEST_F(Workflow, APromptWithAnEmptyPathEndsTheRunSilently) {
    for (const auto& pair : {std::pair{kReference, std::wstring()}, {std::wstring(), kCompare}}) {
        log().clear();
        services.toolkit->scripts.emplace_back([&](support::FakeDialog::State& prompt) {
            prompt.type(1001, pair.first);
            prompt.type(1002, pair.second);
            prompt.click(1);
        });
        run();
        EXPECT_EQ(log().entries(),
                  (Entries{"dialog103.modal", "dialog103.result 1", "dialog103.delete"}));
    }
}

TEST_F(Workflow, AConfirmedPairMadeOfQuotesOnlyEndsTheRunSilently) {
    choose(L"\"\"", L"\"");
    run();
    EXPECT_EQ(log().count("cursor."), 0U);
}

TEST_F(Workflow, ThePathsGoToTheJobBeforeTheImport) {
    std::wstring referenceAtImport;
    std::wstring compareAtImport;
    services.importer->onStart = [&] {
        referenceAtImport = state().compareJob->referencePath;
        compareAtImport = state().compareJob->comparePath;
    };
    runPair();
    EXPECT_EQ(referenceAtImport, kReference);
    EXPECT_EQ(compareAtImport, kCompare);
    EXPECT_FALSE(state().compareJob->referenceNotifier.Empty());
    EXPECT_FALSE(state().compareJob->compareNotifier.Empty());
    EXPECT_FALSE(state().compareJob->referenceNotifier.GetCADModel().Empty());
}

TEST_F(Workflow, AFailedImportNamesTheReferenceGluedToTheMessage) {
    services.importer->script = [](const std::string&) {
        support::FakeImporter::Script script;
        script.states = {1};
        return script;
    };
    workflow::shared().sharedStatus = 0;
    runPair();
    EXPECT_EQ(host->statusText, L"Comparison failed./data/ref.stp");
    EXPECT_EQ(workflow::shared().sharedStatus, -1);
    EXPECT_FALSE(state().resultPending);
    EXPECT_EQ(log().count("prepareFrame"), 0U);
    EXPECT_EQ(log().count("hint "), 0U);
    EXPECT_EQ(log().count("cursor.set"), 0U);
    EXPECT_EQ(services.toolkit->waitCursorDepth, 0);
    EXPECT_EQ(log().entries().back(), "cursor.end");
}

TEST_F(Workflow, AMissingFileNamesTheReference) {
    services.files->existing = {kReference};
    runPair();
    EXPECT_EQ(host->statusText, L"Comparison failed./data/ref.stp");
    EXPECT_EQ(log().count("import."), 0U);
}

TEST_F(Workflow, AnEmptyModelNamesTheReference) {
    services.importer->script = [](const std::string& path) {
        support::FakeImporter::Script script;
        if (path == "/data/cmp.stp") script.model = nullptr;
        return script;
    };
    runPair();
    EXPECT_EQ(host->statusText, L"Comparison failed./data/ref.stp");
}

TEST_F(Workflow, TheFramesTitleIsTheStemOfTheReference) {
    services.files->existing.insert(L"/a b/Top.rev.2.stp");
    choose(L"/a b/Top.rev.2.stp", kCompare);
    run();
    EXPECT_TRUE(log().contains("prepareFrame Top.rev.2"));
}

TEST_F(Workflow, EachHintIsMadeWithTheFrameThatIsActiveThen) {
    const auto first = host->active;
    const auto second = host->addDocument("second", L"/data/second.stp");
    onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() == 24) host->activate(second);
    };
    runPair();
    EXPECT_EQ(log().withPrefix("hint "),
              (Entries{"hint 24 source", "hint 5 second", "hint 3 second", "hint 3 result",
                       "hint 25 result"}));
}

TEST_F(Workflow, AllBroadcastsGoToTheHintTargetOfTheFirstFrame) {
    auto otherTarget = std::make_shared<support::FakeHintTarget>(services.log);
    const auto other = std::make_shared<support::FakeFrame>(host->active->document(), otherTarget);
    int seen = 0;
    onHint = [&](const bxtui::Hint& hint) {
        ++seen;
        if (hint.code() == 24) host->activate(other);
    };
    host->documentOpens = false;
    runPair();
    EXPECT_EQ(seen, 3);
}

TEST_F(Workflow, AnUnavailableFrameEndsTheRunAfterTheTwoHints) {
    host->unavailable = true;
    runPair();
    EXPECT_EQ(host->statusText, L"Bextora failed to open nfile");
    EXPECT_EQ(log().withPrefix("hint "), (Entries{"hint 24 source", "hint 5 source"}));
    EXPECT_EQ(log().count("prepareBackgroundWork"), 0U);
    EXPECT_EQ(log().count("worker."), 0U);
    EXPECT_FALSE(state().resultPending);
    EXPECT_EQ(log().entries().back(), "cursor.end");
}

TEST_F(Workflow, TheSharedStateIsCompleteWhenTheWorkerStarts) {
    const auto workers = services.useWorkers<support::ManualWorkers>();
    host->onRunProgress = [&] {
        EXPECT_EQ(workflow::shared().sharedReferencePath, kReference);
        EXPECT_EQ(workflow::shared().sharedComparePath, kCompare);
        EXPECT_EQ(workflow::shared().sharedStatusManager, host->status.get());
        EXPECT_EQ(workflow::shared().sharedApplication, host);
        return 2;
    };
    runPair();
    EXPECT_EQ(log().count("worker.start"), 1U);
}

TEST_F(Workflow, TheFactoryOfTheActiveFrameIsHeldToTheEndOfTheRun) {
    std::weak_ptr<bxtsg::IFactory> held = host->active->factory();
    onHint = [&](const bxtui::Hint& hint) {
        // From here on another frame is active, and nobody else keeps its document.
        if (hint.code() == 5 && host->active->document()->name == "source") {
            host->activate(host->addDocument("second", L"/data/second.stp"));
            held = host->active->factory();
        }
    };
    bool aliveAtOpening = false;
    host->onOpenDocument = [&] {
        host->activate(host->addDocument("third", L"/data/third.stp"));
        host->sendHint(1, host->active);
        aliveAtOpening = !held.expired();
    };
    runPair();
    EXPECT_TRUE(aliveAtOpening);
    EXPECT_TRUE(held.expired());
}

TEST_F(Workflow, ThreeSchemasAreHeldToTheEndOfTheRun) {
    support::FakeDocument& source = activeDocument();
    source.schemas[29] = std::make_shared<bxtsg::SCComprae>();
    source.schemas[19] = std::make_shared<bxt::SCApplication>(*host->data);
    std::vector<std::weak_ptr<bxtsg::Schema>> held;
    for (const auto wanted : {code::Application, code::Info, code::Compare})
        held.push_back(source.schemas[wanted]);
    const auto alive = [&] {
        return std::count_if(held.begin(), held.end(), [](auto& one) { return !one.expired(); });
    };
    onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() == 24) source.schemas.clear();
    };
    std::ptrdiff_t aliveAtOpening = 0;
    host->onOpenDocument = [&] { aliveAtOpening = alive(); };
    runPair();
    EXPECT_EQ(aliveAtOpening, 3);
    EXPECT_EQ(alive(), 0);
}

TEST_F(Workflow, SchemasOfOtherClassesCountAsMissing) {
    for (const auto wanted : {code::Info, code::Application, code::Compare}) {
        activeDocument().schemas[wanted] = std::make_shared<bxt::SCDocFrame>();
    }
    std::wstring offered = L"x";
    services.toolkit->scripts.emplace_back(
        [&](support::FakeDialog::State& prompt) { offered = prompt.texts[1001]; });
    run();
    EXPECT_EQ(offered, L"");
    EXPECT_TRUE(state().fileFilters.empty());
    runPair();
    EXPECT_TRUE(log().contains("dialog1300.show"));
}

TEST_F(Workflow, FramesAndDocumentsThatTheHostReturnsAreDropped) {
    std::weak_ptr<bxt::IFrame> prepared;
    host->onPrepareFrame = [&] {
        auto made = std::make_shared<support::FakeFrame>(host->active->document(), nullptr);
        prepared = made;
        return made;
    };
    bool droppedAtHint = false;
    onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() == 24) droppedAtHint = prepared.expired();
    };
    runPair();
    EXPECT_TRUE(droppedAtHint);
    // The opened document is held by its frame, as active and as result factory, and by the dialog.
    EXPECT_EQ(host->active->document().use_count(), 4);
}

TEST_F(Workflow, BothModelsAreHeldToTheEndOfTheRun) {
    std::vector<std::weak_ptr<const HPS::ComponentProvider>> models;
    services.importer->script = [&](const std::string&) {
        support::FakeImporter::Script script;
        models.push_back(script.model);
        return script;
    };
    comparerAnswers(1);
    choosePair();
    choosePair();
    std::vector<bool> aliveAtThirdPrompt;
    services.toolkit->scripts.emplace_back([&](support::FakeDialog::State&) {
        for (const auto& model : models) aliveAtThirdPrompt.push_back(!model.expired());
    });
    run();
    // The inner run has its own imports; those of the outer one are kept by the outer run alone.
    EXPECT_EQ(aliveAtThirdPrompt, (std::vector<bool>{true, true, true, true}));
    EXPECT_TRUE(models[0].expired());
    EXPECT_TRUE(models[1].expired());
    EXPECT_FALSE(models[2].expired());
    EXPECT_FALSE(models[3].expired());
}

TEST_F(Workflow, HintsAreServedWhileTheWorkerCompares) {
    const auto other = host->addDocument("other", L"/data/plan.dwg");
    services.useWorkers<support::ThreadedWorkers>();
    host->onRunProgress = [&] {
        host->sendHint(1, other);
        EXPECT_TRUE(state().activeIs2D);
        return host->waitForEnd() ? 0 : 2;
    };
    runPair();
    EXPECT_TRUE(log().contains("openDocument /results/1.xbf 1"));
}

TEST_F(Workflow, TheResultIsPendingBeforeTheCaptionChanges) {
    bool pending = false;
    bool recordThere = true;
    services.toolkit->onCaption = [&] {
        pending = state().resultPending;
        recordThere = state().pendingRecord != nullptr;
    };
    runPair();
    EXPECT_TRUE(pending);
    EXPECT_FALSE(recordThere);
}

TEST_F(Workflow, ARunWithoutAResultLeavesTheEarlierOneOnTheScreen) {
    runPair();
    const auto earlier = state().resultFactory;
    host->activate(host->addDocument("source", L"/data/open.stp"));
    for (const Status status : {-1, -2, 42}) {
        comparerAnswers(status);
        choose(L"/data/ref2.stp", L"/data/cmp2.stp");
        run();
    }
    services.files->existing.clear();
    runPair();
    EXPECT_TRUE(results()->visible);
    EXPECT_EQ(state().resultFactory, earlier);
    EXPECT_EQ(state().resultsDialog->referencePath, kReference);
    EXPECT_EQ(state().resultsDialog->comparePath, kCompare);
}

TEST_F(Workflow, TheTimeCountsFromBehindTheHintsToBehindTheCaption) {
    onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() == 24 || hint.code() == 5) services.clock->now += 100000;
    };
    host->onRunProgress = [&] {
        services.clock->now += 990;
        return 0;
    };
    services.toolkit->onCaption = [&] { services.clock->now += 9; };
    runPair();
    EXPECT_EQ(host->statusText, L"Comparison completed in 999 milliseconds");
}

TEST_F(Workflow, AThousandMillisecondsReadAsSeconds) {
    host->onRunProgress = [&] {
        services.clock->now += 1000;
        return 0;
    };
    runPair();
    EXPECT_EQ(host->statusText, L"Comparison completed in 1.00 seconds");
}

TEST_F(Workflow, WithoutAThreadTheRunEndsAndOpensNoOlderResult) {
    workflow::shared().sharedStatus = 0;
    workflow::shared().sharedResultPath = L"/results/old.xbf";
    services.useWorkers<support::ManualWorkers>()->refuse = true;
    runPair();
    EXPECT_EQ(host->statusText, L"Failed to open /data/ref.stp");
    EXPECT_EQ(log().count("openDocument"), 0U);
    EXPECT_FALSE(log().contains("runProgress never ended"));
    EXPECT_EQ(log().withPrefix("setProgress"), (Entries{"setProgress 0", "setProgress 101"}));
    EXPECT_LT(log().position("setProgress 101"), log().position("runProgress Compare"));
}

TEST_F(Workflow, TheWaitCursorIsBalancedOnEveryPath) {
    for (const Status status : {0, -1, -2, -3, 42}) {
        comparerAnswers(status);
        runPair();
        EXPECT_EQ(services.toolkit->waitCursorDepth, 0) << status;
    }
}

TEST_F(Workflow, ANewRunDoesNotRememberThePaths) {
    runPair();
    host->activate(host->addDocument("plain", L""));
    std::wstring reference = L"x";
    std::wstring compareFile = L"x";
    services.toolkit->scripts.emplace_back([&](support::FakeDialog::State& prompt) {
        reference = prompt.texts[1001];
        compareFile = prompt.texts[1002];
    });
    run();
    EXPECT_EQ(reference, L"");
    EXPECT_EQ(compareFile, L"");
}

}  // namespace
