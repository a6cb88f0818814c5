#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ui/painter.h"

namespace headless {

/// A picture as the shapes that it is made of: knows what colour every point has and where every
/// text stands.
class Canvas final : public ui::Painter {
public:
    struct Text {
        std::wstring text;
        ui::PixelRect area;
        ui::TextFormat format;
    };

    void fillRect(const ui::PixelRect& area, ui::Colour colour) override;
    void frameRect(const ui::PixelRect& area, ui::Colour colour) override;
    void drawText(const std::wstring& text, const ui::PixelRect& area,
                  const ui::TextFormat& format) override;

    /// Colour of what was filled last at that point; empty where nothing was.
    std::optional<ui::Colour> colourAt(int x, int y) const;
    const std::vector<Text>& texts() const { return texts_; }

private:
    struct Fill {
        ui::PixelRect area;
        ui::Colour colour = 0;
    };
    std::vector<Fill> fills_;
    std::vector<Text> texts_;
};

}  // namespace headless
