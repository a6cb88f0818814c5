#pragma once

#include <string>

namespace samples {

enum class Side { Reference, Compare };

/// Writes one side of the gearbox pair. What the compare side has differently stands at
/// `Changes` in the source file. False on failure; `error` then says why.
bool writeGearbox(Side side, const std::string& path, std::string& error);

}  // namespace samples
