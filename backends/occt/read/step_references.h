#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "backends/occt/step/part21.h"
#include "backends/occt/step/products.h"

namespace occt {

/// A product and the file that its shape stands in.
struct StepReference {
    std::size_t product = 0;  ///< position in Products::products
    std::string file;         ///< as written
};

/// Products that have a file of their own, in the products' order: an identification of the
/// product's document names it, or where there is none the document itself.
std::vector<StepReference> stepReferences(const step::Part21& file, const step::Products& products);

/// All names of such files in a STEP text, each once. Quick for a text without any.
std::vector<std::string> filesOfStep(std::string_view text);

}  // namespace occt
