#pragma once

#include <optional>
#include <string>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"
#include "platform/hps/import.h"

namespace occt::step {

/// Occurrences that an assembly may unfold into.
constexpr std::uint64_t kMostOccurrences = 5'000'000;
/// Parentheses inside one another; files in practice stay below ten.
constexpr std::size_t kDeepestParentheses = 100;

/// Why a file must not be handed to the reader, seen from its text alone: it is no STEP file,
/// nests too deeply, or holds numbers that are none. `name` is how the sentence calls the file.
std::optional<HPS::Exchange::ImportCause> refuseText(const Part21& file, const std::string& name);

/// The same for its product structure: an assembly that contains itself, or one that unfolds
/// into too many occurrences.
std::optional<HPS::Exchange::ImportCause> refuseStructure(const Products& products,
                                                          const std::string& name);

/// What the text itself shows to be damaged, one sentence each: a missing end, statements and
/// references that can't be resolved. Empty for a sound file.
std::vector<std::string> textGaps(const Part21& file, const Products& products);

}  // namespace occt::step
