#include "bench/assembly_models.h"

#include <algorithm>
#include <cmath>

#include "platform/os/utf8.h"

namespace bench {
namespace {

namespace ComponentType = HPS::ComponentType;
using support::MemoryModel;

constexpr std::size_t kSpineLevels = 500;

// Number of children of each node, breadth first: enough to lay a tree out in flat arrays.
class Layout {
public:
    struct Node {
        std::size_t parent = 0;
        std::size_t number = 0;  // decides the name; equal on both sides unless renamed
    };

    explicit Layout(std::size_t nodes) : limit_(nodes) { nodes_.push_back({0, 0}); }

    bool full() const { return nodes_.size() >= limit_; }
    std::size_t size() const { return nodes_.size(); }
    std::size_t add(std::size_t parent) {
        nodes_.push_back({parent, nodes_.size()});
        return nodes_.size() - 1;
    }
    void addChildren(std::size_t parent, std::size_t count) {
        for (std::size_t i = 0; i < count && !full(); ++i) add(parent);
    }
    std::vector<Node>& nodes() { return nodes_; }

private:
    std::size_t limit_;
    std::vector<Node> nodes_;
};

void addSpine(Layout& layout, std::size_t nodes) {
    std::vector<std::size_t> spine = {0};
    while (spine.size() < kSpineLevels && !layout.full()) spine.push_back(layout.add(spine.back()));
    constexpr double kHalvedEvery = 16.0;
    const double share = 1.0 - std::pow(0.5, 1.0 / kHalvedEvery);
    double left = static_cast<double>(nodes);
    for (const std::size_t level : spine) {
        layout.addChildren(level, static_cast<std::size_t>(left * share));
        left -= left * share;
    }
    layout.addChildren(0, nodes);
}

void addChains(Layout& layout) {
    while (!layout.full()) {
        std::size_t end = 0;
        for (std::size_t i = 1; i < kSpineLevels && !layout.full(); ++i) end = layout.add(end);
    }
}

Layout makeLayout(Shape shape, std::size_t nodes) {
    Layout layout(nodes);
    const auto root = static_cast<std::size_t>(std::sqrt(static_cast<double>(nodes)));
    switch (shape) {
        case Shape::Flat: layout.addChildren(0, nodes); break;
        case Shape::Wide:
            layout.addChildren(0, root);
            for (std::size_t i = 1; !layout.full(); i = i % root + 1) layout.add(i);
            break;
        case Shape::Tens:
            for (std::size_t i = 0; !layout.full(); ++i) layout.addChildren(i, 10);
            break;
        case Shape::Spine500: addSpine(layout, nodes); break;
        case Shape::Chains500: addChains(layout); break;
    }
    return layout;
}

std::string nameOf(std::size_t number, Names names) {
    static const char* const kWords[] = {"Bracket", "Hex Bolt M8",      "Housing, upper",
                                         "Shaft",   "Bearing 6204-2RS", "Cover Plate",
                                         "Spacer",  "Gear Z24"};
    const std::size_t id = names == Names::Repeated ? number % 1000003 / 20 : number;
    return std::string(kWords[id % 8]) + " " + std::to_string(100000 + id);
}

void change(std::vector<Layout::Node>& nodes, std::vector<std::vector<std::size_t>>& children) {
    std::size_t list = 0;
    for (auto& siblings : children) {
        if (siblings.empty()) continue;
        ++list;
        const std::size_t middle = siblings.size() / 2;
        if (list % 500 == 1) nodes[siblings[middle]].number += 50000000;
        if (list % 500 == 2 && children[siblings.back()].empty()) siblings.pop_back();
        if (list % 500 == 3 && siblings.size() > 1) {
            std::swap(siblings[middle - 1], siblings[middle]);
        }
    }
}

std::shared_ptr<const MemoryModel> makeModel(const std::vector<Layout::Node>& nodes,
                                             const std::vector<std::vector<std::size_t>>& children,
                                             Names names) {
    MemoryModel::Builder builder;
    struct Waiting {
        std::size_t node;
        HPS::ComponentId parent;
    };
    std::vector<Waiting> waiting = {{0, MemoryModel::Builder::kRoot}};
    while (!waiting.empty()) {
        const Waiting next = waiting.back();
        waiting.pop_back();
        const HPS::ComponentId id =
            builder.addOccurrence(next.parent, nameOf(nodes[next.node].number, names));
        const auto& below = children[next.node];
        if (below.empty()) {
            const HPS::ComponentId definition = builder.add(id, ComponentType::PartDefinition, "");
            builder.add(definition, ComponentType::BrepModel, "Solid");
        }
        for (auto child = below.rbegin(); child != below.rend(); ++child) {
            waiting.push_back({*child, id});
        }
    }
    return builder.finish();
}

}  // namespace

ModelPair makePair(Shape shape, Names names, std::size_t nodeCount) {
    Layout layout = makeLayout(shape, nodeCount);
    auto& nodes = layout.nodes();
    std::vector<std::vector<std::size_t>> children(nodes.size());
    for (std::size_t i = 1; i < nodes.size(); ++i) children[nodes[i].parent].push_back(i);
    ModelPair pair;
    pair.reference = makeModel(nodes, children, names);
    change(nodes, children);
    pair.compare = makeModel(nodes, children, names);
    return pair;
}

std::vector<std::wstring> occurrenceNames(const MemoryModel& model) {
    std::vector<HPS::ComponentId> occurrences;
    model.collectAll(model.root(), ComponentType::ProductOccurrence, occurrences);
    std::vector<std::wstring> names;
    names.reserve(occurrences.size());
    for (const HPS::ComponentId id : occurrences) names.push_back(os::toWide(model.name(id)));
    return names;
}

}  // namespace bench
