#include "diff/attrib_data_loader.h"

#include "diff/part_attributes.h"
#include "diff/row_states.h"

namespace diff {
namespace {

using extract::ItemDiffState;

constexpr const wchar_t* kNoAttributes = L"No Attributes";

RowTexts textsOf(const std::vector<std::wstring>& names, const std::vector<std::wstring>& values) {
    return {{names.begin(), names.end()}, {values.begin(), values.end()}};
}

}  // namespace

void AttribDataLoader::LoadFileAttributes(const HPS::Component& referenceComponent,
                                          const HPS::Component& compareComponent) {
    for (auto* list : {&referenceNames, &referenceValues, &compareNames, &compareValues}) {
        list->clear();
    }
    referenceStates.clear();
    compareStates.clear();
    extract::ExtractFileAttributes(referenceComponent, referenceNames, referenceValues);
    extract::ExtractFileAttributes(compareComponent, compareNames, compareValues);
    CompareFileAttributes();
}

void AttribDataLoader::LoadPartAttributes(const HPS::Component& referenceComponent,
                                          const HPS::Component& compareComponent) {
    referenceParts.clear();
    compareParts.clear();
    extract::ExtractComponentAttributes(referenceComponent, referenceParts);
    extract::ExtractComponentAttributes(compareComponent, compareParts);
    ComparePartAttributes();
}

void AttribDataLoader::CompareFileAttributes() {
    const RowTexts reference = textsOf(referenceNames, referenceValues);
    const RowTexts compare = textsOf(compareNames, compareValues);
    compareStates = RowStates(compare, reference, ItemDiffState::OnlyInCompare, kNoAttributes);
    referenceStates = RowStates(reference, compare, ItemDiffState::OnlyInReference, kNoAttributes);
}

void AttribDataLoader::ComparePartAttributes() {
    diff::ComparePartAttributes(referenceParts, compareParts);
}

void AttribDataLoader::ReadReference(std::vector<std::wstring>& names,
                                     std::vector<std::wstring>& values,
                                     std::vector<ItemDiffState>& states) const {
    names = referenceNames;
    values = referenceValues;
    states = referenceStates;
}

void AttribDataLoader::ReadCompare(std::vector<std::wstring>& names,
                                   std::vector<std::wstring>& values,
                                   std::vector<ItemDiffState>& states) const {
    names = compareNames;
    values = compareValues;
    states = compareStates;
}

}  // namespace diff
