#include "backends/headless/list.h"

#include <algorithm>

#include "backends/headless/metrics.h"

namespace headless {

List::List() : rowHeight_(metrics::kPlainRowHeightPx) {}

void List::setRowHeightPx(int height) {
    rowHeight_ = std::max(1, height);
    clampPositions();
}

void List::insertColumn(std::size_t column, const std::wstring& text, ui::ColumnAlign align,
                        int widthPx) {
    const std::size_t at = std::min(column, columns_.size());
    columns_.insert(columns_.begin() + static_cast<std::ptrdiff_t>(at), {text, align, widthPx});
}

void List::setColumnText(std::size_t column, const std::wstring& text) {
    if (column < columns_.size()) columns_[column].text = text;
}

std::wstring List::columnText(std::size_t column) const {
    return column < columns_.size() ? columns_[column].text : std::wstring();
}

int List::columnWidthPx(std::size_t column) const {
    return column < columns_.size() ? columns_[column].width : 0;
}

void List::setColumnWidthPx(std::size_t column, int widthPx) {
    if (column >= columns_.size()) return;
    columns_[column].width = std::max(0, widthPx);
    clampPositions();
}

void List::fitColumn(std::size_t column) {
    if (column >= columns_.size()) return;
    int widest = metrics::textWidthPx(columns_[column].text, ui::kNormalWeight);
    for (const Row& row : rows_) {
        if (column >= row.cells.size()) continue;
        widest = std::max(widest, metrics::textWidthPx(row.cells[column], ui::kNormalWeight));
    }
    setColumnWidthPx(column, widest + metrics::kCellPaddingPx);
}

void List::deleteAllRows() {
    rows_.clear();
    clampPositions();
}

std::size_t List::insertRow(std::size_t row, const std::wstring& text) {
    const std::size_t at = std::min(row, rows_.size());
    rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(at), Row{{text}, 0});
    return at;
}

void List::setText(std::size_t row, std::size_t column, const std::wstring& text) {
    if (row >= rows_.size() || column >= columns_.size()) return;
    auto& cells = rows_[row].cells;
    if (cells.size() <= column) cells.resize(column + 1);
    cells[column] = text;
}

std::wstring List::text(std::size_t row, std::size_t column) const {
    if (row >= rows_.size() || column >= rows_[row].cells.size()) return {};
    return rows_[row].cells[column];
}

void List::setRowData(std::size_t row, std::int32_t data) {
    if (row < rows_.size()) rows_[row].data = data;
}

std::int32_t List::rowData(std::size_t row) const {
    return row < rows_.size() ? rows_[row].data : 0;
}

std::size_t List::rowsPerPage() const {
    const int space = size_.height - metrics::kHeaderHeightPx;
    return space <= 0 ? 0 : static_cast<std::size_t>(space / rowHeight_);
}

std::size_t List::lastTop() const {
    const std::size_t page = std::max<std::size_t>(1, rowsPerPage());
    return rows_.size() > page ? rows_.size() - page : 0;
}

int List::lastLeftPx() const {
    int width = 0;
    for (const Column& column : columns_) width += column.width;
    return std::max(0, width - size_.width);
}

void List::clampPositions() {
    top_ = std::min(top_, lastTop());
    left_ = std::min(left_, lastLeftPx());
}

void List::ensureVisible(std::size_t row) {
    if (row >= rows_.size()) return;
    const std::size_t page = std::max<std::size_t>(1, rowsPerPage());
    if (row < top_) top_ = row;
    if (row >= top_ + page) top_ = row - page + 1;
}

void List::scrollBy(int dxPx, int dyPx) {
    ++programScrolls_;
    const long long top = static_cast<long long>(top_) + dyPx / rowHeight_;
    top_ = static_cast<std::size_t>(std::clamp(top, 0LL, static_cast<long long>(lastTop())));
    left_ = std::clamp(left_ + dxPx, 0, lastLeftPx());
}

ui::PixelRect List::rowRect(std::size_t row) const {
    if (row >= rows_.size()) return {};
    int width = 0;
    for (const Column& column : columns_) width += column.width;
    const int position = static_cast<int>(row) - static_cast<int>(top_);
    return ui::rectAt(-left_, metrics::kHeaderHeightPx + position * rowHeight_, width, rowHeight_);
}

void List::report(ui::ScrollBy by) {
    if (onScrolled) onScrolled(by);
}

void List::dragVertically(std::size_t row) {
    top_ = std::min(row, lastTop());
    report(ui::ScrollBy::VerticalBar);
}

void List::dragHorizontally(int positionPx) {
    left_ = std::clamp(positionPx, 0, lastLeftPx());
    report(ui::ScrollBy::HorizontalBar);
}

void List::turnWheel(int notches) {
    const long long top = static_cast<long long>(top_) + notches * metrics::kWheelRows;
    top_ = static_cast<std::size_t>(std::clamp(top, 0LL, static_cast<long long>(lastTop())));
    report(ui::ScrollBy::Wheel);
}

void List::pressPageDown() {
    top_ = std::min(top_ + std::max<std::size_t>(1, rowsPerPage()), lastTop());
    report(ui::ScrollBy::Key);
}

void List::resize(ui::PixelSize size) {
    size_ = size;
    clampPositions();
}

}  // namespace headless
