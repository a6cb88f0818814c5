#pragma once

#include <cstddef>

#include "platform/ui/list_control.h"
#include "platform/ui/pixels.h"
#include "results/result_section.h"

namespace results {

/// Places of the page in pixels of its client area.
constexpr int kStripHeightPx = 38;
constexpr int kFooterHeightPx = 48;
constexpr int kLabelHeightPx = 28;
constexpr int kLeastPanelHeightPx = 11;  ///< below it a panel is hidden
constexpr int kPanelLeftPx = 20;

struct PageLayout {
    ui::PixelRect save;
    ui::PixelRect copy;
    ui::PixelRect leftLabel;
    ui::PixelRect rightLabel;
    ui::PixelRect leftPanel;
    ui::PixelRect rightPanel;
    bool panelsFit = false;
};

PageLayout LayoutOf(ui::PixelSize client, ResultSection section);

/// Places of the Assembly and Part radios, from the widths of their texts.
struct RadioLayout {
    ui::PixelRect assembly;
    ui::PixelRect part;
};
RadioLayout LayoutRadios(int assemblyTextPx, int partTextPx, int dotsPerInch);

/// Tab `position` of `count`; the last one takes what the division leaves.
ui::PixelRect SectionTabRect(std::size_t position, std::size_t count, int width);

/// Tab under a point; `count` where there is none.
std::size_t SectionTabAt(ui::PixelPoint point, std::size_t count, int width);

/// Gives a list's columns their 45 / 55 share of the width, or what their texts need.
void LayoutColumns(ui::ListControl& list, int panelWidthPx);

}  // namespace results
