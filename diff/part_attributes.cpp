#include "diff/part_attributes.h"

#include <unordered_set>

#include "extract/no_case_index.h"

namespace diff {
namespace {

using extract::AttributeEntry;
using extract::ItemDiffState;
using extract::NoCaseIndex;
using extract::PartAttributes;

constexpr std::size_t kNone = NoCaseIndex::kNone;

void reset(std::vector<PartAttributes>& parts) {
    for (PartAttributes& part : parts) {
        part.isDifferent = false;
        part.state = ItemDiffState::Unchanged;
        for (AttributeEntry& entry : part.attributes) entry.state = ItemDiffState::Unchanged;
    }
}

void markOneSided(PartAttributes& part, ItemDiffState state) {
    part.isDifferent = true;
    part.state = state;
    for (AttributeEntry& entry : part.attributes) entry.state = state;
}

// Hands out the records of one list by name, each of them once, those of one name in list order.
class RecordQueues {
public:
    explicit RecordQueues(const std::vector<PartAttributes>& records)
        : next_(records.size(), kNone), front_(records.size(), kNone) {
        std::vector<std::size_t> back(records.size(), kNone);
        names_.Restart(records.size());
        for (std::size_t i = 0; i < records.size(); ++i) {
            const std::size_t first = names_.Insert(records[i].name, i);
            if (first == kNone) {
                front_[i] = back[i] = i;
            } else {
                next_[back[first]] = i;
                back[first] = i;
            }
        }
    }

    std::size_t Take(const std::wstring& name) {
        const std::size_t first = names_.Find(name);
        if (first == kNone) return kNone;
        const std::size_t taken = front_[first];
        if (taken != kNone) front_[first] = next_[taken];
        return taken;
    }

private:
    NoCaseIndex names_;
    std::vector<std::size_t> next_;   // record of the same name behind a record
    std::vector<std::size_t> front_;  // by the first record of a name: the next to be taken
};

// Compares the attributes of pairs, one pair after the other.
class AttributePairing {
public:
    // Whether anything differs.
    bool compare(std::vector<AttributeEntry>& reference, std::vector<AttributeEntry>& compare);

private:
    NoCaseIndex keys_;
    std::vector<std::size_t> firstOfKey_;  // by reference entry
    std::vector<bool> met_;                // by reference entry that is the first of its key
};

bool AttributePairing::compare(std::vector<AttributeEntry>& reference,
                               std::vector<AttributeEntry>& compare) {
    keys_.Restart(reference.size());
    firstOfKey_.resize(reference.size());
    met_.assign(reference.size(), false);
    for (std::size_t i = 0; i < reference.size(); ++i) {
        const std::size_t first = keys_.Insert(reference[i].key, i);
        firstOfKey_[i] = first == kNone ? i : first;
    }
    bool changed = false;
    for (AttributeEntry& entry : compare) {
        const std::size_t found = keys_.Find(entry.key);
        if (found == kNone) {
            entry.state = ItemDiffState::OnlyInCompare;
            changed = true;
            continue;
        }
        met_[found] = true;
        if (reference[found].value == entry.value) continue;
        reference[found].state = entry.state = ItemDiffState::Different;
        changed = true;
    }
    for (std::size_t i = 0; i < reference.size(); ++i) {
        if (met_[firstOfKey_[i]]) continue;
        reference[i].state = ItemDiffState::OnlyInReference;
        changed = true;
    }
    return changed;
}

void comparePair(PartAttributes& reference, PartAttributes& compare, AttributePairing& pairing) {
    if (reference.hasSubcomponents && !compare.hasSubcomponents) {
        markOneSided(reference, ItemDiffState::OnlyInReference);
    } else if (compare.hasSubcomponents && !reference.hasSubcomponents) {
        markOneSided(compare, ItemDiffState::OnlyInCompare);
    } else if (pairing.compare(reference.attributes, compare.attributes)) {
        reference.isDifferent = compare.isDifferent = true;
    }
}

}  // namespace

void ComparePartAttributes(std::vector<PartAttributes>& reference,
                           std::vector<PartAttributes>& compare) {
    reset(reference);
    reset(compare);
    RecordQueues queues(reference);
    AttributePairing pairing;
    std::vector<bool> used(reference.size(), false);
    for (PartAttributes& part : compare) {
        const std::size_t found = queues.Take(part.name);
        if (found == kNone) {
            markOneSided(part, ItemDiffState::OnlyInCompare);
        } else {
            used[found] = true;
            comparePair(reference[found], part, pairing);
        }
    }
    for (std::size_t i = 0; i < reference.size(); ++i) {
        if (!used[i]) markOneSided(reference[i], ItemDiffState::OnlyInReference);
    }
}

std::vector<std::wstring_view> KeysOf(const extract::PartAttributes* reference,
                                      const extract::PartAttributes* compare) {
    std::vector<std::wstring_view> keys;
    std::unordered_set<std::wstring_view> known;
    if (reference) {
        for (const extract::AttributeEntry& entry : reference->attributes) {
            keys.push_back(entry.key);
            known.insert(entry.key);
        }
    }
    if (compare) {
        for (const extract::AttributeEntry& entry : compare->attributes) {
            if (known.insert(entry.key).second) keys.push_back(entry.key);
        }
    }
    return keys;
}

}  // namespace diff
