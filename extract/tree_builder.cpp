#include "extract/tree_builder.h"

#include <deque>
#include <unordered_set>

#include "extract/naming.h"
#include "platform/exchange/pmi.h"
#include "platform/hps/component_type.h"

namespace extract {
namespace {

constexpr std::int32_t kLevelStep = 5;

// Components whose nodes hang below one parent. A component that gives no node of its own has a
// frame with its parent's node, so that its children go on where its siblings stopped.
struct Frame {
    HPS::ComponentArray components;
    std::size_t count = 0;
    std::size_t next = 0;
    AssemblyNode* parent = nullptr;
    std::int32_t level = 0;
};

class TreeBuilder {
public:
    explicit TreeBuilder(const NodeFactory& createNode) : createNode_(createNode) {}

    AssemblyNode* build(const HPS::Component& component);

private:
    void addOccurrence(const HPS::Component& component, AssemblyNode* parent, std::int32_t level);
    void addBodies(const HPS::Component& component, AssemblyNode* part);
    AssemblyNode* addNode(std::wstring displayName, AssemblyNode* parent, std::int32_t level);
    void push(HPS::ComponentArray components, AssemblyNode* parent, std::int32_t level);

    const NodeFactory& createNode_;
    std::vector<Frame> frames_;
};

AssemblyNode* TreeBuilder::build(const HPS::Component& component) {
    AssemblyNode* const root = createNode_();
    root->name = kRootName;
    root->displayName = kRootName;
    if (component.Empty()) return root;
    push(component.GetSubcomponents(), root, 0);
    while (!frames_.empty()) {
        Frame& top = frames_.back();
        if (top.next == top.count) {
            frames_.pop_back();
            continue;
        }
        // What follows may grow the stack and move `top`.
        const HPS::Component next = top.components[top.next++];
        addOccurrence(next, top.parent, top.level);
    }
    return root;
}

void TreeBuilder::addOccurrence(const HPS::Component& component, AssemblyNode* parent,
                                std::int32_t level) {
    std::wstring displayName;
    if (component.GetComponentType() == HPS::ComponentType::ProductOccurrence) {
        displayName = ReadName(component);
    }
    HPS::ComponentArray below = component.GetSubcomponents();
    if (displayName.empty()) {
        push(std::move(below), parent, level);
        return;
    }
    AssemblyNode* const node = addNode(std::move(displayName), parent, level);
    node->name = GetFileStem(component);
    if (node->name.empty()) node->name = StripInstanceSuffix(node->displayName);
    node->hasSubcomponents = !below.empty();
    if (component.GetAllSubcomponents(HPS::ComponentType::ProductOccurrence).size() > 1) {
        node->children.reserve(below.size());
        push(std::move(below), node, level + kLevelStep);
    } else {
        addBodies(component, node);
    }
}

void TreeBuilder::addBodies(const HPS::Component& component, AssemblyNode* part) {
    const HPS::ComponentArray items =
        component.GetAllSubcomponents(HPS::ComponentType::RepresentationItemMask);
    if (items.size() < 2) return;
    std::deque<std::wstring> names;  // keeps its elements in place: `seen` looks into them
    std::unordered_set<std::wstring_view> seen;
    for (const HPS::Component& candidate : items) {
        const HPS::Exchange::Component item(candidate);
        if (!bxtexchange::PMIInfoPopulator::isMultiBody(item)) continue;
        if (item.GetComponentType() != HPS::ComponentType::BrepModel) continue;
        std::wstring name = ReadName(item);
        if (name.empty() || seen.contains(name)) continue;
        seen.insert(names.emplace_back(std::move(name)));
    }
    if (names.size() < 2) return;
    part->children.reserve(names.size());
    for (std::wstring& name : names) {
        AssemblyNode* const body = addNode(std::move(name), part, part->level + kLevelStep);
        body->name = body->displayName;
    }
}

// A node is linked as soon as it is made: siblings follow only when its subtree is complete, so
// children stand in model order, and their number is the position of the next one.
AssemblyNode* TreeBuilder::addNode(std::wstring displayName, AssemblyNode* parent,
                                   std::int32_t level) {
    AssemblyNode* const node = createNode_();
    node->displayName = std::move(displayName);
    node->parentName = parent->name;
    node->level = level;
    node->siblingIndex = static_cast<std::int32_t>(parent->children.size());
    node->parent = parent;
    parent->children.push_back(node);
    return node;
}

void TreeBuilder::push(HPS::ComponentArray components, AssemblyNode* parent, std::int32_t level) {
    const std::size_t count = components.size();
    if (count == 0) return;
    frames_.push_back({std::move(components), count, 0, parent, level});
}

}  // namespace

AssemblyNode* BuildTree(const HPS::Component& component, const NodeFactory& createNode) {
    return TreeBuilder(createNode).build(component);
}

}  // namespace extract
