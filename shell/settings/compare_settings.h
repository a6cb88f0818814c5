#pragma once

#include <memory>
#include <vector>

#include "platform/bxt/schema.h"

/// The comparison's nine switches in the current user's key store. Nothing is cached: every call
/// reads or writes the store, which creates an empty key when there is none. Nothing is reported;
/// with a store that can't be opened, nothing happens. User-interface thread.
namespace settings {

/// Writes all nine switches, 1 for on and 0 for off. Nothing happens for an empty pointer.
void SaveCompareSettings(const std::shared_ptr<bxt::Settings>& switches);

/// Reads all nine switches; every number but 0 means on. A missing one keeps what it has.
void LoadCompareSettings(const std::shared_ptr<bxt::Settings>& switches);

/// Appends those of the three section switches that are stored, in the order product structure,
/// PMI, attributes. A missing one is left out.
void ReadSectionSwitches(std::vector<bool>& out);

}  // namespace settings
