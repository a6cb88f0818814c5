#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "backends/posix/unique_fd.h"

namespace posix {

/// Number and name by which a helper finds its end of the channel.
inline constexpr int kChannelFd = 3;
inline constexpr const char* kChannelVariable = "BEXTORA_CHANNEL";

/// False in builds whose instrumentation reserves more address space than any limit allows; the
/// memory limit is then not set.
bool memoryLimitWorks();

struct StartRequest {
    std::string program;                 ///< full path
    std::vector<std::string> arguments;  ///< without the program's own name
    std::uint64_t memoryBytes = 0;       ///< of address space; 0: no limit
    std::uint64_t processorSeconds = 0;  ///< of all its threads; 0: no limit
    bool showOutput = false;             ///< both outputs to our standard error, else nowhere
};

struct StartedChild {
    pid_t pid = -1;    ///< also its process group; -1: not started
    int error = 0;     ///< errno of what failed
    UniqueFd channel;  ///< our end, for reading without blocking
    UniqueFd handle;   ///< readable when the process has ended; may be missing on old kernels
};

/// Starts a program that dies with the calling THREAD: the system sends its death signal when the
/// thread ends that started the child. It gets a process group of its own, no core files, no new
/// privileges, no network where the system can forbid it, nothing to read, default signals, and no
/// descriptor of ours but its end of the channel. Returns when the program runs or has failed to.
StartedChild startChild(const StartRequest& request);

}  // namespace posix
