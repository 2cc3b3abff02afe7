#include "views/ledger_grid.h"

#include <algorithm>

#include "book/ledger/money_text.h"

namespace desk::views {

using viewkit::Alignment;

namespace {

constexpr viewkit::Color kRed = 0x002228BE;
constexpr int kRowHeight = 330;
constexpr int kLabelDrop = 60;
constexpr char kMoneyFormat[] = "#,##0.00";

Alignment AlignmentOf(LedgerColumn::Kind kind) {
  if (kind == LedgerColumn::Kind::kText) return Alignment::kLeftCenter;
  return kind == LedgerColumn::Kind::kCentred ? Alignment::kCenterCenter : Alignment::kRightCenter;
}

}  // namespace

void MakeLedgerGrid(viewkit::FlexGrid& grid, std::span<const LedgerColumn> columns,
                    const char* accessible_name) {
  grid.SetFixedRows(1);
  grid.SetFixedCols(0);
  grid.SetRowHeightMin(kRowHeight);
  grid.SetCols(static_cast<int>(columns.size()));
  for (int col = 0; col < grid.Cols(); ++col) {
    const LedgerColumn& plan = columns[static_cast<std::size_t>(col)];
    const bool amount = plan.kind == LedgerColumn::Kind::kAmount;
    grid.SetTextMatrix(0, col, plan.heading);
    grid.SetFixedAlignment(col, Alignment::kCenterCenter);
    grid.SetColWidth(col, plan.width);
    grid.SetColAlignment(col, AlignmentOf(plan.kind));
    grid.SetColDataType(col, amount ? viewkit::ColumnType::kDouble : viewkit::ColumnType::kString);
    if (amount) grid.SetColFormat(col, kMoneyFormat);
  }
  grid.SetSelectionMode(viewkit::SelectionMode::kByRow);
  grid.SetAccessibleName(accessible_name);
}

std::string AmountCell(std::int64_t amount) {
  return amount == 0 ? std::string() : book::MoneyText(amount);
}

std::string SideOf(std::int64_t balance) {
  if (balance == 0) return "平";
  return balance > 0 ? "借" : "贷";
}

void RedNegatives(viewkit::FlexGrid& grid, int first, int last) {
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    for (int col = first; col <= last; ++col) {
      if (grid.TextMatrix(row, col).starts_with('-')) grid.SetCellForeColor(row, col, kRed);
    }
  }
}

void DressTotal(viewkit::FlexGrid& grid, int row) {
  for (int col = 0; col < grid.Cols(); ++col) {
    grid.SetCellForeColor(row, col, viewkit::color::kButtonText);
    grid.SetCellBackColor(row, col, viewkit::color::kButtonFace);
    grid.SetCellFontBold(row, col, true);
  }
}

void FitColumn(viewkit::FlexGrid& grid, int col, int least) {
  constexpr int kScrollBar = 300;
  int others = kScrollBar;
  for (int each = 0; each < grid.Cols(); ++each) {
    if (each != col && !grid.ColHidden(each)) others += grid.ColWidth(each);
  }
  grid.SetColWidth(col, std::max(least, grid.GetBounds().width - others));
}

void Strip::Put(viewkit::Control& control, int width, int gap) {
  control.SetBounds({left_, top_ + kEdge, std::max(0, width), kLine});
  left_ += width + gap;
}

void Strip::PutLabel(viewkit::Control& label, int width, int gap) {
  label.SetBounds({left_, top_ + kEdge + kLabelDrop, std::max(0, width), kLine - kLabelDrop});
  left_ += width + gap;
}

host::Bounds FootLine(int width, int height) {
  return {Strip::kEdge, height - Strip::kLine + kLabelDrop, std::max(0, width - 2 * Strip::kEdge),
          Strip::kLine - kLabelDrop};
}

}  // namespace desk::views
