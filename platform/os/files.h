#pragma once

#include <string>

namespace os {

/// The file system. Paths are wide strings in the machine's own form; a backslash in what the
/// product appends to a path counts as a separator. Long paths are never cut.
class Files {
public:
    virtual ~Files() = default;

    /// True when something of that name exists, a folder included, and can be reached.
    virtual bool exists(const std::wstring& path) const = 0;

    /// Full path of the running executable.
    virtual std::wstring executablePath() const = 0;

    /// The user's folder for temporary files, with a separator at the end.
    virtual std::wstring tempFolder() const = 0;

    /// The separator of the machine's own paths.
    virtual wchar_t separator() const = 0;

    /// A new empty folder that only this user can read, below a folder that belongs to this
    /// process alone and goes with it. No separator at the end. Empty when it can't be made.
    virtual std::wstring makePrivateFolder(const std::wstring& purpose) = 0;
};

}  // namespace os
