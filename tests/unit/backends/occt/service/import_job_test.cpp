#include "backends/occt/service/import_job.h"

#include "backends/occt/options_text.h"
#include "platform/os/helper_messages.h"
#include "tests/unit/backends/occt/service/fake_helpers.h"

namespace {

using occt::ImportJob;
using os::HelperMessage;
using os::ProcessEnd;
using service_test::Script;
using Kind = HelperMessage::Kind;
using State = ImportJob::State;

std::string progressLine(double fraction, const std::string& phase) {
    return os::formatHelperMessage({Kind::Progress, fraction, phase, ""});
}

class ImportJobs : public service_test::ScriptedService {
protected:
    ImportJob& start() {
        job = std::make_unique<ImportJob>("/in/a.step", occt::formatOptions({}), observer);
        return *job;
    }
    std::unique_ptr<ImportJob> job;
};

TEST_F(ImportJobs, TheHelperGetsFileFolderAndOptions) {
    start();
    const std::vector<std::string> expected = {"import",
                                               "--in",
                                               "/in/a.step",
                                               "--out",
                                               (scratch / "import1").string(),
                                               "--options",
                                               occt::formatOptions({})};
    EXPECT_EQ(helper().arguments, expected);
    EXPECT_EQ(job->poll(), State::Running);
    EXPECT_EQ(job->cause().code, "");
}

TEST_F(ImportJobs, EachEndHasItsCauseAndText) {
    struct Row {
        ProcessEnd end;
        int code;
        State state;
        const char* cause;
        const char* text;
    };
    const Row rows[] = {
        {ProcessEnd::Exited, 3, State::Failed, "crashed",
         "The import of /in/a.step failed while translating (exit code 3)."},
        {ProcessEnd::Crashed, 11, State::Failed, "crashed",
         "The import of /in/a.step failed: the reader crashed while translating (signal 11)."},
        {ProcessEnd::TimeLimit, 0, State::Failed, "time-limit",
         "The import of /in/a.step failed: the time limit was reached while translating."},
        {ProcessEnd::MemoryLimit, 0, State::Failed, "memory-limit",
         "The import of /in/a.step failed: the memory limit was reached while translating."},
        {ProcessEnd::NotStarted, 0, State::Failed, "internal",
         "The import of /in/a.step failed: the helper program cannot be started."},
        {ProcessEnd::Killed, 0, State::Canceled, "cancelled",
         "The import of /in/a.step was cancelled."},
    };
    for (const Row& row : rows) {
        logged.clear();
        start();
        Script& script = *processes->started.back();
        script.say(progressLine(0.5, "translating"));
        ASSERT_EQ(job->poll(), State::Running);
        script.finish(row.end, row.code);
        EXPECT_EQ(job->poll(), row.state);
        EXPECT_EQ(job->cause().code, row.cause);
        EXPECT_EQ(job->cause().text, row.text);
        const bool isFailure = row.state == State::Failed;
        EXPECT_EQ(logged,
                  isFailure ? std::vector<std::string>{row.text} : std::vector<std::string>());
        EXPECT_TRUE(script.gone) << "the process is let go";
        EXPECT_EQ(job->poll(), row.state) << "and asked no more";
        EXPECT_EQ(job->model(), nullptr);
    }
}

TEST_F(ImportJobs, AHelperThatSaysNothingDiedWhileStarting) {
    start();
    helper().finish(ProcessEnd::Crashed, 9);
    job->poll();
    EXPECT_EQ(job->cause().text,
              "The import of /in/a.step failed: the reader crashed while starting (signal 9).");
}

TEST_F(ImportJobs, AFailureThatTheHelperNamesIsTheCause) {
    start();
    helper().say(
        os::formatHelperMessage({Kind::Failure, 0, "missing", "/in/a.step does not exist."}));
    helper().finish(ProcessEnd::Exited, 1);
    EXPECT_EQ(job->poll(), State::Failed);
    EXPECT_EQ(job->cause().code, "missing");
    EXPECT_EQ(job->cause().text, "/in/a.step does not exist.");
    EXPECT_EQ(logged, std::vector<std::string>{"/in/a.step does not exist."});
}

TEST_F(ImportJobs, ProgressNeverGoesBackwards) {
    start();
    for (const double fraction : {0.2, 0.1, 0.6, 0.0, 2.0}) {
        helper().say(progressLine(fraction, "reading"));
    }
    job->poll();
    float last = 0.0F;
    ASSERT_GE(progress.size(), 4U);
    for (const auto& [fraction, phase] : progress) {
        EXPECT_GE(fraction, last);
        EXPECT_LE(fraction, 1.0);
        EXPECT_EQ(phase, "reading");
        last = static_cast<float>(fraction);
    }
    helper().leaveDocument();
    helper().finish(ProcessEnd::Exited, 0);
    EXPECT_EQ(job->poll(), State::Done);
    EXPECT_EQ(job->fraction(), 1.0F);
}

TEST_F(ImportJobs, WarningsAndGapsReachTheLog) {
    start();
    helper().say(os::formatHelperMessage({Kind::Warning, 0, "", "odd"}));
    helper().say(os::formatHelperMessage({Kind::Partial, 0, "", "3 of 4 faces"}));
    helper().say(os::formatHelperMessage({Kind::Result, 0, "x", "y"}));
    helper().say("no message at all");
    helper().say("");
    job->poll();
    EXPECT_EQ(logged, (std::vector<std::string>{"odd", "3 of 4 faces"}));
}

TEST_F(ImportJobs, LinesThatCameBeforeTheEndAreRead) {
    start();
    helper().say(progressLine(0.9, "writing"));
    helper().leaveDocument();
    helper().finish(ProcessEnd::Exited, 0);
    EXPECT_EQ(job->poll(), State::Done);
    EXPECT_EQ(progress.size(), 1U);
}

TEST_F(ImportJobs, TheModelIsLoadedOnce) {
    start();
    EXPECT_EQ(job->model(), nullptr) << "not before it is done";
    helper().leaveDocument();
    helper().finish(ProcessEnd::Exited, 0);
    ASSERT_EQ(job->poll(), State::Done);
    EXPECT_EQ(job->folder(), helper().folder());
    const auto model = job->model();
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->name(1), "part");
    EXPECT_EQ(job->model(), model);
    EXPECT_EQ(job->cause().text, "");
}

TEST_F(ImportJobs, ADocumentThatIsMissingOrDamagedIsAFailure) {
    start();
    helper().finish(ProcessEnd::Exited, 0);
    ASSERT_EQ(job->poll(), State::Done);
    EXPECT_EQ(job->model(), nullptr);
    EXPECT_EQ(job->poll(), State::Failed);
    EXPECT_EQ(job->cause().code, "damaged");
    EXPECT_EQ(job->cause().text, "/in/a.step was read, but the import left no description in " +
                                     helper().folder() + ".");
    start();
    std::ofstream(helper(1).folder() + "/" + occt::kDescriptionFile) << "rubbish";
    helper(1).finish(ProcessEnd::Exited, 0);
    ASSERT_EQ(job->poll(), State::Done);
    EXPECT_EQ(job->model(), nullptr);
    EXPECT_EQ(job->cause().text, "/in/a.step was read, but what the import left in " +
                                     helper(1).folder() + " is damaged.");
}

TEST_F(ImportJobs, CancelKillsTheHelper) {
    start();
    job->cancel();
    EXPECT_TRUE(helper().killed);
    EXPECT_EQ(job->poll(), State::Canceled);
    job->cancel();
    EXPECT_EQ(job->cause().code, "cancelled");
}

TEST_F(ImportJobs, CancelAfterTheEndChangesNothing) {
    start();
    helper().leaveDocument();
    helper().finish(ProcessEnd::Exited, 0);
    ASSERT_EQ(job->poll(), State::Done);
    job->cancel();
    EXPECT_EQ(job->poll(), State::Done);
    EXPECT_FALSE(helper().killed);
}

TEST_F(ImportJobs, WithoutATemporaryFolderNothingStarts) {
    files->refuse = true;
    start();
    EXPECT_EQ(job->poll(), State::Failed);
    EXPECT_EQ(job->cause().code, "no-space");
    EXPECT_EQ(job->cause().text, "/in/a.step cannot be imported: no temporary folder can be made.");
    EXPECT_TRUE(processes->started.empty());
    job->cancel();
    job->wait(0);
    EXPECT_EQ(job->poll(), State::Failed);
}

TEST_F(ImportJobs, TheLastToLeaveEndsTheHelper) {
    start();
    job.reset();
    EXPECT_TRUE(helper().gone);
}

}  // namespace
