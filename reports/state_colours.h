#pragma once

#include <cstdint>
#include <string_view>

#include "reports/report_table.h"

namespace reports {

/// A colour as a report writes it.
struct RgbColour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const RgbColour&) const = default;
};

/// Colour name of a tree row, by the text of its state, case included.
std::wstring_view stateColourName(std::wstring_view text);

/// Colour name of a table row. Any number is allowed.
std::wstring_view rowCodeColourName(extract::ItemDiffState code);

/// The states that give table rows the same colours as tree rows of these texts have.
States stateTextToCode(const Column& texts);

/// The shade that stands for a state where colours are numbers.
RgbColour rowCodeColour(extract::ItemDiffState code);

}  // namespace reports
