// Rows, columns and texts.

#include "viewkit/grid/flex_grid.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "viewkit/grid/flex_grid_state.h"
#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

FlexGrid::FlexGrid(std::string name, std::optional<int> index)
    : Control(std::move(name), index), state_(std::make_shared<State>(*this)) {}

FlexGrid::~FlexGrid() = default;

// --- size

int FlexGrid::Rows() const {
  return state_->rows.Rows();
}

void FlexGrid::SetRows(int rows) {
  const int data = std::max(rows - FixedRows(), 0);
  Update([data](State& s) {
    const int now = s.rows.DataRows();
    if (data == 0 && now > 0 && s.selection.Row() >= s.rows.Fixed()) {
      s.ForgetRows();
      s.input.ForgetTyped();
    }
    if (data > now) s.InsertRows(now, data - now);
    if (data < now) s.EraseRows(data, now - data);
  });
}

int FlexGrid::Cols() const {
  return state_->columns.Count();
}

void FlexGrid::SetCols(int cols) {
  if (cols < 0) throw std::out_of_range("a grid cannot have less than no columns");
  if (cols == Cols()) return;
  Update([cols](State& s) { s.SetCols(cols); });
}

int FlexGrid::FixedRows() const {
  return state_->rows.Fixed();
}

void FlexGrid::SetFixedRows(int rows) {
  rows = std::clamp(rows, 0, Rows());
  if (rows == FixedRows()) return;
  Update([rows](State& s) {
    s.SetFixedRows(rows);
    s.input.ForgetTyped();
  });
}

int FlexGrid::FixedCols() const {
  return state_->columns.Fixed();
}

void FlexGrid::SetFixedCols(int cols) {
  cols = std::clamp(cols, 0, Cols());
  if (cols == FixedCols()) return;
  Update([cols](State& s) {
    s.viewport.ChangeScrolledCols([&] { s.columns.SetFixed(cols); });
    s.changes.Structure();
  });
}

int FlexGrid::FrozenCols() const {
  return state_->columns.Frozen();
}

void FlexGrid::SetFrozenCols(int cols) {
  cols = std::clamp(cols, 0, Cols() - FixedCols());
  if (cols == FrozenCols()) return;
  Update([cols](State& s) {
    s.viewport.ChangeScrolledCols([&] { s.columns.SetFrozen(cols); });
    s.changes.Structure();
  });
}

// --- texts

std::string_view FlexGrid::TextMatrix(int row, int col) const {
  state_->rows.CheckRow(row);
  state_->columns.Check(col);
  return state_->rows.Text(row, col);
}

std::uint64_t FlexGrid::TextVersion() const {
  return state_->rows.Cells().Version();
}

void FlexGrid::AppendTexts(int begin, int end, std::span<const int> cols, std::string& text,
                           std::vector<std::int32_t>& ends) const {
  const GridRows& rows = state_->rows;
  for (const int col : cols) state_->columns.Check(col);
  if (begin < end) {
    rows.CheckRow(begin);
    rows.CheckRow(end - 1);
  }
  for (int row = begin; row < end; ++row) {
    for (const int col : cols) {
      text += rows.Text(row, col);
      ends.push_back(CountOf(text));
    }
  }
}

void FlexGrid::SetTextMatrix(int row, int col, std::string_view text) {
  if (TextMatrix(row, col) == text) return;
  Update([&](State& s) {
    const std::uint64_t version = TextVersion();
    s.rows.SetText(row, col, text);
    if (s.rows.IsTotal(row)) s.totals.OwnTextChanged(version);
    s.changes.Row(row);
  });
}

std::string FlexGrid::DisplayText(int row, int col) const {
  state_->rows.CheckRow(row);
  state_->columns.Check(col);
  return state_->DisplayText(row, col);
}

double FlexGrid::ValueMatrix(int row, int col) const {
  return CellNumber(TextMatrix(row, col));
}

void FlexGrid::LoadRows(host::RowSet&& rows) {
  Update([&](State& s) {
    s.LoadRows(std::move(rows));
    s.totals.Forget();
    s.sorting.Forget();
    s.input.ForgetTyped();
  });
}

int FlexGrid::AddItem() {
  const int row = Rows();
  Update([](State& s) { s.InsertRows(s.rows.DataRows(), 1); });
  return row;
}

void FlexGrid::RemoveItem(int row) {
  state_->rows.CheckDataRow(row);
  Update([row](State& s) { s.EraseRows(row - s.rows.Fixed(), 1); });
}

}  // namespace tavrix::viewkit
