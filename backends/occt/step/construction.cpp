#include <map>

#include "backends/occt/step/extra_items.h"
#include "platform/hps/component_type.h"

namespace occt::step {
namespace {

std::uint32_t typeOf(const std::string& keyword) {
    if (keyword == "PLANE") return HPS::ComponentType::Plane;
    if (keyword == "AXIS2_PLACEMENT_3D") return HPS::ComponentType::CoordinateSystem;
    if (keyword == "CARTESIAN_POINT") return HPS::ComponentType::PointSet;
    if (keyword == "AXIS1_PLACEMENT" || keyword == "DIRECTION") {
        return HPS::ComponentType::Direction;
    }
    const bool curve = keyword == "LINE" || keyword == "CIRCLE" || keyword == "ELLIPSE" ||
                       keyword == "POLYLINE" || keyword.find("CURVE") != std::string::npos;
    return curve ? HPS::ComponentType::Curve : 0;
}

void addItems(const Part21& file, std::uint64_t representation, bool placementsOnly,
              std::vector<ConstructionItem>& out) {
    const Instance* const instance = file.find(representation);
    const auto records = instance != nullptr ? file.read(*instance) : std::vector<Record>();
    if (records.empty()) return;
    for (const Value& item : records.front().at(1).items) {
        const Instance* const found = file.find(item.reference);
        const auto parts = found != nullptr ? file.read(*found) : std::vector<Record>();
        if (parts.empty()) continue;
        const std::uint32_t type = typeOf(parts.front().keyword);
        const bool placement = type == HPS::ComponentType::CoordinateSystem;
        if (type == 0 || (placementsOnly && !placement)) continue;
        out.push_back({type, parts.front().text(0)});
    }
}

}  // namespace

ConstructionReader::ConstructionReader(const Part21& file) : file_(file) {
    constexpr const char* link = "CONSTRUCTIVE_GEOMETRY_REPRESENTATION_RELATIONSHIP";
    std::size_t order = 0;
    for (const std::uint32_t index : file.ofType(link)) {
        const auto record = file.read(file.instances()[index].id, link);
        if (!record) continue;
        links_[record->reference(2)].push_back({order++, record->reference(3)});
        links_[record->reference(3)].push_back({order++, record->reference(2)});
    }
}

std::vector<ConstructionItem> ConstructionReader::of(const Product& product) const {
    std::vector<ConstructionItem> out;
    std::map<std::size_t, std::uint64_t> others;
    for (const auto* own : {&product.representations, &product.relatedRepresentations}) {
        for (const std::uint64_t representation : *own) {
            const auto found = links_.find(representation);
            if (found == links_.end()) continue;
            for (const Link& link : found->second) others[link.order] = link.other;
        }
    }
    for (const std::uint64_t representation : product.representations) {
        addItems(file_, representation, true, out);
    }
    for (const auto& [order, other] : others) addItems(file_, other, false, out);
    return out;
}

std::vector<ConstructionItem> readConstruction(const Part21& file, const Product& product) {
    return ConstructionReader(file).of(product);
}

}  // namespace occt::step
