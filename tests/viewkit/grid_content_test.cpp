#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "support/matchers.h"
#include "viewkit/grid/cell_store.h"
#include "viewkit/grid/grid_metrics.h"
#include "viewkit/grid_support.h"

namespace tavrix::viewkit {
namespace {

class GridContent : public ::testing::Test {
 protected:
  FlexGrid grid{"Vs"};
};

TEST_F(GridContent, BeginsWithTheHeaderAlone) {
  EXPECT_EQ(grid.Rows(), 1);
  EXPECT_EQ(grid.FixedRows(), 1);
  EXPECT_EQ(grid.Cols(), 0);
  EXPECT_EQ(grid.Row(), 0);
  EXPECT_EQ(grid.Col(), -1);
  EXPECT_EQ(grid.ShownRows(), 0);
  CheckInvariants(grid);
}

TEST_F(GridContent, TakesOverARowSet) {
  grid.SetCols(3);
  host::RowSet rows(3);
  rows.AppendText("1001");
  rows.AppendNull();
  rows.AppendInteger(-7);
  for (const char* text : {"1002", "库存现金", ""}) rows.AppendText(text);
  grid.LoadRows(std::move(rows));
  EXPECT_EQ(grid.Rows(), 3);
  EXPECT_EQ(grid.TextMatrix(1, 1), "");
  EXPECT_EQ(grid.TextMatrix(1, 2), "-7");
  EXPECT_EQ(grid.TextMatrix(2, 1), "库存现金");
  grid.LoadRows(host::RowSet());
  EXPECT_EQ(grid.Rows(), 1);
  CheckInvariants(grid);
}

TEST_F(GridContent, ColumnsOfARowSetAndOfTheGridMayDiffer) {
  grid.SetCols(2);
  grid.LoadRows(RowSetOf({{"a", "b", "c"}, {"d", "e", "f"}}));
  EXPECT_EQ(grid.Cols(), 2);
  EXPECT_THAT(ColumnOf(grid, 1), ElementsAre("b", "e"));
  grid.SetCols(4);
  EXPECT_THAT(ColumnOf(grid, 3), ElementsAre("", ""));
  grid.SetTextMatrix(2, 3, "g");
  grid.LoadRows(RowSetOf({{"h"}}));
  EXPECT_EQ(grid.TextMatrix(1, 0), "h");
  EXPECT_EQ(grid.TextMatrix(1, 3), "");
}

TEST_F(GridContent, LoadingForgetsWhatTheOldRowsHad) {
  FillOutline(grid, {0, 1, 0});
  grid.Outline(0);
  grid.SetRowHeight(1, 900);
  grid.SetCellFontBold(1, 0, true);
  grid.SetRowHidden(3, true);
  grid.SetRow(1);
  Fill(grid, {{"a"}, {"b"}, {"c"}});
  EXPECT_EQ(grid.ShownRows(), 3);
  EXPECT_FALSE(grid.IsSubtotal(1));
  EXPECT_EQ(grid.RowHeight(1), grid.RowHeight(2));
  EXPECT_FALSE(grid.CellFontBold(1, 0));
  EXPECT_EQ(grid.Row(), 0);
  EXPECT_EQ(grid.SelectedRows(), 0);
}

TEST_F(GridContent, TextsChangeInAnyLength) {
  Fill(grid, {{"short", "x"}, {"y", "z"}});
  grid.SetTextMatrix(1, 0, "a good deal longer than before");
  grid.SetTextMatrix(1, 0, "now short");
  grid.SetTextMatrix(2, 1, grid.TextMatrix(1, 0));  // out of the grid's own buffer
  grid.SetTextMatrix(1, 0, grid.TextMatrix(1, 0).substr(4));
  grid.SetTextMatrix(0, 1, "title");
  EXPECT_THAT(ColumnOf(grid, 0), ElementsAre("short", "y"));
  EXPECT_THAT(ColumnOf(grid, 1), ElementsAre("x", "now short"));
  EXPECT_EQ(grid.TextMatrix(0, 1), "title");
  for (std::size_t length = 10; length < 2000; length += 10) {
    grid.SetTextMatrix(1, 0, std::string(length, 'x'));
    grid.SetTextMatrix(2, 0, grid.TextMatrix(1, 0));
    ASSERT_EQ(grid.TextMatrix(2, 0), std::string(length, 'x'));
  }
}

TEST(CellStoreTest, GivesBackTheRoomOfTextsThatAreGone) {
  CellStore store;
  store.Take(RowSetOf({{"first", "kept"}, {"second", "kept too"}}), 2);
  for (int i = 0; i < 10'000; ++i) {
    store.SetText(0, 0, std::string(static_cast<std::size_t>(i % 1000), 'x'));
  }
  EXPECT_LT(store.TextBytes(), 200'000U);
  EXPECT_EQ(store.Text(0, 0).size(), 999U);
  EXPECT_EQ(store.Text(0, 1), "kept");
  EXPECT_EQ(store.Text(1, 1), "kept too");
  store.Erase(0, 2);
  EXPECT_EQ(store.TextBytes(), 0U);
}

TEST_F(GridContent, RowsComeAndGo) {
  Fill(grid, {{"a"}, {"b"}, {"c"}, {"d"}});
  grid.SetRow(3);
  EXPECT_EQ(grid.AddItem(), 5);
  grid.SetTextMatrix(5, 0, "e");
  grid.RemoveItem(1);
  EXPECT_EQ(grid.Row(), 2);  // the same row as before
  EXPECT_THAT(SelectionOf(grid), ElementsAre(2));
  grid.RemoveItem(2);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("b", "d", "e"));
  EXPECT_EQ(grid.Row(), 2);  // the next one has taken its place
  grid.SetRows(2);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("b"));
  EXPECT_EQ(grid.Row(), 1);
  grid.SetRows(0);
  EXPECT_EQ(grid.Rows(), 1);
  EXPECT_EQ(grid.Row(), 0);
  grid.SetRows(3);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("", ""));
  EXPECT_THROW(grid.RemoveItem(0), std::out_of_range);
  CheckInvariants(grid);
}

TEST_F(GridContent, RowsBecomeFixedAndBack) {
  Fill(grid, {{"a"}, {"b"}, {"c"}});
  grid.SetRow(2);
  grid.SetFixedRows(2);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("b", "c"));
  EXPECT_EQ(grid.TextMatrix(1, 0), "a");
  EXPECT_LT(grid.Row(), grid.FixedRows());
  grid.SetFixedRows(0);
  EXPECT_THAT(ColumnOf(grid), ElementsAre("", "a", "b", "c"));
  grid.SetCellFontBold(3, 0, true);
  CheckInvariants(grid);
}

TEST_F(GridContent, RefusesWhatLiesOutside) {
  Fill(grid, {{"a"}});
  EXPECT_THROW((void)grid.TextMatrix(2, 0), std::out_of_range);
  EXPECT_THROW((void)grid.TextMatrix(0, 1), std::out_of_range);
  EXPECT_THROW((void)grid.TextMatrix(-1, 0), std::out_of_range);
  EXPECT_THROW(grid.SetColWidth(1, 10), std::out_of_range);
  EXPECT_THROW(grid.SetRow(2), std::out_of_range);
  EXPECT_THROW(grid.SetIsSubtotal(0, true), std::out_of_range);
  EXPECT_THROW(grid.SetTextMatrix(5, 0, "x"), std::out_of_range);
}

TEST_F(GridContent, FormatStringNamesAlignsAndSizesColumns) {
  grid.SetFormatString("科目编码  |<Name|^C|>D");
  EXPECT_EQ(grid.Cols(), 4);
  EXPECT_EQ(grid.TextMatrix(0, 0), "科目编码");
  EXPECT_EQ(grid.TextMatrix(0, 1), "Name");
  EXPECT_EQ(grid.ColAlignment(0), Alignment::kGeneral);
  EXPECT_EQ(grid.ColAlignment(1), Alignment::kLeftCenter);
  EXPECT_EQ(grid.ColAlignment(2), Alignment::kCenterCenter);
  EXPECT_EQ(grid.ColAlignment(3), Alignment::kRightCenter);
  EXPECT_EQ(grid.ColWidth(0) - grid.ColWidth(1), 4 * 180 + 2 * 90 - 4 * 90);
  grid.SetFormatString("");
  EXPECT_EQ(grid.Cols(), 4);
  grid.SetFormatString("x|");
  EXPECT_EQ(grid.TextMatrix(0, 1), "");
  EXPECT_EQ(grid.TextMatrix(0, 2), "C");
}

/// Counts how often it is asked for a text of more than one character.
class CountingMeasure : public TextMeasure {
 public:
  int Width(std::string_view text, bool bold) const override {
    if (text.size() > 3) ++measured;
    return PlainTextMeasure().Width(text, bold);
  }
  int LineHeight() const override { return 200; }
  mutable int measured = 0;
};

TEST_F(GridContent, AutoSizeFindsTheWidestCellByMeasuringAFew) {
  const CountingMeasure measure;
  grid.SetTextMeasure(&measure);
  Texts rows;
  for (int row = 0; row < 2000; ++row) rows.push_back({std::to_string(100'000 + row)});
  Fill(grid, rows);
  grid.SetTextMatrix(0, 0, "12345678901234567890");
  grid.AutoSize(0);
  const int header = grid.ColWidth(0);
  grid.SetTextMatrix(1500, 0, "科目名称科目名称科目名称");  // 36 bytes, but 24 places
  grid.SetTextMatrix(1501, 0, "2345678901234567890123");    // 22 places
  grid.SetRowHidden(1500, true);
  measure.measured = 0;
  grid.AutoSize(0);
  EXPECT_EQ(grid.ColWidth(0) - header, 4 * 90);
  EXPECT_LT(measure.measured, 20);

  FlexGrid::Look look;
  look.outline_bar = 5;
  grid.SetLook(look);
  grid.SetIsSubtotal(700, true);
  grid.SetRowOutlineLevel(700, 9);
  grid.AutoSize(0);
  EXPECT_EQ(grid.ColWidth(0) - header, (6 - 20) * 90 + 10 * grid_metrics::kOutlineIndent);
  grid.SetTextMeasure(nullptr);
}

// A host may load a view before it places it in a window.
TEST_F(GridContent, AFittedColumnIsFittedAgainWhenTheFontIsKnown) {
  class WideMeasure final : public TextMeasure {
   public:
    int Width(std::string_view text, bool bold) const override {
      return 2 * PlainTextMeasure().Width(text, bold);
    }
    int LineHeight() const override { return 200; }
  };
  Fill(grid, {{"10020101", "10020101"}});
  for (const int col : {0, 1}) grid.AutoSize(col);
  const int fitted = grid.ColWidth(0);
  grid.SetColWidth(1, fitted + 1);  // by the user
  const WideMeasure font;
  grid.SetTextMeasure(&font);
  EXPECT_EQ(grid.ColWidth(0) - fitted, PlainTextMeasure().Width("10020101", false));
  EXPECT_EQ(grid.ColWidth(1), fitted + 1);
  grid.SetTextMeasure(nullptr);
}

TEST_F(GridContent, DisplaysNumbersInTheColumnsFormat) {
  Fill(grid, {{"1234.5"}, {"none"}, {""}});
  grid.SetColFormat(0, "#,##0.00");
  EXPECT_EQ(grid.DisplayText(1, 0), "1,234.50");
  EXPECT_EQ(grid.DisplayText(2, 0), "none");
  EXPECT_EQ(grid.DisplayText(3, 0), "");
  grid.SetColDataType(0, ColumnType::kString);
  EXPECT_EQ(grid.DisplayText(1, 0), "1234.5");
}

TEST_F(GridContent, DisplaysDatesInTheColumnsFormat) {
  Fill(grid, {{"2024-01-31 00:00:00"}, {"45322"}, {"unknown"}});
  grid.SetColFormat(0, "yyyy/M/d");
  EXPECT_EQ(grid.DisplayText(1, 0), "2024/1/31");
  EXPECT_EQ(grid.DisplayText(2, 0), "45322");  // a number, as long as nobody says it is a date
  grid.SetColDataType(0, ColumnType::kDate);
  EXPECT_EQ(grid.DisplayText(2, 0), "2024/1/31");
  EXPECT_EQ(grid.DisplayText(3, 0), "unknown");
}

TEST_F(GridContent, DisplaysAMarkForWhatIsTrue) {
  Fill(grid, {{"1"}, {"0"}, {"True"}, {"false"}, {"?"}, {"-1"}});
  grid.SetColDataType(0, ColumnType::kBoolean);
  const char* const shown[] = {"✓", "", "✓", "", "?", "✓"};
  for (int row = 1; row < grid.Rows(); ++row) {
    EXPECT_EQ(grid.DisplayText(row, 0), shown[row - 1]);
  }
  EXPECT_EQ(grid.TextMatrix(1, 0), "1");
}

TEST_F(GridContent, RefusesNumbersThatNameNothing) {
  Fill(grid, {{"1"}});
  grid.SetCol(0);
  EXPECT_THROW(grid.SetColAlignment(0, static_cast<Alignment>(10)), std::out_of_range);
  EXPECT_THROW(grid.SetColDataType(0, static_cast<ColumnType>(-1)), std::out_of_range);
  EXPECT_THROW(grid.SetSort(static_cast<SortOrder>(9)), std::out_of_range);
  grid.SetColDataType(0, static_cast<ColumnType>(14));
  grid.SetColFormat(0, "0.0");
  EXPECT_EQ(grid.DisplayText(1, 0), "1.0");
}

TEST_F(GridContent, CountsVersionsOfTexts) {
  Fill(grid, {{"b"}, {"a"}});
  const auto loaded = grid.TextVersion();
  grid.SetRow(1);
  grid.SetRowHidden(1, true);
  EXPECT_EQ(grid.TextVersion(), loaded);
  grid.SetTextMatrix(1, 0, "c");
  const auto changed = grid.TextVersion();
  EXPECT_NE(changed, loaded);
  grid.SortRows(0, SortOrder::kStringAscending, 1, 2);
  EXPECT_NE(grid.TextVersion(), changed);
}

}  // namespace
}  // namespace tavrix::viewkit
