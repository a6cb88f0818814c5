#pragma once

#include <chrono>
#include <optional>

namespace comparer {

/// Thrown where a time limit is over, and caught where it was set.
class OutOfTime {};

/// A moment after which a piece of work is given up. Without one it never is. May be asked by
/// several threads.
class TimeLimit {
public:
    TimeLimit() = default;
    explicit TimeLimit(double seconds) {
        using Clock = std::chrono::steady_clock;
        end_ = Clock::now() +
               std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    }

    /// Throws OutOfTime once it is over.
    void check() const {
        if (end_ && std::chrono::steady_clock::now() >= *end_) throw OutOfTime();
    }

private:
    std::optional<std::chrono::steady_clock::time_point> end_;
};

}  // namespace comparer
