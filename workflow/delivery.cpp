#include "diff/attrib_data_loader.h"
#include "diff/bom_data_loader.h"
#include "diff/file_information_states.h"
#include "diff/pmi_data_loader.h"
#include "extract/file_information.h"
#include "extract/model_volume.h"
#include "platform/bxt/resource_loader.h"
#include "platform/os/services.h"
#include "platform/ui/services.h"
#include "results/placement.h"
#include "workflow/compare_workflow.h"
#include "workflow/shared_state.h"

namespace workflow {
namespace {

using results::SectionRows;

template <typename Loader>
SectionRows rowsOf(const Loader& loader) {
    SectionRows rows;
    loader.ReadReference(rows.referenceNames, rows.referenceValues, rows.referenceStates);
    loader.ReadCompare(rows.compareNames, rows.compareValues, rows.compareStates);
    return rows;
}

SectionRows fileInformationOf(const std::wstring& referencePath, const std::wstring& comparePath) {
    const auto& files = os::services().files;
    const wchar_t separator = files ? files->separator() : L'\\';
    SectionRows rows;
    extract::AddFileInformation(referencePath, rows.referenceNames, rows.referenceValues,
                                separator);
    extract::AddFileInformation(comparePath, rows.compareNames, rows.compareValues, separator);
    diff::CompareFileInformation(rows.referenceValues, rows.compareValues, rows.referenceStates,
                                 rows.compareStates);
    return rows;
}

/// Each loader lives only until the dialog has its copies.
void fillLists(results::UnifiedCompareDialog& dialog, const HPS::CADModel& referenceModel,
               const HPS::CADModel& compareModel) {
    {
        diff::BOMDataLoader bom;
        bom.LoadAndCompareBOM(referenceModel, compareModel);
        dialog.SetBomData(rowsOf(bom));
    }
    {
        diff::AttribDataLoader attributes;
        attributes.LoadFileAttributes(referenceModel, compareModel);
        attributes.LoadPartAttributes(referenceModel, compareModel);
        dialog.SetAttributeData(rowsOf(attributes));
        dialog.SetPartAttributeData(attributes.referenceParts, attributes.compareParts);
    }
    diff::PMIDataLoader pmi;
    pmi.LoadAndComparePMI(referenceModel, compareModel);
    dialog.SetPmiData(rowsOf(pmi));
}

void fillVolumes(results::UnifiedCompareDialog& dialog, extract::CompareJob& job,
                 const HPS::CADModel& referenceModel, const HPS::CADModel& compareModel) {
    std::wstring referenceUnit;
    std::wstring compareUnit;
    const double reference = extract::ComputeModelVolume(job, referenceModel, referenceUnit);
    const double compare = extract::ComputeModelVolume(job, compareModel, compareUnit);
    dialog.SetVolumeData(reference, referenceUnit, compare, compareUnit);
}

}  // namespace

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
    fillLists(*dialog, referenceModel, compareModel);
    dialog->SetFileInfoData(fileInformationOf(referencePath, comparePath));
    fillVolumes(*dialog, *state_.compareJob, referenceModel, compareModel);
    dialog->RefreshResults();
    state_.resultFactory = factory;
    dialog->SetReportContext(std::dynamic_pointer_cast<bxt::IDocument>(factory),
                             shared().sharedApplication, referenceModel, compareModel);
    if (factory) factory->attach(bxtsg::code::CompareOutcome, dialog->MakeOutcome());
    PlaceResultsDialog();
    dialog->Show();
    dialog->BringToForeground();
}

ui::PixelRect CompareWorkflow::ResultsDialogRect() {
    const auto& screen = ui::services().screen;
    return results::ResultsDialogRect(results::SwitchedOnSections(),
                                      screen ? screen->sizePx() : ui::PixelSize(),
                                      bxtsgutils::ResourceLoader::dotsPerInch());
}

void CompareWorkflow::PlaceResultsDialog() {
    const auto& screen = ui::services().screen;
    const auto mainWindow = screen ? screen->mainWindowPx() : std::nullopt;
    // Without a window to stand beside, the dialog stays where it was created.
    if (!mainWindow) return;
    state_.resultsDialog->Place(results::PlaceBeside(ResultsDialogRect(), *mainWindow,
                                                     screen->ribbonBottomPx(),
                                                     bxtsgutils::ResourceLoader::dotsPerInch()));
}

}  // namespace workflow
