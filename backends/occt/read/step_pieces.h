#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"

namespace occt {

/// A file cut into parts that can be translated one after the other. All by position in the file.
struct StepPieces {
    /// What each piece consists of, ascending. A piece is closed but for the references that are
    /// to be left out of lists.
    std::vector<std::vector<std::uint32_t>> pieces;
    /// Curves, ascending, that edges are to replace by another one: beside that one they list
    /// nothing but curves in the parameters of planes.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> instead;
};

/// Size of a piece, in instances, that is large enough to make the effort per piece small.
constexpr std::size_t kPieceSize = 20'000;

/// Cuts a file into pieces that can be translated one after the other with the same result as
/// the whole. Products that share a part of their shapes come into one piece, and pieces follow
/// the order of the file. Left out are styles, PMI, usages of products and all else that has no
/// part in shapes, and curves in the parameters of planes, which are computed anew anyway.
/// Nothing when the file can't be cut: it has no products, damage, or unusual links.
std::optional<StepPieces> cutIntoPieces(const step::Part21& file, const step::Products& products,
                                        std::size_t size = kPieceSize);

}  // namespace occt
