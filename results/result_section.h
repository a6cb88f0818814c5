#pragma once

#include <cstdint>

namespace results {

/// Sections of the results dialog. The numbers are stored and compared, so they never change.
enum class ResultSection : std::int32_t {
    FileInformation = 0,
    BillOfMaterials = 1,
    Attributes = 2,
    Pmi = 3,
    ProductStructure = 4,
};

}  // namespace results
