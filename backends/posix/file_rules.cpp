#include "backends/posix/file_rules.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>

#include "backends/posix/unique_fd.h"

namespace posix {
namespace {

// The system's own header describes an older Landlock than the kernel may have, so its interface
// is declared here. Numbers and layouts are fixed for ever.

constexpr long kCreateRuleset = 444;
constexpr long kAddRule = 445;
constexpr long kRestrictSelf = 446;
constexpr unsigned kAskVersion = 1;
constexpr int kPathBeneath = 1;

struct RulesetAttributes {
    std::uint64_t files;
    std::uint64_t network;
    std::uint64_t scopes;
};

struct [[gnu::packed]] PathAttributes {
    std::uint64_t allowed;
    std::int32_t folder;
};

constexpr std::uint64_t bit(int number) {
    return std::uint64_t{1} << number;
}

// 0 execute, 1 write, 2 read, 3 list, 4 and 5 remove, 6 to 12 make things, 13 move between
// folders (version 2), 14 truncate (3), 15 control devices (5).
constexpr std::uint64_t kWrite = bit(1);
constexpr std::uint64_t kRead = bit(2);
constexpr std::uint64_t kList = bit(3);
constexpr std::uint64_t kRemoveFolder = bit(4);
constexpr std::uint64_t kRemoveFile = bit(5);
constexpr std::uint64_t kMakeFolder = bit(7);
constexpr std::uint64_t kMakeFile = bit(8);
constexpr std::uint64_t kTruncate = bit(14);
constexpr std::uint64_t kOfFiles = kWrite | kRead | kTruncate;
constexpr std::uint64_t kReading = kRead | kList;
constexpr std::uint64_t kWriting =
    kReading | kWrite | kRemoveFolder | kRemoveFile | kMakeFolder | kMakeFile | kTruncate;

// What a running program needs, whatever it works on: libraries that are loaded late, locales,
// the geometry library's resources, how many processors there are, its own memory map.
constexpr std::array kSystemReadable = {"/lib",
                                        "/lib64",
                                        "/usr/lib",
                                        "/usr/lib64",
                                        "/usr/local/lib",
                                        "/etc/ld.so.cache",
                                        "/usr/share/locale",
                                        "/usr/share/opencascade",
                                        "/sys/devices/system/cpu",
                                        "/proc/self",
                                        "/dev/urandom"};
constexpr const char* kNothing = "/dev/null";

void allow(int ruleset, const std::string& path, std::uint64_t access) {
    const UniqueFd target(::open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status {};
    // What is not there cannot be reached either.
    if (!target.valid() || ::fstat(target.get(), &status) != 0) return;
    if (!S_ISDIR(status.st_mode)) access &= kOfFiles;
    const PathAttributes attributes{access, target.get()};
    ::syscall(kAddRule, ruleset, kPathBeneath, &attributes, 0U);
}

}  // namespace

int fileRulesVersion() {
    const long version = ::syscall(kCreateRuleset, nullptr, std::size_t{0}, kAskVersion);
    return static_cast<int>(std::max(version, 0L));
}

FileRules fileRulesOf(int version) {
    if (version < 1) return {};
    FileRules rules;
    const int lastKind = version >= 5 ? 15 : version >= 3 ? 14 : version >= 2 ? 13 : 12;
    rules.files = bit(lastKind + 1) - 1;
    if (version >= 4) rules.network = bit(0) | bit(1);
    if (version >= 6) rules.scopes = bit(0) | bit(1);
    return rules;
}

bool restrictFiles(const os::Reach& reach, int version) {
    const FileRules rules = fileRulesOf(version);
    const RulesetAttributes attributes{rules.files, rules.network, rules.scopes};
    // An older kernel refuses a longer structure than its own.
    const std::size_t bytes = version >= 6   ? sizeof attributes
                              : version >= 4 ? 2 * sizeof(std::uint64_t)
                                             : sizeof(std::uint64_t);
    const UniqueFd ruleset(static_cast<int>(::syscall(kCreateRuleset, &attributes, bytes, 0U)));
    if (!ruleset.valid()) return false;
    for (const char* const path : kSystemReadable) allow(ruleset.get(), path, kReading);
    allow(ruleset.get(), kNothing, (kRead | kWrite) & rules.files);
    for (const std::string& path : reach.readable) allow(ruleset.get(), path, kReading);
    for (const std::string& path : reach.writable) {
        allow(ruleset.get(), path, kWriting & rules.files);
    }
    return ::syscall(kRestrictSelf, ruleset.get(), 0U) == 0;
}

}  // namespace posix
