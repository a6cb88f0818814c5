#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace occt {

/// One section of a BREP file and how many entries it announces.
struct BrepSection {
    std::string_view name;
    std::size_t offset = 0;              ///< of the name
    std::optional<std::uint64_t> count;  ///< none where no number follows
};

/// Sections in the order in which both forms of the format, text and binary, write them. Those
/// that are missing are left out. The names point to constants.
std::vector<BrepSection> brepSections(std::string_view bytes);

/// How many shapes of a text file name geometry of their own.
struct BrepGeometry {
    std::size_t surfaces = 0;  ///< faces that name a surface
    std::size_t curves = 0;    ///< edges that name a curve in space
};

/// Counts the shapes of a text, from the offset of its shapes on. What stands in other lines than
/// the library writes is not counted, so that there are never fewer shapes than this says.
BrepGeometry brepGeometry(std::string_view text, std::size_t shapes);

}  // namespace occt
