#include "backends/posix/line_buffer.h"

#include <utility>

namespace posix {
namespace {

constexpr std::size_t kPerLine = sizeof(std::string);

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

void LineBuffer::feed(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t end = bytes.find('\n');
        append(bytes.substr(0, end));
        if (end == std::string_view::npos) return;
        finishLine();
        bytes.remove_prefix(end + 1);
    }
}

void LineBuffer::append(std::string_view bytes) {
    if (dropping_ || bytes.empty()) return;
    if (partial_.size() + bytes.size() <= kLongestLine) {
        partial_ += bytes;
        return;
    }
    const std::size_t room = kLongestLine - partial_.size();
    const bool splitsCharacter = continuesCharacter(bytes[room]);
    partial_ += bytes.substr(0, room);
    dropping_ = true;
    if (!splitsCharacter) return;
    // At most three bytes of a cut character, then its lead; damaged text may hold more.
    for (int i = 0; i < 3 && continuesCharacter(partial_.back()); ++i) partial_.pop_back();
    partial_.pop_back();
}

void LineBuffer::finishLine() {
    waitingBytes_ += partial_.size() + kPerLine;
    lines_.push_back(std::exchange(partial_, {}));
    dropping_ = false;
}

std::optional<std::string> LineBuffer::next() {
    if (lines_.empty()) return std::nullopt;
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    waitingBytes_ -= line.size() + kPerLine;
    return line;
}

}  // namespace posix
