#include "backends/posix/store_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>

#include "backends/posix/io.h"

namespace posix {
namespace {

// Far more than all switches of all programs; what is larger is not ours.
constexpr std::size_t kLargestFile = std::size_t{64} * 1024 * 1024;
constexpr std::chrono::seconds kLockPatience{5};
constexpr std::chrono::milliseconds kLockPace{2};
constexpr mode_t kPrivateFile = 0600;

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// The folder and its parents, private to the user as far as they are new.
bool makeFolders(const std::string& folder) {
    for (std::size_t slash = folder.find('/', 1);; slash = folder.find('/', slash + 1)) {
        const std::string part = folder.substr(0, slash);
        if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) {
            struct stat status {};
            // A parent on a read-only disk answers otherwise although it exists.
            if (::stat(part.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return false;
        }
        if (slash == std::string::npos) return true;
    }
}

enum class ReadOutcome { Done, Missing, Failed };

ReadOutcome readFile(const std::string& path, std::string& bytes) {
    const UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!fd.valid()) return errno == ENOENT ? ReadOutcome::Missing : ReadOutcome::Failed;
    struct stat status {};
    if (::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) return ReadOutcome::Failed;
    char chunk[16384];
    for (;;) {
        const ssize_t got = ::read(fd.get(), chunk, sizeof chunk);
        if (got == 0) return ReadOutcome::Done;
        if (got < 0 && errno != EINTR) return ReadOutcome::Failed;
        if (got > 0) bytes.append(chunk, static_cast<std::size_t>(got));
        if (bytes.size() > kLargestFile) return ReadOutcome::Failed;
    }
}

bool waitForLock(int fd) {
    const auto deadline = std::chrono::steady_clock::now() + kLockPatience;
    while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) return false;
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(kLockPace);
    }
    return true;
}

bool writeDurably(const std::string& path, const std::string& bytes, mode_t mode) {
    // Under the lock nobody else uses the name; what lies there is left over from a crash.
    const UniqueFd fd(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, kPrivateFile));
    return fd.valid() && ::fchmod(fd.get(), mode) == 0 && writeAll(fd.get(), bytes) &&
           ::fsync(fd.get()) == 0;
}

bool syncFolder(const std::string& folder) {
    const UniqueFd fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems can't sync a folder; the file itself is safe then all the same.
    return fd.valid() && (::fsync(fd.get()) == 0 || errno == EINVAL);
}

}  // namespace

StoreFile::StoreFile(std::string path) : path_(std::move(path)) {}

std::string StoreFile::realPath() const {
    // A user may keep the file elsewhere, behind a link; the link must survive a change.
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path_.c_str(), nullptr),
                                                           &std::free);
    return real ? real.get() : path_;
}

std::optional<IniDocument> StoreFile::load() const {
    std::string bytes;
    if (readFile(path_, bytes) == ReadOutcome::Failed) return std::nullopt;
    return IniDocument(bytes);
}

bool StoreFile::writable() const {
    const std::string real = realPath();
    const bool fileOk = ::access(real.c_str(), W_OK) == 0 || errno == ENOENT;
    return fileOk && lock().valid() && ::access(folderOf(real).c_str(), W_OK | X_OK) == 0;
}

UniqueFd StoreFile::lock() const {
    if (path_.empty() || !makeFolders(folderOf(path_))) return {};
    const std::string name = realPath() + ".lock";
    return UniqueFd(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kPrivateFile));
}

bool StoreFile::change(const std::function<void(IniDocument&)>& edit) const {
    const UniqueFd guard = lock();
    if (!guard.valid() || !waitForLock(guard.get())) return false;
    const std::string real = realPath();
    if (::access(real.c_str(), W_OK) != 0 && errno != ENOENT) return false;
    std::string before;
    if (readFile(real, before) == ReadOutcome::Failed) return false;
    IniDocument document(before);
    edit(document);
    const std::string after = document.bytes();
    return after == before || replace(after);
}

bool StoreFile::replace(const std::string& bytes) const {
    const std::string real = realPath();
    struct stat status {};
    const bool exists = ::stat(real.c_str(), &status) == 0;
    const mode_t mode = exists ? status.st_mode & 07777 : kPrivateFile;
    const std::string fresh = real + ".new";
    if (!writeDurably(fresh, bytes, mode) || ::rename(fresh.c_str(), real.c_str()) != 0) {
        ::unlink(fresh.c_str());
        return false;
    }
    return syncFolder(folderOf(real));
}

}  // namespace posix
