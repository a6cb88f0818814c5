#pragma once

#include <nlohmann/json.hpp>

#include "apps/cli/findings.h"
#include "apps/cli/options.h"

namespace cli {

/// An index of a row; null for -1.
nlohmann::ordered_json indexOrNull(std::int32_t index);

/// Puts the sections of lists that are wanted and switched on into a report. With `changesOnly`
/// rows that are the same are left out; "index" is their position among all.
void addSections(const bxtsg::SectionsOutcome& lists, const Sections& wanted, bool changesOnly,
                 nlohmann::ordered_json& report);

/// Puts their counts into a summary, those that are switched on.
void addSectionCounts(const bxtsg::SectionsOutcome& lists, const Counts& counts,
                      nlohmann::ordered_json& summary);

}  // namespace cli
