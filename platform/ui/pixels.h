#pragma once

namespace ui {

/// Measures of the screen, in pixels.
struct PixelSize {
    int width = 0;
    int height = 0;
};

struct PixelPoint {
    int x = 0;
    int y = 0;
};

/// Holds the points from left and top up to, but not including, right and bottom.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool contains(PixelPoint point) const {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    bool operator==(const PixelRect&) const = default;
};

/// The rectangle of that corner and size.
constexpr PixelRect rectAt(int x, int y, int width, int height) {
    return {x, y, x + width, y + height};
}

}  // namespace ui
