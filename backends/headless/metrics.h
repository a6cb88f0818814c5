#pragma once

#include <cstddef>
#include <string>

#include "platform/ui/painter.h"

/// Measures of a desktop that nobody sees: every character is equally wide.
namespace headless::metrics {

constexpr int kCharacterPx = 6;
constexpr int kBoldCharacterPx = 7;
constexpr int kCellPaddingPx = 12;
constexpr int kHeaderHeightPx = 24;
constexpr int kPlainRowHeightPx = 17;
constexpr int kTreeItemHeightPx = 16;
constexpr int kScrollBarPx = 17;
constexpr int kWheelRows = 3;

inline int textWidthPx(const std::wstring& text, int weight) {
    const int each = weight > ui::kNormalWeight ? kBoldCharacterPx : kCharacterPx;
    return static_cast<int>(text.size()) * each;
}

/// A length in dialog units of the usual dialog font.
constexpr int horizontalPx(int dialogUnits, int dotsPerInch) {
    return dialogUnits * 6 * dotsPerInch / (4 * 96);
}
constexpr int verticalPx(int dialogUnits, int dotsPerInch) {
    return dialogUnits * 13 * dotsPerInch / (8 * 96);
}

}  // namespace headless::metrics
