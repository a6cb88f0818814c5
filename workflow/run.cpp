#include "workflow/compare_workflow.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/bxt/file_path.h"
#include "platform/os/services.h"
#include "platform/ui/services.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "workflow/elapsed.h"
#include "workflow/model_import.h"
#include "workflow/shared_state.h"

namespace workflow {
namespace {

namespace id = resources::id;
using Status = bxtimp::IDocComparer::Status;
using bxtimp::IDocComparer;

constexpr int kConfirmed = 1;
constexpr int kCancelledProgress = 2;
constexpr int kEndOfProgress = 101;
constexpr int kOpenAsResult = 1;

constexpr std::uint16_t kHintResultComing = 3;
constexpr std::uint16_t kHintFrameReleased = 5;
constexpr std::uint16_t kHintFrameTaken = 24;

/// The toolkit's counted wait cursor for as long as this object lives.
class WaitCursor {
public:
    WaitCursor() : toolkit_(ui::services().toolkit) {
        if (toolkit_) toolkit_->beginWaitCursor();
    }
    ~WaitCursor() {
        if (toolkit_) toolkit_->endWaitCursor();
    }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    std::shared_ptr<ui::Toolkit> toolkit_;
};

std::uint64_t nowTicksMs() {
    const auto& clock = os::services().clock;
    return clock ? clock->ticksMs() : 0;
}

std::shared_ptr<bxtsg::IFactory> factoryOf(bxt::IApplication& application) {
    const auto frame = application.activeFrame();
    return frame ? frame->factory() : nullptr;
}

/// A worker that can't be started must not leave the user alone with a progress window.
std::unique_ptr<os::WorkerThread> startWorker() {
    // A run that is cancelled before its worker has moved must not find an older run's success.
    shared().sharedStatus = IDocComparer::NothingCompared;
    const auto& workers = os::services().workers;
    return workers ? workers->start([] { return CompareWorkflow::CompareWorker(); }) : nullptr;
}

}  // namespace

/// What one run holds until it ends.
struct CompareWorkflow::Run {
    std::shared_ptr<bxt::IApplication> application;
    std::shared_ptr<bxt::IFrame> frame;
    std::shared_ptr<bxtsg::IFactory> factory;
    std::shared_ptr<bxt::IHintTarget> hintTarget;
    std::shared_ptr<bxt::SCApplication> applicationData;
    std::shared_ptr<bxtsg::SCInfo> info;
    std::shared_ptr<bxtsg::SCComprae> compareRecord;
    std::shared_ptr<bxtsg::IFactory> comparedFactory;
    std::wstring referencePath;
    std::wstring comparePath;
    HPS::CADModel referenceModel;
    HPS::CADModel compareModel;
    std::uint64_t startTicksMs = 0;
    std::optional<WaitCursor> waitCursor;

    void enter() {
        frame = application->activeFrame();
        factory = frame ? frame->factory() : nullptr;
        hintTarget = frame ? frame->hintTarget() : nullptr;
        if (!factory) return;
        applicationData = factory->getAs<bxt::SCApplication>(bxtsg::code::Application);
        info = factory->getAs<bxtsg::SCInfo>(bxtsg::code::Info);
        compareRecord = factory->getAs<bxtsg::SCComprae>(bxtsg::code::Compare);
    }
    void broadcast(std::uint16_t code) const {
        const bxtui::Hint hint(code, application->activeFrame());
        if (hintTarget) hintTarget->broadcast(hint);
    }
    void setStatusText(const std::wstring& text) const { application->setStatusText(text); }
};

void CompareWorkflow::RunCompare(std::shared_ptr<bxt::IApplication> application) {
    Run run;
    run.application = std::move(application);
    run.enter();
    shared().sharedApplication = run.application;
    if (!ChoosePair(run)) return;
    run.waitCursor.emplace();
    if (!ImportPair(run)) return;
    if (!PrepareFrame(run)) return;
    Compare(run);

    const Status status = shared().sharedStatus;
    if (status == IDocComparer::Done) {
        state_.resultPending = true;
        if (const auto& toolkit = ui::services().toolkit) {
            toolkit->setActiveWindowCaption(resources::text(id::kResultCaption));
        }
        const std::uint64_t endTicksMs = nowTicksMs();
        run.setStatusText(resources::text(id::kComparisonCompleted) +
                          FormatElapsed(run.startTicksMs, endTicksMs));
    }
    ReactToStatus(run, status == IDocComparer::Done ? shared().sharedStatus : status);
    if (state_.resultPending) DeliverResult(run);
}

bool CompareWorkflow::ChoosePair(Run& run) {
    if (state_.fileFilters.empty() && run.applicationData) {
        BuildFileFilters(run.applicationData->fileFormats, state_.fileFilters);
    }
    const std::wstring documentFile = run.info ? run.info->file() : std::wstring();
    const int result =
        ChooseFiles(state_.fileFilters, documentFile, run.referencePath, run.comparePath);
    return result == kConfirmed && !run.referencePath.empty() && !run.comparePath.empty();
}

bool CompareWorkflow::ImportPair(Run& run) {
    extract::CompareJob& job = *state_.compareJob;
    job.referencePath = run.referencePath;
    job.comparePath = run.comparePath;
    if (!ImportModels(job)) {
        shared().sharedStatus = IDocComparer::NothingCompared;
        state_.resultPending = false;
        run.setStatusText(resources::text(id::kComparisonFailed) + run.referencePath);
        return false;
    }
    run.referenceModel = job.referenceNotifier.GetCADModel();
    run.compareModel = job.compareNotifier.GetCADModel();
    if (const auto& toolkit = ui::services().toolkit) toolkit->setWaitCursor();
    return true;
}

bool CompareWorkflow::PrepareFrame(Run& run) {
    run.application->prepareFrame(bxt::FilePath(run.referencePath).getFName());
    state_.resultPending = false;
    run.broadcast(kHintFrameTaken);
    run.broadcast(kHintFrameReleased);
    run.startTicksMs = nowTicksMs();
    if (!run.application->frameUnavailable()) return true;
    run.setStatusText(resources::text(id::kFrameUnavailable));
    state_.resultPending = false;
    return false;
}

void CompareWorkflow::Compare(Run& run) {
    bxt::IApplication& application = *run.application;
    application.prepareBackgroundWork();
    run.setStatusText(resources::text(id::kComparing));
    run.comparedFactory = factoryOf(application);
    shared().sharedReferencePath = run.referencePath;
    shared().sharedComparePath = run.comparePath;
    shared().sharedStatusManager = application.statusManager();
    const auto worker = startWorker();
    application.setProgress(0);
    if (!worker) application.setProgress(kEndOfProgress);
    const int ended = application.runProgress(resources::text(id::kCompare));
    if (!worker) return;
    if (ended == kCancelledProgress) worker->terminate(0);
    worker->close();
}

void CompareWorkflow::ReactToStatus(Run& run, Status status) {
    switch (status) {
        case IDocComparer::NothingCompared:
            run.setStatusText(resources::text(id::kFailedToOpen) + run.referencePath);
            state_.resultPending = false;
            break;
        case IDocComparer::OpenReferenceAlone:
            run.application->openFile(run.referencePath);
            state_.resultPending = false;
            break;
        case IDocComparer::OpenCompareAlone:
            run.application->openFile(run.comparePath);
            state_.resultPending = false;
            break;
        case IDocComparer::PartAgainstAssembly:
        case IDocComparer::AssemblyAgainstPart:
            ShowPartAssemblyMismatch(run.application, run.referencePath, run.comparePath,
                                     status == IDocComparer::AssemblyAgainstPart);
            // The user's second chance: the prompt comes up again.
            RunCompare(run.application);
            break;
        default: break;
    }
}

void CompareWorkflow::DeliverResult(Run& run) {
    state_.pendingRecord = std::make_shared<bxtsg::SCComprae>();
    state_.pendingRecord->setFiles(run.comparePath, run.referencePath);
    // Comes back to update(), which ends the wait for a result: the next hint 3, that of the
    // result document, then carries the record into it.
    run.broadcast(kHintResultComing);
    if (run.applicationData) run.applicationData->compareResultOpening = true;
    run.application->openDocument(shared().sharedResultPath, kOpenAsResult);
    if (!state_.pendingRecord) {
        BuildResults(run.referenceModel, run.compareModel, run.referencePath, run.comparePath,
                     factoryOf(*run.application));
        return;
    }
    state_.pendingRecord.reset();
    if (run.applicationData) run.applicationData->compareResultOpening = false;
}

}  // namespace workflow
