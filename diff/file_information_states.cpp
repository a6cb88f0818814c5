#include "diff/file_information_states.h"

#include <algorithm>

namespace diff {

using extract::ItemDiffState;

void CompareFileInformation(const std::vector<std::wstring>& referenceValues,
                            const std::vector<std::wstring>& compareValues,
                            std::vector<ItemDiffState>& referenceStates,
                            std::vector<ItemDiffState>& compareStates) {
    const std::size_t rows = std::min(referenceValues.size(), compareValues.size());
    for (std::size_t i = 0; i < rows; ++i) {
        const bool equal = referenceValues[i] == compareValues[i];
        const ItemDiffState state = equal ? ItemDiffState::Unchanged : ItemDiffState::Different;
        referenceStates.push_back(state);
        compareStates.push_back(state);
    }
}

}  // namespace diff
