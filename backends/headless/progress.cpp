#include "backends/headless/progress.h"

namespace headless {
namespace {

constexpr int kEnd = 101;

}  // namespace

void Progress::begin() {
    const std::lock_guard lock(mutex_);
    view_ = View();
}

void Progress::set(int value) {
    const std::lock_guard lock(mutex_);
    if (view_.ended || value < 0 || value > kEnd) return;
    if (value == kEnd) {
        view_.ended = true;
    } else {
        view_.percent = value;
    }
    changed_.notify_all();
}

Progress::View Progress::wait(const View& seen, std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, timeout, [&] { return view_.ended || view_.percent != seen.percent; });
    return view_;
}

}  // namespace headless
