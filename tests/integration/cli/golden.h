#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/real_data.h"

/// Files in the tree that hold what the program is to give.
namespace golden {

/// Compares with a file below tests/golden, or writes it when BEXTORA_UPDATE_GOLDENS is set.
inline void expectEqual(const std::string& name, const std::string& text) {
    const std::filesystem::path path = std::filesystem::path(BEXTORA_GOLDEN_ROOT) / name;
    if (std::getenv("BEXTORA_UPDATE_GOLDENS")) {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        GTEST_SKIP() << "SKIPPED, wrote " << path;
    }
    EXPECT_EQ(text, support::readFile(path)) << "update with BEXTORA_UPDATE_GOLDENS=1 after review";
}

}  // namespace golden
