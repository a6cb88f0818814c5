#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "backends/occt/step/value.h"

namespace fuzz {

/// Text between quotes, without them, that decodes to this UTF-8. Everything but plain ASCII is
/// written as code units of `width` hexadecimal digits, 4 or 8.
std::string writeText(std::string_view utf8, int width);

/// Parameters in parentheses that read back as these values.
std::string writeParameters(const std::vector<occt::step::Value>& values);

bool sameValues(const std::vector<occt::step::Value>& a, const std::vector<occt::step::Value>& b);

}  // namespace fuzz
