#include "backends/posix/clock.h"

#include <chrono>
#include <thread>

namespace posix {

std::uint64_t SteadyClock::ticksMs() const {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

void SteadyClock::sleepMs(std::uint32_t durationMs) {
    std::this_thread::sleep_for(std::chrono::milliseconds(durationMs));
}

}  // namespace posix
