#include "backends/posix/files.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "backends/posix/left_overs.h"
#include "platform/os/utf8.h"

namespace posix {
namespace {

constexpr std::size_t kLongestPurpose = 40;

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string findTempFolder() {
    const char* const wanted = std::getenv("TMPDIR");
    std::string folder = wanted == nullptr ? "" : wanted;
    // A relative folder would move with the working directory.
    if (folder.empty() || folder.front() != '/' || !isFolder(folder)) folder = "/tmp";
    if (folder.back() != '/') folder += '/';
    return folder;
}

bool reachable(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0;
}

std::string plainName(const std::wstring& purpose) {
    const auto plain = [](wchar_t c) {
        return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') ||
               c == L'-';
    };
    std::string name;
    for (const wchar_t c : purpose.substr(0, kLongestPurpose)) {
        name += plain(c) ? static_cast<char>(c) : '_';
    }
    return name.empty() ? "folder" : name;
}

}  // namespace

PosixFiles::PosixFiles() : tempFolder_(findTempFolder()) {
    removeLeftOvers(tempFolder_);
}

bool PosixFiles::exists(const std::wstring& path) const {
    std::string bytes = os::toUtf8(path);
    // A NUL would cut the path short in the system call.
    if (bytes.empty() || bytes.find('\0') != std::string::npos) return false;
    if (reachable(bytes)) return true;
    if (bytes.find('\\') == std::string::npos) return false;
    std::replace(bytes.begin(), bytes.end(), '\\', '/');
    return reachable(bytes);
}

std::wstring PosixFiles::executablePath() const {
    return os::toWide(executablePathBytes());
}

std::wstring PosixFiles::tempFolder() const {
    return os::toWide(tempFolder_);
}

std::wstring PosixFiles::makePrivateFolder(const std::wstring& purpose) {
    const std::lock_guard lock(mutex_);
    // Cleaners of temporary folders may take ours away while we run; then a new one is made.
    if (processFolder_.path().empty() || !isFolder(processFolder_.path())) {
        if (!processFolder_.make(tempFolder_)) return {};
    }
    const std::string path =
        processFolder_.path() + '/' + plainName(purpose) + '-' + std::to_string(++made_);
    if (::mkdir(path.c_str(), 0700) != 0) return {};
    return os::toWide(path);
}

std::string executablePathBytes() {
    std::string path(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", path.data(), path.size());
        if (length < 0) return {};
        if (static_cast<std::size_t>(length) < path.size()) {
            path.resize(static_cast<std::size_t>(length));
            return path;
        }
        path.resize(path.size() * 2);
    }
}

}  // namespace posix
