#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace cli {

/// Keys of the parts of the progress line: the imports come first, by number.
namespace progress_part {
constexpr int Comparison = 2;
}  // namespace progress_part

/// Standard error as the user reads it: lines, and below them one progress line that is rewritten
/// in place while standard error is a terminal. Safe from any thread.
class Console {
public:
    /// `progress`: whether a progress line is wanted at all.
    explicit Console(bool progress) : progress_(progress) {}
    /// Takes the progress line away.
    ~Console() { clearProgress(); }
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Writes one line; `text` is printable UTF-8 without a line feed.
    void line(std::string_view text);

    /// Sets one of the parts of the progress line; parts are shown in the order of their keys.
    void progress(int part, const std::string& text);
    void clearProgress();

private:
    void draw();
    void erase();

    std::mutex mutex_;
    const bool progress_;
    bool drawn_ = false;
    std::map<int, std::string> parts_;
};

/// True when a person reads standard error and it can be rewritten in place.
bool progressIsWanted();
/// True when a person reads standard output and wants colours.
bool coloursAreWanted();

/// Writes everything to standard output. False when it could not all be written.
bool writeOutput(std::string_view text);

}  // namespace cli
