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

/// One item of product and manufacturing information.
struct Pmi {
    std::uint32_t type = 0;  ///< see platform/hps/component_type.h
    /// The author's name of the item where the file has one, else its kind; for a datum its
    /// letter. A number makes it unique in the file. Depends on the content alone, not on the
    /// order or the numbers of entities.
    std::string name;
    /// One line in the notation of drawings, numbers in the file's units; docs/07-pmi.md lists
    /// the signs. Empty when the file says nothing.
    std::string text;
    std::vector<double> values;                 ///< nominal value or magnitude, in the file's units
    std::size_t product = 0;                    ///< position in Products
    std::optional<std::array<float, 3>> color;  ///< where the file gives one, channels in [0, 1]
};

/// Dimensions, geometric tolerances, datums and their targets, notes, surface finish, drawn
/// annotations that stand for nothing else, and saved views; sorted by type, name, text and
/// value. What belongs to no product goes to the first root.
std::vector<Pmi> readPmi(const Part21& file, const Products& products);

}  // namespace occt::step
