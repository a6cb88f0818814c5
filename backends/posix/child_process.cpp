#include "backends/posix/child_process.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <thread>

namespace posix {
namespace {

using std::chrono::milliseconds;

// A helper that floods the channel is held up once this much waits to be read.
constexpr std::size_t kMostWaitingBytes = std::size_t{16} * 1024 * 1024;
// Reading stops after so many chunks, so that a flood can't keep a caller busy.
constexpr int kMostChunks = 16;
// Where the kernel can't tell us of the end, we look at this pace.
constexpr milliseconds kLookAgain{5};
// A process that was killed is gone in milliseconds unless a driver holds it.
constexpr std::chrono::seconds kDeathPatience{10};
constexpr milliseconds kLongestPoll{60'000};

}  // namespace

PosixChildProcess::PosixChildProcess(StartedChild started, std::uint32_t wallTimeMs,
                                     std::shared_ptr<Spawner> spawner)
    : spawner_(std::move(spawner)),
      child_(std::move(started)),
      limited_(wallTimeMs != 0),
      wallEnd_(Clock::now() + milliseconds(wallTimeMs)),
      end_(child_.pid < 0 ? os::ProcessEnd::NotStarted : os::ProcessEnd::Running),
      channelEnded_(child_.pid < 0) {}

PosixChildProcess::~PosixChildProcess() {
    PosixChildProcess::kill();
}

os::ProcessEnd PosixChildProcess::poll() {
    readLines();
    if (running()) {
        // Another thread's kill() holds the lock until the process is gone: still running.
        const std::unique_lock lock(mutex_, std::try_to_lock);
        if (lock.owns_lock()) {
            enforceWallTime();
            collect();
        }
    }
    return end_.load();
}

void PosixChildProcess::wait(std::uint32_t timeoutMs) {
    const Clock::time_point deadline = Clock::now() + milliseconds(timeoutMs);
    for (;;) {
        readLines();
        if (lines_.hasLine() || !running()) return;
        {
            const std::lock_guard lock(mutex_);
            enforceWallTime();
            collect();
        }
        if (!running() || Clock::now() >= deadline) return;
        waitForEvent(deadline);
    }
}

void PosixChildProcess::waitForEvent(Clock::time_point until) {
    // After our own signal only the end is waited for, and that comes as an event.
    const Clock::time_point now = Clock::now();
    if (limited_ && wallEnd_ > now) until = std::min(until, wallEnd_);
    auto duration = std::chrono::ceil<milliseconds>(until - now);
    duration = std::min(duration, child_.handle.valid() ? kLongestPoll : kLookAgain);
    // A negative descriptor is passed over.
    pollfd events[] = {{channelEnded_ ? -1 : child_.channel.get(), POLLIN, 0},
                       {child_.handle.get(), POLLIN, 0}};
    ::poll(events, 2, static_cast<int>(std::max(duration.count(), milliseconds::rep{0})));
}

std::optional<std::string> PosixChildProcess::nextLine() {
    if (!lines_.hasLine()) readLines();
    return lines_.next();
}

void PosixChildProcess::kill() {
    const std::lock_guard lock(mutex_);
    collect();
    if (!running()) return;
    signalGroup(os::ProcessEnd::Killed);
    collectWithin(kDeathPatience);
}

void PosixChildProcess::readLines() {
    char chunk[LineBuffer::kLongestLine];
    for (int i = 0; i < kMostChunks && !channelEnded_; ++i) {
        if (lines_.waitingBytes() > kMostWaitingBytes) return;
        const ssize_t got = ::read(child_.channel.get(), chunk, sizeof chunk);
        if (got > 0) {
            lines_.feed({chunk, static_cast<std::size_t>(got)});
        } else if (got == 0) {
            channelEnded_ = true;
        } else if (errno == EAGAIN) {
            return;
        } else if (errno != EINTR) {
            channelEnded_ = true;
        }
    }
}

void PosixChildProcess::enforceWallTime() {
    if (limited_ && running() && Clock::now() >= wallEnd_ && cause_ == os::ProcessEnd::Running) {
        // What has ended by itself in time but was not looked at since keeps its own end.
        collect();
        if (running()) signalGroup(os::ProcessEnd::TimeLimit);
    }
}

void PosixChildProcess::signalGroup(os::ProcessEnd cause) {
    if (cause_ == os::ProcessEnd::Running) cause_ = cause;
    ::kill(-child_.pid, SIGKILL);
}

void PosixChildProcess::collect() {
    if (!running()) return;
    const auto id = static_cast<id_t>(child_.pid);
    siginfo_t info{};
    if (::waitid(P_PID, id, &info, WEXITED | WNOHANG | WNOWAIT) != 0) {
        // Somebody else has collected it; how it ended is lost.
        if (errno != ECHILD) return;
        exitCode_.store(0);
        end_.store(cause_ != os::ProcessEnd::Running ? cause_ : os::ProcessEnd::Crashed);
        return;
    }
    if (info.si_pid == 0) return;
    // While the dead leader is not collected its group keeps its number.
    ::kill(-child_.pid, SIGKILL);
    ::waitid(P_PID, id, &info, WEXITED | WNOHANG);
    exitCode_.store(info.si_status);
    end_.store(endOf(info.si_code, info.si_status));
}

void PosixChildProcess::collectWithin(Clock::duration patience) {
    const Clock::time_point deadline = Clock::now() + patience;
    for (collect(); running() && Clock::now() < deadline; collect()) {
        if (child_.handle.valid()) {
            pollfd event{child_.handle.get(), POLLIN, 0};
            ::poll(&event, 1, static_cast<int>(kLookAgain.count()));
        } else {
            std::this_thread::sleep_for(milliseconds(1));
        }
    }
}

os::ProcessEnd PosixChildProcess::endOf(int code, int status) const {
    if (code != CLD_EXITED) {
        const bool ours = cause_ != os::ProcessEnd::Running && status == SIGKILL;
        if (ours) return cause_;
        if (status == SIGXCPU) return os::ProcessEnd::TimeLimit;
        return status == SIGSYS ? os::ProcessEnd::Forbidden : os::ProcessEnd::Crashed;
    }
    switch (status) {
        case os::kMemoryLimitExitCode: return os::ProcessEnd::MemoryLimit;
        case os::kNotLoadedExitCode: return os::ProcessEnd::NotStarted;
        default: return os::ProcessEnd::Exited;
    }
}

}  // namespace posix
