#include "backends/posix/key_store.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace posix {
namespace {

class FileKey final : public os::Key {
public:
    FileKey(std::shared_ptr<const StoreFile> file, std::wstring path, os::KeyAccess access)
        : file_(std::move(file)), path_(std::move(path)), access_(access) {}

    std::optional<std::uint32_t> readNumber(const std::wstring& name) const override {
        return read<std::uint32_t>(name);
    }

    std::optional<std::wstring> readText(const std::wstring& name) const override {
        return read<std::wstring>(name);
    }

    bool writeNumber(const std::wstring& name, std::uint32_t value) override {
        return write(name, value);
    }

    bool writeText(const std::wstring& name, const std::wstring& value) override {
        return write(name, value);
    }

private:
    template <typename Type>
    std::optional<Type> read(const std::wstring& name) const {
        const std::optional<IniDocument> document = file_->load();
        if (!document) return std::nullopt;
        const std::optional<IniValue> value = document->value(path_, name);
        if (!value || !std::holds_alternative<Type>(*value)) return std::nullopt;
        return std::get<Type>(*value);
    }

    bool write(const std::wstring& name, const IniValue& value) {
        if (access_ == os::KeyAccess::Read) return false;
        return file_->change([&](IniDocument& document) { document.setValue(path_, name, value); });
    }

    const std::shared_ptr<const StoreFile> file_;
    const std::wstring path_;
    const os::KeyAccess access_;
};

std::string homeFolder() {
    if (const char* const home = std::getenv("HOME"); home != nullptr && *home == '/') return home;
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
    return found == nullptr || found->pw_dir == nullptr ? "" : found->pw_dir;
}

}  // namespace

FileKeyStore::FileKeyStore(std::string file)
    : file_(std::make_shared<const StoreFile>(std::move(file))) {}

std::unique_ptr<os::Key> FileKeyStore::open(const std::wstring& path, os::KeyAccess access) {
    const std::optional<IniDocument> document = file_->load();
    if (!document || !document->hasKey(path)) return nullptr;
    if (access != os::KeyAccess::Read && !file_->writable()) return nullptr;
    return std::make_unique<FileKey>(file_, path, access);
}

std::unique_ptr<os::Key> FileKeyStore::create(const std::wstring& path, os::KeyAccess access) {
    const std::optional<IniDocument> document = file_->load();
    if (!document) return nullptr;
    if (!document->hasKey(path) &&
        !file_->change([&path](IniDocument& fresh) { fresh.addKey(path); })) {
        return nullptr;
    }
    return open(path, access);
}

std::string defaultKeyStoreFile() {
    const char* const config = std::getenv("XDG_CONFIG_HOME");
    std::string folder;
    if (config != nullptr && *config == '/') {
        folder = config;
    } else if (const std::string home = homeFolder(); !home.empty()) {
        folder = home + "/.config";
    }
    return folder.empty() ? "" : folder + "/bextora/keystore.ini";
}

}  // namespace posix
