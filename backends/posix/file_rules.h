#pragma once

#include <cstdint>

#include "platform/os/confinement.h"

namespace posix {

/// What a version of the kernel's Landlock can forbid. Bits as the kernel numbers them.
struct FileRules {
    std::uint64_t files = 0;    ///< kinds of access to files and folders
    std::uint64_t network = 0;  ///< TCP, from version 4 on
    std::uint64_t scopes = 0;   ///< abstract sockets and signals outward, from version 6 on
};

/// The running kernel's version of Landlock; 0 when it has none, or does not let us use it.
int fileRulesVersion();

/// All that a version knows. Versions to come count as the newest that is known here; 0: nothing.
FileRules fileRulesOf(int version);

/// Restricts the calling thread, and the threads and programs that it starts, to `reach` and to
/// what every process needs. The process must have given up new privileges before. `version` is
/// at most the kernel's. False when nothing was restricted; `errno` then says why.
bool restrictFiles(const os::Reach& reach, int version);

}  // namespace posix
