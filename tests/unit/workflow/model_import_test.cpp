#include "workflow/model_import.h"

#include <stdexcept>

#include "platform/hps/exception.h"
#include "tests/unit/workflow/workflow_fixture.h"

namespace {

class ModelImport : public WorkflowTest {
protected:
    ModelImport() {
        job.referencePath = kReference;
        job.comparePath = kCompare;
        services.importer->script = [this](const std::string& path) {
            support::FakeImporter::Script script;
            script.states = path == "/data/ref.stp" ? referenceStates : compareStates;
            return script;
        };
    }
    std::vector<int> referenceStates = {0};
    std::vector<int> compareStates = {0};
    extract::CompareJob job;
};

TEST_F(ModelImport, BothFinishedWithModelsIsTrue) {
    EXPECT_TRUE(workflow::ImportModels(job));
    EXPECT_FALSE(job.referenceNotifier.GetCADModel().Empty());
    EXPECT_FALSE(job.compareNotifier.GetCADModel().Empty());
}

TEST_F(ModelImport, AMissingCompareFileTouchesNothingElse) {
    services.files->existing = {kReference};
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().entries(), Entries{"files.exists /data/cmp.stp"});
    EXPECT_TRUE(job.referenceNotifier.Empty());
    EXPECT_TRUE(job.compareNotifier.Empty());
}

TEST_F(ModelImport, AMissingFileKeepsTheNotifiersOfTheLastRun) {
    ASSERT_TRUE(workflow::ImportModels(job));
    services.files->existing = {kReference};
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_FALSE(job.referenceNotifier.Empty());
    EXPECT_FALSE(job.compareNotifier.Empty());
}

TEST_F(ModelImport, AMissingReferenceStartsNoImport) {
    services.files->existing = {kCompare};
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().entries(),
              (Entries{"files.exists /data/cmp.stp", "files.exists /data/ref.stp"}));
}

TEST_F(ModelImport, SettingsAreReadTwiceAndBothKitsAreEqual) {
    services.store->keys[L"Software\\Bextora\\viewer\\Settings\\Import"] = {
        {L"Read PMI", 256}, {L"Set Reading Mode", 1}, {L"PMI Color", 255}};
    EXPECT_TRUE(workflow::ImportModels(job));
    EXPECT_EQ(log().count("store.open"), 2U);
    ASSERT_EQ(services.importer->options.size(), 2U);
    EXPECT_EQ(services.importer->options[0], services.importer->options[1]);
    EXPECT_FALSE(services.importer->options[0].pmi);
    EXPECT_EQ(services.importer->options[0].brepMode, static_cast<HPS::Exchange::BRepMode>(1));
    EXPECT_EQ(services.importer->options[0].pmiDefaultColor, (HPS::RGBColor{1.0F, 0.0F, 0.0F}));
}

TEST_F(ModelImport, WithoutAKeyBothImportsUseTheLibrarysDefaults) {
    EXPECT_TRUE(workflow::ImportModels(job));
    for (const auto& options : services.importer->options) {
        EXPECT_EQ(options, HPS::Exchange::ImportOptions());
    }
}

TEST_F(ModelImport, TheCompareFileStartsFirst) {
    EXPECT_TRUE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("import.start"),
              (Entries{"import.start /data/cmp.stp", "import.start /data/ref.stp"}));
}

TEST_F(ModelImport, PathsAreHandedOverAsUtf8) {
    job.referencePath = L"/data/R\u00e4d \u6f22.stp";
    job.comparePath = L"/data/\U0001F529.stp";
    services.files->existing = {job.referencePath, job.comparePath};
    EXPECT_TRUE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("import.start"), (Entries{"import.start /data/\xF0\x9F\x94\xA9.stp",
                                                         "import.start /data/R\xC3\xA4"
                                                         "d \xE6\xBC\xA2.stp"}));
}

TEST_F(ModelImport, TheFirstQuestionComesAfterTheFirstHalfSecond) {
    const std::uint64_t before = services.clock->now;
    EXPECT_TRUE(workflow::ImportModels(job));
    EXPECT_EQ(services.clock->now - before, 500U);
    EXPECT_LT(log().position("sleep 500"), log().position("import.status /data/cmp.stp 0"));
    EXPECT_LT(log().position("import.status /data/cmp.stp 0"),
              log().position("import.status /data/ref.stp 0"));
}

TEST_F(ModelImport, PollsUntilBothAreDone) {
    compareStates = {2, 0};
    referenceStates = {2, 2, 2, 0};
    EXPECT_TRUE(workflow::ImportModels(job));
    EXPECT_EQ(log().count("sleep 500"), 4U);
    EXPECT_EQ(log().count("import.status /data/cmp.stp"), 4U);
    EXPECT_EQ(log().count("import.status /data/ref.stp"), 4U);
}

TEST_F(ModelImport, EachFailureCodeOfEitherImportEndsTheLoop) {
    for (const int code : {11, 12, 4, 1}) {
        for (const bool failReference : {false, true}) {
            log().clear();
            compareStates = failReference ? std::vector<int>{2} : std::vector<int>{2, code};
            referenceStates = failReference ? std::vector<int>{2, code} : std::vector<int>{2};
            EXPECT_FALSE(workflow::ImportModels(job)) << code;
            EXPECT_EQ(log().count("sleep"), 2U) << code;
            EXPECT_EQ(log().count("import.model"), 0U) << code;
            EXPECT_EQ(log().count("import.cancel"), 0U) << code;
        }
    }
}

TEST_F(ModelImport, AFailureCountsAlsoWhenTheOtherImportIsDone) {
    compareStates = {0};
    referenceStates = {1};
    EXPECT_FALSE(workflow::ImportModels(job));
}

TEST_F(ModelImport, OtherCodesKeepTheLoopRunning) {
    for (const int code : {2, 3, 5, 10, 13, -1, 1000}) {
        compareStates.assign(300, code);
        compareStates.push_back(0);
        log().clear();
        EXPECT_TRUE(workflow::ImportModels(job)) << code;
        EXPECT_EQ(log().count("sleep 500"), 301U) << code;
    }
}

TEST_F(ModelImport, BothModelsAreFetchedBeforeEitherIsJudged) {
    services.importer->script = [](const std::string& path) {
        support::FakeImporter::Script script;
        if (path == "/data/cmp.stp") script.model = nullptr;
        return script;
    };
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("import.model"),
              (Entries{"import.model /data/cmp.stp", "import.model /data/ref.stp"}));
}

TEST_F(ModelImport, AnEmptyReferenceModelIsFalse) {
    services.importer->script = [](const std::string& path) {
        support::FakeImporter::Script script;
        if (path == "/data/ref.stp") script.model = nullptr;
        return script;
    };
    EXPECT_FALSE(workflow::ImportModels(job));
}

TEST_F(ModelImport, ALibraryExceptionAtTheStartGoesToTheDebugOutput) {
    services.importer->onStart = [] { throw HPS::Exception("library is not ready"); };
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("debug"), Entries{"debug library is not ready"});
}

TEST_F(ModelImport, AStandardExceptionAtTheStartGoesToTheDebugOutput) {
    services.importer->onStart = [] { throw std::invalid_argument("odd path"); };
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("debug"), Entries{"debug odd path"});
}

TEST_F(ModelImport, AnExceptionWhilePollingGoesToTheDebugOutput) {
    services.importer->script = [](const std::string&) {
        support::FakeImporter::Script script;
        script.throwsOnStatus = true;
        return script;
    };
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("debug"), Entries{"debug status is not to be had"});
}

TEST_F(ModelImport, AnExceptionWhileTheModelsAreFetchedGoesToTheDebugOutput) {
    services.importer->script = [](const std::string& path) {
        support::FakeImporter::Script script;
        script.throwsOnModel = path == "/data/ref.stp";
        return script;
    };
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("debug"), Entries{"debug model is not to be had"});
}

class BrokenStore : public os::KeyStore {
public:
    std::unique_ptr<os::Key> open(const std::wstring&, os::KeyAccess) override {
        throw std::runtime_error("store is not to be had");
    }
    std::unique_ptr<os::Key> create(const std::wstring&, os::KeyAccess) override { return nullptr; }
};

TEST_F(ModelImport, AnExceptionWhileTheSettingsAreReadGoesToTheDebugOutput) {
    os::services().keyStore = std::make_shared<BrokenStore>();
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("debug"), Entries{"debug store is not to be had"});
    EXPECT_EQ(log().count("import."), 0U);
}

TEST_F(ModelImport, WithoutAnImporterIsFalse) {
    HPS::services().importer.reset();
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().count("debug"), 1U);
}

TEST_F(ModelImport, TheSurvivorOfAFailedPairIsReleasedByTheNextRun) {
    compareStates = {1};
    referenceStates = {2};
    EXPECT_FALSE(workflow::ImportModels(job));
    EXPECT_EQ(log().count("import.release"), 0U);
    compareStates = {0};
    referenceStates = {0};
    EXPECT_TRUE(workflow::ImportModels(job));
    EXPECT_EQ(log().withPrefix("import.release"),
              (Entries{"import.release /data/cmp.stp", "import.release /data/ref.stp"}));
}

TEST_F(ModelImport, AScriptedImportMovesOnWhileTheClockSleeps) {
    int sleeps = 0;
    services.clock->onSleep = [&] { ++sleeps; };
    compareStates = {2, 2, 0};
    EXPECT_TRUE(workflow::ImportModels(job));
    EXPECT_EQ(sleeps, 3);
}

TEST_F(ModelImport, WithoutAMachineIsFalse) {
    os::services().clock.reset();
    EXPECT_FALSE(workflow::ImportModels(job));
    os::services().files.reset();
    EXPECT_FALSE(workflow::ImportModels(job));
}

}  // namespace
