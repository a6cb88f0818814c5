#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

/// Runs the real program as a user would and looks at what it leaves behind.
namespace support {

/// Sanitizers reserve terabytes of addresses, so helpers run without a memory limit under them.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

/// A folder of its own below the machine's temporary folder; gone with the object.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    /// Writes a file into the folder, making folders on the way; its full path.
    std::string write(const std::filesystem::path& name, const std::string& bytes) const;

private:
    std::filesystem::path path_;
};

struct CliRequest {
    std::vector<std::string> arguments = {};
    std::map<std::string, std::string> environment =
        {};                               ///< added to, or put over, a small fixed one
    std::string workingFolder = {};       ///< empty: the caller's own
    std::string temporaryFolder = {};     ///< empty: a new one for this run
    std::string standardOutputFile = {};  ///< instead of CliResult::standardOutput
    std::uint32_t timeoutMs = 200000;     ///< the run is killed after that
    std::uint64_t largestFileBytes = 0;   ///< a write beyond it fails as on a full disk; 0: none
    std::uint32_t userId = 0;             ///< run as this user when the tests run as root
    /// Called every few milliseconds while the program runs.
    std::function<void(pid_t)> meanwhile = {};
};

struct CliResult {
    int exitCode = -1;  ///< -1 when the program did not exit by itself
    int signal = 0;     ///< that ended the program; 0 for none
    bool timedOut = false;
    std::string standardOutput;
    std::string standardError;
    double seconds = 0;
    std::int64_t peakKiB = 0;            ///< of the largest process of the run that was waited for
    std::vector<std::string> leftFiles;  ///< found in the temporary folder afterwards
    std::vector<std::string> leftProcesses;  ///< of this run, still alive a moment afterwards

    /// Everything that a failed test should show.
    std::string description() const;
};

/// The program under test: $BEXTORA_PROGRAM, else the one of this build.
std::string programPath();

CliResult runProgram(const CliRequest& request);

/// The same for any other program.
CliResult runProgram(const std::string& program, const CliRequest& request);

/// Processes whose environment holds `entry` ("NAME=value"), the caller's own excepted.
std::vector<pid_t> processesWith(const std::string& entry);

/// Processes that descend from `ancestor`, itself excepted.
std::vector<pid_t> descendantsOf(pid_t ancestor);

/// Name of a process's program file; empty when it has gone.
std::string programOf(pid_t process);

}  // namespace support
