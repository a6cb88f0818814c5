#include "reports/compare_report_exporter.h"

#include <utility>

namespace bxtsgutils {

CompareReportExporter::CompareReportExporter(std::shared_ptr<bxt::IDocument> document)
    : document_(std::move(document)) {}

CompareReportExporter::~CompareReportExporter() = default;

int CompareReportExporter::exportToPDF(const std::wstring& /*path*/,
                                       const std::shared_ptr<bxt::IDocument>& /*document*/,
                                       const HPS::CADModel& /*compareModel*/,
                                       const HPS::CADModel& /*referenceModel*/,
                                       const reports::ReportContent& /*content*/) {
    reports::loadReportOptions(options_);
    return -1;
}

}  // namespace bxtsgutils
