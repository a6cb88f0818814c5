#pragma once

#include <string>
#include <vector>

#include "extract/item_diff_state.h"
#include "extract/pmi_rows.h"
#include "platform/hps/component.h"

namespace diff {

/// Product and manufacturing information of two models and what became of it. Names and texts
/// alone are compared, no geometry and no placement. User-interface thread.
class PMIDataLoader {
public:
    /// Reads and compares the PMI of both models in place of what was read before. Exceptions of
    /// the providers pass through.
    void LoadAndComparePMI(const HPS::Component& referenceComponent,
                           const HPS::Component& compareComponent);

    /// Sets one state per row. Names are searched on the other side as SearchName() does, though
    /// rows are sorted with regard to case: of names that differ in case, some count as
    /// one-sided. A row "No PMI" is never a difference.
    static void ComparePMI(const std::vector<extract::PMIRow>& referenceRows,
                           const std::vector<extract::PMIRow>& compareRows,
                           std::vector<extract::ItemDiffState>& referenceStates,
                           std::vector<extract::ItemDiffState>& compareStates);

    /// Copies of one side.
    void ReadReference(std::vector<std::wstring>& names, std::vector<std::wstring>& values,
                       std::vector<extract::ItemDiffState>& states) const;
    void ReadCompare(std::vector<std::wstring>& names, std::vector<std::wstring>& values,
                     std::vector<extract::ItemDiffState>& states) const;

    /// The two sides are not aligned.
    std::vector<extract::PMIRow> referenceRows;
    std::vector<extract::PMIRow> compareRows;
    std::vector<extract::ItemDiffState> referenceStates;
    std::vector<extract::ItemDiffState> compareStates;
};

}  // namespace diff
