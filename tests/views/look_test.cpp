#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "support/temp_folder.h"
#include "support/test_book.h"
#include "viewkit/grid/flex_grid.h"
#include "viewkit/layout/m_mode.h"
#include "views/column_fit.h"
#include "views/default_layout.h"

namespace desk::views {
namespace {

namespace viewkit = tavrix::viewkit;

TEST(PickerLayout, OfANewUserHidesTheNumberAndMarksLeafAccounts) {
  const tavrix::test::TempFolder folder;
  const std::string path = folder.File("picker.txt");
  EnsureLayout(DefaultLayout::kPicker, path);
  viewkit::FlexGrid grid("Vs");
  grid.SetFixedRows(1);
  grid.SetCols(8);
  grid.SetRows(2);
  grid.SetTextMatrix(1, 7, "1");
  const auto book = tavrix::test::MakeBook();
  viewkit::ApplyVsLayout(path, grid, false, *book.System());
  EXPECT_EQ(grid.ColWidth(0), 0);
  EXPECT_GT(grid.ColWidth(1), 0);
  EXPECT_EQ(grid.DisplayText(1, 7), "✓");
  std::ofstream(path) << "; mine";
  EnsureLayout(DefaultLayout::kPicker, path);
  std::ifstream file(path);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "; mine");
}

TEST(ColumnFit, TakesTheWidestTextOfAll) {
  viewkit::FlexGrid grid("Vs");
  grid.SetFixedRows(1);
  grid.SetCols(1);
  grid.SetRows(1000);
  const viewkit::TextMeasure& measure = viewkit::PlainTextMeasure();
  const int empty = WidthOfText("", measure);
  EXPECT_EQ(WidthOfContents(grid, 0, measure), empty);
  grid.SetTextMatrix(0, 0, "heading");
  EXPECT_EQ(WidthOfContents(grid, 0, measure), empty + measure.Width("heading", false));
  for (int row = 1; row < grid.Rows(); ++row) grid.SetTextMatrix(row, 0, "Œuvres sociales");
  grid.SetTextMatrix(777, 0, "Pénalités de marchés (et dédits payés)");
  EXPECT_EQ(WidthOfContents(grid, 0, measure),
            empty + measure.Width("Pénalités de marchés (et dédits payés)", false));
}

TEST(ColumnFit, WidensForTheCodesOfADeepChartAndNeverNarrows) {
  viewkit::FlexGrid grid("Vs");
  grid.SetFixedRows(1);
  grid.SetCols(1);
  grid.SetRows(2);
  grid.SetColWidth(0, 1350);
  grid.SetTextMatrix(1, 0, "1001");
  WidenToFit(grid, 0);
  EXPECT_EQ(grid.ColWidth(0), 1350);
  const std::string code = "10010101010101010101";
  grid.SetTextMatrix(1, 0, code);
  WidenToFit(grid, 0);
  EXPECT_GE(grid.ColWidth(0), WidthOfText(code, viewkit::PlainTextMeasure()));
  grid.SetColWidth(0, 0);
  WidenToFit(grid, 0);
  EXPECT_EQ(grid.ColWidth(0), 0) << "the user wants to see nothing of it";
}

}  // namespace
}  // namespace desk::views
