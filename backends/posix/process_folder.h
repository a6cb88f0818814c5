#pragma once

#include <string>
#include <string_view>

#include "backends/posix/unique_fd.h"

namespace posix {

inline constexpr std::string_view kProcessFolderPrefix = "bextora-";
inline constexpr const char* kProcessFolderLock = "/lock";

/// A folder `bextora-<pid>-<random>` that only this user can read. A lock on a file inside tells
/// other processes that its owner lives. The folder and all that it holds go with this object,
/// or at the process's normal exit, whichever comes first.
/// A forked copy of the object removes nothing: only the process that made the folder does.
class ProcessFolder {
public:
    ProcessFolder() = default;
    ~ProcessFolder();
    ProcessFolder(const ProcessFolder&) = delete;
    ProcessFolder& operator=(const ProcessFolder&) = delete;

    /// Makes the folder below `parent` (UTF-8, with a separator at the end). False when that
    /// fails; nothing is left behind then. An earlier folder of this object is given up.
    bool make(const std::string& parent);

    /// Path without a separator at the end; empty before make().
    const std::string& path() const { return path_; }

    /// Removes the folder now.
    void remove();

private:
    std::string path_;
    UniqueFd lock_;
};

}  // namespace posix
