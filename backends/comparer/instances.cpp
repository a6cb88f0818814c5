#include "backends/comparer/instances.h"

#include <algorithm>
#include <cmath>
#include <map>

#include <BRepBndLib.hxx>
#include <Bnd_Box.hxx>
#include <Standard_Failure.hxx>

#include "platform/hps/component_type.h"

namespace comparer {
namespace {

namespace type = HPS::ComponentType;
using HPS::ComponentId;

bool isBody(std::uint32_t code) {
    return code == type::BrepModel || code == type::PolyBrepModel;
}

bool isWireframe(std::uint32_t code) {
    return code == type::Curve || code == type::PointSet;
}

void measureExtent(Body& body) {
    Bnd_Box box;
    if (!body.shape.IsNull()) BRepBndLib::AddClose(body.shape, box);
    // A sphere's only vertices are its poles, a mesh has none at all.
    if (!body.shape.IsNull()) BRepBndLib::Add(body.shape, box);
    const bool bounded = !box.IsVoid() && !box.IsOpen();
    if (body.identity) {
        const auto& c = body.identity->centroidMm;
        body.centre = gp_Pnt(c[0], c[1], c[2]);
    } else if (bounded) {
        body.centre = gp_Pnt((box.CornerMin().XYZ() + box.CornerMax().XYZ()) / 2.0);
    }
    if (!bounded) return;
    const gp_XYZ corners[2] = {box.CornerMin().XYZ(), box.CornerMax().XYZ()};
    for (int i = 0; i < 8; ++i) {
        const gp_Pnt corner(corners[i & 1].X(), corners[(i >> 1) & 1].Y(),
                            corners[(i >> 2) & 1].Z());
        body.radiusMm = std::max(body.radiusMm, corner.Distance(body.centre));
    }
}

/// Where the walk stands.
struct Place {
    ComponentId component = 0;
    std::uint32_t path = 0;
    std::uint32_t product = 0;
};

class Collector {
public:
    Collector(const occt::Model& model, Names& names) : model_(model), names_(names) {}

    Side run() {
        side_.gaps = model_.gaps();
        const ComponentId file = model_.root();
        for (std::size_t i = 0; i < model_.childCount(file); ++i) {
            const ComponentId root = model_.child(file, i);
            side_.rootName = model_.name(root);
            stack_.push_back({root, Names::kRootPath, names_.id(side_.rootName)});
            side_.isAssembly = side_.isAssembly || hasOccurrences(root);
        }
        while (!stack_.empty()) {
            const Place place = stack_.back();
            stack_.pop_back();
            expand(place);
        }
        return std::move(side_);
    }

private:
    bool hasOccurrences(ComponentId id) const {
        for (std::size_t i = 0; i < model_.childCount(id); ++i) {
            if (model_.type(model_.child(id, i)) == type::ProductOccurrence) return true;
        }
        return false;
    }

    /// Bodies, and the curves and points that have a shape: construction geometry has none.
    bool takesPart(ComponentId item) const {
        const std::uint32_t code = model_.type(item);
        return isBody(code) || (isWireframe(code) && !model_.shape(item).IsNull());
    }

    std::size_t bodyCount(ComponentId id) const {
        std::size_t count = 0;
        for (std::size_t i = 0; i < model_.childCount(id); ++i) {
            if (takesPart(model_.child(id, i))) ++count;
        }
        return count;
    }

    void expand(const Place& place) {
        const std::size_t children = model_.childCount(place.component);
        const bool several = bodyCount(place.component) > 1;
        std::uint32_t ordinal = 0;
        for (std::size_t i = 0; i < children; ++i) {
            const ComponentId child = model_.child(place.component, i);
            if (takesPart(child)) addInstance(place, child, ordinal++, several);
        }
        // The stack gives back the last first.
        for (std::size_t i = children; i-- > 0;) {
            const ComponentId child = model_.child(place.component, i);
            const std::uint32_t code = model_.type(child);
            if (code == type::ProductOccurrence) {
                const std::uint32_t name = names_.id(model_.name(child));
                stack_.push_back({child, names_.path(place.path, name), name});
            } else if (code == type::PartDefinition) {
                stack_.push_back({child, place.path, place.product});
            }
        }
    }

    void addInstance(const Place& place, ComponentId item, std::uint32_t ordinal, bool several) {
        Instance instance;
        instance.body = bodyOf(place.component, item, ordinal);
        instance.path = place.path;
        instance.product = place.product;
        if (several) {
            const std::string own = model_.name(item);
            instance.path = names_.path(place.path, names_.id(own.empty() ? "Body" : own));
        }
        instance.placement = model_.placement(item);
        instance.rigid = !instance.placement.IsNegative() &&
                         std::abs(instance.placement.ScaleFactor() - 1.0) < 1e-9;
        side_.instances.push_back(instance);
    }

    std::uint32_t bodyOf(ComponentId part, ComponentId item, std::uint32_t ordinal) {
        const auto fresh = static_cast<std::uint32_t>(side_.bodies.size());
        const auto known = bodies_.try_emplace({model_.definition(part), ordinal}, fresh);
        if (!known.second) return known.first->second;
        Body body;
        body.shape = model_.shape(item);
        body.digest = model_.contentDigest(item);
        if (const auto* identity = model_.identity(item)) body.identity = *identity;
        try {
            measureExtent(body);
        } catch (const Standard_Failure&) {
            body.identity.reset();
        }
        side_.bodies.push_back(std::move(body));
        return fresh;
    }

    const occt::Model& model_;
    Names& names_;
    Side side_;
    std::vector<Place> stack_;
    std::map<std::pair<std::size_t, std::uint32_t>, std::uint32_t> bodies_;
};

}  // namespace

std::uint32_t Names::id(const std::string& text) {
    const auto fresh = static_cast<std::uint32_t>(texts_.size());
    const auto entry = ids_.try_emplace(text, fresh);
    if (entry.second) texts_.push_back(&entry.first->first);
    return entry.first->second;
}

Names::Names() {
    paths_.push_back({kRootPath, id({})});
}

std::uint32_t Names::path(std::uint32_t above, std::uint32_t name) {
    const auto fresh = static_cast<std::uint32_t>(paths_.size());
    const std::uint64_t key = (static_cast<std::uint64_t>(above) << 32) | name;
    const auto entry = pathIds_.try_emplace(key, fresh);
    if (entry.second) paths_.push_back({above, name});
    return entry.first->second;
}

std::string Names::pathText(std::uint32_t path) const {
    std::vector<std::uint32_t> names;
    for (; path != kRootPath; path = paths_[path].above) names.push_back(paths_[path].name);
    std::string joined;
    for (std::size_t i = names.size(); i-- > 0;) {
        joined += text(names[i]);
        if (i > 0) joined += " / ";
    }
    return joined;
}

Side collectSide(const occt::Model& model, Names& names) {
    return Collector(model, names).run();
}

gp_Pnt worldCentre(const Side& side, const Instance& instance) {
    return side.bodies[instance.body].centre.Transformed(instance.placement);
}

std::string displayPath(const Side& side, const Instance& instance, const Names& names) {
    const std::string below = names.pathText(instance.path);
    return below.empty() ? side.rootName : side.rootName + " / " + below;
}

}  // namespace comparer
