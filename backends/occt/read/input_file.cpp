#include "backends/occt/read/input_file.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace occt {
namespace {

HPS::Exchange::ImportCause cause(const char* code, const std::string& text) {
    return {code, text};
}

}  // namespace

std::optional<HPS::Exchange::ImportCause> readInput(const std::string& path, std::string& bytes) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        return cause("missing", path + " does not exist.");
    }
    if (std::filesystem::is_directory(status)) {
        return cause("unreadable", path + " is a folder, not a file.");
    }
    if (error) return cause("unreadable", path + " cannot be read: " + error.message() + ".");
    if (!std::filesystem::is_regular_file(status)) {
        return cause("unreadable", path + " is not a regular file.");
    }
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (!error && size == 0) return cause("unreadable", path + " is empty.");
    if (!error && size > kLargestFileBytes) {
        return cause("too-large", path + " is too large: it has " + std::to_string(size) +
                                      " bytes; the limit is " + std::to_string(kLargestFileBytes) +
                                      ".");
    }
    std::ifstream file(path, std::ios::binary);
    if (error || !file) {
        return cause("unreadable", path + " cannot be read; check its permissions.");
    }
    bytes.resize(static_cast<std::size_t>(size));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    if (file.bad() || bytes.empty()) return cause("unreadable", path + " cannot be read.");
    // Some editors put a byte order mark in front; it is no part of the text.
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
    return std::nullopt;
}

}  // namespace occt
