#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "results/result_data.h"

namespace results {

/// Numbers of list rows beyond those of extract::ItemDiffState.
constexpr std::int32_t kHeaderRowState = 4;

/// Two parts that stand side by side.
struct PartPair {
    std::int32_t referenceIndex = -1;  ///< -1 for none
    std::int32_t compareIndex = -1;    ///< -1 for none
    std::wstring name;                 ///< the compare part's if there is one
};

/// Pairs every compare part with the first reference part of its name, case aside, that is not
/// taken yet; reference parts that are left follow at the end. Linear.
std::vector<PartPair> PairParts(const std::vector<extract::PartAttributes>& referenceParts,
                                const std::vector<extract::PartAttributes>& compareParts);

/// The first entry of each key in one part; null where it has none.
std::vector<const extract::AttributeEntry*> EntriesOf(const extract::PartAttributes* part,
                                                      const std::vector<std::wstring_view>& keys);

/// Which parts the list shows closed.
class PartFolding {
public:
    /// Closes all parts that exist on both sides by exactly that name and are not different,
    /// except those that the user opened.
    void Rebuild(const ResultData& data);
    /// Forgets what the user opened.
    void ForgetOpened() { expanded_.clear(); }
    /// Opens or closes a part. False, and nothing changes, for a part that differs.
    bool Toggle(const std::wstring& name, const ResultData& data);
    bool Collapsed(const std::wstring& name) const { return collapsed_.count(name) > 0; }

    const std::set<std::wstring>& collapsedParts() const { return collapsed_; }
    const std::set<std::wstring>& expandedParts() const { return expanded_; }

private:
    std::set<std::wstring> collapsed_;
    std::set<std::wstring> expanded_;
};

/// One line of the two lists.
struct PartRow {
    std::wstring referenceText;
    std::wstring referenceValue;
    std::int32_t referenceState = 0;
    std::wstring compareText;
    std::wstring compareValue;
    std::int32_t compareState = 0;
    /// The pair's name on a header row, else empty.
    std::wstring key;
};

/// All lines of all parts: a header, the attributes unless it is closed, and a blank one.
std::vector<PartRow> BuildPartRows(const ResultData& data, const PartFolding& folding);

}  // namespace results
