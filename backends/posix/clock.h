#pragma once

#include "platform/os/clock.h"

namespace posix {

/// The machine's steady clock: setting the time of day does not move it.
class SteadyClock final : public os::Clock {
public:
    std::uint64_t ticksMs() const override;
    void sleepMs(std::uint32_t durationMs) override;
};

}  // namespace posix
