#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/os/confinement.h"
#include "platform/os/services.h"

namespace posix {

struct Options {
    /// Helper program; empty: "bextora-helper" beside the running executable.
    std::string helperPath;
    /// INI file of the key store; empty: $XDG_CONFIG_HOME/bextora/keystore.ini, else
    /// ~/.config/bextora/keystore.ini.
    std::string keyStoreFile;
    /// Per helper; 0: 45 % of the machine's memory.
    std::uint64_t helperMemoryBytes = 0;
    /// Per helper; 0: 30 minutes.
    std::uint32_t helperWallTimeMs = 0;
    /// Of all threads of a helper; 0: the wall time times the machine's processors.
    std::uint64_t helperProcessorTimeMs = 0;
};

/// All services of this folder for one application.
os::Services makeServices(const Options& options);

/// The channel from this helper process to the host that started it. One that writes nowhere
/// when no host did. From then on SIGPIPE is ignored, and send() ends the helper at once when the
/// host is gone. Call it once, before the helper starts threads or programs of its own.
std::unique_ptr<os::ParentChannel> parentChannel();

/// For helpers: what locks this process in. From now on it leaves no core file. Call it early.
std::unique_ptr<os::Confinement> makeConfinement();

/// For helpers: from now on the first `new` that finds no memory ends the process with
/// os::kMemoryLimitExitCode, so that no library in between can swallow the error and go on with
/// half a result. Libraries that call malloc themselves still report as they do.
void exitWhenMemoryIsRefused();

}  // namespace posix
