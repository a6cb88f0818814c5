#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/backends/mesh/files.h"

namespace meshtest {

inline std::uint32_t checksum(const std::string& bytes) {
    std::uint32_t sum = 0xFFFFFFFFU;
    for (const char c : bytes) {
        sum ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~sum;
}

/// A ZIP archive of files by name, not compressed.
inline std::string zip(const std::vector<std::pair<std::string, std::string>>& files) {
    std::string out;
    std::string directory;
    const auto half = [](std::size_t n) { return bytesOf(static_cast<std::uint16_t>(n)); };
    const auto word = [](std::size_t n) { return bytesOf(static_cast<std::uint32_t>(n)); };
    for (const auto& [name, bytes] : files) {
        const std::string common = half(20) + half(0) + half(0) + half(0) + half(0x21) +
                                   word(checksum(bytes)) + word(bytes.size()) + word(bytes.size()) +
                                   half(name.size()) + half(0);
        directory += std::string("PK\1\2") + half(20) + common + half(0) + half(0) + half(0) +
                     word(0) + word(out.size()) + name;
        out += std::string("PK\3\4") + common + name + bytes;
    }
    return out + directory + std::string("PK\5\6") + half(0) + half(0) + half(files.size()) +
           half(files.size()) + word(directory.size()) + word(out.size()) + half(0);
}

}  // namespace meshtest
