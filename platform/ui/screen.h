#pragma once

#include <optional>

#include "platform/ui/pixels.h"

namespace ui {

/// The screen and the host's window on it. The display's dots per inch are those of
/// bxtsgutils::ResourceLoader. User-interface thread.
class Screen {
public:
    virtual ~Screen();
    /// Size of the primary screen.
    virtual PixelSize sizePx() const = 0;
    /// Place of the host's main window; empty without one.
    virtual std::optional<PixelRect> mainWindowPx() const = 0;
    /// Bottom edge of the main window's ribbon; empty when it has none.
    virtual std::optional<int> ribbonBottomPx() const = 0;
};

/// Scales a length that was measured for 96 dots per inch, rounded to the nearest pixel.
constexpr int scaledPx(int lengthAt96Dpi, int dotsPerInch) {
    return (lengthAt96Dpi * dotsPerInch + 48) / 96;
}

}  // namespace ui
