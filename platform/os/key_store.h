#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace os {

/// One opened key of the current user's store. Closing is destruction.
/// Names of keys and values are compared without regard to ASCII case.
class Key {
public:
    virtual ~Key() = default;

    /// Value as a 32-bit number; empty when it is missing or holds text.
    virtual std::optional<std::uint32_t> readNumber(const std::wstring& name) const = 0;

    /// Value as text; empty when it is missing or holds a number.
    virtual std::optional<std::wstring> readText(const std::wstring& name) const = 0;

    /// Stores the value at once and durably. False when the store can't be written or the key
    /// was opened for reading only; the old value then stays.
    virtual bool writeNumber(const std::wstring& name, std::uint32_t value) = 0;
    virtual bool writeText(const std::wstring& name, const std::wstring& value) = 0;
};

enum class KeyAccess { Read, Write, Full };

/// The current user's persistent switches. Paths are separated by backslashes and relative to
/// the user's root, for instance L"Software\\Bextora\\bextora\\Settings\\Compare".
/// Safe to call from any thread and from several processes at once.
class KeyStore {
public:
    virtual ~KeyStore() = default;

    /// Opens an existing key. Null when it does not exist or the access is refused.
    virtual std::unique_ptr<Key> open(const std::wstring& path, KeyAccess access) = 0;

    /// Opens a key, creating it and its parents when missing. Null when that fails.
    virtual std::unique_ptr<Key> create(const std::wstring& path, KeyAccess access) = 0;
};

}  // namespace os
