#pragma once

#include <filesystem>
#include <string>

namespace comparer {

/// Copies a finished file to where the user wants it, in place of an existing one and with its
/// rights. Until the copy is whole it has a name of its own beside the target; when anything
/// fails, an existing target stays as it was and nothing new is left. Devices and pipes are
/// written to as they are. Empty on success, else why not: a phrase that names no file.
std::string placeFile(const std::filesystem::path& made, const std::filesystem::path& target);

}  // namespace comparer
