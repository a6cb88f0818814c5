#include "extract/no_case_index.h"

#include <bit>

#include "extract/case_folding.h"

namespace extract {
namespace {

constexpr std::size_t kLeastSlots = 16;

}  // namespace

void NoCaseIndex::Restart(std::size_t expected) {
    const std::size_t count = std::bit_ceil(2 * expected);
    slots_.assign(count < kLeastSlots ? kLeastSlots : count, Slot());
    used_ = 0;
}

std::size_t NoCaseIndex::Insert(std::wstring_view text, std::size_t position) {
    if (2 * (used_ + 1) > slots_.size()) grow();
    const std::size_t hash = HashNoCase(text);
    Slot& slot = slots_[slotOf(text, hash)];
    if (slot.position != kNone) return slot.position;
    slot = {hash, text, position};
    ++used_;
    return kNone;
}

std::size_t NoCaseIndex::Find(std::wstring_view text) const {
    if (used_ == 0) return kNone;
    return slots_[slotOf(text, HashNoCase(text))].position;
}

// The slot that holds the text, or the free one where it belongs.
std::size_t NoCaseIndex::slotOf(std::wstring_view text, std::size_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = hash & mask;
    while (slots_[at].position != kNone) {
        if (slots_[at].hash == hash && EqualNoCase(slots_[at].text, text)) break;
        at = (at + 1) & mask;
    }
    return at;
}

void NoCaseIndex::grow() {
    std::vector<Slot> old(slots_.empty() ? kLeastSlots : 2 * slots_.size());
    old.swap(slots_);
    for (const Slot& slot : old) {
        if (slot.position != kNone) slots_[slotOf(slot.text, slot.hash)] = slot;
    }
}

}  // namespace extract
