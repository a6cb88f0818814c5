#pragma once

#include <condition_variable>
#include <deque>
#include <future>
#include <mutex>
#include <thread>

#include "backends/posix/child_start.h"

namespace posix {

/// Starts every child from one thread that lives as long as the children do. Children die with
/// the thread that started them; a helper that a worker started must not die with the worker.
/// Safe from any thread. Destruction ends the thread and so kills what still runs.
class Spawner {
public:
    Spawner() = default;
    ~Spawner();
    Spawner(const Spawner&) = delete;
    Spawner& operator=(const Spawner&) = delete;

    /// Blocks until the program runs or could not be started.
    StartedChild start(StartRequest request);

private:
    using Task = std::packaged_task<StartedChild()>;

    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    bool ending_ = false;
    std::thread thread_;
};

}  // namespace posix
