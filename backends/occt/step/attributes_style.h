#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "backends/occt/step/attributes.h"
#include "backends/occt/step/pmi_color.h"

namespace occt::step {

/// "#RRGGBB".
std::string colorText(const Color& color);

/// Adds to each product the colours of its bodies as a whole and the layers that they stand on.
/// Colours of single faces are left out.
void addStyles(const Part21& file, const Products& products, Attributes& out);

}  // namespace occt::step
