#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "extract/item_diff_state.h"
#include "platform/hps/component.h"

namespace extract {

/// One attribute of an occurrence. The comparison writes the states here and below.
struct AttributeEntry {
    std::wstring key;
    std::wstring value;
    ItemDiffState state = ItemDiffState::Unchanged;
};

/// All attributes of one occurrence. Every instance of a part has a record of its own.
struct PartAttributes {
    /// The occurrence's name as the model gives it.
    std::wstring name;
    /// Position among all occurrences of the model, in model order.
    std::int32_t occurrenceIndex = 0;
    /// The occurrence's source file as its metadata has it, folder included; may be empty.
    std::wstring fileName;
    /// In metadata order; no two keys are equal without regard to case.
    std::vector<AttributeEntry> attributes;
    bool isDifferent = false;
    /// Whether the record as a whole exists on one side only.
    ItemDiffState state = ItemDiffState::Unchanged;
    /// Whether the occurrence has anything directly below it.
    bool hasSubcomponents = true;
};

/// Appends the metadata of a model's top occurrence as names and values of equal number, sorted
/// by name in the order of the characters' codes. Texts stay as they are and equal names stay;
/// empty texts become kEmptyText. Nothing without a top occurrence or without metadata.
/// Exceptions of the provider pass through.
void ExtractFileAttributes(const HPS::Component& modelComponent, std::vector<std::wstring>& names,
                           std::vector<std::wstring>& values);

/// Appends one record per occurrence that is not named like the model's top occurrence, sorted by
/// name in the order of the characters' codes, equal names in model order. A model without such
/// an occurrence gives one record of its top occurrence, if that has metadata. Keys and values
/// are cleaned; of keys that are equal without regard to case the first one stays.
///
/// Never throws: what the provider throws ends the extraction, goes to the debug output, and
/// leaves the records that stood by then, unsorted. Takes time linear in the metadata, apart from
/// sorting.
void ExtractComponentAttributes(const HPS::Component& modelComponent,
                                std::vector<PartAttributes>& parts);

}  // namespace extract
