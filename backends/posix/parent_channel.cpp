#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <new>
#include <string_view>

#include "backends/posix/child_start.h"
#include "backends/posix/io.h"
#include "backends/posix/posix.h"
#include "backends/posix/unique_fd.h"

namespace posix {
namespace {

class PipeChannel final : public os::ParentChannel {
public:
    explicit PipeChannel(UniqueFd fd) : fd_(std::move(fd)) {}

    void send(const std::string& line) override {
        if (!fd_.valid()) return;
        std::string bytes = line;
        // A line feed inside would look like a line of its own.
        std::replace(bytes.begin(), bytes.end(), '\n', ' ');
        bytes += '\n';
        const std::lock_guard lock(mutex_);
        // Nobody waits for the result any more. No destructors: other threads still work.
        if (!writeAll(fd_.get(), bytes)) ::_exit(kHostGoneExitCode);
    }

private:
    static constexpr int kHostGoneExitCode = 1;

    const UniqueFd fd_;
    std::mutex mutex_;
};

UniqueFd inheritedChannel() {
    const char* const value = std::getenv(kChannelVariable);
    struct stat status {};
    const bool offered = value != nullptr && std::string_view(value) == std::to_string(kChannelFd);
    if (!offered || ::fstat(kChannelFd, &status) != 0 || !S_ISFIFO(status.st_mode)) return {};
    // What this helper starts itself is no helper of the host's.
    ::unsetenv(kChannelVariable);
    ::fcntl(kChannelFd, F_SETFD, FD_CLOEXEC);
    return UniqueFd(kChannelFd);
}

}  // namespace

std::unique_ptr<os::ParentChannel> parentChannel() {
    ::signal(SIGPIPE, SIG_IGN);
    return std::make_unique<PipeChannel>(inheritedChannel());
}

void exitWhenMemoryIsRefused() {
    std::set_new_handler([] { ::_exit(os::kMemoryLimitExitCode); });
}

}  // namespace posix
