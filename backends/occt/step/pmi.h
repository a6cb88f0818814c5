#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"

namespace occt::step {

/// One dimension, tolerance or datum.
struct Pmi {
    std::uint32_t type = 0;  ///< see platform/hps/component_type.h
    /// Kind and, for a datum, its letter; a number makes it unique in the file. Depends on the
    /// content alone, not on the order of entities or the names that a writer makes up.
    std::string name;
    std::vector<double> values;                 ///< nominal value or magnitude, in the file's units
    std::size_t product = 0;                    ///< position in Products
    std::optional<std::array<float, 3>> color;  ///< where the file gives one, channels in [0, 1]
};

/// Semantic PMI of a file, sorted by type, name and value. What belongs to no product goes to
/// the first root.
std::vector<Pmi> readPmi(const Part21& file, const Products& products);

}  // namespace occt::step
