#include "results/placement.h"

#include <algorithm>
#include <array>
#include <vector>

#include "shell/settings/compare_settings.h"

namespace results {
namespace {

struct WantedPlace {
    double left;  ///< of the screen's width
    double top;   ///< of the screen's height
    int width;
    std::array<int, 3> heights;  ///< for no, one and more sections
};

constexpr WantedPlace kLargest{0.65, 0.19, 720, {225, 400, 460}};
constexpr WantedPlace kExactly120{0.65, 0.19, 720, {245, 400, 500}};
constexpr WantedPlace kFrom120{0.60, 0.13, 720, {245, 400, 500}};
constexpr WantedPlace kUsual{0.60, 0.13, 650, {210, 340, 440}};

const WantedPlace& placeFor(int dotsPerInch) {
    if (dotsPerInch >= 144) return kLargest;
    if (dotsPerInch == 120) return kExactly120;
    return dotsPerInch > 120 ? kFrom120 : kUsual;
}

ui::PixelSize leastSize(int dotsPerInch) {
    if (dotsPerInch >= 144) return {800, 340};
    return dotsPerInch >= 120 ? ui::PixelSize{750, 310} : ui::PixelSize{700, 275};
}

}  // namespace

ui::PixelRect ResultsDialogRect(std::size_t sections, ui::PixelSize screenPx, int dotsPerInch) {
    const WantedPlace& place = placeFor(dotsPerInch);
    return ui::rectAt(static_cast<int>(place.left * screenPx.width),
                      static_cast<int>(place.top * screenPx.height), place.width,
                      place.heights[std::min<std::size_t>(sections, 2)]);
}

ui::PixelRect PlaceBeside(const ui::PixelRect& wanted, const ui::PixelRect& mainWindow,
                          std::optional<int> ribbonBottomPx, int dotsPerInch) {
    const ui::PixelSize least = leastSize(dotsPerInch);
    const int width = std::max(wanted.width(), least.width);
    const int height = std::max(wanted.height(), least.height);
    int top = wanted.top;
    if (ribbonBottomPx) top = std::max(top, *ribbonBottomPx + 5);
    return ui::rectAt(mainWindow.right - width - 200, top, width, height + 20);
}

std::size_t SwitchedOnSections() {
    std::vector<bool> stored;
    settings::ReadSectionSwitches(stored);
    if (stored.empty()) return 3;
    return static_cast<std::size_t>(std::count(stored.begin(), stored.end(), true));
}

}  // namespace results
