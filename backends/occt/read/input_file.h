#pragma once

#include <optional>
#include <string>

#include "platform/hps/import.h"

namespace occt {

/// The file's name as messages call it: the last part of its path.
std::string displayName(const std::string& path);

/// Reads a whole file. Nothing on success; otherwise the cause: "missing", "unreadable" for a
/// folder, an empty file or one without permission, "too-large".
std::optional<HPS::Exchange::ImportCause> readInput(const std::string& path, std::string& bytes);

}  // namespace occt
