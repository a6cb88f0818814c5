#include <algorithm>

#include "platform/bxt/resource_loader.h"
#include "resources/dialog_templates.h"
#include "results/section_layout.h"
#include "results/unified_compare_dialog.h"
#include "shell/settings/compare_settings.h"

namespace results {

namespace control = resources::results_dialog;

void UnifiedCompareDialog::LoadSectionList() {
    const settings::DialogSwitches switches = settings::ReadDialogSwitches();
    auto& order = page_.sectionOrder;
    order = {ResultSection::FileInformation};
    if (switches.productStructure) {
        order.push_back(ResultSection::BillOfMaterials);
        order.push_back(ResultSection::ProductStructure);
    }
    if (switches.attributes) order.push_back(ResultSection::Attributes);
    if (switches.pmi) order.push_back(ResultSection::Pmi);
    if (!HasSection(page_.current)) page_.current = ResultSection::FileInformation;
}

bool UnifiedCompareDialog::HasSection(ResultSection section) const {
    const auto& order = page_.sectionOrder;
    return std::find(order.begin(), order.end(), section) != order.end();
}

void UnifiedCompareDialog::ShowSection(ResultSection section) {
    page_.current = section;
    const bool structure = section == ResultSection::ProductStructure;
    if (!HasWindow()) {
        if (structure) EnsureTrees();
        return;
    }
    HideSections();
    const bool attributes = section == ResultSection::Attributes;
    window_->showControl(control::kAssemblyRadio, attributes);
    window_->showControl(control::kPartRadio, attributes);
    if (attributes && partLevel_) {
        partLevel_ = false;
        CheckRadios();
        PopulateAttributeList();
    }
    if (structure) {
        EnsureTrees();
        const ui::TreeControl* const left = window_->tree(control::kReferenceTree);
        const bool built = engine_.referenceRoot() || engine_.compareRoot();
        if (left && left->itemCount() == 0 && built) PopulateTreePair();
    }
    const SectionInfo& info = InfoOf(section);
    for (const int shown : {info.leftControl, info.rightControl, info.leftLabel, info.rightLabel}) {
        window_->showControl(shown, true);
    }
    const ui::PixelSize client = window_->clientSize();
    LayoutPage(client);
    window_->invalidate(ui::rectAt(0, 0, client.width, client.height));
}

void UnifiedCompareDialog::HideSections() {
    for (const SectionInfo& section : AllSections()) {
        for (const int hidden :
             {section.leftControl, section.rightControl, section.leftLabel, section.rightLabel}) {
            window_->showControl(hidden, false);
        }
    }
}

void UnifiedCompareDialog::SelectPartLevel(bool partLevel) {
    partLevel_ = partLevel;
    CheckRadios();
    PopulateAttributeList();
    LayoutPage(window_->clientSize());
}

void UnifiedCompareDialog::CheckRadios() {
    window_->setChecked(control::kAssemblyRadio, !partLevel_);
    window_->setChecked(control::kPartRadio, partLevel_);
}

void UnifiedCompareDialog::LayoutPage(ui::PixelSize client) {
    if (!HasWindow()) return;
    const PageLayout layout = LayoutOf(client, page_.current);
    window_->placeControl(control::kSave, layout.save);
    window_->placeControl(control::kCopy, layout.copy);
    const SectionInfo& info = InfoOf(page_.current);
    for (const int id : {info.leftControl, info.rightControl, info.leftLabel, info.rightLabel}) {
        window_->showControl(id, layout.panelsFit);
    }
    const bool trees = page_.current == ResultSection::ProductStructure;
    const auto place = [&](int id, ui::PixelRect rect) {
        if (trees) {
            rect.right = std::max(rect.right, rect.left + 1);
            rect.bottom = std::max(rect.bottom, rect.top + 1);
        }
        window_->placeControl(id, rect);
    };
    if (trees || layout.panelsFit) {
        place(info.leftLabel, layout.leftLabel);
        place(info.rightLabel, layout.rightLabel);
        place(info.leftControl, layout.leftPanel);
        place(info.rightControl, layout.rightPanel);
        if (ui::ListControl* list = window_->list(info.leftControl)) {
            LayoutColumns(*list, layout.leftPanel.width());
        }
        if (ui::ListControl* list = window_->list(info.rightControl)) {
            LayoutColumns(*list, layout.rightPanel.width());
        }
    }
    LayoutRadioButtons();
}

void UnifiedCompareDialog::LayoutRadioButtons() {
    const auto widthOf = [this](int id) {
        return window_->textWidthPx(window_->text(id), ui::kNormalWeight);
    };
    const RadioLayout radios =
        LayoutRadios(widthOf(control::kAssemblyRadio), widthOf(control::kPartRadio),
                     bxtsgutils::ResourceLoader::dotsPerInch());
    window_->placeControl(control::kAssemblyRadio, radios.assembly);
    window_->placeControl(control::kPartRadio, radios.part);
}

void UnifiedCompareDialog::onResized(ui::PixelSize client) {
    window_->setRedraw(false);
    LayoutPage(client);
    window_->setRedraw(true);
}

void UnifiedCompareDialog::onPaint(ui::Painter& painter, ui::PixelSize client) {
    PaintPage(painter, client, page_);
}

void UnifiedCompareDialog::onMouseDown(ui::PixelPoint point) {
    const auto& order = page_.sectionOrder;
    const std::size_t tab = SectionTabAt(point, order.size(), window_->clientSize().width);
    if (tab < order.size()) ShowSection(order[tab]);
}

void UnifiedCompareDialog::onSelectionChanged(int listBoxId) {
    if (listBoxId != control::kSectionList) return;
    const ui::ListBox* const sections = window_->listBox(listBoxId);
    if (sections && sections->selected() >= 0) {
        ShowSection(static_cast<ResultSection>(sections->selected()));
    }
}

void UnifiedCompareDialog::onPaintListBoxItem(int listBoxId, std::size_t position,
                                              const ui::PixelRect& area, bool selected,
                                              ui::Painter& painter) {
    const ui::ListBox* const sections = window_->listBox(listBoxId);
    if (!sections || position >= sections->count()) return;
    PaintSectionListItem(painter, area, selected, sections->text(position));
}

ui::ControlColours UnifiedCompareDialog::onColours(int controlId, ui::ControlKind kind,
                                                   const ui::ControlColours& own) {
    ui::ControlColours colours = own;
    const bool isLabel =
        std::any_of(AllSections().begin(), AllSections().end(), [&](const SectionInfo& section) {
            return controlId == section.leftLabel || controlId == section.rightLabel;
        });
    const bool isInked = isLabel || controlId == control::kSectionList ||
                         controlId == control::kAssemblyRadio || controlId == control::kPartRadio;
    const bool isPlain = controlId == 0 || kind == ui::ControlKind::StaticText ||
                         kind == ui::ControlKind::PushButton ||
                         kind == ui::ControlKind::DefaultButton ||
                         kind == ui::ControlKind::CheckBox ||
                         kind == ui::ControlKind::RadioButton || kind == ui::ControlKind::GroupBox;
    if (isInked || isPlain) colours.background = kWhite;
    if (isInked) colours.text = kInk;
    if (isLabel) colours.weight = ui::kSemiBoldWeight;
    return colours;
}

}  // namespace results
