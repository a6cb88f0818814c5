#pragma once

#include <cstdint>

namespace ui {

/// A colour as 0x00BBGGRR.
using Colour = std::uint32_t;

constexpr Colour rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | green << 8U | blue << 16U;
}

/// Colours of one item or row.
struct ItemColours {
    bool changed = false;  ///< false: the control's own colours
    Colour text = 0;
    Colour background = 0;
};

}  // namespace ui
