#pragma once

#include <string>
#include <vector>

#include "extract/item_diff_state.h"

namespace diff {

/// Compares the file information of two files row by row, as far as both have rows, and appends
/// each row's state to both lists: unchanged when the values are equal, case included.
void CompareFileInformation(const std::vector<std::wstring>& referenceValues,
                            const std::vector<std::wstring>& compareValues,
                            std::vector<extract::ItemDiffState>& referenceStates,
                            std::vector<extract::ItemDiffState>& compareStates);

}  // namespace diff
