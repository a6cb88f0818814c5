#include "tests/support/comma_locale.h"

#include <clocale>
#include <cstdlib>
#include <stdexcept>

namespace support {
namespace {

constexpr const char* kPathVariable = "LOCPATH";
constexpr const char* kName = "de_DE.UTF-8";

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
    try {
        before_ = std::locale::global(std::locale(kName));
        active_ = std::string(std::localeconv()->decimal_point) == ",";
        if (!active_) std::locale::global(before_);
    } catch (const std::runtime_error&) {
        active_ = false;
    }
    if (!active_) restorePath(pathBefore_);
}

CommaLocale::~CommaLocale() {
    if (active_) {
        std::locale::global(before_);
        restorePath(pathBefore_);
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

}  // namespace support
