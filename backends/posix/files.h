#pragma once

#include <mutex>

#include "backends/posix/process_folder.h"
#include "platform/os/files.h"

namespace posix {

/// The machine's file system. Safe from any thread.
class PosixFiles final : public os::Files {
public:
    /// Removes what dead processes of this user left in the temporary folder.
    PosixFiles();

    bool exists(const std::wstring& path) const override;
    std::wstring executablePath() const override;
    std::wstring tempFolder() const override;
    wchar_t separator() const override { return L'/'; }
    std::wstring makePrivateFolder(const std::wstring& purpose) override;

private:
    const std::string tempFolder_;
    std::mutex mutex_;
    ProcessFolder processFolder_;
    unsigned made_ = 0;
};

/// Full path of the running executable as bytes; empty when the system does not tell.
std::string executablePathBytes();

}  // namespace posix
