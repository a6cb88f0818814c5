#include "tests/integration/data/data_imports.h"

#include <algorithm>
#include <iostream>

#include "extract/import_library.h"
#include "tests/support/real_data.h"

namespace data_test {
namespace {

// Larger files take a second and more each.
constexpr std::uintmax_t kLargestBytes = 1'000'000;

bool isStep(const std::filesystem::path& file) {
    std::string extension = file.extension().string();
    for (char& c : extension) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return extension == ".stp" || extension == ".step";
}

}  // namespace

DataImports::DataImports() {
    extract::importLibrary().Bind();
}

DataImports::~DataImports() {
    extract::importLibrary().Release();
}

void DataImports::SetUp() {
    ASSERT_TRUE(extract::importLibrary().Bound()) << "A3DLIBS.dll stands beside the program";
}

std::vector<std::filesystem::path> stepFilesBelow(const std::vector<std::string>& folders) {
    std::vector<std::filesystem::path> files;
    std::size_t skipped = 0;
    for (const std::string& folder : folders) {
        const auto root = support::realDataFolder() / folder;
        for (const auto& entry : std::filesystem::directory_iterator(root)) {
            if (!isStep(entry.path())) continue;
            if (entry.file_size() <= kLargestBytes || support::fullRun()) {
                files.push_back(entry.path());
            } else {
                ++skipped;
            }
        }
    }
    if (skipped > 0) {
        std::cerr << "[  NOTE    ] " << skipped
                  << " large files were not looked at: set BEXTORA_TEST_FULL=1\n";
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace data_test
