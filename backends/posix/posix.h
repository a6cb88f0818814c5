#pragma once

#include <cstdint>
#include <memory>
#include <string>

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
};

/// All services of this folder for one application.
os::Services makeServices(const Options& options);

/// The channel from this helper process to the host that started it. One that writes nowhere
/// when no host did.
std::unique_ptr<os::ParentChannel> parentChannel();

}  // namespace posix
