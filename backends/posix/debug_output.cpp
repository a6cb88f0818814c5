#include "backends/posix/debug_output.h"

#include <unistd.h>

#include "backends/posix/io.h"
#include "platform/os/utf8.h"

namespace posix {

void StderrDebugOutput::write(std::wstring_view text) {
    if (!wanted_) return;
    const std::string bytes = os::toUtf8(text);
    const std::lock_guard lock(mutex_);
    writeAll(STDERR_FILENO, bytes);
}

}  // namespace posix
