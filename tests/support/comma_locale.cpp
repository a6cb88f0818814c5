#include "tests/support/comma_locale.h"

#include <clocale>
#include <cstdlib>

namespace support {
namespace {

constexpr const char* kPathVariable = "LOCPATH";
constexpr const char* kName = "de_DE.UTF-8";

template <typename Character>
class CommaPunctuation : public std::numpunct<Character> {
protected:
    Character do_decimal_point() const override { return ','; }
    Character do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// The C library leaks a few bytes when C++ asks it for a locale by name, so C++ gets its
/// punctuation by hand.
std::locale commaForStreams() {
    const std::locale narrow(std::locale::classic(), new CommaPunctuation<char>);
    return {narrow, new CommaPunctuation<wchar_t>};
}

void restorePath(const std::string& path) {
    if (path.empty()) {
        unsetenv(kPathVariable);
    } else {
        setenv(kPathVariable, path.c_str(), 1);
    }
}

}  // namespace

CommaLocale::CommaLocale() {
    std::string folder = (std::filesystem::temp_directory_path() / "locale-XXXXXX").string();
    if (!mkdtemp(folder.data())) return;
    folder_ = folder;
    const std::string command = "localedef --no-archive -c -i de_DE -f UTF-8 '" + folder + "/" +
                                kName + "' >/dev/null 2>&1";
    // Its exit code also tells of mere warnings; whether the locale is there shows below.
    if (std::system(command.c_str()) == -1) return;
    if (const char* before = std::getenv(kPathVariable)) pathBefore_ = before;
    setenv(kPathVariable, folder.c_str(), 1);
    if (const char* before = std::setlocale(LC_ALL, nullptr)) nameBefore_ = before;
    active_ = std::setlocale(LC_ALL, kName) != nullptr;
    if (active_) {
        before_ = std::locale::global(commaForStreams());
    } else {
        restorePath(pathBefore_);
    }
}

CommaLocale::~CommaLocale() {
    if (active_) {
        std::locale::global(before_);
        std::setlocale(LC_ALL, nameBefore_.c_str());
        restorePath(pathBefore_);
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

}  // namespace support
