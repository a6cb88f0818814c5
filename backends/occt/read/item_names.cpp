#include "backends/occt/read/item_names.h"

#include <set>

#include <TopoDS_TShape.hxx>

#include "platform/hps/component_type.h"

namespace occt {
namespace {

constexpr const char* kNamed[] = {
    "MANIFOLD_SOLID_BREP",
    "BREP_WITH_VOIDS",
    "FACETED_BREP",
    "SHELL_BASED_SURFACE_MODEL",
    "FACE_BASED_SURFACE_MODEL",
    "GEOMETRIC_SET",
    "GEOMETRIC_CURVE_SET",
    "CLOSED_SHELL",
    "OPEN_SHELL",
};

const char* wordFor(std::uint32_t type) {
    switch (type) {
        case HPS::ComponentType::BrepModel: return "Body";
        case HPS::ComponentType::PolyBrepModel: return "Mesh";
        case HPS::ComponentType::Curve: return "Curve";
        case HPS::ComponentType::PointSet: return "Point";
        case HPS::ComponentType::Plane: return "Plane";
        case HPS::ComponentType::Direction: return "Direction";
        case HPS::ComponentType::CoordinateSystem: return "Coordinate system";
        default: return "Item";
    }
}

}  // namespace

bool saysSomething(const std::string& name) {
    const bool blank = name.find_first_not_of(" \t") == std::string::npos;
    return !blank && name != "NONE" && name != "none";
}

std::vector<NamedItem> namedItems(const step::Part21& file) {
    std::vector<NamedItem> out;
    for (const char* type : kNamed) {
        for (const std::uint32_t index : file.ofType(type)) {
            const std::uint64_t id = file.instances()[index].id;
            auto record = file.read(id, type);
            if (!record || !saysSomething(record->text(0))) continue;
            out.push_back({id, std::move(record->values[0].text)});
        }
    }
    return out;
}

ItemNames::ItemNames(const step::Part21& file, const StepTranslation& translation) {
    for (NamedItem& item : namedItems(file)) {
        const TopoDS_Shape shape = translation.shape(item.entity);
        if (!shape.IsNull()) names_.try_emplace(shape.TShape().get(), std::move(item.name));
    }
}

const std::string& ItemNames::of(const TopoDS_Shape& shape) const {
    static const std::string none;
    const auto found = names_.find(shape.TShape().get());
    return found == names_.end() ? none : found->second;
}

void makeUnique(std::vector<DescribedItem>& items) {
    std::set<std::string> taken;
    for (const DescribedItem& item : items) {
        if (!item.name.empty()) taken.insert(item.name);
    }
    std::set<std::string> used;
    std::unordered_map<std::string, std::size_t> last;
    for (DescribedItem& item : items) {
        if (!item.name.empty() && used.insert(item.name).second) continue;
        const bool named = !item.name.empty();
        const std::string stem = named ? item.name : wordFor(item.type);
        std::size_t& number = last[stem];
        if (number == 0 && named) number = 1;
        do {
            item.name = stem + " " + std::to_string(++number);
        } while (taken.count(item.name) != 0 || !used.insert(item.name).second);
    }
}

}  // namespace occt
