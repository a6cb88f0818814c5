#include "backends/occt/document/description.h"

#include <algorithm>
#include <fstream>
#include <vector>

namespace occt {

namespace {
constexpr std::uint64_t kMany = std::uint64_t{1} << 62;
}

std::optional<std::uint64_t> unfoldedSize(const Description& description) {
    const auto& all = description.definitions;
    if (description.root >= all.size()) return std::nullopt;
    std::vector<std::size_t> open(all.size(), 0);
    for (const DescribedDefinition& definition : all) {
        for (const DescribedUsage& usage : definition.usages) {
            if (usage.definition >= all.size()) return std::nullopt;
            ++open[usage.definition];
        }
    }
    std::vector<std::size_t> order;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (open[i] == 0) order.push_back(i);
    }
    for (std::size_t next = 0; next < order.size(); ++next) {
        for (const DescribedUsage& usage : all[order[next]].usages) {
            if (--open[usage.definition] == 0) order.push_back(usage.definition);
        }
    }
    if (order.size() != all.size()) return std::nullopt;
    std::vector<std::uint64_t> below(all.size(), 0);
    std::uint64_t pmi = 0;
    for (auto next = order.rbegin(); next != order.rend(); ++next) {
        const DescribedDefinition& definition = all[*next];
        // The occurrence itself, and for a leaf its part definition.
        std::uint64_t sum = (definition.isAssembly ? 1U : 2U) + definition.items.size();
        for (const DescribedUsage& usage : definition.usages) {
            sum = std::min(kMany, sum + below[usage.definition]);
        }
        below[*next] = sum;
        pmi += definition.pmi.size();
    }
    return std::min(kMany, 1 + pmi + below[description.root]);
}

std::optional<FileSeal> sealOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    // FNV-1a over words of eight bytes; accidents are to be found, not attacks.
    constexpr std::uint64_t prime = 0x100000001B3ULL;
    FileSeal seal{0, 0xCBF29CE484222325ULL};
    std::vector<unsigned char> piece(std::size_t{1} << 16);
    while (file) {
        file.read(reinterpret_cast<char*>(piece.data()),
                  static_cast<std::streamsize>(piece.size()));
        const auto size = static_cast<std::size_t>(file.gcount());
        std::fill(piece.begin() + static_cast<std::ptrdiff_t>(size), piece.end(), 0);
        for (std::size_t at = 0; at < size; at += 8) {
            std::uint64_t word = 0;
            for (std::size_t i = 0; i < 8; ++i) {
                word |= static_cast<std::uint64_t>(piece[at + i]) << (8 * i);
            }
            seal.checksum = (seal.checksum ^ word) * prime;
            seal.checksum ^= seal.checksum >> 32;
        }
        seal.bytes += size;
    }
    if (file.bad()) return std::nullopt;
    return seal;
}

}  // namespace occt
