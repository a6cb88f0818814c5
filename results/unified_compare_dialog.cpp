#include "results/unified_compare_dialog.h"

#include "platform/bxt/resource_loader.h"
#include "platform/ui/services.h"
#include "resources/dialog_templates.h"

namespace results {

namespace control = resources::results_dialog;

UnifiedCompareDialog::UnifiedCompareDialog() = default;

UnifiedCompareDialog::~UnifiedCompareDialog() {
    ReleaseOutcome();
    DestroyWindow();
}

int UnifiedCompareDialog::SelectTemplateId() {
    return resources::dialogTemplateId(resources::DialogKind::Results,
                                       bxtsgutils::ResourceLoader::getCurrentLocaleID());
}

bool UnifiedCompareDialog::Create() {
    const auto& toolkit = ui::services().toolkit;
    const auto shape = resources::dialogTemplate(SelectTemplateId());
    if (!toolkit || !shape) return false;
    window_ = toolkit->createDialog(*shape);
    if (!window_) return false;
    window_->createModeless(*this);
    return HasWindow();
}

bool UnifiedCompareDialog::HasWindow() const {
    return window_ && window_->hasWindow();
}

void UnifiedCompareDialog::DestroyWindow() {
    if (HasWindow()) window_->destroyWindow();
}

void UnifiedCompareDialog::Show() {
    if (HasWindow()) window_->show(true);
}

void UnifiedCompareDialog::Hide() {
    if (HasWindow()) window_->show(false);
}

void UnifiedCompareDialog::BringToForeground() {
    if (HasWindow()) window_->bringToForeground();
}

void UnifiedCompareDialog::RefreshResults() {
    if (!HasWindow()) return;
    ReleaseOutcome();
    engine_.Reset();
    for (const int id : {control::kReferenceTree, control::kCompareTree}) {
        if (ui::TreeControl* tree = window_->tree(id)) tree->deleteAllItems();
    }
    ShowSection(ResultSection::FileInformation);
}

void UnifiedCompareDialog::SetReportContext(std::shared_ptr<bxt::IDocument> document,
                                            std::shared_ptr<bxt::IApplication> application,
                                            const HPS::CADModel& referenceModel,
                                            const HPS::CADModel& compareModel) {
    document_ = std::move(document);
    application_ = std::move(application);
    referenceModel_ = referenceModel;
    compareModel_ = compareModel;
}

void UnifiedCompareDialog::ShowSection(ResultSection section) {
    currentSection_ = section;
    if (section != ResultSection::ProductStructure) return;
    EnsureTrees();
    PopulateTreePair();
}

void UnifiedCompareDialog::EnsureTrees() {
    const bool built = engine_.referenceRoot() || engine_.compareRoot();
    const bool nothingToBuild = referenceModel_.Empty() && compareModel_.Empty();
    if (!built && !nothingToBuild) engine_.BuildAndDiff(referenceModel_, compareModel_);
}

void UnifiedCompareDialog::PopulateTreePair() {
    if (!HasWindow() || (!engine_.referenceRoot() && !engine_.compareRoot())) return;
    ui::TreeControl* const left = window_->tree(control::kReferenceTree);
    ui::TreeControl* const right = window_->tree(control::kCompareTree);
    if (left && right && left->itemCount() == 0) engine_.PopulateTrees(*left, *right);
}

std::shared_ptr<CompareOutcome> UnifiedCompareDialog::MakeOutcome() {
    ReleaseOutcome();
    auto outcome = std::make_shared<CompareOutcome>(referencePath, comparePath, [this] {
        EnsureTrees();
        return StructureOf(engine_);
    });
    outcome_ = outcome;
    return outcome;
}

void UnifiedCompareDialog::ReleaseOutcome() {
    if (const auto outcome = outcome_.lock()) outcome->Release();
    outcome_.reset();
}

void UnifiedCompareDialog::onInitDialog() {
    ShowSection(ResultSection::FileInformation);
}

ui::ItemColours UnifiedCompareDialog::onPaintItem(int treeId, const ui::TreeItemData& item) {
    const bool ours = treeId == control::kReferenceTree || treeId == control::kCompareTree;
    return ours ? diff::AssemblyDiffEngine::ColourForState(item) : ui::ItemColours();
}

void UnifiedCompareDialog::onCancel() {
    Hide();
}

}  // namespace results
