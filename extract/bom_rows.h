#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/hps/component.h"

namespace extract {

/// One line of a bill of materials: all occurrences of one name from one source file.
struct BOMRow {
    /// The occurrence's name as the model gives it, instance suffix included.
    std::wstring partName;
    /// The occurrence's source file as its metadata has it; may be empty.
    std::wstring fileName;
    /// Number of occurrences.
    std::int32_t quantity = 1;
};

/// Appends a model's parts in the order in which they are met, or counts them to rows that are
/// there. Nothing for an empty model. Exceptions of the provider pass through; the rows so far
/// stay. Takes time linear in the components and no stack depth.
void LoadBOM(const HPS::Component& modelComponent, std::vector<BOMRow>& rows);

/// The same for one component and all that is below it. An occurrence with others below it is an
/// assembly, one with nothing below it is empty, and neither gives a row.
void CollectBOMRows(const HPS::Component& component, std::vector<BOMRow>& rows);

}  // namespace extract
