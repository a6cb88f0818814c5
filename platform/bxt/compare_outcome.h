#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/bxt/schema.h"

namespace bxtsg {

/// One node of a compared product structure.
struct OutcomeNode {
    std::wstring name;
    std::wstring displayName;
    std::int32_t level = 0;         ///< 0 below the root, then steps of 5
    std::int32_t siblingIndex = 0;  ///< position among the children of the same parent
    std::int32_t state = 0;         ///< 0 same, 1 added, 2 deleted, 3 modified, 4 moved
    std::int32_t parent = -1;       ///< index in the same list; -1 below the root
    std::int32_t peer = -1;         ///< index in the other side's list; -1 without one
    std::int32_t referenceGroupCount = 0;
    std::int32_t compareGroupCount = 0;
    bool hasSubcomponents = true;
    std::wstring movedFromPath;
    std::wstring movedToPath;
};

/// One line of the two trees side by side: indices into the two node lists, -1 for a gap.
struct OutcomeRow {
    std::int32_t reference = -1;
    std::int32_t compare = -1;
};

/// Both trees in pre-order without their roots, and their rows in display order.
struct ProductStructureOutcome {
    std::vector<OutcomeNode> reference;
    std::vector<OutcomeNode> compare;
    std::vector<OutcomeRow> rows;
};

/// What a compare run found, on the result document (code 200), for hosts and tests to read.
/// Belongs to the user-interface thread.
class SCCompareOutcome : public Schema {
public:
    ~SCCompareOutcome() override;

    virtual const std::wstring& referencePath() const = 0;
    virtual const std::wstring& comparePath() const = 0;

    /// The two trees. Built on first need, which walks both models; kept from then on. Empty
    /// when the run's results were replaced or released before anyone had asked.
    virtual const ProductStructureOutcome& productStructure() = 0;
};

}  // namespace bxtsg
