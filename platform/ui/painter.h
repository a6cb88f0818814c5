#pragma once

#include <string>

#include "platform/ui/colour.h"
#include "platform/ui/pixels.h"

namespace ui {

/// Weights of the dialog's own font.
constexpr int kNormalWeight = 400;
constexpr int kSemiBoldWeight = 600;

/// How a line of text stands in its rectangle; always in the middle of the height.
struct TextFormat {
    enum class Align { Left, Centre };
    Align align = Align::Left;
    bool endEllipsis = false;  ///< a text that is too long ends in three dots
    int weight = kNormalWeight;
    Colour colour = 0;
};

/// Draws in the client area of a window; lives as long as the call that gives it. Later drawings
/// cover earlier ones.
class Painter {
public:
    virtual ~Painter();
    virtual void fillRect(const PixelRect& area, Colour colour) = 0;
    /// One pixel wide, inside the rectangle.
    virtual void frameRect(const PixelRect& area, Colour colour) = 0;
    /// One line of text; nothing is painted behind it.
    virtual void drawText(const std::wstring& text, const PixelRect& area,
                          const TextFormat& format) = 0;
};

}  // namespace ui
