#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/hps/import.h"

namespace occt {

/// Bytes of the largest file that is read, and of the largest that a compressed one unpacks into.
constexpr std::uint64_t kLargestFileBytes = std::uint64_t{4} << 30;

/// Reads a whole file as it is. Nothing on success; otherwise the cause: "missing", "unreadable"
/// for a folder, an empty file or one without permission, "too-large".
std::optional<HPS::Exchange::ImportCause> readInput(const std::string& path, std::string& bytes);

}  // namespace occt
