#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace posix {

/// Cuts a stream of bytes into lines. A line longer than kLongestLine is cut at that length (at a
/// character's start); what follows it up to its line feed is dropped, and the next line is whole
/// again. A last line without a line feed is never given out: its sender died in the middle of it.
class LineBuffer {
public:
    static constexpr std::size_t kLongestLine = std::size_t{64} * 1024;

    void feed(std::string_view bytes);

    /// The oldest line without its line feed.
    std::optional<std::string> next();

    bool hasLine() const { return !lines_.empty(); }

    /// Bytes of the lines that wait, with a share for each line's own storage.
    std::size_t waitingBytes() const { return waitingBytes_; }

private:
    void append(std::string_view bytes);
    void finishLine();

    std::deque<std::string> lines_;
    std::size_t waitingBytes_ = 0;
    std::string partial_;
    bool dropping_ = false;
};

}  // namespace posix
