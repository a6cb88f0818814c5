#pragma once

#include <filesystem>
#include <locale>
#include <string>

namespace support {

/// Makes a locale with a decimal comma and dots between thousands the process's own, for C and
/// C++ alike, as long as it lives. It is compiled from the system's sources into a folder that
/// goes with the object, so no locale need be installed.
class CommaLocale {
public:
    CommaLocale();
    ~CommaLocale();
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    /// False when this machine lacks the sources or the compiler (package locales); nothing was
    /// changed then.
    bool active() const { return active_; }

private:
    std::filesystem::path folder_;
    std::string pathBefore_;  // of the locales; empty: none
    std::string nameBefore_;  // of the C locale
    std::locale before_;
    bool active_ = false;
};

}  // namespace support
