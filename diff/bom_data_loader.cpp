#include "diff/bom_data_loader.h"

#include <algorithm>

#include "diff/row_states.h"
#include "extract/case_folding.h"

namespace diff {
namespace {

using extract::BOMRow;
using extract::ItemDiffState;

void sortByName(std::vector<BOMRow>& rows) {
    std::stable_sort(rows.begin(), rows.end(), [](const BOMRow& a, const BOMRow& b) {
        return extract::CompareNoCase(a.partName, b.partName) < 0;
    });
}

RowTexts textsOf(const std::vector<BOMRow>& rows) {
    RowTexts texts;
    for (const BOMRow& row : rows) texts.names.emplace_back(row.partName);
    return texts;
}

void read(const std::vector<BOMRow>& rows, std::vector<std::wstring>& names,
          std::vector<std::wstring>& quantities) {
    names.clear();
    quantities.clear();
    for (const BOMRow& row : rows) {
        names.emplace_back(row.partName.empty() ? extract::kEmptyText : row.partName);
        quantities.push_back(std::to_wstring(row.quantity));
    }
}

}  // namespace

void BOMDataLoader::LoadAndCompareBOM(const HPS::Component& referenceComponent,
                                      const HPS::Component& compareComponent) {
    referenceRows.clear();
    compareRows.clear();
    referenceStates.clear();
    compareStates.clear();
    extract::LoadBOM(referenceComponent, referenceRows);
    extract::LoadBOM(compareComponent, compareRows);
    sortByName(referenceRows);
    sortByName(compareRows);
    CompareBOM(referenceRows, compareRows, referenceStates, compareStates);
}

void BOMDataLoader::CompareBOM(const std::vector<BOMRow>& referenceRows,
                               const std::vector<BOMRow>& compareRows,
                               std::vector<ItemDiffState>& referenceStates,
                               std::vector<ItemDiffState>& compareStates) {
    const RowTexts reference = textsOf(referenceRows);
    const RowTexts compare = textsOf(compareRows);
    referenceStates = RowStates(reference, compare, ItemDiffState::OnlyInReference);
    compareStates = RowStates(compare, reference, ItemDiffState::OnlyInCompare);
}

void BOMDataLoader::ReadReference(std::vector<std::wstring>& names,
                                  std::vector<std::wstring>& quantities,
                                  std::vector<ItemDiffState>& states) const {
    read(referenceRows, names, quantities);
    states = referenceStates;
}

void BOMDataLoader::ReadCompare(std::vector<std::wstring>& names,
                                std::vector<std::wstring>& quantities,
                                std::vector<ItemDiffState>& states) const {
    read(compareRows, names, quantities);
    states = compareStates;
}

}  // namespace diff
