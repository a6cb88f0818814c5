#pragma once

#include <string>
#include <vector>

#include "extract/bom_rows.h"
#include "extract/item_diff_state.h"
#include "platform/hps/component.h"

namespace diff {

/// Bills of materials of two models and which part names only one of them has. Quantities and
/// source files are shown and never compared. User-interface thread.
class BOMDataLoader {
public:
    /// Reads and compares both models in place of what was read before; rows are sorted by name
    /// without regard to case, equal names in the order in which the model has them. Exceptions
    /// of the providers pass through.
    void LoadAndCompareBOM(const HPS::Component& referenceComponent,
                           const HPS::Component& compareComponent);

    /// Sets one state per row, by its name alone: unchanged or one-sided. The rows must be sorted
    /// by name without regard to case.
    static void CompareBOM(const std::vector<extract::BOMRow>& referenceRows,
                           const std::vector<extract::BOMRow>& compareRows,
                           std::vector<extract::ItemDiffState>& referenceStates,
                           std::vector<extract::ItemDiffState>& compareStates);

    /// Copies of one side: names, extract::kEmptyText for an empty one, and quantities in decimal.
    void ReadReference(std::vector<std::wstring>& names, std::vector<std::wstring>& quantities,
                       std::vector<extract::ItemDiffState>& states) const;
    void ReadCompare(std::vector<std::wstring>& names, std::vector<std::wstring>& quantities,
                     std::vector<extract::ItemDiffState>& states) const;

    /// The two sides are not aligned.
    std::vector<extract::BOMRow> referenceRows;
    std::vector<extract::BOMRow> compareRows;
    std::vector<extract::ItemDiffState> referenceStates;
    std::vector<extract::ItemDiffState> compareStates;
};

}  // namespace diff
