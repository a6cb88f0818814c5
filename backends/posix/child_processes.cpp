#include "backends/posix/child_processes.h"

#include <algorithm>
#include <thread>

#include "backends/posix/child_process.h"
#include "platform/os/debug_output.h"
#include "platform/os/utf8.h"

namespace posix {
namespace {

std::uint64_t processorSeconds(std::uint64_t processorTimeMs, std::uint32_t wallTimeMs) {
    const std::uint64_t processors = std::max(std::thread::hardware_concurrency(), 1U);
    if (processorTimeMs == 0) processorTimeMs = wallTimeMs * processors;
    return (processorTimeMs + 999) / 1000;
}

}  // namespace

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
    const std::uint32_t wallTimeMs =
        limits.wallTimeMs != 0 ? limits.wallTimeMs : defaults_.wallTimeMs;
    request.processorSeconds = processorSeconds(
        limits.processorTimeMs != 0 ? limits.processorTimeMs : defaults_.processorTimeMs,
        wallTimeMs);
    request.showOutput = showOutput_;
    StartedChild started = spawner_->start(std::move(request));
    if (started.pid < 0) {
        os::debugOutput(os::toWide(helperPath_ + ": not started, error " +
                                   std::to_string(started.error) + '\n'));
    }
    return std::make_unique<PosixChildProcess>(std::move(started), wallTimeMs, spawner_);
}

}  // namespace posix
