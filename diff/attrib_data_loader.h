#pragma once

#include <string>
#include <vector>

#include "extract/attributes.h"
#include "extract/item_diff_state.h"
#include "platform/hps/component.h"

namespace diff {

/// Attributes of two models and what became of them: those of the files, which are the metadata
/// of the models' top occurrences, and those of each occurrence below. User-interface thread.
class AttribDataLoader {
public:
    /// Reads and compares the file attributes of both models in place of what was read before.
    /// Exceptions of the providers pass through.
    void LoadFileAttributes(const HPS::Component& referenceComponent,
                            const HPS::Component& compareComponent);

    /// Reads and compares the attributes of all occurrences in place of what was read before.
    /// Never throws; see extract::ExtractComponentAttributes().
    void LoadPartAttributes(const HPS::Component& referenceComponent,
                            const HPS::Component& compareComponent);

    /// Sets one state per file attribute. Names are searched on the other side as SearchName()
    /// does, though they are sorted with regard to case: of names that differ in case, some count
    /// as one-sided. A row "No Attributes" is never a difference.
    void CompareFileAttributes();

    /// See diff::ComparePartAttributes().
    void ComparePartAttributes();

    /// Copies of one side's file attributes.
    void ReadReference(std::vector<std::wstring>& names, std::vector<std::wstring>& values,
                       std::vector<extract::ItemDiffState>& states) const;
    void ReadCompare(std::vector<std::wstring>& names, std::vector<std::wstring>& values,
                     std::vector<extract::ItemDiffState>& states) const;

    /// File attributes: names and values of equal number. The two sides are not aligned.
    std::vector<std::wstring> referenceNames;
    std::vector<std::wstring> referenceValues;
    std::vector<std::wstring> compareNames;
    std::vector<std::wstring> compareValues;
    std::vector<extract::ItemDiffState> referenceStates;
    std::vector<extract::ItemDiffState> compareStates;
    /// One record per occurrence, sorted by name.
    std::vector<extract::PartAttributes> referenceParts;
    std::vector<extract::PartAttributes> compareParts;
};

}  // namespace diff
