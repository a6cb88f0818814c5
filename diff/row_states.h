#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "extract/item_diff_state.h"

namespace diff {

/// The rows of one side as their comparison sees them. Refers to the texts.
struct RowTexts {
    std::vector<std::wstring_view> names;
    /// One per name, or none at all: then names alone decide.
    std::vector<std::wstring_view> values;
};

constexpr std::ptrdiff_t kNotFound = -1;

/// Binary search for a name without regard to case. The first equal name that it meets is its
/// answer, which of several is not said. Names that are sorted with regard to case can be missed:
/// where the two orders disagree, the search goes the wrong way.
std::ptrdiff_t SearchName(const std::vector<std::wstring_view>& names, std::wstring_view sought);

/// One state per row of `own`: `missing` when the search does not find its name on the other
/// side, otherwise by the values, which are compared exactly. Rows do not pair: one of the other
/// side can answer for several. A row of the name `exempt` stays unchanged whatever is there.
std::vector<extract::ItemDiffState> RowStates(const RowTexts& own, const RowTexts& other,
                                              extract::ItemDiffState missing,
                                              const wchar_t* exempt = nullptr);

}  // namespace diff
