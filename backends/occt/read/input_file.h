#pragma once

#include <optional>
#include <string>

#include "platform/hps/import.h"

namespace occt {

/// Reads a whole file. Nothing on success; otherwise the cause: "missing", "unreadable" for a
/// folder, an empty file or one without permission, "too-large".
std::optional<HPS::Exchange::ImportCause> readInput(const std::string& path, std::string& bytes);

}  // namespace occt
