#include "tests/support/memory_model.h"

#include "platform/exchange/services.h"

namespace support {
namespace {

namespace ComponentType = HPS::ComponentType;

bool isItem(std::uint32_t type) {
    return ComponentType::selects(ComponentType::RepresentationItemMask, type);
}

}  // namespace

ComponentShape ComponentShape::with(std::string key,
                                    decltype(HPS::MetadataValue::value) value) const {
    ComponentShape copy = *this;
    copy.metadata.push_back({std::move(key), std::move(value)});
    return copy;
}

ComponentShape occurrence(std::string name, std::vector<ComponentShape> children) {
    return {ComponentType::ProductOccurrence, std::move(name), std::move(children), {}};
}

ComponentShape part(std::string name, std::vector<std::string> bodies) {
    std::vector<ComponentShape> items;
    for (std::string& body : bodies) items.push_back(item(ComponentType::BrepModel, body));
    return occurrence(std::move(name), {item(ComponentType::PartDefinition, "", items)});
}

ComponentShape item(std::uint32_t type, std::string name, std::vector<ComponentShape> children) {
    return {type, std::move(name), std::move(children), {}};
}

MemoryModel::Builder::Builder(std::unique_ptr<MemoryModel> model) : model_(std::move(model)) {
    add(kRoot, ComponentType::ModelFile, "");
}

HPS::ComponentId MemoryModel::Builder::add(HPS::ComponentId parent, std::uint32_t type,
                                           std::string name) {
    const auto id = static_cast<HPS::ComponentId>(model_->types_.size());
    model_->types_.push_back(type);
    model_->parents_.push_back(parent);
    model_->nameStarts_.push_back(model_->names_.size());
    model_->names_ += name;
    return id;
}

void MemoryModel::Builder::addMetadata(HPS::ComponentId component, HPS::MetadataValue value) {
    model_->metadata_[component].push_back(
        std::make_shared<const HPS::MetadataValue>(std::move(value)));
}

void MemoryModel::Builder::addShape(HPS::ComponentId parent, const ComponentShape& shape) {
    const HPS::ComponentId id = add(parent, shape.type, shape.name);
    for (const HPS::MetadataValue& value : shape.metadata) addMetadata(id, value);
    for (const ComponentShape& below : shape.children) addShape(id, below);
}

std::shared_ptr<const MemoryModel> MemoryModel::Builder::finish() {
    model_->finish();
    return std::move(model_);
}

// Children in arrays of their own, in the order in which they were added, and the counts below
// each component. Ids grow downwards, so going through them backwards meets children first.
void MemoryModel::finish() {
    const std::size_t count = types_.size();
    nameStarts_.push_back(names_.size());
    childStarts_.assign(count + 1, 0);
    for (std::size_t id = 1; id < count; ++id) ++childStarts_[parents_[id] + 1];
    for (std::size_t id = 0; id < count; ++id) childStarts_[id + 1] += childStarts_[id];
    children_.resize(count - 1);
    std::vector<std::uint32_t> next(childStarts_.begin(), childStarts_.end() - 1);
    for (std::size_t id = 1; id < count; ++id) {
        children_[next[parents_[id]]++] = static_cast<HPS::ComponentId>(id);
    }
    occurrencesBelow_.assign(count, 0);
    itemsBelow_.assign(count, 0);
    for (std::size_t id = count; id-- > 0;) {
        if (types_[id] == ComponentType::ProductOccurrence) ++occurrencesBelow_[id];
        if (isItem(types_[id])) ++itemsBelow_[id];
        if (id == 0) break;
        occurrencesBelow_[parents_[id]] += occurrencesBelow_[id];
        itemsBelow_[parents_[id]] += itemsBelow_[id];
    }
}

std::string MemoryModel::name(HPS::ComponentId id) const {
    return names_.substr(nameStarts_[id], nameStarts_[id + 1] - nameStarts_[id]);
}

std::size_t MemoryModel::childCount(HPS::ComponentId id) const {
    return childStarts_[id + 1] - childStarts_[id];
}

HPS::ComponentId MemoryModel::child(HPS::ComponentId id, std::size_t index) const {
    return children_[childStarts_[id] + index];
}

std::size_t MemoryModel::countAll(HPS::ComponentId id, std::uint32_t type) const {
    if (type == ComponentType::ProductOccurrence) return occurrencesBelow_[id];
    if (type == ComponentType::RepresentationItemMask) return itemsBelow_[id];
    std::vector<HPS::ComponentId> found;
    collectAll(id, type, found);
    return found.size();
}

void MemoryModel::collectAll(HPS::ComponentId id, std::uint32_t type,
                             std::vector<HPS::ComponentId>& out) const {
    std::vector<HPS::ComponentId> waiting = {id};
    while (!waiting.empty()) {
        const HPS::ComponentId next = waiting.back();
        waiting.pop_back();
        if (ComponentType::selects(type, types_[next])) out.push_back(next);
        for (std::size_t i = childCount(next); i-- > 0;) waiting.push_back(child(next, i));
    }
}

std::vector<HPS::ComponentId> MemoryModel::owners(HPS::ComponentId id) const {
    std::vector<HPS::ComponentId> above;
    for (; id != root(); id = parents_[id]) above.push_back(parents_[id]);
    return above;
}

std::vector<std::shared_ptr<const HPS::MetadataValue>> MemoryModel::metadata(
    HPS::ComponentId id) const {
    const auto found = metadata_.find(id);
    if (found == metadata_.end()) return {};
    return found->second;
}

const void* MemoryModel::exchangeEntity(HPS::ComponentId id) const {
    return isItem(types_[id]) ? &types_[id] : nullptr;
}

HPS::CADModel makeModel(const std::vector<ComponentShape>& top) {
    MemoryModel::Builder builder;
    for (const ComponentShape& shape : top) builder.addShape(MemoryModel::Builder::kRoot, shape);
    return HPS::CADModel(builder.finish());
}

bool isOneOfSeveralItems(const HPS::Exchange::Component& component) {
    const HPS::ComponentArray owners = component.GetOwners();
    if (owners.empty() || !isItem(component.GetComponentType())) return false;
    std::size_t items = 0;
    for (const HPS::Component& sibling : owners[0].GetSubcomponents()) {
        if (isItem(sibling.GetComponentType())) ++items;
    }
    return items > 1;
}

struct ScopedMultiBody::Saved {
    std::function<bool(const HPS::Exchange::Component&)> question;
};

ScopedMultiBody::ScopedMultiBody(bool (*question)(const HPS::Exchange::Component&))
    : saved_(new Saved{bxtexchange::services().isMultiBody}) {
    bxtexchange::services().isMultiBody = question;
}

ScopedMultiBody::~ScopedMultiBody() {
    bxtexchange::services().isMultiBody = saved_->question;
}

}  // namespace support
