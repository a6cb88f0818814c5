#pragma once

#include <cstdint>
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

/// Which sections the results dialog has.
struct DialogSwitches {
    bool productStructure = true;  ///< and the bill of materials
    bool pmi = true;
    bool attributes = true;
};

/// The three section switches. A missing one, and every one of a store that can't be opened,
/// counts as on.
DialogSwitches ReadDialogSwitches();

/// What reports hold.
struct ReportSwitches {
    bool productStructure = true;  ///< and the bill of materials
    bool pmi = true;
    bool attributes = true;
    bool threeDResult = true;
    bool referenceFile = false;
    bool compareFile = false;
};

/// Reads the six report switches. A missing one keeps what it has.
void LoadReportSwitches(ReportSwitches& switches);

/// Decimals of numbers as the host's workspace stores them; `fallback` when it stores none.
std::int32_t ReadNumberPrecision(std::int32_t fallback);

}  // namespace settings
