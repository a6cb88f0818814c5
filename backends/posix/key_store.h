#pragma once

#include <memory>

#include "backends/posix/store_file.h"
#include "platform/os/key_store.h"

namespace posix {

/// The user's switches in one INI file. Nothing is cached: each read looks at the file as it is
/// at that moment, so that other processes' changes are seen.
class FileKeyStore final : public os::KeyStore {
public:
    /// `file` is a full path.
    explicit FileKeyStore(std::string file);

    std::unique_ptr<os::Key> open(const std::wstring& path, os::KeyAccess access) override;
    std::unique_ptr<os::Key> create(const std::wstring& path, os::KeyAccess access) override;

private:
    const std::shared_ptr<const StoreFile> file_;
};

/// $XDG_CONFIG_HOME/bextora/keystore.ini, else ~/.config/bextora/keystore.ini. Empty when the
/// user has no home folder at all.
std::string defaultKeyStoreFile();

}  // namespace posix
