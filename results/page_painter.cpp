#include "results/page_painter.h"

#include "results/part_rows.h"
#include "results/section_info.h"
#include "results/section_layout.h"

namespace results {
namespace {

constexpr ui::Colour kAccent = ui::rgb(21, 101, 192);
constexpr ui::Colour kLine = ui::rgb(224, 224, 224);
constexpr ui::Colour kSeparator = ui::rgb(200, 200, 200);

}  // namespace

void PaintPage(ui::Painter& painter, ui::PixelSize client, const PageState& state) {
    const int width = client.width;
    const bool radios = state.current == ResultSection::Attributes;
    painter.fillRect(ui::rectAt(0, 0, width, client.height), kWhite);
    DrawSectionStrip(painter, width, state);
    if (radios) painter.fillRect(ui::rectAt(0, kStripHeightPx, width, 36), kWhite);
    painter.fillRect(ui::rectAt(kPanelLeftPx, radios ? 89 : 52, 3, 24), kAccent);
    if (!radios && state.current != ResultSection::FileInformation) {
        painter.fillRect(ui::rectAt(0, 78, width, 1), kLine);
    }
    const int footer = client.height - kFooterHeightPx;
    painter.fillRect(ui::rectAt(0, footer, width, 1), kLine);
    painter.fillRect(ui::rectAt(0, footer + 1, width, kFooterHeightPx - 1), kWhite);
}

void DrawSectionStrip(ui::Painter& painter, int width, const PageState& state) {
    painter.fillRect(ui::rectAt(0, 0, width, kStripHeightPx), kWhite);
    painter.fillRect(ui::rectAt(0, kStripHeightPx - 1, width, 1), kLine);
    const std::size_t count = state.sectionOrder.size();
    for (std::size_t i = 0; i < count; ++i) {
        const ui::PixelRect tab = SectionTabRect(i, count, width);
        const bool current = state.sectionOrder[i] == state.current;
        if (current) painter.fillRect(tab, kAccent);
        ui::TextFormat format;
        format.align = ui::TextFormat::Align::Centre;
        format.weight = ui::kSemiBoldWeight;
        format.colour = current ? kWhite : ui::rgb(0, 0, 0);
        painter.drawText(CaptionOf(state.sectionOrder[i]), tab, format);
    }
    for (std::size_t i = 0; i + 1 < count; ++i) {
        const int right = SectionTabRect(i, count, width).right;
        painter.fillRect(ui::rectAt(right - 1, 6, 1, 26), kSeparator);
    }
}

void PaintSectionListItem(ui::Painter& painter, const ui::PixelRect& area, bool selected,
                          const std::wstring& text) {
    painter.fillRect(area, kWhite);
    if (selected) {
        painter.frameRect(area, kLine);
    } else {
        painter.fillRect({area.left + 4, area.bottom - 1, area.right - 4, area.bottom}, kLine);
    }
    painter.fillRect({area.left, area.top, area.left + 4, area.bottom}, kLine);
    ui::TextFormat format;
    format.endEllipsis = true;
    format.weight = ui::kSemiBoldWeight;
    format.colour = kInk;
    painter.drawText(text, {area.left + 8, area.top, area.right - 2, area.bottom}, format);
}

ui::ItemColours ColourForRowState(std::int32_t rowState) {
    switch (rowState) {
        case static_cast<std::int32_t>(extract::ItemDiffState::OnlyInReference):
            return {true, ui::rgb(229, 57, 53), kWhite};
        case static_cast<std::int32_t>(extract::ItemDiffState::OnlyInCompare):
            return {true, ui::rgb(67, 160, 71), kWhite};
        case static_cast<std::int32_t>(extract::ItemDiffState::Different):
            return {true, ui::rgb(249, 168, 37), kWhite};
        case kHeaderRowState: return {true, kInk, ui::rgb(240, 240, 240)};
        default: return {true, ui::rgb(34, 34, 34), kWhite};
    }
}

}  // namespace results
