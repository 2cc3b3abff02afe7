// Rows, columns and texts.

#include "viewkit/grid/flex_grid.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "host/text.h"
#include "viewkit/grid/date_format.h"
#include "viewkit/grid/flex_grid_state.h"
#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

FlexGrid::FlexGrid(std::string name, std::optional<int> index)
    : Control(std::move(name), index), state_(std::make_shared<State>(*this)) {
  state_->styles.Insert(0, 1);
  state_->heights.Insert(0, 1);
}

FlexGrid::~FlexGrid() = default;

namespace {

/// A mark where it holds, nothing where it does not; what is neither stays.
std::string TruthMark(std::string_view text) {
  if (text == "1" || text == "-1" || host::EqualNoCase(text, "True")) return "✓";
  if (text == "0" || host::EqualNoCase(text, "False")) return {};
  return std::string(text);
}

std::string Formatted(std::string_view text, ColumnType type, const std::string& format) {
  if (type == ColumnType::kString) return std::string(text);
  if (type == ColumnType::kDate || (!IsNumeric(type) && IsDateFormat(format))) {
    const auto date = type == ColumnType::kDate ? DateOf(text) : WrittenDate(text);
    return date ? FormatDate(*date, format) : std::string(text);
  }
  const auto number = WholeNumber(text);
  return number ? FormatNumber(*number, format) : std::string(text);
}

}  // namespace

// --- the state's rows

void FlexGrid::State::CheckRow(int any_row) const {
  if (any_row < 0 || any_row >= Rows()) throw std::out_of_range("no such row in the grid");
}

void FlexGrid::State::CheckCol(int any_col) const {
  if (any_col < 0 || any_col >= Cols()) throw std::out_of_range("no such column in the grid");
}

void FlexGrid::State::CheckDataRow(int any_row) const {
  if (!IsData(any_row)) throw std::out_of_range("no such data row in the grid");
}

FlexGrid::State::Column& FlexGrid::State::At(int any_col) {
  CheckCol(any_col);
  return columns[static_cast<std::size_t>(any_col)];
}

void FlexGrid::State::InsertRows(int data_row, int count) {
  if (count == 0) return;
  const auto at = static_cast<std::size_t>(data_row);
  const auto any = static_cast<std::size_t>(data_row + Fixed());
  const auto rows = static_cast<std::size_t>(count);
  cells.Insert(at, rows);
  outline.Insert(data_row, count);
  styles.Insert(any, rows);
  heights.Insert(any, rows);
  RowsCame(data_row + Fixed(), count);
  StructureChanged();
}

void FlexGrid::State::EraseRows(int data_row, int count) {
  if (count == 0) return;
  const auto at = static_cast<std::size_t>(data_row);
  const auto any = static_cast<std::size_t>(data_row + Fixed());
  const auto rows = static_cast<std::size_t>(count);
  cells.Erase(at, rows);
  outline.Erase(data_row, count);
  styles.Erase(any, rows);
  heights.Erase(any, rows);
  RowsGone(data_row + Fixed(), count);
  StructureChanged();
}

void FlexGrid::State::CopyRow(int data_from, int data_to) {
  const auto from = static_cast<std::size_t>(data_from);
  const auto to = static_cast<std::size_t>(data_to);
  const auto fixed = header.size();
  cells.CopyRow(from, to);
  outline.CopyRow(data_from, data_to);
  styles.CopyRow(fixed + from, fixed + to);
  heights.CopyRow(fixed + from, fixed + to);
}

void FlexGrid::State::RowsCame(int first, int count) {
  const auto shift = [&](int& any_row) {
    if (any_row >= first && any_row >= Fixed()) any_row += count;
  };
  const bool appended = first + count == Rows();
  if (appended) return;
  shift(row);
  shift(anchor);
  if (top > Fixed()) shift(top);
  SelectionChanged(selection.RowsInserted(first, count));
}

void FlexGrid::State::RowsGone(int first, int count) {
  const bool current = row >= first && row < first + count;
  const auto shift = [&](int& any_row, int lost) {
    if (any_row >= first + count) {
      any_row -= count;
    } else if (any_row >= first) {
      any_row = lost;
    }
  };
  shift(row, first);
  shift(anchor, -1);
  shift(top, first);
  SelectionChanged(selection.RowsErased(first, count));
  if (current) GoOnFrom(first);
}

void FlexGrid::State::GoOnFrom(int place_of_lost_row) {
  // A row below a collapsed node, or a hidden one, is no place to go on from.
  int next = grid.NextShownRow(place_of_lost_row - 1);
  if (next < 0) next = grid.PreviousShownRow(place_of_lost_row);
  // Where several rows can be chosen for themselves, those that are left stay chosen.
  const bool others = mode == viewkit::SelectionMode::kListBox && selection.Count() > 0;
  MakeCurrent(next < 0 ? Fixed() - 1 : next, others ? Pick::kFocus : Pick::kOnly);
}

void FlexGrid::State::ForgetRows() {
  row = Fixed() - 1;
  anchor = -1;
  top = Fixed();
  typed.clear();
  SelectionChanged(selection.Clear());
}

// --- size

int FlexGrid::Rows() const {
  return state_->Rows();
}

void FlexGrid::SetRows(int rows) {
  const int data = std::max(rows - state_->Fixed(), 0);
  Update([data](State& s) {
    const int now = s.DataRows();
    if (data == 0 && now > 0 && s.row >= s.Fixed()) s.ForgetRows();
    if (data > now) s.InsertRows(now, data - now);
    if (data < now) s.EraseRows(data, now - data);
  });
}

int FlexGrid::Cols() const {
  return state_->Cols();
}

void FlexGrid::SetCols(int cols) {
  if (cols < 0) throw std::out_of_range("a grid cannot have less than no columns");
  if (cols == Cols()) return;
  Update([cols](State& s) {
    const auto count = static_cast<std::size_t>(cols);
    s.columns.resize(count);
    for (State::HeaderRow& row : s.header) row.texts.resize(count);
    s.cells.SetColumns(count);
    s.styles.SetColumns(count);
    s.fixed_cols = std::min(s.fixed_cols, cols);
    s.frozen_cols = std::min(s.frozen_cols, cols - s.fixed_cols);
    s.col = cols == 0 ? -1 : std::clamp(s.col, 0, cols - 1);
    s.StructureChanged();
  });
}

int FlexGrid::FixedRows() const {
  return state_->Fixed();
}

void FlexGrid::SetFixedRows(int rows) {
  rows = std::clamp(rows, 0, Rows());
  if (rows == FixedRows()) return;
  Update([rows](State& s) {
    const auto cols = s.columns.size();
    while (s.Fixed() < rows) {
      State::HeaderRow row{std::vector<std::string>(cols)};
      for (std::size_t col = 0; col < cols; ++col) row.texts[col] = s.cells.Text(0, col);
      s.EraseRows(0, 1);
      s.header.push_back(std::move(row));
      s.styles.Insert(s.header.size() - 1, 1);
      s.heights.Insert(s.header.size() - 1, 1);
    }
    while (s.Fixed() > rows) {
      const State::HeaderRow row = std::move(s.header.back());
      s.header.pop_back();
      s.styles.Erase(s.header.size(), 1);
      s.heights.Erase(s.header.size(), 1);
      s.InsertRows(0, 1);
      for (std::size_t col = 0; col < cols; ++col) s.cells.SetText(0, col, row.texts[col]);
    }
    s.ForgetRows();
    s.StructureChanged();
  });
}

int FlexGrid::FixedCols() const {
  return state_->fixed_cols;
}

void FlexGrid::SetFixedCols(int cols) {
  cols = std::clamp(cols, 0, Cols());
  if (cols == FixedCols()) return;
  Update([cols](State& s) {
    const bool scrolled = s.left > s.FirstScrolledCol();
    s.fixed_cols = cols;
    s.frozen_cols = std::min(s.frozen_cols, s.Cols() - cols);
    if (!scrolled) s.left = 0;
    s.StructureChanged();
  });
}

int FlexGrid::FrozenCols() const {
  return state_->frozen_cols;
}

void FlexGrid::SetFrozenCols(int cols) {
  cols = std::clamp(cols, 0, Cols() - FixedCols());
  if (cols == FrozenCols()) return;
  Update([cols](State& s) {
    // Columns that scroll again shall not begin out of sight.
    const bool scrolled = s.left > s.FirstScrolledCol();
    s.frozen_cols = cols;
    if (!scrolled) s.left = 0;
    s.StructureChanged();
  });
}

// --- texts

std::string_view FlexGrid::TextMatrix(int row, int col) const {
  const State& s = *state_;
  s.CheckRow(row);
  s.CheckCol(col);
  const auto column = static_cast<std::size_t>(col);
  if (row < s.Fixed()) return s.header[static_cast<std::size_t>(row)].texts[column];
  return s.cells.Text(static_cast<std::size_t>(row - s.Fixed()), column);
}

std::uint64_t FlexGrid::TextVersion() const {
  return state_->cells.Version();
}

void FlexGrid::AppendTexts(int begin, int end, std::span<const int> cols, std::string& text,
                           std::vector<std::int32_t>& ends) const {
  const State& s = *state_;
  for (const int col : cols) s.CheckCol(col);
  for (int row = begin; row < end; ++row) {
    const bool data = s.IsData(row);
    for (const int col : cols) {
      text += data ? s.cells.Text(static_cast<std::size_t>(row - s.Fixed()),
                                  static_cast<std::size_t>(col))
                   : TextMatrix(row, col);
      ends.push_back(static_cast<std::int32_t>(text.size()));
    }
  }
}

void FlexGrid::SetTextMatrix(int row, int col, std::string_view text) {
  if (TextMatrix(row, col) == text) return;
  Update([&](State& s) {
    const auto column = static_cast<std::size_t>(col);
    if (row < s.Fixed()) {
      s.header[static_cast<std::size_t>(row)].texts[column] = text;
    } else {
      const std::uint64_t version = s.cells.Version();
      s.cells.SetText(static_cast<std::size_t>(row - s.Fixed()), column, text);
      if (s.outline.Total(row - s.Fixed()) != 0) s.totals.Follow(version);
    }
    s.RowChanged(row);
  });
}

std::string FlexGrid::DisplayText(int row, int col) const {
  const std::string_view text = TextMatrix(row, col);
  const State::Column& column = state_->columns[static_cast<std::size_t>(col)];
  if (row < state_->Fixed()) return std::string(text);
  if (column.type == ColumnType::kBoolean) return TruthMark(text);
  if (column.format.empty()) return std::string(text);
  return Formatted(text, column.type, column.format);
}

double FlexGrid::ValueMatrix(int row, int col) const {
  return CellNumber(TextMatrix(row, col));
}

void FlexGrid::LoadRows(host::RowSet&& rows) {
  Update([&](State& s) {
    const std::size_t fixed = s.header.size();
    const auto before = static_cast<std::size_t>(s.DataRows());
    s.cells.Take(std::move(rows), s.columns.size());
    const std::size_t count = s.cells.Rows();
    s.outline.Reset(static_cast<int>(count));
    s.totals.Forget();
    s.postponed_sorts.clear();
    s.sort = SortOrder::kNone;
    s.styles.Erase(fixed, before);
    s.styles.Insert(fixed, count);
    s.heights.Erase(fixed, before);
    s.heights.Insert(fixed, count);
    s.ForgetRows();
    s.StructureChanged();
  });
}

int FlexGrid::AddItem() {
  const int row = Rows();
  Update([](State& s) { s.InsertRows(s.DataRows(), 1); });
  return row;
}

void FlexGrid::RemoveItem(int row) {
  state_->CheckDataRow(row);
  Update([row](State& s) { s.EraseRows(row - s.Fixed(), 1); });
}

}  // namespace tavrix::viewkit
