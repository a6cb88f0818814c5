#pragma once

#include <cstddef>
#include <optional>

#include "platform/ui/pixels.h"

namespace results {

/// The rectangle that the results dialog wants on a screen, by the number of sections that are
/// switched on. Its left edge is not used by PlaceBeside().
ui::PixelRect ResultsDialogRect(std::size_t sections, ui::PixelSize screenPx, int dotsPerInch);

/// Where the dialog goes: beside the right edge of the main window and below its ribbon, if it
/// has one, in the wanted size but never smaller than the display's scale allows.
ui::PixelRect PlaceBeside(const ui::PixelRect& wanted, const ui::PixelRect& mainWindow,
                          std::optional<int> ribbonBottomPx, int dotsPerInch);

/// Number of the section switches that are stored and on; 3 when none is stored.
std::size_t SwitchedOnSections();

}  // namespace results
