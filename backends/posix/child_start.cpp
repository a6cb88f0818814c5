#include "backends/posix/child_start.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "backends/posix/call_filter.h"
#include "backends/posix/instrumented.h"

namespace posix {
namespace {

// Descriptors that the child sets up anew lie below this number.
constexpr int kFirstFreeFd = 10;

struct Pipe {
    UniqueFd readEnd;
    UniqueFd writeEnd;
};

/// Both ends stand above the numbers that the child overwrites, even if our own process runs
/// without standard streams.
bool makePipe(Pipe& pipe) {
    int ends[2] = {-1, -1};
    if (::pipe2(ends, O_CLOEXEC) != 0) return false;
    const UniqueFd low[2] = {UniqueFd(ends[0]), UniqueFd(ends[1])};
    pipe.readEnd = UniqueFd(::fcntl(low[0].get(), F_DUPFD_CLOEXEC, kFirstFreeFd));
    pipe.writeEnd = UniqueFd(::fcntl(low[1].get(), F_DUPFD_CLOEXEC, kFirstFreeFd));
    return pipe.readEnd.valid() && pipe.writeEnd.valid();
}

/// All that the child needs, made before the fork: after it nothing may allocate.
struct Prepared {
    const char* program = nullptr;
    std::vector<char*> arguments;
    std::vector<char*> environment;
    std::string channelEntry;
    std::uint64_t memoryBytes = 0;
    std::uint64_t processorSeconds = 0;
    const std::vector<sock_filter>* filter = nullptr;
    bool showOutput = false;
    int channelFd = -1;
    int statusFd = -1;
    pid_t host = 0;
};

char* mutableText(const std::string& text) {
    return const_cast<char*>(text.c_str());  // exec takes char* but changes nothing
}

void prepare(const StartRequest& request, Prepared& prepared) {
    prepared.program = request.program.c_str();
    prepared.arguments.push_back(mutableText(request.program));
    for (const std::string& argument : request.arguments) {
        prepared.arguments.push_back(mutableText(argument));
    }
    prepared.arguments.push_back(nullptr);
    const std::string prefix = std::string(kChannelVariable) + '=';
    prepared.channelEntry = prefix + std::to_string(kChannelFd);
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        if (!std::string_view(*entry).starts_with(prefix)) prepared.environment.push_back(*entry);
    }
    prepared.environment.push_back(mutableText(prepared.channelEntry));
    prepared.environment.push_back(nullptr);
    prepared.memoryBytes = request.memoryBytes;
    prepared.processorSeconds = request.processorSeconds;
    prepared.filter = &startFilter();
    prepared.showOutput = request.showOutput;
    prepared.host = ::getpid();
}

// From here to runChild(): in the child, before exec. Only calls that are safe after a fork of a
// process with threads.

void resetSignals() {
    struct sigaction standard {};
    standard.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) ::sigaction(number, &standard, nullptr);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool setLimit(__rlimit_resource resource, rlim_t value, rlim_t grace = 0) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0) return false;
    limit.rlim_max = std::min(limit.rlim_max, value + grace);
    limit.rlim_cur = std::min(limit.rlim_max, value);
    return ::setrlimit(resource, &limit) == 0;
}

void closeOthersAtExec() {
    if (::close_range(kChannelFd, ~0U, CLOSE_RANGE_CLOEXEC) == 0) return;
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const auto last = static_cast<int>(std::min<rlim_t>(limit.rlim_cur, 65536));
    for (int fd = kChannelFd; fd < last; ++fd) ::fcntl(fd, F_SETFD, FD_CLOEXEC);
}

bool connectStreams(const Prepared& prepared) {
    closeOthersAtExec();
    // Not CLOEXEC: where our process has no standard streams this may already be one of them.
    const int nothing = ::open("/dev/null", O_RDWR);
    if (nothing < 0) return false;
    const bool streams = ::dup2(nothing, STDIN_FILENO) >= 0 &&
                         (prepared.showOutput || ::dup2(nothing, STDERR_FILENO) >= 0) &&
                         ::dup2(prepared.showOutput ? STDERR_FILENO : nothing, STDOUT_FILENO) >= 0;
    if (nothing > STDERR_FILENO) ::close(nothing);
    return streams && ::dup2(prepared.channelFd, kChannelFd) >= 0;
}

bool limitChild(const Prepared& prepared) {
    if (!setLimit(RLIMIT_CORE, 0)) return false;
    // At the limit comes SIGXCPU, by which the host knows the cause; whoever holds that off is
    // killed after the grace.
    constexpr rlim_t kGraceSeconds = 5;
    const rlim_t seconds = prepared.processorSeconds;
    if (seconds != 0 && !setLimit(RLIMIT_CPU, seconds, kGraceSeconds)) return false;
    if (prepared.memoryBytes == 0 || !memoryLimitWorks()) return true;
    return setLimit(RLIMIT_AS, prepared.memoryBytes);
}

[[noreturn]] void runChild(const Prepared& prepared) {
    resetSignals();
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The host may have died before the line above; nobody would ever tell us.
    if (::getppid() != prepared.host) ::_exit(1);
    if (connectStreams(prepared) && limitChild(prepared)) {
        // Where the kernel refuses, the helper says so when it confines itself.
        if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0) setFilter(*prepared.filter);
        ::execve(prepared.program, prepared.arguments.data(), prepared.environment.data());
    }
    const int error = errno;
    const ssize_t written = ::write(prepared.statusFd, &error, sizeof error);
    ::_exit(written == sizeof error ? 1 : 2);
}

/// errno of the failed start; 0 once the program runs (its exec has closed the other end).
int readStartError(int fd) {
    int error = 0;
    for (;;) {
        const ssize_t got = ::read(fd, &error, sizeof error);
        if (got == sizeof error) return error;
        if (got == 0) return 0;
        if (errno != EINTR) return errno;
    }
}

void reap(pid_t pid) {
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

bool hasNul(const StartRequest& request) {
    const auto cut = [](const std::string& text) { return text.find('\0') != std::string::npos; };
    return cut(request.program) || std::ranges::any_of(request.arguments, cut);
}

}  // namespace

bool memoryLimitWorks() {
    return !instrumentedBuild();
}

StartedChild startChild(const StartRequest& request) {
    StartedChild child;
    Pipe channel;
    Pipe status;
    if (hasNul(request)) {
        child.error = EINVAL;
        return child;
    }
    if (!makePipe(channel) || !makePipe(status) ||
        ::fcntl(channel.readEnd.get(), F_SETFL, O_NONBLOCK) != 0) {
        child.error = errno;
        return child;
    }
    Prepared prepared;
    prepare(request, prepared);
    prepared.channelFd = channel.writeEnd.get();
    prepared.statusFd = status.writeEnd.get();
    const pid_t pid = ::fork();
    if (pid == 0) runChild(prepared);
    if (pid < 0) {
        child.error = errno;
        return child;
    }
    status.writeEnd.reset();
    child.error = readStartError(status.readEnd.get());
    if (child.error != 0) {
        reap(pid);
        return child;
    }
    child.pid = pid;
    child.channel = std::move(channel.readEnd);
    // By number: the C library's own declaration lacks C linkage in some versions.
    child.handle = UniqueFd(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)));
    return child;
}

}  // namespace posix
