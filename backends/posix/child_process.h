#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

#include "backends/posix/line_buffer.h"
#include "backends/posix/spawner.h"
#include "platform/os/child_process.h"

namespace posix {

/// One started helper. Its whole process group ends with it, so that nothing which the helper
/// started itself stays behind. kill() returns when the process is gone, not merely signalled.
class PosixChildProcess final : public os::ChildProcess {
public:
    /// `wallTimeMs` 0: no limit. The spawner's thread must outlive the child.
    PosixChildProcess(StartedChild started, std::uint32_t wallTimeMs,
                      std::shared_ptr<Spawner> spawner);
    PosixChildProcess(const PosixChildProcess&) = delete;
    PosixChildProcess& operator=(const PosixChildProcess&) = delete;
    ~PosixChildProcess() override;

    os::ProcessEnd poll() override;
    void wait(std::uint32_t timeoutMs) override;
    std::optional<std::string> nextLine() override;
    int exitCode() const override { return exitCode_.load(); }
    void kill() override;

private:
    using Clock = std::chrono::steady_clock;

    bool running() const { return end_.load() == os::ProcessEnd::Running; }
    void readLines();
    void waitForEvent(Clock::time_point until);
    void enforceWallTime();
    void signalGroup(os::ProcessEnd cause);
    void collect();
    void collectWithin(Clock::duration patience);
    os::ProcessEnd endOf(int code, int status) const;

    const std::shared_ptr<Spawner> spawner_;
    const StartedChild child_;
    const bool limited_;
    const Clock::time_point wallEnd_;

    // Serialises signals and the collection of the dead, so that no signal can go to a process
    // that got the number of ours.
    std::mutex mutex_;
    os::ProcessEnd cause_ = os::ProcessEnd::Running;  // why we sent the signal; first one counts
    std::atomic<os::ProcessEnd> end_;
    std::atomic<int> exitCode_{0};

    // Only the thread that operates the object.
    LineBuffer lines_;
    bool channelEnded_ = false;
};

}  // namespace posix
