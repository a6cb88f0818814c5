#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/posix/unique_fd.h"
#include "platform/os/child_process.h"

namespace posix_test {

/// Longer than anything takes on a slow machine under a sanitizer; reached only in failures.
inline constexpr std::chrono::seconds kPatience{60};

/// A folder of the test's own that goes with the object.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    /// Without a separator at the end.
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + '/' + name; }

private:
    std::string path_;
};

/// An environment variable for the life of the object; no value removes it.
class ScopedVariable {
public:
    ScopedVariable(const char* name, std::optional<std::string> value);
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable();

private:
    const char* const name_;
    std::optional<std::string> before_;
};

/// The test helper as a plain program, not as a helper of ours: with pipes for its standard input
/// and output. Killed at the end of the object's life.
class Program {
public:
    /// `third` becomes the program's descriptor 3; -1: none of that number.
    explicit Program(const std::vector<std::string>& arguments, int third = -1);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    pid_t pid() const { return pid_; }
    /// Next line of its output; empty at the end of the output or of patience.
    std::string readLine();
    /// Everything up to the end of its output.
    std::string readAll();
    void closeInput() { input_.reset(); }
    void kill();
    /// waitpid's status.
    int wait();

private:
    pid_t pid_ = -1;
    posix::UniqueFd input_;
    posix::UniqueFd output_;
    int status_ = 0;
};

std::string testHelperPath();

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);
bool pathExists(const std::string& path);
std::vector<std::string> namesIn(const std::string& folder);

/// False when `condition` does not come true in kPatience.
bool comesTrue(const std::function<bool()>& condition);

/// True for a process that is no more, zombies included.
bool processGone(pid_t pid);

std::unique_ptr<os::ChildProcess> startTestHelper(const std::vector<std::string>& arguments,
                                                  const os::ProcessLimits& limits = {});
os::ProcessEnd waitForEnd(os::ChildProcess& child);
/// Empty when the helper ended without one.
std::optional<std::string> waitForLine(os::ChildProcess& child);

}  // namespace posix_test
