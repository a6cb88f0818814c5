#pragma once

#include <memory>
#include <string>

#include "platform/bxt/application.h"
#include "platform/hps/component.h"
#include "reports/report_sections.h"

namespace bxtsgutils {

/// Writes results as a PDF report. Lives for one save; user-interface thread.
class CompareReportExporter {
public:
    explicit CompareReportExporter(std::shared_ptr<bxt::IDocument> document);
    virtual ~CompareReportExporter();

    /// Keeps copies.
    void setRowStates(const reports::RowStates& states) { states_ = states; }

    /// Reads the user's switches for reports, then writes the document. Returns 0, or -1 on a
    /// failure. No document is drawn yet: it always fails and writes no file.
    int exportToPDF(const std::wstring& path, const std::shared_ptr<bxt::IDocument>& document,
                    const HPS::CADModel& compareModel, const HPS::CADModel& referenceModel,
                    const reports::ReportContent& content);

    const std::shared_ptr<bxt::IDocument>& document() const { return document_; }
    const reports::RowStates& rowStates() const { return states_; }
    const reports::ReportOptions& options() const { return options_; }
    /// File of the result's 3D data; empty at the start.
    const std::wstring& resultPrcPath() const { return resultPrcPath_; }

private:
    reports::RowStates states_;
    reports::ReportOptions options_;
    std::wstring resultPrcPath_;
    std::shared_ptr<bxt::IDocument> document_;
};

}  // namespace bxtsgutils
