#pragma once

#include <cstdint>
#include <string>

namespace workflow {

/// Time between two readings of the clock as it stands behind a status text: whole milliseconds
/// below one second, seconds with two decimals from there on.
std::wstring FormatElapsed(std::uint64_t startTicksMs, std::uint64_t endTicksMs);

}  // namespace workflow
