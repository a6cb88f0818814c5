#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/integration/import/imports.h"

/// Model data of whole files: imported by the real helper, read by the product's own extraction,
/// with the exchange library that hosts load.
namespace data_test {

/// Imports with the exchange library bound.
class DataImports : public import_test::Imports {
protected:
    DataImports();
    ~DataImports() override;
    void SetUp() override;
};

/// STEP files below a folder of the real data, sorted; the large ones only in a full run. How many
/// were left out is said aloud.
std::vector<std::filesystem::path> stepFilesBelow(const std::vector<std::string>& folders);

}  // namespace data_test
