#pragma once

#include <string>
#include <vector>

#include "extract/attributes.h"
#include "reports/report_table.h"

namespace reports {

/// Everything that a report is made from.
struct ReportContent {
    ReportTable fileInfo;
    ReportTable bom;
    ReportTable attributes;
    ReportTable pmi;
    std::vector<extract::PartAttributes> referenceParts;
    std::vector<extract::PartAttributes> compareParts;
    ReportTable productStructure;
};

}  // namespace reports
