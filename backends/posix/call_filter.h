#pragma once

#include <linux/filter.h>

#include <vector>

namespace posix {

/// The filter that a helper gets before its program runs: no sockets and nothing that changes the
/// system or looks into other processes. Made once per process; empty where none can be made.
/// Starting the helper's own program passes it.
const std::vector<sock_filter>& startFilter();

/// Sets a filter that was made before. Nothing is allocated, so it may be called after a fork. The
/// process must have given up new privileges before. False when the kernel does not take it.
bool setFilter(const std::vector<sock_filter>& filter);

/// Adds what a helper must not do any more once a file has it in its hands: start programs and
/// processes, signal others, lift its limits, change rights and owners. For all threads of the
/// process. What is tried all the same fails with an error where libraries have harmless reasons
/// to try it, and ends the process with SIGSYS where nobody has one. False: not in force.
bool filterCalls();

}  // namespace posix
