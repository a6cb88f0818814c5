#include "backends/headless/list.h"

#include <gtest/gtest.h>

#include "backends/headless/list_box.h"
#include "backends/headless/metrics.h"

namespace {

using headless::List;
using headless::ListBox;
namespace metrics = headless::metrics;

class HeadlessList : public testing::Test {
protected:
    HeadlessList() {
        list.setRowHeightPx(32);
        list.insertColumn(0, L"Name", ui::ColumnAlign::Left, 100);
        list.insertColumn(1, L"Value", ui::ColumnAlign::Centre, 120);
        list.resize({200, metrics::kHeaderHeightPx + 5 * 32 + 10});
        list.onScrolled = [this](ui::ScrollBy by) { scrolls.push_back(by); };
    }
    void fill(int rows) {
        for (int i = 0; i < rows; ++i) {
            list.insertRow(list.rowCount(), L"row " + std::to_wstring(i));
        }
    }

    List list;
    std::vector<ui::ScrollBy> scrolls;
};

TEST_F(HeadlessList, KeepsTextsAndNumbersOfRows) {
    EXPECT_EQ(list.insertRow(9, L"b"), 0U);
    EXPECT_EQ(list.insertRow(0, L"a"), 0U);
    list.setText(1, 1, L"value");
    list.setRowData(1, 3);
    EXPECT_EQ(list.rowCount(), 2U);
    EXPECT_EQ(list.text(0, 0), L"a");
    EXPECT_EQ(list.text(0, 1), L"");
    EXPECT_EQ(list.text(1, 1), L"value");
    EXPECT_EQ(list.rowData(0), 0);
    EXPECT_EQ(list.rowData(1), 3);
    list.deleteAllRows();
    EXPECT_EQ(list.rowCount(), 0U);
}

TEST_F(HeadlessList, IndicesOutsideReadAsEmptyAndChangeNothing) {
    fill(1);
    list.setText(1, 0, L"x");
    list.setText(0, 2, L"x");
    list.setRowData(7, 1);
    list.setColumnText(2, L"x");
    list.setColumnWidthPx(2, 5);
    list.fitColumn(2);
    EXPECT_EQ(list.text(1, 0), L"");
    EXPECT_EQ(list.text(0, 2), L"");
    EXPECT_EQ(list.rowData(7), 0);
    EXPECT_EQ(list.columnText(2), L"");
    EXPECT_EQ(list.columnWidthPx(2), 0);
    EXPECT_EQ(list.rowRect(1), ui::PixelRect());
    EXPECT_EQ(list.columnCount(), 2U);
}

TEST_F(HeadlessList, FittingTakesTheWidestTextOrTheHeader) {
    fill(1);
    list.fitColumn(0);
    EXPECT_EQ(list.columnWidthPx(0), 5 * 6 + 12);
    list.fitColumn(1);
    EXPECT_EQ(list.columnWidthPx(1), 5 * 6 + 12);
    list.setText(0, 1, std::wstring(40, L'x'));
    list.fitColumn(1);
    EXPECT_EQ(list.columnWidthPx(1), 40 * 6 + 12);
    list.setText(0, 0, L"");
    list.fitColumn(0);
    EXPECT_EQ(list.columnWidthPx(0), 4 * 6 + 12);  // the header
}

TEST_F(HeadlessList, ScrollsWholeRowsAndNeverBeyondItsEnd) {
    fill(12);
    EXPECT_EQ(list.rowsPerPage(), 5U);
    EXPECT_EQ(list.lastTop(), 7U);
    list.scrollBy(0, 3 * 32);
    EXPECT_EQ(list.topIndex(), 3U);
    list.scrollBy(0, 31);
    EXPECT_EQ(list.topIndex(), 3U);
    list.scrollBy(0, 100 * 32);
    EXPECT_EQ(list.topIndex(), 7U);
    list.scrollBy(0, -100 * 32);
    EXPECT_EQ(list.topIndex(), 0U);
    EXPECT_TRUE(scrolls.empty());
    EXPECT_EQ(list.programScrolls(), 4);
}

TEST_F(HeadlessList, EnsureVisibleScrollsAsLittleAsItCan) {
    fill(12);
    list.ensureVisible(4);
    EXPECT_EQ(list.topIndex(), 0U);
    list.ensureVisible(5);
    EXPECT_EQ(list.topIndex(), 1U);
    list.ensureVisible(0);
    EXPECT_EQ(list.topIndex(), 0U);
    list.ensureVisible(12);
    EXPECT_EQ(list.topIndex(), 0U);
}

TEST_F(HeadlessList, HorizontalRangeIsWhatTheColumnsHideOfThemselves) {
    EXPECT_EQ(list.lastLeftPx(), 20);
    list.dragHorizontally(15);
    EXPECT_EQ(list.horizontalPositionPx(), 15);
    list.scrollBy(100, 0);
    EXPECT_EQ(list.horizontalPositionPx(), 20);
    list.setColumnWidthPx(0, 80);
    EXPECT_EQ(list.horizontalPositionPx(), 0);
}

TEST_F(HeadlessList, TheUsersScrollingIsReportedByItsKind) {
    fill(12);
    list.dragVertically(99);
    EXPECT_EQ(list.topIndex(), 7U);
    list.turnWheel(-1);
    EXPECT_EQ(list.topIndex(), 4U);
    list.pressPageDown();
    EXPECT_EQ(list.topIndex(), 7U);
    list.dragHorizontally(1);
    EXPECT_EQ(scrolls, (std::vector<ui::ScrollBy>{ui::ScrollBy::VerticalBar, ui::ScrollBy::Wheel,
                                                  ui::ScrollBy::Key, ui::ScrollBy::HorizontalBar}));
}

TEST_F(HeadlessList, RowsStandBelowTheHeaderAndMoveWithTheTop) {
    fill(12);
    EXPECT_EQ(list.rowRect(0), ui::rectAt(0, 24, 220, 32));
    list.scrollBy(10, 2 * 32);
    EXPECT_EQ(list.rowRect(0), ui::rectAt(-10, 24 - 64, 220, 32));
}

TEST_F(HeadlessList, GrowingAndEmptyingKeepThePositionInRange) {
    fill(12);
    list.dragVertically(7);
    list.resize({200, metrics::kHeaderHeightPx + 10 * 32});
    EXPECT_EQ(list.topIndex(), 2U);
    list.deleteAllRows();
    EXPECT_EQ(list.topIndex(), 0U);
}

TEST(HeadlessListBox, SelectionStaysWithItsText) {
    ListBox box;
    box.insert(9, L"b");
    box.select(0);
    box.insert(0, L"a");
    EXPECT_EQ(box.selected(), 1);
    box.remove(0);
    EXPECT_EQ(box.selected(), 0);
    EXPECT_EQ(box.text(0), L"b");
    box.remove(0);
    EXPECT_EQ(box.selected(), -1);
    EXPECT_EQ(box.text(0), L"");
    box.select(3);
    EXPECT_EQ(box.selected(), -1);
    box.remove(3);
    EXPECT_EQ(box.count(), 0U);
}

}  // namespace
