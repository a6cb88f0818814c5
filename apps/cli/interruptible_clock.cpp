#include "apps/cli/interruptible_clock.h"

#include <algorithm>

#include "apps/cli/interrupt.h"

namespace cli {
namespace {

constexpr std::uint32_t kSliceMs = 50;

}  // namespace

void InterruptibleClock::sleepMs(std::uint32_t durationMs) {
    const std::uint64_t end = ticksMs() + durationMs;
    for (std::uint64_t now = ticksMs(); now < end; now = ticksMs()) {
        if (interrupted() && onInterrupt_) {
            std::function<void()> once;
            once.swap(onInterrupt_);
            once();
        }
        clock_->sleepMs(static_cast<std::uint32_t>(std::min<std::uint64_t>(end - now, kSliceMs)));
    }
}

}  // namespace cli
