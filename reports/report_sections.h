#pragma once

#include "reports/report_content.h"

namespace reports {

/// What a report holds by the user's switches. The bill of materials goes with the product
/// structure.
struct ReportOptions {
    bool includeProductStructure = true;
    bool includePMI = true;
    bool includeAttributes = true;
    bool include3DResult = true;
    bool includeReferenceFile = false;
    bool includeCompareFile = false;
};

/// Reads the switches from the user's store, the first act of every export. A switch that is not
/// stored keeps its value; with a store that can't be opened, all do.
void loadReportOptions(ReportOptions& options);

enum class ReportSection {
    FileInformation,
    CompareResult,
    ReferenceFile,
    CompareFile,
    ProductStructure,
    BillOfMaterials,
    Attributes,
    PartAttributes,
    Pmi,
};

/// Whether a report shows a section. Each is decided on its own; that one format reaches the
/// attributes of parts only through the attributes of files is that format's business.
bool ShowsSection(ReportSection section, const ReportOptions& options,
                  const ReportContent& content);

}  // namespace reports
