#include "backends/occt/import_service.h"

#include "platform/hps/component.h"
#include "platform/os/helper_messages.h"
#include "tests/unit/backends/occt/service/fake_helpers.h"

namespace {

using HPS::IOResult;
using HPS::Exchange::ImportCause;
using os::HelperMessage;
using os::ProcessEnd;

class ImportServices : public service_test::ScriptedService {
protected:
    ~ImportServices() override { workers.reset(); }
    void finishWell(std::size_t index) {
        helper(index).leaveDocument();
        helper(index).finish(ProcessEnd::Exited, 0);
    }
    void failWith(std::size_t index, const std::string& code) {
        helper(index).say(
            os::formatHelperMessage({HelperMessage::Kind::Failure, 0, code, "because of " + code}));
        helper(index).finish(ProcessEnd::Exited, 1);
    }
    static IOResult statusOf(HPS::Exchange::ImportTask& task) {
        float fraction = 0.0F;
        return task.status(fraction);
    }

    std::string path = writeFile("a.step", "one");
    std::shared_ptr<support::ThreadedWorkers> workers =
        std::make_shared<support::ThreadedWorkers>(log);
};

TEST_F(ImportServices, AnImportGoesFromRunningToItsModel) {
    const auto task = service->start(path, {});
    helper().say(os::formatHelperMessage({HelperMessage::Kind::Progress, 0.25, "reading", ""}));
    float fraction = -1.0F;
    EXPECT_EQ(task->status(fraction), IOResult::InProgress);
    EXPECT_EQ(fraction, 0.25F);
    EXPECT_EQ(task->model(), nullptr);
    EXPECT_EQ(task->cause().text, "");
    finishWell(0);
    EXPECT_EQ(task->status(fraction), IOResult::Success);
    EXPECT_EQ(fraction, 1.0F);
    ASSERT_NE(task->model(), nullptr);
    EXPECT_EQ(task->cause().text, "");
    task->cancel();
    EXPECT_EQ(statusOf(*task), IOResult::Success) << "too late";
}

TEST_F(ImportServices, CausesBecomeStatusNumbers) {
    const std::pair<const char*, IOResult> rows[] = {
        {"missing", IOResult::FileNotFound}, {"time-limit", IOResult::TimedOut},
        {"damaged", IOResult::Failure},      {"not-this-format", IOResult::Failure},
        {"unreadable", IOResult::Failure},   {"too-large", IOResult::Failure},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const auto task = service->start(path, {});
        failWith(i, rows[i].first);
        EXPECT_EQ(statusOf(*task), rows[i].second) << rows[i].first;
        EXPECT_EQ(task->cause().code, rows[i].first);
        EXPECT_EQ(task->cause().text, std::string("because of ") + rows[i].first);
        EXPECT_EQ(task->model(), nullptr);
    }
}

TEST_F(ImportServices, ADamagedDocumentIsAFailureWithItsCause) {
    const auto task = service->start(path, {});
    helper().finish(ProcessEnd::Exited, 0);
    EXPECT_EQ(statusOf(*task), IOResult::Failure);
    EXPECT_EQ(task->cause().code, "damaged");
}

TEST_F(ImportServices, CancelEndsTheImportAtOnceAndNamesTheFile) {
    const auto task = service->start(path, {});
    task->cancel();
    EXPECT_EQ(statusOf(*task), IOResult::Canceled);
    EXPECT_TRUE(helper().gone);
    EXPECT_EQ(task->cause().code, "cancelled");
    EXPECT_EQ(task->cause().text, "The import of " + path + " was cancelled.");
    EXPECT_EQ(task->model(), nullptr);
}

TEST_F(ImportServices, CancelLeavesTheImportToOthersThatWait) {
    const auto one = service->start(path, {});
    const auto other = service->start(path, {});
    ASSERT_EQ(processes->started.size(), 1U);
    one->cancel();
    EXPECT_FALSE(helper().gone);
    finishWell(0);
    EXPECT_EQ(statusOf(*other), IOResult::Success);
    EXPECT_EQ(statusOf(*one), IOResult::Canceled);
}

TEST_F(ImportServices, CancelAllShowsInEveryTask) {
    const auto task = service->start(path, {});
    service->cancelAll();
    EXPECT_EQ(statusOf(*task), IOResult::Canceled);
    EXPECT_EQ(task->cause().text, "The import of " + path + " was cancelled.");
}

TEST_F(ImportServices, ATaskOutlivesItsService) {
    const auto task = service->start(path, {});
    service.reset();
    finishWell(0);
    EXPECT_EQ(statusOf(*task), IOResult::Success);
}

TEST_F(ImportServices, DocumentFolderIsThatOfTheFinishedImport) {
    const auto task = service->start(path, {});
    finishWell(0);
    ASSERT_EQ(statusOf(*task), IOResult::Success);
    ImportCause cause;
    EXPECT_EQ(service->documentFolder(path, cause), helper().folder());
    EXPECT_EQ(cause.text, "");
    EXPECT_EQ(processes->started.size(), 1U);
}

TEST_F(ImportServices, DocumentFolderTellsTheCauseOfAFailure) {
    processes->failAtOnce = true;
    ImportCause cause;
    EXPECT_EQ(service->documentFolder(path, cause), "");
    EXPECT_EQ(cause.code, "internal");
    files->refuse = true;
    EXPECT_EQ(service->documentFolder(path, cause), "");
    EXPECT_EQ(cause.code, "no-space");
}

TEST_F(ImportServices, DocumentFolderWaitsOnAWorkerAndIsKeptAfterwards) {
    os::services().workers = workers;
    std::string folder;
    const auto task = service->start(path, {});
    const auto worker = workers->start([&] {
        ImportCause cause;
        folder = service->documentFolder(path, cause);
        return 0U;
    });
    finishWell(0);
    worker->close();
    EXPECT_EQ(folder, helper().folder());
}

TEST_F(ImportServices, AKilledWorkerStopsWaitingAndEndsItsImport) {
    os::services().workers = workers;
    std::string folder = "unset";
    ImportCause cause;
    std::atomic<bool> began = false;
    const auto worker = workers->start([&] {
        began = true;
        folder = service->documentFolder(path, cause);
        return 0U;
    });
    while (!began) std::this_thread::yield();
    worker->terminate(1);
    EXPECT_EQ(folder, "");
    EXPECT_EQ(cause.code, "cancelled");
    EXPECT_EQ(cause.text, "The import of " + path + " was cancelled.");
    for (const auto& script : processes->started) EXPECT_TRUE(script->gone);
}

TEST_F(ImportServices, AKilledWorkerLeavesTheImportToTheNotifier) {
    os::services().workers = workers;
    const auto task = service->start(path, {});
    std::atomic<bool> began = false;
    const auto worker = workers->start([&] {
        ImportCause cause;
        began = true;
        (void)service->documentFolder(path, cause);
        return 0U;
    });
    while (!began) std::this_thread::yield();
    worker->terminate(1);
    EXPECT_FALSE(helper().gone);
    finishWell(0);
    EXPECT_EQ(statusOf(*task), IOResult::Success);
}

}  // namespace
