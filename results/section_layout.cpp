#include "results/section_layout.h"

#include <algorithm>

#include "platform/ui/screen.h"

namespace results {
namespace {

constexpr int kNumberColumnPx = 30;

void growTo(ui::ListControl& list, std::size_t column, int widthPx) {
    if (list.columnWidthPx(column) < widthPx) list.setColumnWidthPx(column, widthPx);
}

}  // namespace

PageLayout LayoutOf(ui::PixelSize client, ResultSection section) {
    const bool radios = section == ResultSection::Attributes;
    const int half = client.width / 2;
    const int leftWidth = half - 24;
    const int rightX = half + 4;
    const int rightWidth = client.width - rightX - 20;
    const int labelTop = radios ? 87 : 50;
    const int panelTop = radios ? 119 : 82;
    const int panelHeight = std::max(0, client.height - kFooterHeightPx - panelTop);

    PageLayout layout;
    layout.save = ui::rectAt(client.width - 160, client.height - 40, 140, 32);
    layout.copy = ui::rectAt(client.width - 308, client.height - 40, 140, 32);
    layout.leftLabel = ui::rectAt(kPanelLeftPx, labelTop, leftWidth, kLabelHeightPx);
    layout.rightLabel = ui::rectAt(rightX, labelTop, rightWidth, kLabelHeightPx);
    layout.leftPanel = ui::rectAt(kPanelLeftPx, panelTop, leftWidth, panelHeight);
    layout.rightPanel = ui::rectAt(rightX, panelTop, rightWidth, panelHeight);
    layout.panelsFit = panelHeight >= kLeastPanelHeightPx;
    return layout;
}

RadioLayout LayoutRadios(int assemblyTextPx, int partTextPx, int dotsPerInch) {
    const int height = ui::scaledPx(18, dotsPerInch);
    const int mark = ui::scaledPx(22, dotsPerInch);
    const int first = assemblyTextPx + mark;
    const int second = partTextPx + mark;
    const int y = (36 - height) / 2 + kStripHeightPx;
    return {ui::rectAt(20, y, first + 6, height), ui::rectAt(first + 34, y, second + 6, height)};
}

ui::PixelRect SectionTabRect(std::size_t position, std::size_t count, int width) {
    if (count == 0) return {};
    const int tabs = static_cast<int>(count);
    const int each = width / tabs;
    const int left = static_cast<int>(position) * each;
    const bool last = position + 1 == count;
    return {left, 0, left + (last ? width - (tabs - 1) * each : each), kStripHeightPx};
}

std::size_t SectionTabAt(ui::PixelPoint point, std::size_t count, int width) {
    for (std::size_t position = 0; position < count; ++position) {
        if (SectionTabRect(position, count, width).contains(point)) return position;
    }
    return count;
}

void LayoutColumns(ui::ListControl& list, int panelWidthPx) {
    const int own = list.clientWidthPx();
    int width = own < 1 ? panelWidthPx : own;
    std::size_t first = 0;
    if (list.columnCount() >= 3) {
        list.setColumnWidthPx(0, kNumberColumnPx);
        width -= kNumberColumnPx;
        first = 1;
    }
    const int share = width * 45 / 100;
    list.fitColumn(first);
    list.fitColumn(first + 1);
    growTo(list, first, share);
    growTo(list, first + 1, width - share);
}

}  // namespace results
