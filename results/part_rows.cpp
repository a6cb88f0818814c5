#include "results/part_rows.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "diff/part_attributes.h"
#include "extract/case_folding.h"

namespace results {
namespace {

using extract::AttributeEntry;
using extract::ItemDiffState;
using extract::PartAttributes;
using Parts = std::vector<PartAttributes>;

std::wstring folded(const std::wstring& name) {
    std::wstring result = name;
    for (wchar_t& character : result) character = extract::FoldCase(character);
    return result;
}

/// Positions of one name, of which some are taken.
struct Queue {
    std::vector<std::int32_t> positions;
    std::size_t taken = 0;
};

std::unordered_set<std::wstring_view> namesOf(const Parts& parts) {
    std::unordered_set<std::wstring_view> names;
    for (const PartAttributes& part : parts) names.insert(part.name);
    return names;
}

bool differs(const std::wstring& name, const Parts& parts) {
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [&](const PartAttributes& part) { return part.name == name; });
    return found != parts.end() && found->isDifferent;
}

const PartAttributes* partAt(const Parts& parts, std::int32_t index) {
    return index < 0 ? nullptr : &parts[static_cast<std::size_t>(index)];
}

std::int32_t stateOf(const AttributeEntry* entry, ItemDiffState missing) {
    return static_cast<std::int32_t>(entry ? entry->state : missing);
}

void addAttributeRows(const PartAttributes* reference, const PartAttributes* compare,
                      std::vector<PartRow>& rows) {
    const auto keys = diff::KeysOf(reference, compare);
    const auto referenceEntries = EntriesOf(reference, keys);
    const auto compareEntries = EntriesOf(compare, keys);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        PartRow& row = rows.emplace_back();
        row.referenceText = row.compareText = L"  " + std::wstring(keys[i]);
        if (referenceEntries[i]) row.referenceValue = referenceEntries[i]->value;
        if (compareEntries[i]) row.compareValue = compareEntries[i]->value;
        row.referenceState = stateOf(referenceEntries[i], ItemDiffState::OnlyInReference);
        row.compareState = stateOf(compareEntries[i], ItemDiffState::OnlyInCompare);
    }
    rows.emplace_back();
}

}  // namespace

std::vector<PartPair> PairParts(const Parts& referenceParts, const Parts& compareParts) {
    std::unordered_map<std::wstring, Queue> byName;
    for (std::size_t i = 0; i < referenceParts.size(); ++i) {
        byName[folded(referenceParts[i].name)].positions.push_back(static_cast<std::int32_t>(i));
    }
    std::vector<PartPair> pairs;
    std::vector<bool> used(referenceParts.size());
    for (std::size_t i = 0; i < compareParts.size(); ++i) {
        PartPair& pair = pairs.emplace_back();
        pair.compareIndex = static_cast<std::int32_t>(i);
        pair.name = compareParts[i].name;
        const auto found = byName.find(folded(pair.name));
        if (found == byName.end() || found->second.taken == found->second.positions.size())
            continue;
        pair.referenceIndex = found->second.positions[found->second.taken++];
        used[static_cast<std::size_t>(pair.referenceIndex)] = true;
    }
    for (std::size_t i = 0; i < referenceParts.size(); ++i) {
        if (!used[i]) pairs.push_back({static_cast<std::int32_t>(i), -1, referenceParts[i].name});
    }
    return pairs;
}

std::vector<const AttributeEntry*> EntriesOf(const PartAttributes* part,
                                             const std::vector<std::wstring_view>& keys) {
    std::unordered_map<std::wstring_view, const AttributeEntry*> first;
    if (part) {
        for (const AttributeEntry& entry : part->attributes) first.emplace(entry.key, &entry);
    }
    std::vector<const AttributeEntry*> entries;
    entries.reserve(keys.size());
    for (const std::wstring_view key : keys) {
        const auto found = first.find(key);
        entries.push_back(found == first.end() ? nullptr : found->second);
    }
    return entries;
}

void PartFolding::Rebuild(const ResultData& data) {
    const auto references = namesOf(data.referenceParts);
    const auto compares = namesOf(data.compareParts);
    collapsed_.clear();
    for (const Parts* side : {&data.referenceParts, &data.compareParts}) {
        for (const PartAttributes& part : *side) {
            const bool onBoth = references.count(part.name) && compares.count(part.name);
            if (!part.isDifferent && onBoth && !expanded_.count(part.name)) {
                collapsed_.insert(part.name);
            }
        }
    }
}

bool PartFolding::Toggle(const std::wstring& name, const ResultData& data) {
    if (differs(name, data.referenceParts) || differs(name, data.compareParts)) return false;
    if (collapsed_.erase(name)) {
        expanded_.insert(name);
    } else {
        collapsed_.insert(name);
        expanded_.erase(name);
    }
    return true;
}

std::vector<PartRow> BuildPartRows(const ResultData& data, const PartFolding& folding) {
    std::vector<PartRow> rows;
    for (const PartPair& pair : PairParts(data.referenceParts, data.compareParts)) {
        const PartAttributes* const reference = partAt(data.referenceParts, pair.referenceIndex);
        const PartAttributes* const compare = partAt(data.compareParts, pair.compareIndex);
        const bool different =
            (reference && reference->isDifferent) || (compare && compare->isDifferent);
        const bool collapsed = !different && folding.Collapsed(pair.name);
        const wchar_t* const marker = different ? L"" : collapsed ? L"\u25b6 " : L"\u25bc ";
        PartRow& header = rows.emplace_back();
        header.referenceText = marker + (reference ? reference->name : std::wstring());
        header.compareText = marker + (compare ? compare->name : std::wstring());
        header.referenceState = header.compareState = kHeaderRowState;
        header.key = pair.name;
        if (!collapsed) addAttributeRows(reference, compare, rows);
    }
    return rows;
}

}  // namespace results
