#pragma once

#include <memory>
#include <vector>

#include "platform/hps/metadata.h"

namespace occt {

/// Gives metadata of a name that stands before them a number behind it: "Layer", "Layer 2". Who
/// looks a name up finds one value, always the same one, and lists of two files pair. Numbers that
/// the names have already are skipped. Names that differ in case are different. Linear in the
/// values.
void makeKeysUnique(std::vector<std::shared_ptr<const HPS::MetadataValue>>& values);

}  // namespace occt
