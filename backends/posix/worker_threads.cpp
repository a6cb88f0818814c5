#include "backends/posix/worker_threads.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/os/debug_output.h"
#include "platform/os/utf8.h"

namespace posix {
namespace {

/// One registered kill. The lock is recursive because a kill may drop its own registration.
class Kill {
public:
    explicit Kill(std::function<void()> action) : action_(std::move(action)) {}

    void fire() {
        const std::lock_guard lock(mutex_);
        const std::function<void()> action = std::exchange(action_, nullptr);
        if (action) action();
    }

    /// Waits for an action that runs just now on another thread.
    void cancel() {
        const std::lock_guard lock(mutex_);
        action_ = nullptr;
    }

private:
    std::recursive_mutex mutex_;
    std::function<void()> action_;
};

/// What the worker holds: the kill lasts as long as this.
class KillHandle {
public:
    explicit KillHandle(std::shared_ptr<Kill> kill) : kill_(std::move(kill)) {}
    KillHandle(const KillHandle&) = delete;
    KillHandle& operator=(const KillHandle&) = delete;
    ~KillHandle() { kill_->cancel(); }

    std::weak_ptr<Kill> kill() const { return kill_; }

private:
    const std::shared_ptr<Kill> kill_;
};

class Run final : public os::RunToken {
public:
    bool valid() const override { return valid_.load(); }

    bool publish(const std::function<void()>& effect) override {
        const std::lock_guard lock(publishMutex_);
        if (!valid_.load()) return false;
        effect();
        return true;
    }

    [[nodiscard]] std::shared_ptr<void> onKill(std::function<void()> action) override {
        const auto handle = std::make_shared<KillHandle>(std::make_shared<Kill>(std::move(action)));
        bool dead = false;
        {
            const std::lock_guard lock(killsMutex_);
            dead = dead_;
            std::erase_if(kills_, [](const auto& kill) { return kill.expired(); });
            if (!dead) kills_.push_back(handle->kill());
        }
        if (dead) handle->kill().lock()->fire();
        return handle;
    }

    void withdraw() {
        {
            const std::lock_guard lock(publishMutex_);
            valid_.store(false);
        }
        std::vector<std::weak_ptr<Kill>> kills;
        {
            const std::lock_guard lock(killsMutex_);
            dead_ = true;
            kills.swap(kills_);
        }
        for (const auto& registered : kills) {
            if (const auto kill = registered.lock()) kill->fire();
        }
    }

private:
    // Recursive: an effect may publish a part of itself.
    std::recursive_mutex publishMutex_;
    std::atomic<bool> valid_{true};
    std::mutex killsMutex_;
    std::vector<std::weak_ptr<Kill>> kills_;
    bool dead_ = false;
};

thread_local Run* currentRun = nullptr;

class PosixWorkerThread final : public os::WorkerThread {
public:
    PosixWorkerThread(std::shared_ptr<Run> run, std::thread thread)
        : run_(std::move(run)), thread_(std::move(thread)) {}
    PosixWorkerThread(const PosixWorkerThread&) = delete;
    PosixWorkerThread& operator=(const PosixWorkerThread&) = delete;
    ~PosixWorkerThread() override { PosixWorkerThread::close(); }

    // Nobody can ask for the exit code of a worker, so it goes nowhere.
    void terminate(std::uint32_t /*exitCode*/) override {
        if (!thread_.joinable()) return;
        run_->withdraw();
        thread_.join();
    }

    void close() override {
        if (thread_.joinable()) thread_.join();
    }

private:
    const std::shared_ptr<Run> run_;
    std::thread thread_;
};

void runBody(const std::shared_ptr<Run>& run, const std::function<std::uint32_t()>& body) {
    currentRun = run.get();
    try {
        body();
    } catch (const std::exception& error) {
        os::debugOutput(os::toWide(std::string("worker: ") + error.what() + '\n'));
    } catch (...) {
        os::debugOutput(L"worker: unknown exception\n");
    }
    currentRun = nullptr;
}

}  // namespace

std::unique_ptr<os::WorkerThread> PosixWorkerThreads::start(std::function<std::uint32_t()> body) {
    auto run = std::make_shared<Run>();
    try {
        std::thread thread([run, body = std::move(body)] { runBody(run, body); });
        return std::make_unique<PosixWorkerThread>(std::move(run), std::move(thread));
    } catch (const std::system_error&) {
        return nullptr;
    }
}

os::RunToken* PosixWorkerThreads::current() {
    return currentRun;
}

}  // namespace posix
