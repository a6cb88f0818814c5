#pragma once

#include <string>

#include "apps/cli/findings.h"
#include "apps/cli/section_text.h"

namespace cli {

/// The findings for a reader: the two trees side by side with the state of each node, the rows of
/// the lists, what the 3D comparison says about each instance, what could not be compared, and one
/// line that sums it up. UTF-8, safe for a terminal, every line with its line feed.
std::string textReport(const Findings& findings, const TextReportOptions& options);

}  // namespace cli
