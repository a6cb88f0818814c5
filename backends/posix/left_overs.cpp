#include "backends/posix/left_overs.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <string_view>
#include <vector>

#include "backends/posix/process_folder.h"

namespace posix {
namespace {

// A folder without lock file is one that is being made, unless it stays so.
constexpr std::time_t kUnlockedGraceSeconds = 3600;

bool isOwnFolder(const std::string& path, struct stat& status) {
    return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid();
}

void removeIfLeftOver(const std::string& path) {
    struct stat status {};
    if (!isOwnFolder(path, status)) return;
    const UniqueFd lock(
        ::open((path + kProcessFolderLock).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    const bool dead = lock.valid() ? ::flock(lock.get(), LOCK_EX | LOCK_NB) == 0
                                   : std::time(nullptr) - status.st_mtime > kUnlockedGraceSeconds;
    if (dead) removeTree(path);
}

}  // namespace

void removeTree(const std::string& path) {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

void removeLeftOvers(const std::string& parent) {
    DIR* const folder = ::opendir(parent.c_str());
    if (folder == nullptr) return;
    std::vector<std::string> names;
    while (const dirent* const entry = ::readdir(folder)) {
        const std::string_view name = entry->d_name;
        if (name.starts_with(kProcessFolderPrefix)) names.emplace_back(name);
    }
    ::closedir(folder);
    for (const std::string& name : names) removeIfLeftOver(parent + name);
}

}  // namespace posix
