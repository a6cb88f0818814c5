#include "backends/posix/io.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace posix {

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool debugWanted() {
    const char* const value = std::getenv("BEXTORA_DEBUG");
    return value != nullptr && *value != '\0';
}

}  // namespace posix
