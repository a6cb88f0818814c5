#pragma once

#include <string>

#include "backends/occt/step/value.h"

namespace occt::step {

/// Whether a property of that name holds numbers by which a reader's work is checked.
bool isValidation(const std::string& property);

/// Key of such a number by the names of its item and of the representation that holds it:
/// "Validation Volume", "Validation Centroid", "Validation Number Of Children". Empty when
/// neither says what the number is.
std::string validationKey(const std::string& item, const std::string& representation);

/// A name in the writing of keys: words with capitals, without what only says that it is a
/// measure. Empty for a name that says nothing.
std::string titleOf(const std::string& name);

/// Coordinates as "(1, 2.5, -3)"; empty for anything else.
std::string pointText(const Value& coordinates);

}  // namespace occt::step
