#include "apps/cli/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "apps/cli/text.h"
#include "platform/os/utf8.h"

namespace cli {
namespace {

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool terminalKnowsEscapes() {
    const char* terminal = std::getenv("TERM");
    return terminal && *terminal && std::strcmp(terminal, "dumb") != 0;
}

std::size_t terminalColumns() {
    winsize size = {};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
    return size.ws_col;
}

/// As much of the text as fits; a line that wraps could not be rewritten.
std::string fitted(const std::string& text, std::size_t limit) {
    std::string made;
    std::size_t used = 0;
    for (const wchar_t c : os::toWide(text)) {
        const std::string one = os::toUtf8(std::wstring(1, c));
        used += columns(one);
        if (used > limit) break;
        made += one;
    }
    return made;
}

}  // namespace

void Console::line(std::string_view text) {
    const std::lock_guard lock(mutex_);
    erase();
    writeAll(STDERR_FILENO, std::string(text) + "\n");
    draw();
}

void Console::progress(int part, const std::string& text) {
    if (!progress_) return;
    const std::lock_guard lock(mutex_);
    std::string& kept = parts_[part];
    if (kept == text) return;
    kept = text;
    erase();
    draw();
}

void Console::clearProgress() {
    const std::lock_guard lock(mutex_);
    erase();
    parts_.clear();
}

void Console::draw() {
    std::string text;
    for (const auto& [part, shown] : parts_) {
        if (shown.empty()) continue;
        if (!text.empty()) text += "  ";
        text += shown;
    }
    if (text.empty()) return;
    writeAll(STDERR_FILENO, fitted(text, terminalColumns() - 1));
    drawn_ = true;
}

void Console::erase() {
    if (drawn_) writeAll(STDERR_FILENO, "\r\x1b[K");
    drawn_ = false;
}

bool progressIsWanted() {
    return ::isatty(STDERR_FILENO) != 0 && terminalKnowsEscapes();
}

bool coloursAreWanted() {
    const char* refused = std::getenv("NO_COLOR");
    return ::isatty(STDOUT_FILENO) != 0 && terminalKnowsEscapes() && !(refused && *refused);
}

bool writeOutput(std::string_view text) {
    return writeAll(STDOUT_FILENO, text);
}

}  // namespace cli
