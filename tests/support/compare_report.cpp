#include "tests/support/compare_report.h"

#include <nlohmann/json.hpp>

namespace support {
namespace {

using Json = nlohmann::json;

std::int32_t indexOf(const Json& value) {
    return value.is_null() ? -1 : value.get<std::int32_t>();
}

std::string textOf(const Json& value) {
    return value.is_null() ? std::string() : value.get<std::string>();
}

std::vector<ReportNode> treeOf(const Json& nodes) {
    std::vector<ReportNode> made;
    for (const Json& each : nodes) {
        ReportNode node;
        node.name = each.at("name");
        node.displayName = each.at("displayName");
        node.state = each.at("state");
        node.depth = each.at("depth");
        node.parent = indexOf(each.at("parent"));
        node.peer = indexOf(each.at("peer"));
        node.movedFromPath = textOf(each.at("movedFromPath"));
        node.movedToPath = textOf(each.at("movedToPath"));
        made.push_back(node);
    }
    return made;
}

ReportSide sideOf(const Json& side) {
    ReportSide made;
    made.present = !side.is_null();
    if (!made.present) return made;
    made.path = side.at("path");
    made.volumeMm3 = side.at("volumeMm3");
    made.faceCount = side.at("faceCount");
    made.placement = side.at("placement");
    return made;
}

CompareReport reportOf(const Json& json) {
    CompareReport made;
    made.different = json.at("summary").at("different");
    made.exitCode = json.at("summary").at("exitCode");
    const Json& structure = json.at("productStructure");
    made.reference = treeOf(structure.at("reference"));
    made.compare = treeOf(structure.at("compare"));
    for (const Json& row : structure.at("rows")) {
        made.rows.emplace_back(indexOf(row.at("reference")), indexOf(row.at("compare")));
    }
    for (const Json& each : json.at("geometry").at("instances")) {
        ReportInstance instance;
        instance.state = each.at("state");
        instance.evidence = each.at("evidence");
        instance.displacementMm = each.at("displacementMm");
        instance.reference = sideOf(each.at("reference"));
        instance.compare = sideOf(each.at("compare"));
        made.instances.push_back(instance);
    }
    made.notes = json.at("geometry").at("notes").get<std::vector<std::string>>();
    made.messages = json.at("messages").get<std::vector<std::string>>();
    return made;
}

}  // namespace

std::optional<CompareReport> CompareReport::parse(const std::string& json) {
    try {
        return reportOf(Json::parse(json));
    } catch (const Json::exception&) {
        return std::nullopt;
    }
}

std::size_t CompareReport::instancesThatAre(const std::string& state) const {
    std::size_t found = 0;
    for (const ReportInstance& instance : instances) found += instance.state == state ? 1 : 0;
    return found;
}

std::map<std::string, std::size_t> CompareReport::states(const std::vector<ReportNode>& tree) {
    std::map<std::string, std::size_t> counts;
    for (const ReportNode& node : tree) ++counts[node.state];
    return counts;
}

std::string CompareReport::lines(const std::vector<ReportNode>& tree) {
    std::string text;
    for (const ReportNode& node : tree) {
        text += std::to_string(node.depth) + " " + node.displayName + " " + node.state + "\n";
    }
    return text;
}

}  // namespace support
