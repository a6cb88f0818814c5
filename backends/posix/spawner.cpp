#include "backends/posix/spawner.h"

#include <signal.h>

#include <cerrno>
#include <system_error>

namespace posix {

Spawner::~Spawner() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    changed_.notify_one();
    if (thread_.joinable()) thread_.join();
}

StartedChild Spawner::start(StartRequest request) {
    Task task([&request] { return startChild(request); });
    std::future<StartedChild> started = task.get_future();
    {
        const std::lock_guard lock(mutex_);
        try {
            if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
        } catch (const std::system_error&) {
            StartedChild none;
            none.error = EAGAIN;
            return none;
        }
        tasks_.push_back(std::move(task));
    }
    changed_.notify_one();
    return started.get();
}

void Spawner::run() {
    // The application's signal handlers belong to its own threads.
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_BLOCK, &all, nullptr);
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
        if (tasks_.empty()) return;
        Task task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

}  // namespace posix
