#include <algorithm>

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

std::vector<ConstructionItem> readConstruction(const Part21& file, const Product& product) {
    std::vector<ConstructionItem> out;
    for (const std::uint64_t representation : product.representations) {
        addItems(file, representation, true, out);
    }
    constexpr const char* link = "CONSTRUCTIVE_GEOMETRY_REPRESENTATION_RELATIONSHIP";
    for (const std::uint32_t index : file.ofType(link)) {
        const auto record = file.read(file.instances()[index].id, link);
        if (!record) continue;
        for (const auto& [own, other] : {std::pair(record->reference(2), record->reference(3)),
                                         std::pair(record->reference(3), record->reference(2))}) {
            const auto isOwn = [own = own](std::uint64_t id) { return id == own; };
            if (std::any_of(product.representations.begin(), product.representations.end(),
                            isOwn) ||
                std::any_of(product.relatedRepresentations.begin(),
                            product.relatedRepresentations.end(), isOwn)) {
                addItems(file, other, false, out);
            }
        }
    }
    return out;
}

}  // namespace occt::step
