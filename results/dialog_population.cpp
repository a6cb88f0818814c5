#include <algorithm>
#include <map>

#include "resources/dialog_templates.h"
#include "results/section_layout.h"
#include "results/unified_compare_dialog.h"
#include "results/volume_rows.h"

namespace results {

namespace control = resources::results_dialog;

namespace {

constexpr int kSectionItemPx = 26;

using extract::AssemblyNode;
using ClosedState = std::map<std::wstring, bool>;  // text of a top-level item: is it open

/// How many of the states say that something differs.
int differences(const States& states) {
    return static_cast<int>(std::count_if(states.begin(), states.end(), [](auto state) {
        return state != extract::ItemDiffState::Unchanged;
    }));
}

void applyRowStates(ui::ListControl& list, const States& states) {
    for (std::size_t row = 0; row < list.rowCount(); ++row) {
        list.setRowData(row, row < states.size() ? static_cast<std::int32_t>(states[row]) : 0);
    }
}

void fillList(ui::ListControl& list, const Texts& names, const Texts& values, const States& states,
              bool indexed) {
    list.deleteAllRows();
    for (std::size_t row = 0; row < names.size(); ++row) {
        std::size_t column = 0;
        list.insertRow(row, indexed ? std::to_wstring(row + 1) : names[row]);
        if (indexed) list.setText(row, ++column, names[row]);
        if (row < values.size()) list.setText(row, ++column, values[row]);
    }
    applyRowStates(list, states);
}

void showVolumeRow(ui::ListControl* list, std::size_t row, const std::wstring& text,
                   extract::ItemDiffState state) {
    if (!list || row >= list->rowCount()) return;
    list->setText(row, 1, text);
    list->setRowData(row, static_cast<std::int32_t>(state));
}

void addPartRow(ui::ListControl& list, std::size_t row, const std::wstring& text,
                const std::wstring& value, std::int32_t state) {
    list.insertRow(row, text);
    list.setText(row, 1, value);
    list.setRowData(row, state);
}

ClosedState topItems(const ui::TreeControl& tree) {
    ClosedState items;
    for (ui::TreeItem at = tree.firstChild(nullptr); at; at = tree.nextSibling(at)) {
        items[tree.item(at).text] = tree.item(at).expanded;
    }
    return items;
}

void closeAgain(ui::TreeControl& tree, const ClosedState& before) {
    if (before.empty()) return;
    for (ui::TreeItem at = tree.firstChild(nullptr); at; at = tree.nextSibling(at)) {
        const auto found = before.find(tree.item(at).text);
        if (found != before.end() && !found->second) tree.expand(at, false);
    }
}

int changesBelow(const AssemblyNode* root) {
    int count = 0;
    if (!root) return count;
    for (const AssemblyNode* node = extract::NextPreOrder(root, root); node;
         node = extract::NextPreOrder(node, root)) {
        switch (node->state) {
            case extract::AssemblyDiffState::Added:
            case extract::AssemblyDiffState::Deleted:
            case extract::AssemblyDiffState::Modified:
            case extract::AssemblyDiffState::Moved: ++count; break;
            default: break;
        }
    }
    return count;
}

}  // namespace

void UnifiedCompareDialog::PopulateListPair(ResultSection section, const SectionRows& rows,
                                            bool indexed) {
    if (!HasWindow()) return;
    const SectionInfo& info = InfoOf(section);
    ui::ListControl* const left = window_->list(info.leftControl);
    ui::ListControl* const right = window_->list(info.rightControl);
    if (!left || !right) return;
    fillList(*left, rows.referenceNames, rows.referenceValues, rows.referenceStates, indexed);
    fillList(*right, rows.compareNames, rows.compareValues, rows.compareStates, indexed);
}

void UnifiedCompareDialog::PopulateBomList() {
    PopulateListPair(ResultSection::BillOfMaterials, data_.bom, true);
}

void UnifiedCompareDialog::PopulatePmiList() {
    PopulateListPair(ResultSection::Pmi, data_.pmi, true);
}

void UnifiedCompareDialog::PopulateFileInfoList() {
    if (!HasWindow() || !window_->list(control::kReferenceFileInfo)) return;
    UpdateVolumeRows(data_);
    PopulateListPair(ResultSection::FileInformation, data_.fileInfo, false);
    // The cells show the volumes also where the lists of values have no such entry.
    ui::ListControl* const left = window_->list(control::kReferenceFileInfo);
    ui::ListControl* const right = window_->list(control::kCompareFileInfo);
    const auto state = StateOfVolumes(data_.referenceVolume, data_.compareVolume);
    showVolumeRow(left, kVolumeRow, FormatVolume(data_.referenceVolume, data_.referenceUnit),
                  state);
    showVolumeRow(right, kVolumeRow, FormatVolume(data_.compareVolume, data_.compareUnit), state);
    if (left->rowCount() > kDifferenceRow) left->setText(kDifferenceRow, 1, L"-");
    if (!right || right->rowCount() <= kDifferenceRow) return;
    const VolumeDifference change = DifferenceOfVolumes(data_.referenceVolume, data_.compareVolume);
    showVolumeRow(right, kDifferenceRow, change.text, change.state);
    left->setRowData(kDifferenceRow, static_cast<std::int32_t>(change.state));
}

void UnifiedCompareDialog::PopulateAttributeList() {
    if (partLevel_) {
        PopulatePartList();
    } else {
        PopulateListPair(ResultSection::Attributes, data_.attributes, false);
    }
}

void UnifiedCompareDialog::PopulatePartList() {
    if (!HasWindow()) return;
    ui::ListControl* const left = window_->list(control::kReferenceAttributes);
    ui::ListControl* const right = window_->list(control::kCompareAttributes);
    if (!left || !right) return;
    left->deleteAllRows();
    right->deleteAllRows();
    rowKeys_.clear();
    for (PartRow& row : BuildPartRows(data_, folding_)) {
        const std::size_t at = rowKeys_.size();
        addPartRow(*left, at, row.referenceText, row.referenceValue, row.referenceState);
        addPartRow(*right, at, row.compareText, row.compareValue, row.compareState);
        rowKeys_.push_back(std::move(row.key));
    }
}

void UnifiedCompareDialog::TogglePartRow(int row) {
    if (!partLevel_ || row < 0 || row >= static_cast<int>(rowKeys_.size())) return;
    const std::wstring key = rowKeys_[static_cast<std::size_t>(row)];
    if (key.empty() || !folding_.Toggle(key, data_)) return;
    PopulateAttributeList();
    if (HasWindow()) LayoutPage(window_->clientSize());
}

void UnifiedCompareDialog::onRowClicked(int listId, int row) {
    if (listId == control::kReferenceAttributes || listId == control::kCompareAttributes) {
        TogglePartRow(row);
    }
}

void UnifiedCompareDialog::PopulateTreePair() {
    if (!HasWindow()) return;
    ui::TreeControl* const left = window_->tree(control::kReferenceTree);
    ui::TreeControl* const right = window_->tree(control::kCompareTree);
    if (!left || !right) return;
    ClosedState leftBefore;
    ClosedState rightBefore;
    if (left->itemCount() > 0) {
        leftBefore = topItems(*left);
        rightBefore = topItems(*right);
    }
    engine_.PopulateTrees(*left, *right);
    closeAgain(*left, leftBefore);
    closeAgain(*right, rightBefore);
}

int UnifiedCompareDialog::CountPSTreeDiffs() const {
    return changesBelow(engine_.referenceRoot()) + changesBelow(engine_.compareRoot());
}

void UnifiedCompareDialog::UpdateSectionCounts() {
    counts_ = {differences(data_.fileInfo.referenceStates),
               differences(data_.bom.referenceStates) + differences(data_.bom.compareStates),
               differences(data_.attributes.referenceStates),
               differences(data_.pmi.referenceStates), CountPSTreeDiffs()};
    if (!HasWindow()) return;
    if (ui::ListBox* const sections = window_->listBox(control::kSectionList)) {
        for (std::size_t i = 0; i < kSectionCount; ++i) {
            SetSectionCaption(i, CaptionOf(AllSections()[i].section), counts_[i]);
        }
        sections->setItemHeightPx(kSectionItemPx);
        sections->select(static_cast<int>(page_.current));
    }
    const ui::PixelSize client = window_->clientSize();
    window_->invalidate(ui::rectAt(0, 0, client.width, kStripHeightPx));
}

void UnifiedCompareDialog::SetSectionCaption(std::size_t position, const std::wstring& caption,
                                             int count) {
    ui::ListBox* const sections = window_->listBox(control::kSectionList);
    sections->remove(position);
    sections->insert(position,
                     count < 1 ? caption : caption + L" (" + std::to_wstring(count) + L")");
}

ui::ItemColours UnifiedCompareDialog::onPaintItem(int treeId, const ui::TreeItemData& item) {
    const bool ours = treeId == control::kReferenceTree || treeId == control::kCompareTree;
    return ours ? diff::AssemblyDiffEngine::ColourForState(item) : ui::ItemColours();
}

ui::ItemColours UnifiedCompareDialog::onPaintRow(int, std::int32_t rowData) {
    return ColourForRowState(rowData);
}

}  // namespace results
