#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The program's JSON report as records, so that tests do not depend on its layout.
namespace support {

struct ReportNode {
    std::string name;
    std::string displayName;
    std::string state;  ///< "same", "added", "deleted", "modified", "moved"
    std::int32_t depth = 0;
    std::int32_t parent = -1;
    std::int32_t peer = -1;
    std::string movedFromPath;
    std::string movedToPath;
};

struct ReportSide {
    bool present = false;
    std::string path;
    double volumeMm3 = 0;
    std::int32_t faceCount = 0;
    std::array<double, 12> placement = {};
};

struct ReportInstance {
    std::string state;  ///< "unchanged", "moved", "changed", "only in reference", ...
    std::string evidence;
    std::array<double, 3> displacementMm = {};
    ReportSide reference;
    ReportSide compare;
};

struct CompareReport {
    /// Empty when `json` is no report.
    static std::optional<CompareReport> parse(const std::string& json);

    /// How many instances have this state.
    std::size_t instancesThatAre(const std::string& state) const;
    /// How many nodes of a tree have each state.
    static std::map<std::string, std::size_t> states(const std::vector<ReportNode>& tree);
    /// "depth name state" of each node, one a line; what a failed test shows.
    static std::string lines(const std::vector<ReportNode>& tree);

    bool different = false;
    std::int32_t exitCode = -1;
    std::vector<ReportNode> reference;
    std::vector<ReportNode> compare;
    std::vector<std::pair<std::int32_t, std::int32_t>> rows;
    std::vector<ReportInstance> instances;
    std::vector<std::string> notes;
    std::vector<std::string> messages;
};

}  // namespace support
