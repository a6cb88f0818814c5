#include "tests/fuzz/fuzz.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "platform/os/utf8.h"

namespace fuzz {
namespace {

// Copies go to these lengths. Work in proportion takes eight times as long for the second one,
// sorting a little more, and work that looks at all pairs sixty-four times.
constexpr std::size_t kSmall = std::size_t{24} * 1024;
constexpr std::size_t kFactor = 8;
constexpr double kMostFactor = 28.0;
// Below this the clock says too little, and nobody would notice.
constexpr double kTooShortSeconds = 0.06;
constexpr int kTries = 3;
constexpr std::uint64_t kOneInSoMany = 500;

bool everyInput = false;

/// Time that this thread worked: what else the machine does must not be a finding.
double secondsOf(const std::function<void(const std::string&)>& work, const std::string& text) {
    const auto now = [] {
        std::timespec time = {};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    };
    const double begin = now();
    work(text);
    return now() - begin;
}

bool isChosen(std::string_view input) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : input) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    return everyInput || (hash >> 20) % kOneInSoMany == 0;
}

}  // namespace

void require(bool holds, const char* sentence) {
    if (holds) return;
    std::fprintf(stderr, "finding: %s\n", sentence);
    std::fflush(stderr);
    std::abort();
}

bool isUtf8(std::string_view bytes) {
    const std::wstring wide = os::toWide(bytes);
    return std::none_of(wide.begin(), wide.end(),
                        [](wchar_t c) { return c >= 0xDC80 && c <= 0xDCFF; });
}

void requireLinear(std::string_view input, const std::function<std::string(std::size_t)>& grow,
                   const std::function<void(const std::string&)>& work) {
    if (input.empty() || !isChosen(input)) return;
    const std::size_t copies = kSmall / input.size() + 1;
    const std::string small = grow(copies);
    const std::string large = grow(copies * kFactor);
    for (int i = 0; i < kTries; ++i) {
        // Together with the small one's first time goes what is done once only.
        work(small);
        const double smallSeconds = secondsOf(work, small);
        const double largeSeconds = secondsOf(work, large);
        if (largeSeconds < kTooShortSeconds || largeSeconds < kMostFactor * smallSeconds) return;
    }
    require(false, "eight times the text takes far more than eight times as long");
}

void requireLinear(std::string_view input, const std::function<void(const std::string&)>& work) {
    const auto grow = [input](std::size_t copies) {
        std::string text;
        text.reserve(copies * input.size());
        while (copies-- > 0) text += input;
        return text;
    };
    requireLinear(input, grow, work);
}

void timeEveryInput(bool every) {
    everyInput = every;
}

}  // namespace fuzz
