#pragma once

#include <cstdint>

namespace os {

/// Time as the product sees it. Tests install a clock whose sleep returns at once.
class Clock {
public:
    virtual ~Clock() = default;

    /// Milliseconds since an arbitrary fixed moment; never goes backwards.
    virtual std::uint64_t ticksMs() const = 0;

    /// Blocks the calling thread for at least `durationMs` milliseconds.
    virtual void sleepMs(std::uint32_t durationMs) = 0;
};

}  // namespace os
