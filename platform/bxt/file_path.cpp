#include "platform/bxt/file_path.h"

#include <algorithm>

#include "platform/bxt/services.h"
#include "platform/os/services.h"

namespace bxt {
namespace {

bool isSeparator(wchar_t c) {
    return c == L'/' || c == L'\\';
}

bool isDriveLetter(wchar_t c) {
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

std::size_t driveLength(const std::wstring& path) {
    if (path.size() >= 2 && isDriveLetter(path[0]) && path[1] == L':') return 2;
    return !path.empty() && path[0] == L'/' ? 1 : 0;
}

wchar_t lowerAscii(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

}  // namespace

FilePath::FilePath(std::wstring path) : path_(std::move(path)) {
    driveEnd_ = driveLength(path_);
    const auto last = std::find_if(path_.rbegin(), path_.rend(), isSeparator);
    nameStart_ = std::max(driveEnd_, static_cast<std::size_t>(path_.rend() - last));
    const std::size_t dot = path_.rfind(L'.');
    const bool dotInsideName = dot != std::wstring::npos && dot > nameStart_;
    extensionStart_ = dotInsideName ? dot : path_.size();
}

std::wstring FilePath::getDrive() const {
    return path_.substr(0, driveEnd_);
}
std::wstring FilePath::getDir() const {
    return path_.substr(driveEnd_, nameStart_ - driveEnd_);
}
std::wstring FilePath::getFName() const {
    return path_.substr(nameStart_, extensionStart_ - nameStart_);
}
std::wstring FilePath::getExt() const {
    return path_.substr(extensionStart_);
}

std::wstring FileUtils::getTempPath() {
    const auto& files = os::services().files;
    return files ? files->tempFolder() : std::wstring();
}

std::wstring FileUtils::getProcessPath() {
    const auto& files = os::services().files;
    if (!files) return {};
    const FilePath executable(files->executablePath());
    return executable.getDrive() + executable.getDir();
}

bool FileUtils::is2DFile(const std::wstring& path) {
    std::wstring extension = FilePath(path).getExt();
    std::transform(extension.begin(), extension.end(), extension.begin(), lowerAscii);
    const auto& known = services().drawingExtensions;
    return std::find(known.begin(), known.end(), extension) != known.end();
}

bool FileUtils::is2DViewer() {
    return services().viewerForDrawings;
}

}  // namespace bxt
