#include "reports/report_sections.h"

#include "shell/settings/compare_settings.h"

namespace reports {

void loadReportOptions(ReportOptions& options) {
    settings::ReportSwitches switches{options.includeProductStructure, options.includePMI,
                                      options.includeAttributes,       options.include3DResult,
                                      options.includeReferenceFile,    options.includeCompareFile};
    settings::LoadReportSwitches(switches);
    options = {switches.productStructure, switches.pmi,           switches.attributes,
               switches.threeDResult,     switches.referenceFile, switches.compareFile};
}

bool ShowsSection(ReportSection section, const ReportOptions& options,
                  const ReportContent& content) {
    switch (section) {
        case ReportSection::FileInformation: return !content.fileInfo.empty();
        case ReportSection::CompareResult: return options.include3DResult;
        case ReportSection::ReferenceFile: return options.includeReferenceFile;
        case ReportSection::CompareFile: return options.includeCompareFile;
        case ReportSection::ProductStructure:
            return options.includeProductStructure && !IsEmptyTable(content.productStructure);
        case ReportSection::BillOfMaterials:
            return options.includeProductStructure && !IsEmptyTable(content.bom);
        case ReportSection::Attributes:
            return options.includeAttributes && !IsEmptyTable(content.attributes);
        case ReportSection::PartAttributes:
            return options.includeAttributes &&
                   !(content.referenceParts.empty() && content.compareParts.empty());
        case ReportSection::Pmi: return options.includePMI && !IsEmptyTable(content.pmi);
    }
    return false;
}

}  // namespace reports
