#include "diff/name_map.h"

#include <functional>

namespace diff {
namespace {

constexpr std::size_t kSmallest = 64;

}  // namespace

void NameMap::Append(const extract::AssemblyNode* node) {
    if (slots_.size() < 2 * (used_ + 1)) grow();
    const std::size_t hash = std::hash<std::wstring>()(node->name);
    Slot& slot = slots_[slotOf(node->name, hash)];
    if (slot.node) return;
    slot = {hash, node};
    ++used_;
}

const extract::AssemblyNode* NameMap::First(const std::wstring& name) const {
    if (slots_.empty()) return nullptr;
    return slots_[slotOf(name, std::hash<std::wstring>()(name))].node;
}

// The slot that holds the name, or the free one where it belongs.
std::size_t NameMap::slotOf(const std::wstring& name, std::size_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t index = hash & mask;
    while (slots_[index].node) {
        if (slots_[index].hash == hash && slots_[index].node->name == name) break;
        index = (index + 1) & mask;
    }
    return index;
}

void NameMap::grow() {
    std::vector<Slot> old = std::move(slots_);
    slots_.assign(old.empty() ? kSmallest : 2 * old.size(), Slot());
    const std::size_t mask = slots_.size() - 1;
    for (const Slot& slot : old) {
        if (!slot.node) continue;
        std::size_t index = slot.hash & mask;
        while (slots_[index].node) index = (index + 1) & mask;
        slots_[index] = slot;
    }
}

}  // namespace diff
