#pragma once

#include <string>

namespace posix {

/// Removes the folders below `parent` that processes of this user left behind when they died.
/// A folder of a living process, of another user, or one that is just being made stays.
void removeLeftOvers(const std::string& parent);

/// Removes a folder with all that it holds, as far as that is allowed. Links are not followed.
void removeTree(const std::string& path);

}  // namespace posix
