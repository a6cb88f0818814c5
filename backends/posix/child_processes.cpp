#include "backends/posix/child_processes.h"

#include "backends/posix/child_process.h"
#include "platform/os/debug_output.h"
#include "platform/os/utf8.h"

namespace posix {

PosixChildProcesses::PosixChildProcesses(std::string helperPath, os::ProcessLimits defaults,
                                         bool showOutput)
    : helperPath_(std::move(helperPath)),
      defaults_(defaults),
      showOutput_(showOutput),
      spawner_(std::make_shared<Spawner>()) {}

std::unique_ptr<os::ChildProcess> PosixChildProcesses::startHelper(
    const std::vector<std::string>& arguments, const os::ProcessLimits& limits) {
    StartRequest request;
    request.program = helperPath_;
    request.arguments = arguments;
    request.memoryBytes = limits.memoryBytes != 0 ? limits.memoryBytes : defaults_.memoryBytes;
    request.showOutput = showOutput_;
    const std::uint32_t wallTimeMs =
        limits.wallTimeMs != 0 ? limits.wallTimeMs : defaults_.wallTimeMs;
    StartedChild started = spawner_->start(std::move(request));
    if (started.pid < 0) {
        os::debugOutput(os::toWide(helperPath_ + ": not started, error " +
                                   std::to_string(started.error) + '\n'));
    }
    return std::make_unique<PosixChildProcess>(std::move(started), wallTimeMs, spawner_);
}

}  // namespace posix
