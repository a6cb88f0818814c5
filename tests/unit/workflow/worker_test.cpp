#include <stdexcept>

#include "platform/hps/exception.h"
#include "tests/unit/workflow/workflow_fixture.h"

namespace {

class Worker : public WorkflowTest {
protected:
    Worker() {
        workflow::SharedState& state = workflow::shared();
        state.sharedReferencePath = kReference;
        state.sharedComparePath = kCompare;
        state.sharedStatusManager = host->status.get();
        state.sharedApplication = host;
        state.sharedStatus = 77;
        state.sharedResultPath = L"old";
    }
    static std::uint32_t work() { return workflow::CompareWorkflow::CompareWorker(); }
    void expectNothingCompared() {
        EXPECT_EQ(workflow::shared().sharedStatus, -1);
        EXPECT_EQ(workflow::shared().sharedResultPath, L"old");
        EXPECT_EQ(log().entries().back(), "setProgress 101");
    }
};

/// A host without a window of its own.
class PlainHost : public bxt::IApplication {
public:
    std::shared_ptr<bxt::IFrame> activeFrame() override { return nullptr; }
    std::shared_ptr<bxtsg::IFactory> activeFactory() override { return nullptr; }
    void setStatusText(const std::wstring&) override {}
    bxt::IStatusManager* statusManager() override { return nullptr; }
    std::shared_ptr<bxt::IFrame> prepareFrame(const std::wstring&) override { return nullptr; }
    bool frameUnavailable() override { return false; }
    void prepareBackgroundWork() override {}
    void setProgress(int value) override { last = value; }
    int runProgress(const std::wstring&) override { return 0; }
    std::shared_ptr<bxt::IDocument> openDocument(const std::wstring&, int) override {
        return nullptr;
    }
    void openFile(const std::wstring&) override {}
    int last = 0;
};

TEST_F(Worker, ReturnsZeroAndPublishesStatusAndPath) {
    comparerAnswers(5, L"/results/9.xbf");
    EXPECT_EQ(work(), 0U);
    EXPECT_EQ(workflow::shared().sharedStatus, 5);
    EXPECT_EQ(workflow::shared().sharedResultPath, L"/results/9.xbf");
    EXPECT_EQ(log().entries(),
              (Entries{"comparer.make /opt/bextora/bin/..\\..\\Lang",
                       "doComparision /data/ref.stp /data/cmp.stp", "setProgress 101"}));
}

TEST_F(Worker, WorksWithoutAnyWorkerThreads) {
    os::services().workers.reset();
    EXPECT_EQ(work(), 0U);
    EXPECT_EQ(workflow::shared().sharedStatus, 0);
}

TEST_F(Worker, StartsFromNothingCompared) {
    services.comparer->body = [](Status& status) {
        EXPECT_EQ(status, -1);
        EXPECT_EQ(workflow::shared().sharedStatus, -1);
        return std::wstring();
    };
    work();
    EXPECT_EQ(workflow::shared().sharedStatus, -1);
}

TEST_F(Worker, HandsOverTheApplicationsFactoryAndStatusManager) {
    work();
    EXPECT_EQ(services.comparer->factory, host->ownFactory);
    EXPECT_EQ(services.comparer->statusManager, host->status.get());
}

TEST_F(Worker, AHostWithoutAWindowHasNoFactory) {
    const auto plain = std::make_shared<PlainHost>();
    workflow::shared().sharedApplication = plain;
    services.comparer->factory = host->ownFactory;
    work();
    EXPECT_EQ(services.comparer->factory, nullptr);
    EXPECT_EQ(workflow::shared().sharedStatus, 0);
    EXPECT_EQ(plain->last, 101);
}

TEST_F(Worker, WithoutAnApplicationEndsSilently) {
    workflow::shared().sharedApplication.reset();
    EXPECT_EQ(work(), 0U);
    EXPECT_EQ(workflow::shared().sharedStatus, 0);
}

TEST_F(Worker, ReusesAnExistingComparer) {
    work();
    work();
    EXPECT_EQ(services.comparer->made, 1);
    EXPECT_EQ(services.comparer->alive, 1);
    EXPECT_EQ(log().count("doComparision"), 2U);
}

TEST_F(Worker, AnEmptyReferencePathSkipsTheComparison) {
    workflow::shared().sharedReferencePath.clear();
    work();
    expectNothingCompared();
    EXPECT_EQ(log().count("doComparision"), 0U);
    EXPECT_EQ(services.comparer->made, 1);
}

TEST_F(Worker, AnEmptyComparePathSkipsTheComparison) {
    workflow::shared().sharedComparePath.clear();
    work();
    expectNothingCompared();
    EXPECT_EQ(log().count("doComparision"), 0U);
}

TEST_F(Worker, AMissingStatusManagerSkipsTheComparison) {
    workflow::shared().sharedStatusManager = nullptr;
    work();
    expectNothingCompared();
    EXPECT_EQ(log().count("doComparision"), 0U);
}

TEST_F(Worker, AnExceptionOfTheComparerGoesToTheDebugOutput) {
    services.comparer->body = [](Status& status) -> std::wstring {
        status = 0;
        throw std::runtime_error("no geometry");
    };
    EXPECT_EQ(work(), 0U);
    expectNothingCompared();
    EXPECT_EQ(log().withPrefix("debug"), Entries{"debug no geometry"});
}

TEST_F(Worker, AnExceptionOfTheLibraryCountsAsAStandardOne) {
    services.comparer->body = [](Status&) -> std::wstring { throw HPS::Exception("library"); };
    work();
    expectNothingCompared();
    EXPECT_EQ(log().withPrefix("debug"), Entries{"debug library"});
}

TEST_F(Worker, AnExceptionWhileTheComparerIsMadeStillEndsTheProgress) {
    bxtexchange::services().makeComparer =
        [](const std::wstring&) -> std::unique_ptr<bxtimp::IDocComparer> {
        throw std::logic_error("no language folder");
    };
    work();
    expectNothingCompared();
    EXPECT_EQ(log().withPrefix("debug"), Entries{"debug no language folder"});
    EXPECT_EQ(workflow::shared().sharedComparer, nullptr);
}

TEST_F(Worker, AMissingComparerEndsLikeAnException) {
    bxtexchange::services().makeComparer = nullptr;
    work();
    expectNothingCompared();
    EXPECT_EQ(log().count("debug"), 1U);
}

}  // namespace
