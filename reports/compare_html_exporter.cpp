#include "reports/compare_html_exporter.h"

#include "platform/ui/services.h"

namespace reports {

CompareHtmlExporter::CompareHtmlExporter(const std::shared_ptr<bxt::IDocument>& document,
                                         const HPS::CADModel& referenceModel,
                                         const HPS::CADModel& compareModel)
    : document_(&document), referenceModel_(referenceModel), compareModel_(compareModel) {
    if (const auto& screen = ui::services().screen) {
        imageWidthPx_ = screen->sizePx().width;
        imageHeightPx_ = screen->sizePx().height;
    }
}

int CompareHtmlExporter::exportToHTML(const std::wstring& /*path*/,
                                      const ReportContent& /*content*/) {
    loadReportOptions(options_);
    return -1;
}

}  // namespace reports
