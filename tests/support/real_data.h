#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// The files that the tests compare: the bundled sample, and the real ones when
/// BEXTORA_TEST_DATA names their folder.
namespace support {

struct RealFile {
    std::string_view label;  ///< letters and digits, for the test's name
    std::string_view path;   ///< below the data folder, or "samples/..." in our own tree
    bool small = true;       ///< else only looked at with BEXTORA_TEST_FULL
};

struct RealPair {
    std::string_view label;
    std::string_view reference;  ///< labels of two files
    std::string_view compare;
    bool small = true;
    bool compares = true;  ///< false for a part against an assembly
};

/// STEP files that belong to a pair or series, and which of them are compared with each other.
const std::vector<RealFile>& stepFiles();
const std::vector<RealPair>& stepPairs();

void PrintTo(const RealFile& file, std::ostream* stream);
void PrintTo(const RealPair& pair, std::ostream* stream);

/// Empty when BEXTORA_TEST_DATA is not set.
std::filesystem::path realDataFolder();

/// Full path; empty for a real file without the data.
std::string pathOf(const RealFile& file);

/// Full path of the file with this label; empty as above.
std::string realFile(std::string_view label);

/// True when BEXTORA_TEST_FULL is set to anything but 0.
bool fullRun();

/// The whole file; empty when it cannot be read.
std::string readFile(const std::filesystem::path& path);

}  // namespace support

/// Skips the test, and says how to run it, unless the files that it needs are there.
#define SKIP_UNLESS_THERE(isThere)                                                   \
    if (!(isThere)) {                                                                \
        GTEST_SKIP() << "SKIPPED, NOTHING WAS TESTED: set BEXTORA_TEST_DATA to the " \
                        "folder with the real CAD files (docs/04-testing.md)";       \
    }

#define SKIP_WITHOUT_REAL_DATA() SKIP_UNLESS_THERE(!support::realDataFolder().empty())

/// Skips a long test unless everything was asked for.
#define SKIP_UNLESS_FULL(isShort)                                           \
    if (!(isShort) && !support::fullRun()) {                                \
        GTEST_SKIP() << "SKIPPED, long: set BEXTORA_TEST_FULL=1 to run it"; \
    }
