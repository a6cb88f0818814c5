#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "extract/compare_job.h"
#include "platform/bxt/plugin.h"
#include "platform/exchange/doc_comparer.h"
#include "results/unified_compare_dialog.h"
#include "workflow/file_pair.h"

namespace workflow {

/// What lives from one run to the next. Members are released from the last to the first.
struct WorkflowState {
    /// True from the success of a comparison until the first hint 3 has passed.
    bool resultPending = false;
    /// Built on the first run that finds formats, and kept.
    FormatList fileFilters;
    std::unique_ptr<extract::CompareJob> compareJob;
    /// Made by the first successful run, then reused.
    std::unique_ptr<results::UnifiedCompareDialog> resultsDialog;
    /// The compare record that waits for its result document.
    std::shared_ptr<bxtsg::SCComprae> pendingRecord;
    /// True while the active document shows a drawing.
    bool activeIs2D = false;
    /// Factory of the active document, refreshed by hints.
    std::shared_ptr<bxtsg::IFactory> activeFactory;
    /// Factory of the document that shows the current comparison.
    std::shared_ptr<bxtsg::IFactory> resultFactory;
};

/// The road from the user's command to the shown result. All operations belong to the
/// user-interface thread except CompareWorker(). Nothing here throws; the outcome is worded in
/// the host's status bar.
class CompareWorkflow {
public:
    /// `pluginName` is what the host's status manager is told.
    explicit CompareWorkflow(std::wstring pluginName);
    ~CompareWorkflow();
    CompareWorkflow(const CompareWorkflow&) = delete;
    CompareWorkflow& operator=(const CompareWorkflow&) = delete;

    /// Lets go of comparer, dialog and job, in this order. For the plug-in's end: afterwards no
    /// other operation may be called.
    void Shutdown();

    /// The command. In a document that is a compare result it only raises the results dialog.
    void onCommand(bxtui::WindowHandle window, std::uint32_t commandId,
                   const std::shared_ptr<bxt::IApplication>& application);

    /// One run; blocks until its result is shown, or the run has ended without one. Keeps its own
    /// copy of the application.
    void RunCompare(std::shared_ptr<bxt::IApplication> application);

    /// Body of the worker thread; also works on any other thread. Returns 0.
    static std::uint32_t CompareWorker();

    /// Receives every hint of the host and of this plug-in; null does nothing.
    void update(const bxtui::Hint* hint);

    /// Moves the waiting compare record into the document that the hint concerns, and ends the
    /// comparer's life. False, and nothing has changed, when there is no record or no document.
    bool AdoptPendingRecord(const bxtui::Hint* hint);

    /// Tells the host's status manager which command of which plug-in runs.
    void NoteCommandUse(std::uint32_t commandId,
                        const std::shared_ptr<bxt::IApplication>& application) const;

    /// Box and status text for a part that was to be compared with an assembly.
    static void ShowPartAssemblyMismatch(const std::shared_ptr<bxt::IApplication>& application,
                                         const std::wstring& referencePath,
                                         const std::wstring& comparePath, bool referenceIsAssembly);

    /// Fills the results dialog from both models, publishes the outcome on the factory of the
    /// result document, and shows the dialog beside the main window. Extracts and measures both
    /// models, which blocks; exceptions of their providers pass through.
    void BuildResults(const HPS::CADModel& referenceModel, const HPS::CADModel& compareModel,
                      const std::wstring& referencePath, const std::wstring& comparePath,
                      const std::shared_ptr<bxtsg::IFactory>& factory);

    /// The rectangle that the results dialog wants on this screen, by the sections that are
    /// switched on; see results::ResultsDialogRect().
    static ui::PixelRect ResultsDialogRect();

    const WorkflowState& state() const { return state_; }

private:
    struct Run;

    bool ChoosePair(Run& run);
    bool ImportPair(Run& run);
    bool PrepareFrame(Run& run);
    void Compare(Run& run);
    void ReactToStatus(Run& run, bxtimp::IDocComparer::Status status);
    void DeliverResult(Run& run);
    void PlaceResultsDialog();

    void HandleActivation(const bxtui::Hint& hint);
    void HandleFrameHint(const bxtui::Hint& hint);
    void HandleClosedDocument(const bxtui::Hint& hint);
    void SaveSwitches() const;

    std::wstring pluginName_;
    WorkflowState state_;
};

}  // namespace workflow
