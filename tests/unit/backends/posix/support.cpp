#include "tests/unit/backends/posix/support.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "backends/posix/child_processes.h"

namespace posix_test {
namespace {

using Clock = std::chrono::steady_clock;

struct Ends {
    posix::UniqueFd readEnd;
    posix::UniqueFd writeEnd;
};

Ends makeEnds() {
    int fds[2] = {-1, -1};
    if (::pipe2(fds, O_CLOEXEC) != 0) std::abort();
    return {posix::UniqueFd(fds[0]), posix::UniqueFd(fds[1])};
}

}  // namespace

ScratchFolder::ScratchFolder() {
    std::string name = "/tmp/posix-test-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

ScopedVariable::ScopedVariable(const char* name, std::optional<std::string> value) : name_(name) {
    if (const char* const before = std::getenv(name)) before_ = before;
    if (value) {
        ::setenv(name, value->c_str(), 1);
    } else {
        ::unsetenv(name);
    }
}

ScopedVariable::~ScopedVariable() {
    if (before_) {
        ::setenv(name_, before_->c_str(), 1);
    } else {
        ::unsetenv(name_);
    }
}

Program::Program(const std::vector<std::string>& arguments, int third) {
    Ends input = makeEnds();
    Ends output = makeEnds();
    const std::string path = testHelperPath();
    std::vector<char*> raw{const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments)
        raw.push_back(const_cast<char*>(argument.c_str()));
    raw.push_back(nullptr);
    pid_ = ::fork();
    if (pid_ == 0) {
        ::dup2(input.readEnd.get(), STDIN_FILENO);
        ::dup2(output.writeEnd.get(), STDOUT_FILENO);
        ::close(3);
        if (third >= 0) ::dup2(third, 3);
        ::execv(path.c_str(), raw.data());
        ::_exit(127);
    }
    input_ = std::move(input.writeEnd);
    output_ = std::move(output.readEnd);
}

Program::~Program() {
    if (pid_ > 0) {
        kill();
        wait();
    }
}

std::string Program::readLine() {
    std::string line;
    const auto deadline = Clock::now() + kPatience;
    while (Clock::now() < deadline) {
        pollfd event{output_.get(), POLLIN, 0};
        if (::poll(&event, 1, 100) <= 0) continue;
        char c = 0;
        if (::read(output_.get(), &c, 1) != 1 || c == '\n') return line;
        line += c;
    }
    return {};
}

std::string Program::readAll() {
    std::string all;
    char chunk[4096];
    for (ssize_t got = 0; (got = ::read(output_.get(), chunk, sizeof chunk)) > 0;) {
        all.append(chunk, static_cast<std::size_t>(got));
    }
    return all;
}

void Program::kill() {
    if (pid_ > 0) ::kill(pid_, SIGKILL);
}

int Program::wait() {
    if (pid_ > 0) ::waitpid(pid_, &status_, 0);
    pid_ = -1;
    return status_;
}

std::string testHelperPath() {
    return POSIX_TEST_HELPER;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

bool pathExists(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

bool comesTrue(const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + kPatience;
    while (!condition()) {
        if (Clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

bool processGone(pid_t pid) {
    return ::kill(pid, 0) != 0 && errno == ESRCH;
}

std::unique_ptr<os::ChildProcess> startTestHelper(const std::vector<std::string>& arguments,
                                                  const os::ProcessLimits& limits) {
    posix::PosixChildProcesses processes(testHelperPath(), {}, false);
    return processes.startHelper(arguments, limits);
}

os::ProcessEnd waitForEnd(os::ChildProcess& child) {
    const auto deadline = Clock::now() + kPatience;
    while (child.poll() == os::ProcessEnd::Running && Clock::now() < deadline) {
        while (child.nextLine()) {
        }
        child.wait(100);
    }
    return child.poll();
}

std::optional<std::string> waitForLine(os::ChildProcess& child) {
    const auto deadline = Clock::now() + kPatience;
    for (;;) {
        if (auto line = child.nextLine()) return line;
        if (child.poll() != os::ProcessEnd::Running) return child.nextLine();
        if (Clock::now() > deadline) return std::nullopt;
        child.wait(1000);
    }
}

}  // namespace posix_test
