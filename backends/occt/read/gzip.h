#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/hps/import.h"

namespace occt {

/// Whether bytes begin like a gzip file.
bool isGzip(std::string_view bytes);

/// Unpacks all members of a gzip file. Nothing on success; otherwise the cause, "damaged" for
/// one that is cut or changed, "too-large" for one that unpacks into more than `limitBytes`. No
/// more than that is ever unpacked, whatever the file promises. `name` is how sentences call it.
std::optional<HPS::Exchange::ImportCause> unpackGzip(const std::string& name,
                                                     std::string_view packed,
                                                     std::uint64_t limitBytes, std::string& bytes);

}  // namespace occt
