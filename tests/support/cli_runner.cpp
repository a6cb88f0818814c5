#include "tests/support/cli_runner.h"

#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace support {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kPollMs = 5;
/// A killed helper needs a moment until the kernel has taken it down.
constexpr auto kGrace = std::chrono::milliseconds(2000);

std::string uniqueMark() {
    static std::atomic<int> number{0};
    return std::to_string(getpid()) + "-" + std::to_string(number++);
}

std::string readWhole(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// Both ends of a pipe for one of the program's streams.
class Pipe {
public:
    Pipe() {
        std::array<int, 2> ends = {};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2 failed");
        read_ = ends[0];
        write_ = ends[1];
    }
    ~Pipe() {
        closeWrite();
        close(read_);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    int readEnd() const { return read_; }
    int writeEnd() const { return write_; }
    void closeWrite() {
        if (write_ >= 0) close(write_);
        write_ = -1;
    }
    /// Takes what is there without waiting; false at the end.
    bool drain(std::string& into) const {
        pollfd ready = {read_, POLLIN, 0};
        while (poll(&ready, 1, 0) > 0) {
            std::array<char, 65536> buffer;
            const ssize_t got = read(read_, buffer.data(), buffer.size());
            if (got <= 0) return false;
            into.append(buffer.data(), static_cast<std::size_t>(got));
        }
        return true;
    }

private:
    int read_ = -1;
    int write_ = -1;
};

std::vector<std::string> environmentOf(const CliRequest& request, const std::string& mark,
                                       const fs::path& home, const fs::path& temporary) {
    std::map<std::string, std::string> all = {
        {"PATH", "/usr/local/bin:/usr/bin:/bin"},
        {"HOME", home.string()},
        {"XDG_CONFIG_HOME", (home / "config").string()},
        {"TMPDIR", temporary.string()},
        {"LC_ALL", "C.UTF-8"},
        {"BEXTORA_TEST_RUN", mark},
    };
    for (const char* kept : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (const char* value = std::getenv(kept)) all[kept] = value;
    }
    for (const auto& [name, value] : request.environment) all[name] = value;
    std::vector<std::string> lines;
    for (const auto& [name, value] : all) lines.push_back(name + "=" + value);
    return lines;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Everything between fork and exec; only calls that are safe there.
[[noreturn]] void becomeProgram(const CliRequest& request, char* const* arguments,
                                char* const* environment, int output, int error) {
    const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(null, STDIN_FILENO);
    if (!request.standardOutputFile.empty()) {
        output = open(request.standardOutputFile.c_str(), O_WRONLY | O_CLOEXEC);
    }
    dup2(output, STDOUT_FILENO);
    dup2(error, STDERR_FILENO);
    if (!request.workingFolder.empty() && chdir(request.workingFolder.c_str()) != 0) _exit(126);
    if (request.largestFileBytes > 0) {
        const rlimit limit = {request.largestFileBytes, request.largestFileBytes};
        setrlimit(RLIMIT_FSIZE, &limit);
        // Ignored across exec: a write beyond the limit fails instead of killing the writer.
        signal(SIGXFSZ, SIG_IGN);
    }
    if (request.userId != 0 && geteuid() == 0) {
        if (setgroups(0, nullptr) != 0 || setgid(request.userId) != 0 ||
            setuid(request.userId) != 0) {
            _exit(126);
        }
    }
    execve(arguments[0], arguments, environment);
    _exit(127);
}

std::vector<std::string> filesBelow(const fs::path& folder) {
    std::vector<std::string> found;
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder, error), end; it != end; it.increment(error)) {
        found.push_back(fs::relative(it->path(), folder, error).string());
    }
    return found;
}

void killAll(const std::string& entry) {
    for (const pid_t process : processesWith(entry)) kill(process, SIGKILL);
}

std::vector<std::string> survivors(const std::string& entry) {
    const auto until = Clock::now() + kGrace;
    auto left = processesWith(entry);
    while (!left.empty() && Clock::now() < until) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        left = processesWith(entry);
    }
    std::vector<std::string> names;
    for (const pid_t process : left) {
        names.push_back(programOf(process) + " " + std::to_string(process));
    }
    return names;
}

/// Waits for the program while its streams are read; kills the whole run after the time-out.
void follow(pid_t process, const CliRequest& request, const std::string& entry, const Pipe& output,
            const Pipe& error, CliResult& result) {
    const auto start = Clock::now();
    const auto until = start + std::chrono::milliseconds(request.timeoutMs);
    int status = 0;
    rusage usage = {};
    for (;;) {
        const pid_t ended = wait4(process, &status, WNOHANG, &usage);
        output.drain(result.standardOutput);
        error.drain(result.standardError);
        if (ended == process) break;
        if (request.meanwhile) request.meanwhile(process);
        if (!result.timedOut && Clock::now() > until) {
            result.timedOut = true;
            kill(process, SIGKILL);
            killAll(entry);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(kPollMs));
    }
    result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    result.peakKiB = usage.ru_maxrss;
    if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
}

void makeAccessible(const fs::path& folder, const CliRequest& request) {
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    if (request.userId != 0 && geteuid() == 0) {
        if (chown(folder.c_str(), request.userId, request.userId) != 0) {
            throw std::runtime_error("cannot give away " + folder.string());
        }
    }
}

}  // namespace

ScratchFolder::ScratchFolder()
    : path_(fs::temp_directory_path() / ("bextora-test-" + uniqueMark())) {
    fs::remove_all(path_);
    fs::create_directories(path_);
    // Other users' programs must be able to pass through.
    fs::permissions(path_, fs::perms(0755));
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string ScratchFolder::write(const fs::path& name, const std::string& bytes) const {
    const fs::path full = path_ / name;
    fs::create_directories(full.parent_path());
    std::ofstream stream(full, std::ios::binary);
    stream << bytes;
    stream.close();
    if (!stream) throw std::runtime_error("cannot write " + full.string());
    return full.string();
}

std::string CliResult::description() const {
    std::string text = "exit " + std::to_string(exitCode) + ", signal " + std::to_string(signal) +
                       ", " + std::to_string(seconds) + " s, " + std::to_string(peakKiB) + " KiB" +
                       (timedOut ? ", TIMED OUT" : "");
    for (const std::string& file : leftFiles) text += "\nleft file: " + file;
    for (const std::string& process : leftProcesses) text += "\nleft process: " + process;
    text += "\n--- standard error\n" + standardError.substr(0, 4000);
    return text + "\n--- standard output\n" + standardOutput.substr(0, 2000);
}

std::string programPath() {
    const char* given = std::getenv("BEXTORA_PROGRAM");
    return given ? given : BEXTORA_PROGRAM_FILE;
}

CliResult runProgram(const CliRequest& request) {
    return runProgram(programPath(), request);
}

CliResult runProgram(const std::string& program, const CliRequest& request) {
    const ScratchFolder scratch;
    const fs::path home = scratch.path() / "home";
    const fs::path temporary = request.temporaryFolder.empty() ? scratch.path() / "tmp"
                                                               : fs::path(request.temporaryFolder);
    makeAccessible(home, request);
    if (request.temporaryFolder.empty()) makeAccessible(temporary, request);

    const std::string mark = uniqueMark();
    const std::string entry = "BEXTORA_TEST_RUN=" + mark;
    std::vector<std::string> arguments = {program};
    arguments.insert(arguments.end(), request.arguments.begin(), request.arguments.end());
    std::vector<std::string> environment = environmentOf(request, mark, home, temporary);
    const auto argumentPointers = pointersTo(arguments);
    const auto environmentPointers = pointersTo(environment);

    Pipe output;
    Pipe error;
    const pid_t process = fork();
    if (process < 0) throw std::runtime_error("fork failed");
    if (process == 0) {
        becomeProgram(request, argumentPointers.data(), environmentPointers.data(),
                      output.writeEnd(), error.writeEnd());
    }
    output.closeWrite();
    error.closeWrite();
    CliResult result;
    follow(process, request, entry, output, error, result);
    result.leftProcesses = survivors(entry);
    killAll(entry);
    output.drain(result.standardOutput);
    error.drain(result.standardError);
    result.leftFiles = filesBelow(temporary);
    return result;
}

std::vector<pid_t> processesWith(const std::string& entry) {
    std::vector<pid_t> found;
    std::error_code error;
    for (const auto& folder : fs::directory_iterator("/proc", error)) {
        const std::string name = folder.path().filename().string();
        if (name.empty() || std::isdigit(static_cast<unsigned char>(name[0])) == 0) continue;
        const auto process = static_cast<pid_t>(std::stol(name));
        if (process == getpid()) continue;
        const std::string all = '\0' + readWhole(folder.path() / "environ");
        if (all.find('\0' + entry + '\0') != std::string::npos) found.push_back(process);
    }
    return found;
}

std::vector<pid_t> descendantsOf(pid_t ancestor) {
    std::vector<pid_t> found;
    std::vector<pid_t> open = {ancestor};
    while (!open.empty()) {
        const std::string id = std::to_string(open.back());
        open.pop_back();
        std::error_code error;
        for (const auto& task : fs::directory_iterator("/proc/" + id + "/task", error)) {
            std::ifstream children(task.path() / "children");
            for (pid_t child = 0; children >> child;) {
                found.push_back(child);
                open.push_back(child);
            }
        }
    }
    return found;
}

std::string programOf(pid_t process) {
    std::error_code error;
    return fs::read_symlink("/proc/" + std::to_string(process) + "/exe", error).filename().string();
}

}  // namespace support
