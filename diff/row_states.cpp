#include "diff/row_states.h"

#include "extract/case_folding.h"

namespace diff {

using extract::ItemDiffState;

std::ptrdiff_t SearchName(const std::vector<std::wstring_view>& names, std::wstring_view sought) {
    std::ptrdiff_t low = 0;
    std::ptrdiff_t high = static_cast<std::ptrdiff_t>(names.size()) - 1;
    while (low <= high) {
        const std::ptrdiff_t middle = (low + high) / 2;
        const int order = extract::CompareNoCase(sought, names[static_cast<std::size_t>(middle)]);
        if (order == 0) return middle;
        if (order < 0) {
            high = middle - 1;
        } else {
            low = middle + 1;
        }
    }
    return kNotFound;
}

std::vector<ItemDiffState> RowStates(const RowTexts& own, const RowTexts& other,
                                     ItemDiffState missing, const wchar_t* exempt) {
    std::vector<ItemDiffState> states(own.names.size(), ItemDiffState::Unchanged);
    for (std::size_t i = 0; i < states.size(); ++i) {
        if (exempt && own.names[i] == exempt) continue;
        const std::ptrdiff_t hit = SearchName(other.names, own.names[i]);
        if (hit == kNotFound) {
            states[i] = missing;
        } else if (!own.values.empty() &&
                   own.values[i] != other.values[static_cast<std::size_t>(hit)]) {
            states[i] = ItemDiffState::Different;
        }
    }
    return states;
}

}  // namespace diff
