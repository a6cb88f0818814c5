#include "backends/occt/service/import_job.h"

#include <algorithm>

#include "platform/os/helper_messages.h"
#include "platform/os/services.h"
#include "platform/os/utf8.h"

namespace occt {

ImportJob::ImportJob(std::string path, const std::string& options, ImportObserver observer)
    : path_(std::move(path)), observer_(std::move(observer)) {
    start(options);
}

void ImportJob::start(const std::string& options) {
    const os::Services& services = os::services();
    if (services.files) folder_ = os::toUtf8(services.files->makePrivateFolder(L"import"));
    if (folder_.empty()) {
        fail("no-space", path_ + " cannot be imported: no temporary folder can be made.");
        return;
    }
    process_ = services.processes->startHelper(
        {"import", "--in", path_, "--out", folder_, "--options", options}, os::ProcessLimits{});
}

ImportJob::State ImportJob::poll() {
    const std::lock_guard lock(mutex_);
    if (state_ != State::Running) return state_;
    const os::ProcessEnd end = process_->poll();
    drain();
    if (end != os::ProcessEnd::Running) conclude(end);
    return state_;
}

void ImportJob::wait(std::uint32_t timeoutMs) {
    const std::lock_guard lock(mutex_);
    if (state_ == State::Running) process_->wait(timeoutMs);
}

void ImportJob::cancel() {
    const std::lock_guard lock(mutex_);
    if (state_ == State::Running) process_->kill();
}

HPS::Exchange::ImportCause ImportJob::cause() const {
    const std::lock_guard lock(mutex_);
    return cause_;
}

std::shared_ptr<const Model> ImportJob::model() {
    const std::lock_guard lock(mutex_);
    if (state_ != State::Done || model_) return model_;
    std::string error;
    model_ = Model::load(folder_, error);
    if (!model_) fail("damaged", path_ + " was read, but " + error + ".");
    return model_;
}

void ImportJob::drain() {
    while (const auto line = process_->nextLine()) take(*line);
}

void ImportJob::take(const std::string& line) {
    const auto message = os::parseHelperMessage(line);
    if (!message) return;
    using Kind = os::HelperMessage::Kind;
    switch (message->kind) {
        case Kind::Progress:
            phase_ = message->name;
            fraction_ = std::max(fraction_.load(), static_cast<float>(message->fraction));
            if (observer_.progress) observer_.progress(path_, fraction_, phase_);
            break;
        case Kind::Warning:
        case Kind::Partial:
            if (observer_.log) observer_.log(message->text);
            break;
        case Kind::Failure: cause_ = {message->name, message->text}; break;
        case Kind::Result: break;
    }
}

void ImportJob::conclude(os::ProcessEnd end) {
    const std::string what = "The import of " + path_;
    const std::string where = " while " + phase_;
    switch (end) {
        case os::ProcessEnd::Exited:
            if (process_->exitCode() == 0) {
                fraction_ = 1.0F;
                state_ = State::Done;
            } else if (!cause_.text.empty()) {
                fail(cause_.code, cause_.text);
            } else {
                fail("crashed", what + " failed" + where + " (exit code " +
                                    std::to_string(process_->exitCode()) + ").");
            }
            break;
        case os::ProcessEnd::Crashed:
            fail("crashed", what + " failed: the reader crashed" + where + " (signal " +
                                std::to_string(process_->exitCode()) + ").");
            break;
        case os::ProcessEnd::TimeLimit:
            fail("time-limit", what + " failed: the time limit was reached" + where + ".");
            break;
        case os::ProcessEnd::MemoryLimit:
            fail("memory-limit", what + " failed: the memory limit was reached" + where + ".");
            break;
        case os::ProcessEnd::Forbidden:
            fail("crashed", what + " failed: the reader tried" + where +
                                " what no reader may, and was ended. The file may be hostile.");
            break;
        case os::ProcessEnd::NotStarted:
            fail("internal", what + " failed: the helper program cannot be started.");
            break;
        case os::ProcessEnd::Killed:
        case os::ProcessEnd::Running:
            cause_ = {"cancelled", what + " was cancelled."};
            state_ = State::Canceled;
            break;
    }
    process_.reset();
}

void ImportJob::fail(const std::string& code, const std::string& text) {
    cause_ = {code, text};
    state_ = State::Failed;
    if (observer_.log) observer_.log(text);
}

}  // namespace occt
