#pragma once

#include <string>

#include "apps/cli/findings.h"
#include "apps/cli/options.h"

namespace cli {

struct TextReportOptions {
    bool changesOnly = false;
    bool colour = false;
    bool geometry = false;  ///< the 3D comparison alone, with lines for the faces of each body
    Sections sections = {};
};

/// The lists for a reader, one title and table per section: each line a name, what it has in
/// either file, and a state. Where the two sides state different things, both are said. UTF-8,
/// safe for a terminal; each section ends with an empty line.
std::string sectionsReport(const bxtsg::SectionsOutcome& lists, const TextReportOptions& options);

/// "bill of materials: 1 other quantity; attributes: same; ..."; each part ends with "; ".
std::string sectionsSummary(const bxtsg::SectionsOutcome& lists, const Counts& counts);

}  // namespace cli
