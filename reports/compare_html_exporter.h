#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/bxt/application.h"
#include "platform/hps/component.h"
#include "reports/report_sections.h"

namespace reports {

/// Writes results as an HTML report. Lives for one save; user-interface thread.
class CompareHtmlExporter {
public:
    /// Refers to the caller's document pointer, which outlives the exporter; copies the models.
    CompareHtmlExporter(const std::shared_ptr<bxt::IDocument>& document,
                        const HPS::CADModel& referenceModel, const HPS::CADModel& compareModel);

    /// Keeps copies.
    void setRowStates(const RowStates& states) { states_ = states; }

    /// Reads the user's switches for reports, then writes the document. Returns 0, or -1 on a
    /// failure. No document is written yet: it always fails and makes no file.
    int exportToHTML(const std::wstring& path, const ReportContent& content);

    const std::shared_ptr<bxt::IDocument>& document() const { return *document_; }
    const HPS::CADModel& referenceModel() const { return referenceModel_; }
    const HPS::CADModel& compareModel() const { return compareModel_; }
    const RowStates& rowStates() const { return states_; }
    const ReportOptions& options() const { return options_; }
    /// Size of the pictures: that of the primary screen, 0 without one.
    std::int32_t imageWidthPx() const { return imageWidthPx_; }
    std::int32_t imageHeightPx() const { return imageHeightPx_; }

private:
    RowStates states_;
    const std::shared_ptr<bxt::IDocument>* document_;
    HPS::CADModel referenceModel_;
    HPS::CADModel compareModel_;
    ReportOptions options_;
    std::int32_t imageWidthPx_ = 0;
    std::int32_t imageHeightPx_ = 0;
};

}  // namespace reports
