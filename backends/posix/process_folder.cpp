#include "backends/posix/process_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <mutex>
#include <random>

#include "backends/posix/left_overs.h"

namespace posix {
namespace {

// The lock file gets its name only once it is locked, so that nobody ever finds it free while
// its owner lives.
constexpr const char* kNewLockName = "/lock.new";
constexpr int kNameAttempts = 16;

/// Our folders, by path, with the process that made them: what std::exit() has to remove. Never
/// destroyed: objects with static storage may still deregister while the process ends.
struct LiveFolders {
    std::mutex mutex;
    std::map<std::string, pid_t> owners;
};

LiveFolders& liveFolders() {
    static auto* const live = new LiveFolders;
    return *live;
}

void removeAtExit() {
    const std::lock_guard lock(liveFolders().mutex);
    for (const auto& [path, owner] : liveFolders().owners) {
        if (owner == ::getpid()) removeTree(path);
    }
    liveFolders().owners.clear();
}

void registerForExit(const std::string& path) {
    static const int registered = std::atexit(removeAtExit);
    static_cast<void>(registered);
    const std::lock_guard lock(liveFolders().mutex);
    liveFolders().owners.emplace(path, ::getpid());
}

/// Whether the folder is still ours to remove.
bool deregister(const std::string& path) {
    const std::lock_guard lock(liveFolders().mutex);
    const auto entry = liveFolders().owners.extract(path);
    return !entry.empty() && entry.mapped() == ::getpid();
}

std::string randomName() {
    std::random_device device;
    const std::uint64_t value = (std::uint64_t{device()} << 32) | device();
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    return std::string(kProcessFolderPrefix) + std::to_string(::getpid()) + '-' +
           std::string(digits.data(), end);
}

UniqueFd makeLock(const std::string& folder) {
    const std::string fresh = folder + kNewLockName;
    UniqueFd fd(::open(fresh.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    const bool locked = fd.valid() && ::flock(fd.get(), LOCK_EX | LOCK_NB) == 0 &&
                        ::rename(fresh.c_str(), (folder + kProcessFolderLock).c_str()) == 0;
    return locked ? std::move(fd) : UniqueFd();
}

}  // namespace

ProcessFolder::~ProcessFolder() {
    remove();
}

bool ProcessFolder::make(const std::string& parent) {
    remove();
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        std::string path = parent + randomName();
        if (::mkdir(path.c_str(), 0700) != 0) {
            if (errno == EEXIST) continue;
            return false;
        }
        UniqueFd lock = makeLock(path);
        if (!lock.valid()) {
            removeTree(path);
            return false;
        }
        path_ = std::move(path);
        lock_ = std::move(lock);
        registerForExit(path_);
        return true;
    }
    return false;
}

void ProcessFolder::remove() {
    if (path_.empty()) return;
    if (deregister(path_)) removeTree(path_);
    lock_.reset();
    path_.clear();
}

}  // namespace posix
