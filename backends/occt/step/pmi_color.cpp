#include "backends/occt/step/pmi_color.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace occt::step {
namespace {

// Entities between a style and its colour that are looked at; what is further is another's.
constexpr std::size_t kMostLookedAt = 64;

constexpr std::pair<const char*, Color> kColors[] = {
    {"red", {1, 0, 0}},     {"green", {0, 1, 0}}, {"blue", {0, 0, 1}},  {"yellow", {1, 1, 0}},
    {"magenta", {1, 0, 1}}, {"cyan", {0, 1, 1}},  {"black", {0, 0, 0}}, {"white", {1, 1, 1}},
};

std::optional<Color> colorIn(const Record& record) {
    if (record.keyword == "COLOUR_RGB") {
        Color color = {};
        for (std::size_t i = 0; i < 3; ++i) {
            color[i] = static_cast<float>(std::clamp(record.at(i + 1).number, 0.0, 1.0));
        }
        return color;
    }
    if (record.keyword != "DRAUGHTING_PRE_DEFINED_COLOUR") return std::nullopt;
    for (const auto& [name, color] : kColors) {
        if (record.text(0) == name) return color;
    }
    return std::nullopt;
}

}  // namespace

const ColorReader::Node& ColorReader::node(std::uint64_t id) const {
    const auto [place, isNew] = nodes_.try_emplace(id);
    const Instance* const instance = isNew ? file_.find(id) : nullptr;
    if (instance == nullptr) return place->second;
    Node& out = place->second;
    for (const Record& record : file_.read(*instance)) {
        if (!out.color) out.color = colorIn(record);
        if (record.keyword == "CURVE_STYLE" || record.keyword == "POINT_STYLE") {
            out.isOfLines = true;
        }
        for (const Value& value : record.values) collectReferences(value, out.next);
    }
    out.next.resize(std::min(out.next.size(), kMostLookedAt));
    return out;
}

std::optional<Color> ColorReader::search(std::vector<std::uint64_t> open, bool lines) const {
    std::unordered_set<std::uint64_t> seen;
    for (std::size_t next = 0; next < open.size() && next < kMostLookedAt; ++next) {
        if (!seen.insert(open[next]).second) continue;
        const Node& found = node(open[next]);
        if (found.isOfLines && !lines) continue;
        if (found.color) return found.color;
        open.insert(open.end(), found.next.begin(), found.next.end());
    }
    return std::nullopt;
}

std::optional<Color> ColorReader::colorOf(const std::vector<std::uint64_t>& styles) const {
    const auto ofSurfaces = search(styles, false);
    return ofSurfaces ? ofSurfaces : search(styles, true);
}

}  // namespace occt::step
