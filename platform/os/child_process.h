#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace os {

/// What a helper process may use. 0 means the backend's default.
struct ProcessLimits {
    std::uint64_t memoryBytes = 0;
    std::uint32_t wallTimeMs = 0;
    /// Of all its threads together; rounded up to whole seconds. The default is the wall time
    /// times the machine's processors: it holds even if the host no longer looks.
    std::uint64_t processorTimeMs = 0;
};

/// How a helper process ended.
enum class ProcessEnd {
    Running,      ///< not ended yet
    Exited,       ///< by itself; see ChildProcess::exitCode()
    Crashed,      ///< by a signal that nobody of ours sent; see ChildProcess::exitCode()
    Killed,       ///< by ChildProcess::kill()
    TimeLimit,    ///< the limit of wall time or of processor time was reached
    MemoryLimit,  ///< an allocation past the memory limit was refused and the helper gave up
    NotStarted,   ///< the process could not be started at all
    Forbidden,    ///< it tried what a confined process is ended for, such as starting a program
};

/// Exit code by which a helper says that an allocation was refused (std::bad_alloc); it is what
/// ProcessEnd::MemoryLimit is deduced from.
inline constexpr int kMemoryLimitExitCode = 86;

/// Exit code of a program whose libraries could not be loaded, by the system's convention. It
/// counts as NotStarted; a helper never uses it otherwise.
inline constexpr int kNotLoadedExitCode = 127;

/// A helper process of ours, with one channel of text lines from it to us.
/// Operations may be called from any one thread at a time, kill() from any thread.
class ChildProcess {
public:
    /// Kills the process if it still runs, and leaves no zombie.
    virtual ~ChildProcess() = default;

    /// State now; never blocks. Enforces the wall time limit as it is called.
    virtual ProcessEnd poll() = 0;

    /// Waits until a line is there, the process has ended or `timeoutMs` have passed.
    virtual void wait(std::uint32_t timeoutMs) = 0;

    /// Next line that the helper sent, UTF-8 without the line feed; empty when none is there.
    /// Lines that were sent before the end can still be read after it.
    virtual std::optional<std::string> nextLine() = 0;

    /// Exit code after Exited, signal number after Crashed.
    virtual int exitCode() const = 0;

    /// Ends the process at once.
    virtual void kill() = 0;
};

/// Starts helpers: the program that does the heavy and the dangerous work.
class ChildProcesses {
public:
    virtual ~ChildProcesses() = default;

    /// Starts the helper program with these UTF-8 arguments. Never null: a helper that can't be
    /// started answers ProcessEnd::NotStarted.
    virtual std::unique_ptr<ChildProcess> startHelper(const std::vector<std::string>& arguments,
                                                      const ProcessLimits& limits) = 0;
};

/// The helper's side of the channel. A helper that runs without a parent writes nowhere.
class ParentChannel {
public:
    virtual ~ParentChannel() = default;

    /// Sends one line; `line` is UTF-8 without a line feed. Safe from any thread of the helper.
    virtual void send(const std::string& line) = 0;
};

}  // namespace os
