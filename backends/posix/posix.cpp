#include "backends/posix/posix.h"

#include <unistd.h>

#include "backends/posix/child_processes.h"
#include "backends/posix/clock.h"
#include "backends/posix/confinement.h"
#include "backends/posix/debug_output.h"
#include "backends/posix/file_writer.h"
#include "backends/posix/files.h"
#include "backends/posix/io.h"
#include "backends/posix/key_store.h"
#include "backends/posix/modules.h"
#include "backends/posix/worker_threads.h"

namespace posix {
namespace {

constexpr std::uint64_t kDefaultMemoryPercent = 45;
constexpr std::uint32_t kDefaultWallTimeMs = 30 * 60 * 1000;

std::uint64_t machineMemoryBytes() {
    const long pages = ::sysconf(_SC_PHYS_PAGES);
    const long pageBytes = ::sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageBytes <= 0) return 0;
    return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageBytes);
}

std::string defaultHelperPath() {
    const std::string executable = executablePathBytes();
    return executable.substr(0, executable.rfind('/') + 1) + "bextora-helper";
}

os::ProcessLimits helperLimits(const Options& options) {
    os::ProcessLimits limits{options.helperMemoryBytes, options.helperWallTimeMs,
                             options.helperProcessorTimeMs};
    if (limits.memoryBytes == 0)
        limits.memoryBytes = machineMemoryBytes() / 100 * kDefaultMemoryPercent;
    if (limits.wallTimeMs == 0) limits.wallTimeMs = kDefaultWallTimeMs;
    return limits;
}

}  // namespace

std::unique_ptr<os::Confinement> makeConfinement() {
    return std::make_unique<PosixConfinement>();
}

os::Services makeServices(const Options& options) {
    os::Services services;
    services.clock = std::make_shared<SteadyClock>();
    services.keyStore = std::make_shared<FileKeyStore>(
        options.keyStoreFile.empty() ? defaultKeyStoreFile() : options.keyStoreFile);
    services.workers = std::make_shared<PosixWorkerThreads>();
    services.processes = std::make_shared<PosixChildProcesses>(
        options.helperPath.empty() ? defaultHelperPath() : options.helperPath,
        helperLimits(options), debugWanted());
    services.debug = std::make_shared<StderrDebugOutput>(debugWanted());
    services.files = std::make_shared<PosixFiles>();
    services.writer = std::make_shared<PosixFileWriter>();
    services.modules = std::make_shared<PosixModules>();
    return services;
}

}  // namespace posix
