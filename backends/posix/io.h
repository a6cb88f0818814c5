#pragma once

#include <string_view>

namespace posix {

/// Writes all bytes, whatever the number of calls that it takes. False at the first error, with
/// errno set; some bytes may have been written by then.
bool writeAll(int fd, std::string_view bytes);

/// True when developers want to read along: BEXTORA_DEBUG is set and not empty.
bool debugWanted();

}  // namespace posix
