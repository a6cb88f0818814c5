#pragma once

#include <array>
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

/// The rows of one section, side by side as lists show them: nothing aligns the two sides. Lists of
/// one side run parallel. States: 0 unchanged, 1 only in the reference, 2 only in the compare file,
/// 3 another value.
struct OutcomeRows {
    std::vector<std::wstring> referenceNames;
    std::vector<std::wstring> referenceValues;
    std::vector<std::wstring> compareNames;
    std::vector<std::wstring> compareValues;
    std::vector<std::int32_t> referenceStates;
    std::vector<std::int32_t> compareStates;
};

struct OutcomeAttribute {
    std::wstring key;
    std::wstring value;
    std::int32_t state = 0;  ///< as in OutcomeRows
};

/// The attributes of one occurrence.
struct OutcomePart {
    std::wstring name;
    std::vector<OutcomeAttribute> attributes;
    bool isDifferent = false;
    std::int32_t state = 0;  ///< of the occurrence as a whole: 0, 1 or 2
};

/// Positions of a section's number in the lists below.
namespace outcome_section {
constexpr std::int32_t FileInformation = 0;
constexpr std::int32_t BillOfMaterials = 1;
constexpr std::int32_t Attributes = 2;
constexpr std::int32_t Pmi = 3;
constexpr std::int32_t ProductStructure = 4;
constexpr std::size_t kCount = 5;
}  // namespace outcome_section

/// Everything that the sections of lists show.
struct SectionsOutcome {
    OutcomeRows fileInformation;
    OutcomeRows billOfMaterials;
    OutcomeRows attributes;
    OutcomeRows pmi;
    std::vector<OutcomePart> referenceParts;
    std::vector<OutcomePart> compareParts;
    /// Which parts stand side by side: indices into the two lists, -1 for a gap.
    std::vector<OutcomeRow> partRows;
    /// Volumes in the cubes of the units beside them; 0 means unknown.
    double referenceVolume = 0;
    double compareVolume = 0;
    std::wstring referenceUnit;
    std::wstring compareUnit;
    /// The sections that the user's switches leave, from left to right.
    std::vector<std::int32_t> order;
    /// Differences by section as the results dialog counts them.
    std::array<std::int32_t, outcome_section::kCount> counts{};
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

    /// The rows of all other sections, those that are switched off included. Copied on first
    /// need; kept and empty as the trees.
    virtual const SectionsOutcome& sections() = 0;
};

}  // namespace bxtsg
