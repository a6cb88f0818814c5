#pragma once

#include <string>
#include <vector>

namespace HPS {

/// Text as the scene library keeps it.
class UTF8 {
public:
    UTF8() = default;
    explicit UTF8(std::string bytes) : bytes_(std::move(bytes)) {}
    explicit UTF8(const std::wstring& text);

    bool Empty() const { return bytes_.empty(); }
    const std::string& GetBytes() const { return bytes_; }

    /// Converts to wide characters with a terminating zero. Empty array for an empty text.
    /// Always true; the bool stays for callers that test it.
    bool ToWStr(std::vector<wchar_t>& out) const;

    /// The same as a wide string without the terminating zero.
    std::wstring ToWide() const;

private:
    std::string bytes_;
};

}  // namespace HPS
