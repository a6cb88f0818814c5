#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/ui/painter.h"
#include "results/result_section.h"

namespace results {

/// Everything that the page itself, apart from its controls, is painted from.
struct PageState {
    std::vector<ResultSection> sectionOrder;
    ResultSection current = ResultSection::FileInformation;
};

constexpr ui::Colour kWhite = ui::rgb(255, 255, 255);
constexpr ui::Colour kInk = ui::rgb(26, 26, 26);

void PaintPage(ui::Painter& painter, ui::PixelSize client, const PageState& state);

/// The tabs at the top.
void DrawSectionStrip(ui::Painter& painter, int width, const PageState& state);

/// An item of the hidden list of sections.
void PaintSectionListItem(ui::Painter& painter, const ui::PixelRect& area, bool selected,
                          const std::wstring& text);

/// Colours of a row in any of the lists by its number; see extract::ItemDiffState and
/// kHeaderRowState.
ui::ItemColours ColourForRowState(std::int32_t rowState);

}  // namespace results
