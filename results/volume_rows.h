#pragma once

#include <string>

#include "results/result_data.h"

namespace results {

/// Rows of the file information that the volumes decide.
constexpr std::size_t kVolumeRow = 2;
constexpr std::size_t kDifferenceRow = 3;

/// A volume with two decimals and its unit's cube, whatever the locale; "-" without a volume
/// above 0 or without a unit.
std::wstring FormatVolume(double volume, const std::wstring& unit);

/// What one row says on its compare side, and the state of both sides.
struct VolumeDifference {
    std::wstring text;
    extract::ItemDiffState state = extract::ItemDiffState::Unchanged;
};

/// Change from the reference's volume to the compare's, in per cent of the reference's.
VolumeDifference DifferenceOfVolumes(double referenceVolume, double compareVolume);

/// Text of a change: its sign, then so many per cent with two decimals. A change that is too
/// small for any percentage has "~" in front of the nought.
std::wstring ChangeText(double change, double percent);

/// Different when both volumes are known and not equal.
extract::ItemDiffState StateOfVolumes(double referenceVolume, double compareVolume);

/// Writes volumes, difference and states into the entries of the file information that exist.
void UpdateVolumeRows(ResultData& data);

}  // namespace results
