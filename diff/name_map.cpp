#include "diff/name_map.h"

#include <functional>

namespace diff {
namespace {

constexpr std::size_t kSmallest = 64;

std::size_t hashOf(const std::wstring& name) {
    return std::hash<std::wstring>()(name);
}

}  // namespace

void NameMap::Want(const std::wstring& name) {
    if (slots_.size() < 2 * (used_ + 1)) grow();
    const std::size_t hash = hashOf(name);
    Slot& slot = slots_[slotOf(name, hash)];
    if (slot.name) return;
    slot = {hash, &name, nullptr};
    ++used_;
}

void NameMap::Append(const extract::AssemblyNode* node) {
    if (slots_.empty()) return;
    Slot& slot = slots_[slotOf(node->name, hashOf(node->name))];
    if (slot.name && !slot.first) slot.first = node;
}

const extract::AssemblyNode* NameMap::First(const std::wstring& name) const {
    return slots_.empty() ? nullptr : slots_[slotOf(name, hashOf(name))].first;
}

// The slot that holds the name, or the free one where it belongs.
std::size_t NameMap::slotOf(const std::wstring& name, std::size_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t index = hash & mask;
    while (slots_[index].name) {
        if (slots_[index].hash == hash && *slots_[index].name == name) break;
        index = (index + 1) & mask;
    }
    return index;
}

void NameMap::grow() {
    const std::vector<Slot> old = std::move(slots_);
    slots_.assign(old.empty() ? kSmallest : 2 * old.size(), Slot());
    for (const Slot& slot : old) {
        if (slot.name) slots_[slotOf(*slot.name, slot.hash)] = slot;
    }
}

}  // namespace diff
