#include "diff/pmi_data_loader.h"

#include "diff/row_states.h"

namespace diff {
namespace {

using extract::ItemDiffState;
using extract::PMIRow;

constexpr const wchar_t* kNoPmi = L"No PMI";

RowTexts textsOf(const std::vector<PMIRow>& rows) {
    RowTexts texts;
    for (const PMIRow& row : rows) {
        texts.names.emplace_back(row.name);
        texts.values.emplace_back(row.value);
    }
    return texts;
}

void read(const std::vector<PMIRow>& rows, std::vector<std::wstring>& names,
          std::vector<std::wstring>& values) {
    names.clear();
    values.clear();
    for (const PMIRow& row : rows) {
        names.push_back(row.name);
        values.push_back(row.value);
    }
}

}  // namespace

void PMIDataLoader::LoadAndComparePMI(const HPS::Component& referenceComponent,
                                      const HPS::Component& compareComponent) {
    referenceRows.clear();
    compareRows.clear();
    referenceStates.clear();
    compareStates.clear();
    extract::LoadPMI(referenceComponent, referenceRows);
    extract::LoadPMI(compareComponent, compareRows);
    ComparePMI(referenceRows, compareRows, referenceStates, compareStates);
}

void PMIDataLoader::ComparePMI(const std::vector<PMIRow>& referenceRows,
                               const std::vector<PMIRow>& compareRows,
                               std::vector<ItemDiffState>& referenceStates,
                               std::vector<ItemDiffState>& compareStates) {
    const RowTexts reference = textsOf(referenceRows);
    const RowTexts compare = textsOf(compareRows);
    compareStates = RowStates(compare, reference, ItemDiffState::OnlyInCompare, kNoPmi);
    referenceStates = RowStates(reference, compare, ItemDiffState::OnlyInReference, kNoPmi);
}

void PMIDataLoader::ReadReference(std::vector<std::wstring>& names,
                                  std::vector<std::wstring>& values,
                                  std::vector<ItemDiffState>& states) const {
    read(referenceRows, names, values);
    states = referenceStates;
}

void PMIDataLoader::ReadCompare(std::vector<std::wstring>& names, std::vector<std::wstring>& values,
                                std::vector<ItemDiffState>& states) const {
    read(compareRows, names, values);
    states = compareStates;
}

}  // namespace diff
