#pragma once

#include <string>

#include "apps/cli/findings.h"

namespace cli {

/// The findings for programs: one JSON object as docs/compare.schema.json describes it, UTF-8,
/// indented by two blanks, with a line feed at the end. It holds the sections that are wanted and
/// switched on. Bytes of names that are no UTF-8 become
/// U+FFFD, numbers that are not finite null. Equal findings give equal bytes.
std::string jsonReport(const Findings& findings, bool changesOnly, const ExitOn& rule,
                       const Sections& sections = {});

}  // namespace cli
