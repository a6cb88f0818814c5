#include "backends/occt/import_service.h"

#include <atomic>

#include "backends/occt/service/import_cache.h"
#include "platform/os/services.h"

namespace occt {
namespace {

using HPS::IOResult;
using HPS::Exchange::ImportCause;

// A waiting worker looks this often whether it was killed.
constexpr std::uint32_t kWaitMs = 20;

ImportCause cancelled(const std::string& path) {
    return {"cancelled", "The import of " + path + " was cancelled."};
}

/// One notifier's view of a shared import.
class ImportTask : public HPS::Exchange::ImportTask {
public:
    ImportTask(std::string path, std::shared_ptr<ImportCache> cache, std::shared_ptr<ImportJob> job)
        : path_(std::move(path)), cache_(std::move(cache)), job_(std::move(job)) {}

    IOResult status(float& fraction) override {
        if (result_ == IOResult::InProgress) look();
        if (job_) fraction_ = job_->fraction();
        fraction = fraction_;
        return result_;
    }

    std::shared_ptr<const HPS::ComponentProvider> model() override {
        float fraction = 0.0F;
        return status(fraction) == IOResult::Success ? model_ : nullptr;
    }

    ImportCause cause() const override { return cause_; }

    void cancel() override {
        if (result_ != IOResult::InProgress) return;
        result_ = IOResult::Canceled;
        cause_ = cancelled(path_);
        // Whoever else waits for the same file goes on; the last one to leave ends the helper.
        job_.reset();
    }

private:
    void look() {
        switch (job_->poll()) {
            case ImportJob::State::Running: return;
            case ImportJob::State::Canceled: result_ = IOResult::Canceled; break;
            case ImportJob::State::Failed: result_ = failure(); break;
            case ImportJob::State::Done:
                model_ = job_->model();
                result_ = model_ ? IOResult::Success : IOResult::Failure;
                if (model_) cache_->keep(job_);
        }
        cause_ = job_->cause();
    }

    IOResult failure() const {
        const std::string code = job_->cause().code;
        if (code == "missing") return IOResult::FileNotFound;
        return code == "time-limit" ? IOResult::TimedOut : IOResult::Failure;
    }

    std::string path_;
    std::shared_ptr<ImportCache> cache_;
    std::shared_ptr<ImportJob> job_;
    ImportCause cause_;
    IOResult result_ = IOResult::InProgress;
    float fraction_ = 0.0F;
    std::shared_ptr<const Model> model_;
};

class Service : public ImportService {
public:
    explicit Service(ImportObserver observer)
        : cache_(std::make_shared<ImportCache>(std::move(observer))) {}

    std::shared_ptr<HPS::Exchange::ImportTask> start(
        const std::string& path, const HPS::Exchange::ImportOptions& options) override {
        return std::make_shared<ImportTask>(path, cache_, cache_->get(path, options));
    }

    std::string documentFolder(const std::string& path, ImportCause& cause) override {
        const auto killed = std::make_shared<std::atomic<bool>>(false);
        std::shared_ptr<void> registration;
        os::RunToken* const token =
            os::services().workers ? os::services().workers->current() : nullptr;
        if (token != nullptr) registration = token->onKill([killed] { *killed = true; });
        const auto job = cache_->getWithGeometry(path);
        while (true) {
            const ImportJob::State state = job->poll();
            if (state == ImportJob::State::Done) {
                cache_->keep(job);
                return job->folder();
            }
            if (state != ImportJob::State::Running) {
                cause = job->cause();
                return {};
            }
            if (*killed) {
                cause = cancelled(path);
                return {};
            }
            job->wait(kWaitMs);
        }
    }

    void cancelAll() override { cache_->cancelAll(); }

private:
    std::shared_ptr<ImportCache> cache_;
};

}  // namespace

std::shared_ptr<ImportService> ImportService::create(ImportObserver observer) {
    return std::make_shared<Service>(std::move(observer));
}

}  // namespace occt
