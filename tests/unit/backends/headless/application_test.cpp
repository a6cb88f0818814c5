#include "backends/headless/application.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "platform/exchange/geometry_result.h"
#include "platform/exchange/services.h"
#include "platform/os/services.h"
#include "tests/unit/backends/headless/quiet_user.h"

namespace {

using headless::Application;
using headless::Document;

/// Writes down which hint came for which factory.
class Recorder : public bxt::IView {
public:
    void update(const bxtui::Hint* hint) override {
        codes.push_back(hint->code());
        factories.push_back(hint->factory());
        if (onHint) onHint(*hint);
    }
    std::vector<std::uint16_t> codes;
    std::vector<std::shared_ptr<bxtsg::IFactory>> factories;
    std::function<void(const bxtui::Hint&)> onHint;
};

class OneFile : public os::Files {
public:
    bool exists(const std::wstring& path) const override { return path == L"/there.stp"; }
    std::wstring executablePath() const override { return L"/bin/host"; }
    std::wstring tempFolder() const override { return L"/tmp/"; }
    wchar_t separator() const override { return L'/'; }
    std::wstring makePrivateFolder(const std::wstring&) override { return {}; }
};

class HeadlessApplication : public testing::Test {
protected:
    void SetUp() override {
        os::services().files = std::make_shared<OneFile>();
        bxtexchange::services().readResult = [](const std::wstring& path) {
            return path == L"/result.xbf" ? std::make_shared<bxtsg::SCGeometryResult>() : nullptr;
        };
        application->addView(&view);
    }
    void TearDown() override {
        os::services() = {};
        bxtexchange::services() = {};
    }

    std::shared_ptr<QuietUser> user = std::make_shared<QuietUser>();
    std::shared_ptr<Application> application = std::make_shared<Application>(
        user, std::vector<std::wstring>{L"STEP Files", L"*.stp;*.step"});
    Recorder view;
};

using Codes = std::vector<std::uint16_t>;

TEST_F(HeadlessApplication, StartsWithAnEmptyDocumentThatHasTheThreeSchemas) {
    const auto factory = application->activeFactory();
    ASSERT_TRUE(factory);
    EXPECT_EQ(factory->getAs<bxtsg::SCInfo>(8)->file(), L"");
    const auto data = factory->getAs<bxt::SCApplication>(19);
    ASSERT_TRUE(data);
    EXPECT_EQ(data->fileFormats.size(), 2U);
    EXPECT_EQ(data->application, application.get());
    EXPECT_TRUE(data->settings);
    EXPECT_TRUE(factory->getAs<bxt::SCDocFrame>(20)->frameEnabled);
    EXPECT_FALSE(factory->get(29));
    EXPECT_EQ(application->activeFrame()->factory(), factory);
}

TEST_F(HeadlessApplication, OpensAResultWithItsNumbersAndTheHintsBeforeItReturns) {
    const auto document = application->openDocument(L"/result.xbf", 1);
    ASSERT_TRUE(document);
    EXPECT_EQ(view.codes, (Codes{3, 25}));
    EXPECT_EQ(view.factories[0], document);
    EXPECT_EQ(view.factories[1], document);
    EXPECT_EQ(application->activeFactory(), document);
    EXPECT_EQ(application->activeDocument()->path(), L"/result.xbf");
    EXPECT_TRUE(document->getAs<bxtsg::SCGeometryResult>(201));
    EXPECT_EQ(document->getAs<bxtsg::SCInfo>(8)->file(), L"/result.xbf");
    EXPECT_EQ(document->get(19), application->data());
}

TEST_F(HeadlessApplication, NumbersAreThereWhenTheViewHearsOfTheResult) {
    bool there = false;
    view.onHint = [&](const bxtui::Hint& hint) {
        if (hint.code() == 3) there = hint.factory()->get(201) != nullptr;
    };
    application->openDocument(L"/result.xbf", 1);
    EXPECT_TRUE(there);
}

TEST_F(HeadlessApplication, RefusesAFileThatIsNoResult) {
    const auto before = application->activeFactory();
    EXPECT_FALSE(application->openDocument(L"/there.stp", 1));
    EXPECT_TRUE(view.codes.empty());
    EXPECT_EQ(application->activeFactory(), before);
}

TEST_F(HeadlessApplication, RefusesEveryResultWithoutAComparerInstalled) {
    bxtexchange::services() = {};
    EXPECT_FALSE(application->openDocument(L"/result.xbf", 1));
}

TEST_F(HeadlessApplication, OpensAnOrdinaryFileOnlyWhenItExists) {
    application->openFile(L"/missing.stp");
    EXPECT_TRUE(view.codes.empty());
    application->openFile(L"/there.stp");
    EXPECT_EQ(view.codes, (Codes{3, 25}));
    EXPECT_EQ(application->activeDocument()->path(), L"/there.stp");
    EXPECT_FALSE(application->activeFactory()->get(201));
}

TEST_F(HeadlessApplication, ClosingTellsTheViewsAndGoesBackToTheEarlierDocument) {
    const auto first = application->activeDocument();
    const auto result = application->openDocument(L"/result.xbf", 1);
    view.codes.clear();
    view.factories.clear();
    application->close(application->activeDocument());
    EXPECT_EQ(view.codes, (Codes{5, 1}));
    EXPECT_EQ(view.factories[0], result);
    EXPECT_EQ(view.factories[1], first);
    EXPECT_EQ(application->activeDocument(), first);
}

TEST_F(HeadlessApplication, ClosingADocumentBehindLeavesTheActiveOne) {
    const auto first = application->activeDocument();
    const auto result = application->openDocument(L"/result.xbf", 1);
    view.codes.clear();
    application->close(first);
    EXPECT_EQ(view.codes, (Codes{5}));
    EXPECT_EQ(application->activeFactory(), result);
}

TEST_F(HeadlessApplication, WithoutDocumentsThereIsNoFrameAndNoFactory) {
    application->openDocument(L"/result.xbf", 1);
    application->closeAll();
    EXPECT_FALSE(application->activeFrame());
    EXPECT_FALSE(application->activeFactory());
    EXPECT_FALSE(application->activeDocument());
}

TEST_F(HeadlessApplication, ClosedDocumentLivesAsLongAsItsFactoryIsHeld) {
    std::weak_ptr<bxtsg::IFactory> watched = application->activeFactory();
    application->closeAll();
    view.factories.clear();
    EXPECT_TRUE(watched.expired());
}

TEST_F(HeadlessApplication, BroadcastReachesEveryViewInOrderAndIsDoneOnReturn) {
    Recorder second;
    std::vector<int> order;
    view.onHint = [&](const bxtui::Hint&) { order.push_back(1); };
    second.onHint = [&](const bxtui::Hint&) { order.push_back(2); };
    application->addView(&second);
    application->addView(&second);
    const auto frame = application->activeFrame();
    frame->hintTarget()->broadcast(bxtui::Hint(24, frame));
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    application->removeView(&second);
    frame->hintTarget()->broadcast(bxtui::Hint(24, frame));
    EXPECT_EQ(second.codes.size(), 1U);
    EXPECT_EQ(view.codes.size(), 2U);
}

TEST_F(HeadlessApplication, ViewThatLeavesDuringABroadcastHearsNoMore) {
    Recorder second;
    application->addView(&second);
    view.onHint = [&](const bxtui::Hint&) { application->removeView(&second); };
    const auto frame = application->activeFrame();
    frame->hintTarget()->broadcast(bxtui::Hint(24, frame));
    EXPECT_TRUE(second.codes.empty());
}

TEST_F(HeadlessApplication, ActivatingBringsADocumentToTheFront) {
    const auto first = application->activeDocument();
    application->openDocument(L"/result.xbf", 1);
    view.codes.clear();
    application->activate(first);
    EXPECT_EQ(view.codes, (Codes{1}));
    EXPECT_EQ(application->activeDocument(), first);
    application->activate(std::make_shared<Document>(L"/elsewhere"));
    EXPECT_EQ(application->activeDocument(), first);
}

TEST_F(HeadlessApplication, StatusBarKeepsTheLastTextAndTheUserSeesEach) {
    application->setStatusText(L"Comparing...");
    application->setStatusText(L"");
    EXPECT_EQ(application->statusText(), L"");
    EXPECT_EQ(user->statusTexts, (std::vector<std::wstring>{L"Comparing...", L""}));
}

TEST_F(HeadlessApplication, StatisticsRecordCommandsAndPlugins) {
    application->statusManager()->noteCommand(101);
    application->statusManager()->notePlugin(L"Compare Plugin");
    EXPECT_EQ(application->statistics().commands(), (std::vector<std::uint32_t>{101}));
    EXPECT_EQ(application->statistics().plugins(), (std::vector<std::wstring>{L"Compare Plugin"}));
}

TEST_F(HeadlessApplication, FrameIsAvailableUnlessTold) {
    EXPECT_FALSE(application->frameUnavailable());
    application->setFrameUnavailable(true);
    EXPECT_TRUE(application->frameUnavailable());
    EXPECT_EQ(application->prepareFrame(L"part"), application->activeFrame());
    EXPECT_EQ(application->preparedTitle(), L"part");
}

TEST_F(HeadlessApplication, ProgressWindowOpensAfterAnEarlyEndAndReturnsAtOnce) {
    application->prepareBackgroundWork();
    application->setProgress(101);
    application->setProgress(0);
    EXPECT_NE(application->runProgress(L"Compare"), 2);
}

TEST_F(HeadlessApplication, EarlierEndDoesNotEndTheNextWork) {
    application->prepareBackgroundWork();
    application->setProgress(101);
    application->prepareBackgroundWork();
    int asked = 0;
    user->cancels = [&] { return ++asked == 3; };
    EXPECT_EQ(application->runProgress(L"Compare"), 2);
}

TEST_F(HeadlessApplication, ProgressWindowServesAWorkerOnAnotherThread) {
    application->prepareBackgroundWork();
    std::thread worker([&] {
        for (const int value : {10, 50, 90}) {
            application->setProgress(value);
            std::this_thread::sleep_for(std::chrono::milliseconds(40));
        }
        application->setProgress(101);
    });
    EXPECT_NE(application->runProgress(L"Compare"), 2);
    worker.join();
    ASSERT_GE(user->percents.size(), 2U);
    EXPECT_EQ(user->percents.front(), 0);
    EXPECT_EQ(user->percents.back(), 90);
    EXPECT_EQ(user->titles.front(), L"Compare");
}

TEST_F(HeadlessApplication, EndWinsOverACancelAtTheSameMoment) {
    user->cancels = [] { return true; };
    application->prepareBackgroundWork();
    application->setProgress(101);
    EXPECT_NE(application->runProgress(L"Compare"), 2);
}

}  // namespace
