#include "backends/posix/clock.h"

#include <gtest/gtest.h>

namespace {

TEST(SteadyClock, NeverGoesBackwards) {
    const posix::SteadyClock clock;
    std::uint64_t last = clock.ticksMs();
    for (int i = 0; i < 100'000; ++i) {
        const std::uint64_t now = clock.ticksMs();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(SteadyClock, SleepsAtLeastAsLongAsAsked) {
    posix::SteadyClock clock;
    const std::uint64_t before = clock.ticksMs();
    clock.sleepMs(50);
    EXPECT_GE(clock.ticksMs() - before, 50U);
}

TEST(SteadyClock, SleepOfNothingReturnsAtOnce) {
    posix::SteadyClock clock;
    const std::uint64_t before = clock.ticksMs();
    clock.sleepMs(0);
    EXPECT_LT(clock.ticksMs() - before, 1000U);
}

}  // namespace
