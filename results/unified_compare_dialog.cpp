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

void UnifiedCompareDialog::Place(const ui::PixelRect& place) {
    if (HasWindow()) window_->placeWindow(place);
}

void UnifiedCompareDialog::SetBomData(const SectionRows& rows) {
    data_.bom = rows;
    PopulateBomList();
}

void UnifiedCompareDialog::SetAttributeData(const SectionRows& rows) {
    data_.attributes = rows;
    PopulateAttributeList();
}

void UnifiedCompareDialog::SetPartAttributeData(
    const std::vector<extract::PartAttributes>& referenceParts,
    const std::vector<extract::PartAttributes>& compareParts) {
    data_.referenceParts = referenceParts;
    data_.compareParts = compareParts;
    if (!HasWindow()) return;
    folding_.Rebuild(data_);
    if (partLevel_) PopulateAttributeList();
}

void UnifiedCompareDialog::SetPmiData(const SectionRows& rows) {
    data_.pmi = rows;
    PopulatePmiList();
}

void UnifiedCompareDialog::SetFileInfoData(const SectionRows& rows) {
    data_.fileInfo = rows;
    PopulateFileInfoList();
}

void UnifiedCompareDialog::SetVolumeData(double referenceVolume, const std::wstring& referenceUnit,
                                         double compareVolume, const std::wstring& compareUnit) {
    data_.referenceVolume = referenceVolume;
    data_.referenceUnit = referenceUnit;
    data_.compareVolume = compareVolume;
    data_.compareUnit = compareUnit;
    PopulateFileInfoList();
}

void UnifiedCompareDialog::RefreshResults() {
    if (!HasWindow()) return;
    LoadSectionList();
    partLevel_ = false;
    CheckRadios();
    folding_.ForgetOpened();
    folding_.Rebuild(data_);
    ReleaseOutcome();
    engine_.Reset();
    for (const int id : {control::kReferenceTree, control::kCompareTree}) {
        if (ui::TreeControl* tree = window_->tree(id)) tree->deleteAllItems();
    }
    PopulateBomList();
    PopulateAttributeList();
    PopulatePmiList();
    PopulateFileInfoList();
    UpdateSectionCounts();
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

void UnifiedCompareDialog::EnsureTrees() {
    const bool built = engine_.referenceRoot() || engine_.compareRoot();
    const bool nothingToBuild = referenceModel_.Empty() && compareModel_.Empty();
    if (!built && !nothingToBuild) engine_.BuildAndDiff(referenceModel_, compareModel_);
}

std::shared_ptr<CompareOutcome> UnifiedCompareDialog::MakeOutcome() {
    ReleaseOutcome();
    const auto structure = [this] {
        EnsureTrees();
        return StructureOf(engine_);
    };
    const auto sections = [this] {
        bxtsg::SectionsOutcome made = SectionsOf(data_);
        for (const ResultSection section : page_.sectionOrder) {
            made.order.push_back(static_cast<std::int32_t>(section));
        }
        made.counts = counts_;
        return made;
    };
    auto outcome =
        std::make_shared<CompareOutcome>(referencePath, comparePath, structure, sections);
    outcome_ = outcome;
    return outcome;
}

void UnifiedCompareDialog::ReleaseOutcome() {
    if (const auto outcome = outcome_.lock()) outcome->Release();
    outcome_.reset();
}

void UnifiedCompareDialog::onCancel() {
    Hide();
}

bool UnifiedCompareDialog::onKeyDown(ui::Key key) {
    if (key != ui::Key::Escape && key != ui::Key::Cancel) return false;
    Hide();
    return true;
}

void UnifiedCompareDialog::onClicked(int controlId) {
    switch (controlId) {
        case control::kSave: OnSaveResults(); break;
        case control::kCopy: OnCopyResults(); break;
        case control::kAssemblyRadio: SelectPartLevel(false); break;
        case control::kPartRadio: SelectPartLevel(true); break;
        default: break;
    }
}

}  // namespace results
