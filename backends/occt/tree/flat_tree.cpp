#include "backends/occt/tree/flat_tree.h"

#include <algorithm>

#include "backends/occt/step/placements.h"
#include "platform/hps/component_type.h"
#include "platform/hps/exception.h"

namespace occt {

/// Unfolds definitions into nodes with a stack of its own: assemblies may be deep.
class FlatTreeBuilder {
public:
    FlatTreeBuilder(FlatTree& tree, const Description& description)
        : tree_(tree), definitions_(description.definitions), shown_(definitions_.size(), false) {}

    void run(std::uint32_t root) {
        const HPS::ComponentId file =
            add(FlatTree::Kind::ModelFile, root, FlatTree::kNone, FlatTree::kNone);
        open(root, FlatTree::kNone, file, kNoMove);
        while (!stack_.empty()) {
            Frame& top = stack_.back();
            const DescribedDefinition& definition = definitions_[top.definition];
            if (top.next < definition.usages.size()) {
                const std::uint32_t number = top.next++;
                const DescribedUsage& usage = definition.usages[number];
                const Placement world =
                    step::multiply(tree_.placements_[top.placement], usage.placement);
                open(usage.definition, number, top.id, world);
            } else {
                close(top);
                stack_.pop_back();
            }
        }
        tree_.nodes_[file].end = static_cast<HPS::ComponentId>(tree_.nodes_.size());
    }

private:
    struct Frame {
        std::uint32_t definition;
        std::uint32_t next;
        HPS::ComponentId id;
        std::size_t placement;
    };

    HPS::ComponentId add(FlatTree::Kind kind, std::uint32_t definition, std::uint32_t local,
                         HPS::ComponentId parent) {
        const auto id = static_cast<HPS::ComponentId>(tree_.nodes_.size());
        tree_.nodes_.push_back({kind, definition, local, parent, id + 1});
        return id;
    }

    void open(std::uint32_t definition, std::uint32_t usage, HPS::ComponentId parent,
              const Placement& world) {
        const HPS::ComponentId id = add(FlatTree::Kind::Occurrence, definition, usage, parent);
        tree_.placements_.push_back(world);
        stack_.push_back({definition, 0, id, tree_.placements_.size() - 1});
    }

    void close(const Frame& frame) {
        const DescribedDefinition& definition = definitions_[frame.definition];
        HPS::ComponentId holder = frame.id;
        if (!definition.isAssembly) {
            holder =
                add(FlatTree::Kind::PartDefinition, frame.definition, FlatTree::kNone, frame.id);
            addAll(FlatTree::Kind::Item, definition.items.size(), frame.definition, holder);
        }
        // PMI belongs to the model, not to each instance: it stands below the first one.
        if (!shown_[frame.definition]) {
            addAll(FlatTree::Kind::Pmi, definition.pmi.size(), frame.definition, holder);
        }
        shown_[frame.definition] = true;
        const auto end = static_cast<HPS::ComponentId>(tree_.nodes_.size());
        tree_.nodes_[holder].end = end;
        tree_.nodes_[frame.id].end = end;
    }

    void addAll(FlatTree::Kind kind, std::size_t count, std::uint32_t definition,
                HPS::ComponentId parent) {
        for (std::uint32_t i = 0; i < count; ++i) add(kind, definition, i, parent);
    }

    FlatTree& tree_;
    const std::vector<DescribedDefinition>& definitions_;
    std::vector<bool> shown_;
    std::vector<Frame> stack_;
};

FlatTree::FlatTree(const Description& description) : description_(description) {
    FlatTreeBuilder(*this, description).run(description.root);
    linkChildren();
    countTypes();
}

void FlatTree::linkChildren() {
    childBegin_.assign(nodes_.size() + 1, 0);
    for (std::size_t id = 1; id < nodes_.size(); ++id) ++childBegin_[nodes_[id].parent + 1];
    for (std::size_t id = 0; id < nodes_.size(); ++id) childBegin_[id + 1] += childBegin_[id];
    children_.resize(nodes_.size() - 1);
    std::vector<std::uint32_t> next(childBegin_.begin(), childBegin_.end() - 1);
    for (HPS::ComponentId id = 1; id < nodes_.size(); ++id) {
        children_[next[nodes_[id].parent]++] = id;
    }
}

void FlatTree::countTypes() {
    for (const Node& node : nodes_) before_.try_emplace(typeOf(node));
    for (auto& [type, before] : before_) {
        before.resize(nodes_.size() + 1, 0);
        for (std::size_t id = 0; id < nodes_.size(); ++id) {
            before[id + 1] = before[id] + (typeOf(nodes_[id]) == type ? 1U : 0U);
        }
    }
}

const FlatTree::Node& FlatTree::node(HPS::ComponentId id) const {
    if (id >= nodes_.size()) throw HPS::Exception("no such component");
    return nodes_[id];
}

std::uint32_t FlatTree::typeOf(const Node& node) const {
    const DescribedDefinition& definition = description_.definitions[node.definition];
    switch (node.kind) {
        case Kind::ModelFile: return HPS::ComponentType::ModelFile;
        case Kind::Occurrence: return HPS::ComponentType::ProductOccurrence;
        case Kind::PartDefinition: return HPS::ComponentType::PartDefinition;
        case Kind::Item: return definition.items[node.local].type;
        case Kind::Pmi: return definition.pmi[node.local].type;
    }
    return 0;
}

std::uint32_t FlatTree::type(HPS::ComponentId id) const {
    return typeOf(node(id));
}

std::size_t FlatTree::childCount(HPS::ComponentId id) const {
    return (void)node(id), childBegin_[id + 1] - childBegin_[id];
}

HPS::ComponentId FlatTree::child(HPS::ComponentId id, std::size_t index) const {
    if (index >= childCount(id)) throw HPS::Exception("no such subcomponent");
    return children_[childBegin_[id] + index];
}

std::size_t FlatTree::countAll(HPS::ComponentId id, std::uint32_t type) const {
    const Node& top = node(id);
    std::size_t count = 0;
    for (const auto& [held, before] : before_) {
        if (HPS::ComponentType::selects(type, held)) count += before[top.end] - before[id];
    }
    return count;
}

void FlatTree::collectAll(HPS::ComponentId id, std::uint32_t type,
                          std::vector<HPS::ComponentId>& out) const {
    const Node& top = node(id);
    out.reserve(out.size() + countAll(id, type));
    for (HPS::ComponentId next = id; next < top.end; ++next) {
        if (HPS::ComponentType::selects(type, typeOf(nodes_[next]))) out.push_back(next);
    }
}

const Placement& FlatTree::placement(HPS::ComponentId id) const {
    static constexpr Placement none = kNoMove;
    while (node(id).kind != Kind::Occurrence) {
        if (nodes_[id].parent == kNone) return none;
        id = nodes_[id].parent;
    }
    return placements_[before_.at(HPS::ComponentType::ProductOccurrence)[id]];
}

}  // namespace occt
