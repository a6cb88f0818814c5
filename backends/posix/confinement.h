#pragma once

#include "platform/os/confinement.h"

namespace posix {

/// Confinement by Landlock and by filters on system calls.
class PosixConfinement final : public os::Confinement {
public:
    /// Keeps the process from leaving a core file from now on, also by way of a program that the
    /// system hands cores to, whatever the limit on their size.
    PosixConfinement();

    std::vector<std::string> confine(const os::Reach& reach) override;
};

}  // namespace posix
