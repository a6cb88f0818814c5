#include "tests/support/real_data.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include <gtest/gtest.h>

namespace {

std::string lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::vector<std::string> columns(const std::string& line) {
    std::vector<std::string> cells(1);
    for (const char c : line) {
        if (c == '\t') {
            cells.emplace_back();
        } else if (c != '\r') {
            cells.back() += c;
        }
    }
    return cells;
}

/// STEP files of each pair or series that has at least two of them.
std::map<std::string, std::set<std::string>> pairsOfManifest() {
    std::ifstream stream(support::realDataFolder() / "MANIFEST.tsv");
    std::string line;
    std::getline(stream, line);
    const auto names = columns(line);
    const auto column = [&](const char* name) {
        return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) -
                                        names.begin());
    };
    std::map<std::string, std::set<std::string>> pairs;
    while (std::getline(stream, line)) {
        const auto cells = columns(line);
        if (cells.size() <= column("pair_id") || cells[column("pair_id")].empty()) continue;
        const std::string path = cells[column("path")];
        if (lower(path).ends_with(".stp") || lower(path).ends_with(".step")) {
            pairs[cells[column("pair_id")]].insert(path);
        }
    }
    std::erase_if(pairs, [](const auto& pair) { return pair.second.size() < 2; });
    return pairs;
}

}  // namespace

TEST(RealData, TheTableHoldsEveryStepFileOfEveryPair) {
    SKIP_WITHOUT_REAL_DATA();
    std::set<std::string> listed;
    for (const auto& file : support::stepFiles()) {
        if (!file.path.starts_with("samples/")) listed.emplace(file.path);
    }
    std::set<std::string> wanted;
    for (const auto& [pair, files] : pairsOfManifest()) wanted.insert(files.begin(), files.end());
    ASSERT_FALSE(wanted.empty());
    EXPECT_EQ(listed, wanted);
}

TEST(RealData, EveryFileOfAPairIsComparedWithAnother) {
    std::set<std::string_view> compared;
    for (const auto& pair : support::stepPairs()) {
        compared.insert(pair.reference);
        compared.insert(pair.compare);
    }
    for (const auto& file : support::stepFiles()) EXPECT_EQ(compared.count(file.label), 1U);
}
