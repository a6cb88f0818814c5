#pragma once

#include <string>

namespace bxt {

/// Splits a path as the host does. Both separators count. For any path,
/// getDrive() + getDir() + getFName() + getExt() is the path again.
class FilePath {
public:
    explicit FilePath(std::wstring path);

    /// L"C:" for a path with a drive letter, L"/" for an absolute path of the machine's own
    /// form, otherwise empty.
    std::wstring getDrive() const;
    /// Folder with the separator at its end, without the drive.
    std::wstring getDir() const;
    /// File name without folder and extension. A name that begins with its only dot is all stem.
    std::wstring getFName() const;
    /// Extension with its dot, as written; empty when there is none.
    std::wstring getExt() const;

private:
    std::wstring path_;
    std::size_t driveEnd_ = 0;
    std::size_t nameStart_ = 0;
    std::size_t extensionStart_ = 0;
};

class FileUtils {
public:
    /// The user's folder for temporary files, with a separator at the end.
    static std::wstring getTempPath();
    /// Folder of the running executable, with a separator at the end.
    static std::wstring getProcessPath();
    /// Whether the file is a drawing rather than a model, by its extension.
    static bool is2DFile(const std::wstring& path);
    /// Whether the host runs as the viewer for drawings.
    static bool is2DViewer();
};

}  // namespace bxt
