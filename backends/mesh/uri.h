#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mesh {

/// A URI as a path below the folder of the file that names it, escapes undone. Nothing for one
/// with a scheme, for an absolute path and for one that leads upwards.
std::optional<std::string> pathBelow(std::string_view uri);

/// What a base64 data URI holds; nothing when it is none or is damaged.
std::optional<std::string> decodeDataUri(std::string_view uri);

}  // namespace mesh
