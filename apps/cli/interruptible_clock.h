#pragma once

#include <functional>
#include <memory>

#include "platform/os/clock.h"

namespace cli {

/// The machine's clock, which looks for an interrupt while it sleeps: the wait for the imports
/// serves no messages, so nothing else could end it.
class InterruptibleClock final : public os::Clock {
public:
    /// `onInterrupt` is called once, on the thread that sleeps.
    InterruptibleClock(std::shared_ptr<os::Clock> clock, std::function<void()> onInterrupt)
        : clock_(std::move(clock)), onInterrupt_(std::move(onInterrupt)) {}

    std::uint64_t ticksMs() const override { return clock_->ticksMs(); }
    void sleepMs(std::uint32_t durationMs) override;

private:
    std::shared_ptr<os::Clock> clock_;
    std::function<void()> onInterrupt_;
};

}  // namespace cli
