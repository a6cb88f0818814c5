#include "backends/headless/canvas.h"

namespace headless {

void Canvas::fillRect(const ui::PixelRect& area, ui::Colour colour) {
    fills_.push_back({area, colour});
}

void Canvas::frameRect(const ui::PixelRect& area, ui::Colour colour) {
    fillRect({area.left, area.top, area.right, area.top + 1}, colour);
    fillRect({area.left, area.bottom - 1, area.right, area.bottom}, colour);
    fillRect({area.left, area.top, area.left + 1, area.bottom}, colour);
    fillRect({area.right - 1, area.top, area.right, area.bottom}, colour);
}

void Canvas::drawText(const std::wstring& text, const ui::PixelRect& area,
                      const ui::TextFormat& format) {
    texts_.push_back({text, area, format});
}

std::optional<ui::Colour> Canvas::colourAt(int x, int y) const {
    for (auto fill = fills_.rbegin(); fill != fills_.rend(); ++fill) {
        if (fill->area.contains({x, y})) return fill->colour;
    }
    return std::nullopt;
}

}  // namespace headless
