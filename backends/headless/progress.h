#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace headless {

/// The number behind the progress window. A worker may end before the window opens, so the end
/// is kept from begin() on until the next begin().
class Progress {
public:
    /// What the window shows now.
    struct View {
        int percent = 0;
        bool ended = false;
    };

    /// New background work: 0 per cent, not ended.
    void begin();

    /// 0 resets the number, 1 to 100 are per cent, 101 is the end; other numbers do nothing, and
    /// nothing undoes the end. Safe from any thread.
    void set(int value);

    /// Waits until something has changed since `seen`, or the time is up.
    View wait(const View& seen, std::chrono::milliseconds timeout);

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    View view_;
};

}  // namespace headless
