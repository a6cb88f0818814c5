#include "workflow/compare_workflow.h"
#include "workflow/shared_state.h"

namespace workflow {

void CompareWorkflow::BuildResults(const HPS::CADModel& referenceModel,
                                   const HPS::CADModel& compareModel,
                                   const std::wstring& referencePath,
                                   const std::wstring& comparePath,
                                   const std::shared_ptr<bxtsg::IFactory>& factory) {
    auto& dialog = state_.resultsDialog;
    if (!dialog) dialog = std::make_unique<results::UnifiedCompareDialog>();
    if (!dialog->HasWindow()) dialog->Create();
    dialog->referencePath = referencePath;
    dialog->comparePath = comparePath;
    dialog->RefreshResults();
    state_.resultFactory = factory;
    dialog->SetReportContext(std::dynamic_pointer_cast<bxt::IDocument>(factory),
                             shared().sharedApplication, referenceModel, compareModel);
    if (factory) factory->attach(bxtsg::code::CompareOutcome, dialog->MakeOutcome());
    dialog->Show();
    dialog->BringToForeground();
}

}  // namespace workflow
