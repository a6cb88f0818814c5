#pragma once

#include <cstdint>
#include <string_view>

namespace extract {

/// On which side a row of attributes, PMI, bill of materials or file information exists. The
/// numbers are shown and published, so they never change. 1 and 2 are not those of
/// AssemblyDiffState.
enum class ItemDiffState : std::int32_t {
    Unchanged = 0,
    OnlyInReference = 1,
    OnlyInCompare = 2,
    Different = 3,  ///< on both sides, with another value
};

/// What lists show where a name or a value is empty.
constexpr std::wstring_view kEmptyText = L" - ";

}  // namespace extract
