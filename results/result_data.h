#pragma once

#include <string>
#include <vector>

#include "extract/attributes.h"
#include "extract/item_diff_state.h"

namespace results {

using Texts = std::vector<std::wstring>;
using States = std::vector<extract::ItemDiffState>;

/// The rows of one section of lists. Lists of one side run parallel; the sides may differ.
struct SectionRows {
    Texts referenceNames;
    Texts referenceValues;
    Texts compareNames;
    Texts compareValues;
    States referenceStates;
    States compareStates;
};

/// Everything that the lists, the copied text and the reports show.
struct ResultData {
    SectionRows fileInfo;
    SectionRows bom;
    SectionRows attributes;
    SectionRows pmi;
    std::vector<extract::PartAttributes> referenceParts;
    std::vector<extract::PartAttributes> compareParts;
    /// Volumes in the cubes of the units beside them; 0 means unknown.
    double referenceVolume = 0;
    std::wstring referenceUnit;
    double compareVolume = 0;
    std::wstring compareUnit;
};

}  // namespace results
