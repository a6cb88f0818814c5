#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace os {

/// The right of one worker run to be seen by the rest of the program. It is withdrawn by
/// WorkerThread::terminate(); from then on the worker may still execute, but nothing that it
/// does through its token has any effect.
class RunToken {
public:
    virtual ~RunToken() = default;

    /// False once the run was killed.
    virtual bool valid() const = 0;

    /// Runs `effect` and returns true if the run is still valid. `effect` and terminate() exclude
    /// one another, so an effect is either complete before terminate() returns or never starts.
    /// Effects are short: write results, report progress, rename a file.
    virtual bool publish(const std::function<void()>& effect) = 0;

    /// Registers what ends the run's heavy work at once (kill a child process). It is called from
    /// the terminating thread, at most once; at once if the run is already dead. The registration
    /// lasts as long as the returned object; after its destruction `kill` is not called any more.
    [[nodiscard]] virtual std::shared_ptr<void> onKill(std::function<void()> kill) = 0;
};

/// One started worker. All operations belong to the thread that started it.
class WorkerThread {
public:
    /// Waits for the worker as close() does.
    virtual ~WorkerThread() = default;

    /// Ends the run wherever it stands: withdraws the token, runs the registered kills, waits
    /// until the thread is gone. Nothing that the worker does later than this call can be seen.
    virtual void terminate(std::uint32_t exitCode) = 0;

    /// Waits for the worker's own end and releases it.
    virtual void close() = 0;
};

/// Starts workers and tells a worker its own token.
class WorkerThreads {
public:
    virtual ~WorkerThreads() = default;

    /// Starts `body` on a thread of its own. Null when no thread can be had.
    virtual std::unique_ptr<WorkerThread> start(std::function<std::uint32_t()> body) = 0;

    /// Token of the worker that calls; null on any other thread.
    virtual RunToken* current() = 0;
};

}  // namespace os
