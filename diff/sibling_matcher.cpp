#include "diff/sibling_matcher.h"

#include <cstring>

#include "diff/match_key.h"

namespace diff {
namespace {

// Up to here comparing hashes one by one is quicker than keeping a table.
constexpr std::size_t kFewGroups = 8;
constexpr std::size_t kSmallestTable = 64;

std::uint64_t hashOf(const char* bytes, std::size_t length) {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
    std::uint64_t hash = length * kFactor;
    while (length > 0) {
        std::uint64_t word = 0;
        const std::size_t taken = length < sizeof word ? length : sizeof word;
        std::memcpy(&word, bytes, taken);
        hash = (hash ^ word) * kFactor;
        hash ^= hash >> 32;
        bytes += taken;
        length -= taken;
    }
    return hash;
}

}  // namespace

void SiblingMatcher::Match(const NodeList& reference, const NodeList& compare) {
    keys_.clear();
    groups_.clear();
    table_.clear();
    groupOfReference_.resize(reference.size());
    groupOfCompare_.resize(compare.size());
    nextReference_.assign(reference.size(), kNone);
    partners_.assign(compare.size(), kNone);
    paired_.assign(reference.size(), 0);
    for (std::size_t i = 0; i < reference.size(); ++i) {
        addReference(static_cast<std::uint32_t>(i), groupOf(reference[i]->displayName));
    }
    for (std::size_t i = 0; i < compare.size(); ++i) {
        const std::wstring& name = compare[i]->displayName;
        // Most siblings stand where they stood, and equal names have equal keys.
        const bool unchanged = i < reference.size() && reference[i]->displayName == name;
        pairCompare(i, unchanged ? groupOfReference_[i] : groupOf(name));
    }
}

std::uint32_t SiblingMatcher::groupOf(const std::wstring& displayName) {
    Group key;
    key.keyStart = keys_.size();
    AppendMatchKey(displayName, keys_);
    key.keyLength = keys_.size() - key.keyStart;
    key.hash = hashOf(keys_.data() + key.keyStart, key.keyLength);
    if (table_.empty()) {
        for (std::size_t i = 0; i < groups_.size(); ++i) {
            if (!hasKey(groups_[i], key)) continue;
            keys_.resize(key.keyStart);
            return static_cast<std::uint32_t>(i);
        }
        return addGroup(key);
    }
    const std::size_t mask = table_.size() - 1;
    for (std::size_t slot = key.hash & mask; table_[slot] != kNone; slot = (slot + 1) & mask) {
        if (!hasKey(groups_[table_[slot]], key)) continue;
        keys_.resize(key.keyStart);
        return table_[slot];
    }
    return addGroup(key);
}

bool SiblingMatcher::hasKey(const Group& group, const Group& key) const {
    return group.hash == key.hash && group.keyLength == key.keyLength &&
           std::memcmp(keys_.data() + group.keyStart, keys_.data() + key.keyStart, key.keyLength) ==
               0;
}

std::uint32_t SiblingMatcher::addGroup(const Group& key) {
    const auto index = static_cast<std::uint32_t>(groups_.size());
    groups_.push_back(key);
    if (groups_.size() > kFewGroups) {
        if (table_.size() < 2 * groups_.size()) {
            growTable();
        } else {
            fileIntoTable(index);
        }
    }
    return index;
}

void SiblingMatcher::growTable() {
    const std::size_t size = table_.empty() ? kSmallestTable : 2 * table_.size();
    table_.assign(size, kNone);
    for (std::size_t i = 0; i < groups_.size(); ++i) fileIntoTable(static_cast<std::uint32_t>(i));
}

void SiblingMatcher::fileIntoTable(std::uint32_t group) {
    const std::size_t mask = table_.size() - 1;
    std::size_t slot = groups_[group].hash & mask;
    while (table_[slot] != kNone) slot = (slot + 1) & mask;
    table_[slot] = group;
}

void SiblingMatcher::addReference(std::uint32_t position, std::uint32_t groupIndex) {
    groupOfReference_[position] = groupIndex;
    Group& group = groups_[groupIndex];
    ++group.counts.reference;
    if (group.lastReference == kNone) {
        group.firstReference = position;
    } else {
        nextReference_[group.lastReference] = position;
    }
    group.lastReference = position;
}

void SiblingMatcher::pairCompare(std::size_t position, std::uint32_t groupIndex) {
    groupOfCompare_[position] = groupIndex;
    Group& group = groups_[groupIndex];
    ++group.counts.compare;
    const std::uint32_t partner = group.firstReference;
    if (partner == kNone) return;
    partners_[position] = partner;
    paired_[partner] = 1;
    group.firstReference = nextReference_[partner];
}

}  // namespace diff
