#pragma once

#include <map>
#include <optional>
#include <string>

namespace torture {

/// One gzip member around the bytes.
std::string gzipped(const std::string& bytes);

/// All of a gzip file; nothing when it is cut, its checksum is wrong, or something follows it.
std::optional<std::string> gunzipped(const std::string& bytes);

/// A ZIP archive of files that are stored as they are.
std::string zipped(const std::map<std::string, std::string>& files);

/// Files of a ZIP archive; nothing when its directory or one of them cannot be read.
std::optional<std::map<std::string, std::string>> unzipped(const std::string& bytes);

}  // namespace torture
