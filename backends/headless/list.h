#pragma once

#include <functional>
#include <vector>

#include "platform/ui/dialog_events.h"
#include "platform/ui/list_control.h"

namespace headless {

/// A list that is never painted. It scrolls by whole rows vertically and by pixels horizontally,
/// never beyond what there is to see. Below the operations of ui::ListControl stand those of the
/// user and of tests.
class List final : public ui::ListControl {
public:
    List();
    void setStyle(const ui::ListStyle& style) override { style_ = style; }
    void setRowHeightPx(int height) override;
    void insertColumn(std::size_t column, const std::wstring& text, ui::ColumnAlign align,
                      int widthPx) override;
    void setColumnText(std::size_t column, const std::wstring& text) override;
    std::wstring columnText(std::size_t column) const override;
    std::size_t columnCount() const override { return columns_.size(); }
    int columnWidthPx(std::size_t column) const override;
    void setColumnWidthPx(std::size_t column, int widthPx) override;
    void fitColumn(std::size_t column) override;
    void deleteAllRows() override;
    std::size_t insertRow(std::size_t row, const std::wstring& text) override;
    std::size_t rowCount() const override { return rows_.size(); }
    void setText(std::size_t row, std::size_t column, const std::wstring& text) override;
    std::wstring text(std::size_t row, std::size_t column) const override;
    void setRowData(std::size_t row, std::int32_t data) override;
    std::int32_t rowData(std::size_t row) const override;
    std::size_t topIndex() const override { return top_; }
    void ensureVisible(std::size_t row) override;
    void scrollBy(int dxPx, int dyPx) override;
    ui::PixelRect rowRect(std::size_t row) const override;
    int horizontalPositionPx() const override { return left_; }
    int clientWidthPx() const override { return size_.width; }

    /// The user drags the vertical bar to a row, the horizontal bar to a position, turns the
    /// wheel (positive: towards the end), or presses a page key.
    void dragVertically(std::size_t row);
    void dragHorizontally(int positionPx);
    void turnWheel(int notches);
    void pressPageDown();

    /// Told by the dialog.
    void resize(ui::PixelSize size);
    std::function<void(ui::ScrollBy)> onScrolled;

    const ui::ListStyle& style() const { return style_; }
    ui::ColumnAlign columnAlign(std::size_t column) const { return columns_.at(column).align; }
    int rowHeightPx() const { return rowHeight_; }
    /// Rows that fit below the header.
    std::size_t rowsPerPage() const;
    /// Greatest positions that can be reached.
    std::size_t lastTop() const;
    int lastLeftPx() const;
    /// How often scrollBy() was called.
    int programScrolls() const { return programScrolls_; }

private:
    struct Column {
        std::wstring text;
        ui::ColumnAlign align = ui::ColumnAlign::Left;
        int width = 0;
    };
    struct Row {
        std::vector<std::wstring> cells;
        std::int32_t data = 0;
    };

    void clampPositions();
    void report(ui::ScrollBy by);

    std::vector<Column> columns_;
    std::vector<Row> rows_;
    ui::ListStyle style_;
    ui::PixelSize size_;
    int rowHeight_;
    std::size_t top_ = 0;
    int left_ = 0;
    int programScrolls_ = 0;
};

}  // namespace headless
