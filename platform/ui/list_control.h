#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/ui/pixels.h"

namespace ui {

enum class ColumnAlign { Left, Centre };

struct ListStyle {
    bool gridLines = false;
    bool fullRowSelect = false;
    bool doubleBuffer = false;
};

/// Rows of texts in columns below a header, each row with a number of its owner's. An index
/// outside the rows or columns changes nothing and reads as empty. Belongs to the user-interface
/// thread.
class ListControl {
public:
    virtual ~ListControl();

    virtual void setStyle(const ListStyle& style) = 0;
    /// Height of every row from now on.
    virtual void setRowHeightPx(int height) = 0;

    virtual void insertColumn(std::size_t column, const std::wstring& text, ColumnAlign align,
                              int widthPx) = 0;
    virtual void setColumnText(std::size_t column, const std::wstring& text) = 0;
    virtual std::wstring columnText(std::size_t column) const = 0;
    virtual std::size_t columnCount() const = 0;
    virtual int columnWidthPx(std::size_t column) const = 0;
    virtual void setColumnWidthPx(std::size_t column, int widthPx) = 0;
    /// Makes a column as wide as its header and its widest text need.
    virtual void fitColumn(std::size_t column) = 0;

    virtual void deleteAllRows() = 0;
    /// Inserts before the row of that index, or at the end, with the text in column 0 and the
    /// number 0. Returns the index of the new row.
    virtual std::size_t insertRow(std::size_t row, const std::wstring& text) = 0;
    virtual std::size_t rowCount() const = 0;
    virtual void setText(std::size_t row, std::size_t column, const std::wstring& text) = 0;
    virtual std::wstring text(std::size_t row, std::size_t column) const = 0;
    virtual void setRowData(std::size_t row, std::int32_t data) = 0;
    virtual std::int32_t rowData(std::size_t row) const = 0;

    /// Index of the first visible row; 0 without rows.
    virtual std::size_t topIndex() const = 0;
    /// Scrolls as little as makes the whole row visible.
    virtual void ensureVisible(std::size_t row) = 0;
    /// Scrolls by pixels, vertically to whole rows, as far as there is anything to see. The
    /// owner's events do not hear of it.
    virtual void scrollBy(int dxPx, int dyPx) = 0;
    /// Place of a row in the list's client area; empty without such a row.
    virtual PixelRect rowRect(std::size_t row) const = 0;
    /// Position of the horizontal bar.
    virtual int horizontalPositionPx() const = 0;
    /// Width of the area that shows rows.
    virtual int clientWidthPx() const = 0;
};

}  // namespace ui
