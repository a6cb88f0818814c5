#pragma once

#include <memory>

#include "backends/posix/spawner.h"
#include "platform/os/child_process.h"

namespace posix {

/// Helper processes. Safe from any thread.
class PosixChildProcesses final : public os::ChildProcesses {
public:
    /// `helperPath` is the program's full path; `defaults` fill in what a caller leaves at 0, and
    /// what is 0 there too means no limit.
    PosixChildProcesses(std::string helperPath, os::ProcessLimits defaults, bool showOutput);

    std::unique_ptr<os::ChildProcess> startHelper(const std::vector<std::string>& arguments,
                                                  const os::ProcessLimits& limits) override;

private:
    const std::string helperPath_;
    const os::ProcessLimits defaults_;
    const bool showOutput_;
    const std::shared_ptr<Spawner> spawner_;
};

}  // namespace posix
