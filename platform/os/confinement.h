#pragma once

#include <string>
#include <vector>

#include "platform/os/child_process.h"

namespace os {

/// What a confined process still reaches, as UTF-8 full paths. What does not exist is passed over.
/// A file that is open already stays usable, whatever stands here.
struct Reach {
    /// Files, or folders with all that they hold, that may be read.
    std::vector<std::string> readable;
    /// Folders in which files may be read, made, changed and removed.
    std::vector<std::string> writable;
};

/// Locks a helper process in before it runs code that a hostile file may take over. From then on
/// and for ever the process and the threads that it starts
///   - read only `readable`, `writable`, and what running takes: shared libraries, locales, the
///     resources of the geometry library, the process's own entries of /proc, a source of chance;
///   - change nothing outside `writable`, not even the rights or times of a file;
///   - open no socket of any kind;
///   - start no program and no process (threads they may start);
///   - gain no privileges, drop those they had, and cannot lift their limits;
///   - cannot signal, trace or read other processes.
/// An attempt on a file, a socket or another process fails with an error, because libraries look
/// around for good reasons. An attempt to run a program, to trace, or to change the system has no
/// good reason and ends the process at once: ProcessEnd::Forbidden for the host.
class Confinement {
public:
    virtual ~Confinement() = default;

    /// To be called once, before the process starts threads of its own: threads that run already
    /// are held by the rules on calls but not by those on files. Returns what the system cannot
    /// enforce, one sentence each that names no file, so that the same lack gives the same
    /// sentence in every helper; all else is in force then.
    virtual std::vector<std::string> confine(const Reach& reach) = 0;
};

/// For a helper's body: confines the process and sends each lack to the host as a warning. Null
/// does nothing: a body that a test runs in its own process must not lock that process in.
void confineHelper(Confinement* confinement, const Reach& reach, ParentChannel& channel);

}  // namespace os
