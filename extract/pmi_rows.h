#pragma once

#include <string>
#include <vector>

#include "platform/hps/component.h"

namespace extract {

/// One item of product and manufacturing information. An empty name or text is kEmptyText.
struct PMIRow {
    std::wstring name;
    std::wstring value;
};

/// Appends the PMI of a model, all items of all parts in one list, sorted by name in the order of
/// the characters' codes, equal names in model order. A model without PMI gives the one row
/// ("No PMI", "-"). Exceptions of the provider pass through.
void LoadPMI(const HPS::Component& modelComponent, std::vector<PMIRow>& rows);

}  // namespace extract
