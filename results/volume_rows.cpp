#include "results/volume_rows.h"

#include <charconv>
#include <cmath>
#include <iterator>

namespace results {
namespace {

using extract::ItemDiffState;

std::wstring twoDecimals(double number) {
    char digits[400];  // the greatest number has 309 before the point
    const auto end =
        std::to_chars(std::begin(digits), std::end(digits), number, std::chars_format::fixed, 2);
    return {std::begin(digits), end.ptr};
}

template <typename List, typename Value>
void setIfThere(List& list, std::size_t row, const Value& value) {
    if (row < list.size()) list[row] = value;
}

}  // namespace

std::wstring FormatVolume(double volume, const std::wstring& unit) {
    if (volume <= 0 || unit.empty()) return L"-";
    return twoDecimals(volume) + L" " + unit + L"\u00b3";
}

VolumeDifference DifferenceOfVolumes(double referenceVolume, double compareVolume) {
    if (!(referenceVolume > 0) || compareVolume < 0) return {L"-", ItemDiffState::Unchanged};
    const double change = compareVolume - referenceVolume;
    const double percent = std::abs(change) / referenceVolume * 100;
    return {ChangeText(change, percent),
            change != 0 ? ItemDiffState::Different : ItemDiffState::Unchanged};
}

std::wstring ChangeText(double change, double percent) {
    std::wstring text = change < 0 ? L"- " : change > 0 ? L"+ " : L"";
    if (change != 0 && percent == 0) text += L"~";
    return text + twoDecimals(percent) + L" %";
}

ItemDiffState StateOfVolumes(double referenceVolume, double compareVolume) {
    const bool different =
        referenceVolume > 0 && compareVolume > 0 && referenceVolume != compareVolume;
    return different ? ItemDiffState::Different : ItemDiffState::Unchanged;
}

void UpdateVolumeRows(ResultData& data) {
    SectionRows& rows = data.fileInfo;
    const ItemDiffState state = StateOfVolumes(data.referenceVolume, data.compareVolume);
    setIfThere(rows.referenceValues, kVolumeRow,
               FormatVolume(data.referenceVolume, data.referenceUnit));
    setIfThere(rows.compareValues, kVolumeRow, FormatVolume(data.compareVolume, data.compareUnit));
    setIfThere(rows.referenceStates, kVolumeRow, state);
    setIfThere(rows.compareStates, kVolumeRow, state);
    setIfThere(rows.referenceValues, kDifferenceRow, L"-");
    if (rows.compareNames.size() <= kDifferenceRow) return;
    const VolumeDifference difference =
        DifferenceOfVolumes(data.referenceVolume, data.compareVolume);
    setIfThere(rows.compareValues, kDifferenceRow, difference.text);
    setIfThere(rows.referenceStates, kDifferenceRow, difference.state);
    setIfThere(rows.compareStates, kDifferenceRow, difference.state);
}

}  // namespace results
