// Rows of totals.

#include <algorithm>
#include <cmath>
#include <utility>

#include "viewkit/grid/flex_grid_state.h"
#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

namespace {

using RowList = std::vector<std::uint32_t>;

NumberTotals Over(const GridTotals::Numbers& numbers, std::uint32_t first, std::uint32_t end) {
  NumberTotals totals(numbers.decimals);
  for (std::uint32_t place = first; place < end; ++place) {
    if (const double units = numbers.units[place]; !std::isnan(units)) totals.AddUnits(units);
  }
  return totals;
}

/// Rows of totals by their marks.
template <class Wanted>
RowList RowsWhere(const OutlineRows& outline, const Wanted& wanted) {
  const auto marks = outline.Totals();
  RowList rows;
  for (std::uint32_t row = 0; row < marks.size(); ++row) {
    if (wanted(marks[row])) rows.push_back(row);
  }
  return rows;
}

bool SameLook(const SubtotalOptions& one, const SubtotalOptions& other) {
  return one.back == other.back && one.fore == other.fore && one.bold == other.bold;
}

bool SameTexts(const SubtotalOptions& one, const SubtotalOptions& other) {
  return one.caption == other.caption && one.total_only == other.total_only;
}

}  // namespace

// --- rows that come and go in many places

void FlexGrid::State::InsertRowsAt(const RowList& before) {
  if (before.empty()) return;
  const int rows = DataRows();
  cells.InsertAt(before);
  outline.InsertAt(before);
  styles.InsertAt(before, header.size());
  heights.InsertAt(before, header.size());
  const auto moved = [&](int any_row) {
    const int data = any_row - Fixed();
    if (data < 0 || data >= rows) return any_row;
    const auto in_front =
        std::upper_bound(before.begin(), before.end(), static_cast<std::uint32_t>(data));
    return any_row + static_cast<int>(in_front - before.begin());
  };
  row = moved(row);
  anchor = moved(anchor);
  if (top > Fixed()) top = moved(top);
  std::vector<int> selected = selection.Rows();
  for (int& any_row : selected) any_row = moved(any_row);
  SelectionChanged(selection.Assign(std::move(selected)));
  StructureChanged();
}

void FlexGrid::State::EraseRowsAt(const RowList& gone) {
  if (gone.empty()) return;
  cells.EraseAt(gone);
  outline.EraseAt(gone);
  styles.EraseAt(gone, header.size());
  heights.EraseAt(gone, header.size());
  const auto above = [&](int any_row) {
    const auto data = static_cast<std::uint32_t>(std::max(any_row - Fixed(), 0));
    return static_cast<int>(std::lower_bound(gone.begin(), gone.end(), data) - gone.begin());
  };
  const auto is_gone = [&](int any_row) {
    const auto data = static_cast<std::uint32_t>(any_row - Fixed());
    return any_row >= Fixed() && std::binary_search(gone.begin(), gone.end(), data);
  };
  const bool current = is_gone(row);
  std::vector<int> selected = selection.Rows();
  std::erase_if(selected, is_gone);
  for (int& any_row : selected) any_row -= above(any_row);
  SelectionChanged(selection.Assign(std::move(selected)));
  anchor = is_gone(anchor) ? -1 : anchor - above(anchor);
  top -= above(top);
  row -= above(row);
  StructureChanged();
  if (current) GoOnFrom(row);
}

// --- totals

bool FlexGrid::State::HasTotals() const {
  const auto marks = outline.Totals();
  return std::any_of(marks.begin(), marks.end(), [](std::uint16_t mark) { return mark != 0; });
}

void FlexGrid::State::ClearTotals() {
  const RowList gone = RowsWhere(outline, [](std::uint16_t mark) { return mark != 0; });
  const auto sorts = std::exchange(postponed_sorts, {});
  totals.Forget();
  if (gone.empty()) return;
  EraseRowsAt(gone);
  outline.ForgetTotals();
  const SortOrder stands = sort;
  for (const auto& [sorted_col, order] : sorts) {
    if (sorted_col < Cols()) grid.SortRows(sorted_col, order, Fixed(), Rows() - 1);
  }
  sort = stands;
}

/// Whether any of them is new.
bool FlexGrid::State::EnsureTotalRows(GridTotals::Level& level) {
  GridTotals::Sites sites = totals.FindSites(level);
  const auto marks = outline.Totals();
  const auto standing = std::count(marks.begin(), marks.end(), level.mark);
  const bool fits = sites.existing.size() == level.ends.size() &&
                    static_cast<std::size_t>(standing) == level.ends.size();
  if (fits) {
    level.rows = std::move(sites.existing);
    return false;
  }
  if (standing > 0) {
    EraseRowsAt(RowsWhere(outline, [&](std::uint16_t mark) { return mark == level.mark; }));
    sites = totals.FindSites(level);
  }
  InsertRowsAt(sites.before);
  level.rows = std::move(sites.before);
  for (std::uint32_t group = 0; group < level.rows.size(); ++group) {
    level.rows[group] += group;
    outline.SetTotal(static_cast<int>(level.rows[group]), level.mark);
  }
  outline.FitTotals(level.above);
  totals.RowsMoved(level);
  return true;
}

/// A row of the group that the total in `data_row` is made over.
int FlexGrid::State::RowOfGroup(const GridTotals::Level& level, std::uint32_t data_row) const {
  int sample = static_cast<int>(data_row);
  while (outline.Total(sample) != 0) sample += level.above ? 1 : -1;
  return sample;
}

void FlexGrid::State::WriteTotalTexts(const GridTotals::Level& level,
                                      const SubtotalOptions& options) {
  const bool whole_grid = options.group_on < 0;
  const std::size_t sign = std::min(options.caption.find("%s"), options.caption.size());
  std::string caption;
  const int caption_col = whole_grid ? std::min(fixed_cols, Cols() - 1) : options.group_on;
  for (const std::uint32_t data_row : level.rows) {
    const int sample = RowOfGroup(level, data_row);
    for (const int shared : level.cols) {
      if (options.total_only || shared == options.group_on) continue;
      cells.SetText(data_row, static_cast<std::size_t>(shared), DataText(sample, shared));
    }
    caption.assign(options.caption, 0, sign);
    if (sign < options.caption.size()) {
      if (!whole_grid) caption += DataText(sample, options.group_on);
      caption.append(options.caption, sign + 2);
    }
    cells.SetText(data_row, static_cast<std::size_t>(caption_col), caption);
  }
}

void FlexGrid::State::WriteTotals(const GridTotals::Level& level, SubtotalFunction function,
                                  const SubtotalOptions& options) {
  const GridTotals::Numbers& numbers = totals.NumbersOf(options.total_on);
  Decimal whole;
  if (function == SubtotalFunction::kPercent) {
    whole = Over(numbers, 0, static_cast<std::uint32_t>(numbers.units.size())).Sum();
  }
  std::uint32_t first = 0;
  for (std::size_t group = 0; group < level.rows.size(); ++group) {
    const std::uint32_t end = level.ends[group];
    const Decimal total = Over(numbers, std::exchange(first, end), end).Result(function, whole);
    cells.SetText(
        level.rows[group], static_cast<std::size_t>(options.total_on),
        options.format.empty() ? DecimalText(total) : FormatNumber(total.Value(), options.format));
  }
}

void FlexGrid::State::AddTotals(SubtotalFunction function, const SubtotalOptions& options) {
  totals.Refresh();
  const std::uint64_t version = cells.Version();
  GridTotals::Level& level =
      totals.LevelOf(options, subtotal_position == viewkit::SubtotalPosition::kAbove);
  const bool fresh = level.rows.empty() && EnsureTotalRows(level);
  if (fresh || !level.texts_stand || !SameTexts(level.options, options)) {
    WriteTotalTexts(level, options);
    level.texts_stand = true;
  }
  if (fresh || !SameLook(level.options, options)) {
    const CellStyle style{options.fore, options.back, options.bold};
    for (const std::uint32_t data_row : level.rows) {
      styles.SetRow(header.size() + data_row, static_cast<std::size_t>(fixed_cols), style);
    }
  }
  WriteTotals(level, function, options);
  level.options = options;
  totals.Follow(version);
  ContentChanged();
}

void FlexGrid::Subtotal(SubtotalFunction function, const SubtotalOptions& options) {
  if (function == SubtotalFunction::kNone) return;
  if (function == SubtotalFunction::kClear) {
    return Update([](State& s) { s.ClearTotals(); });
  }
  state_->CheckCol(options.total_on);
  if (options.group_on >= 0) state_->CheckCol(options.group_on);
  if (options.match_from) state_->CheckCol(*options.match_from);
  Update([&](State& s) { s.AddTotals(function, options); });
}

bool FlexGrid::IsTotalRow(int row) const {
  state_->CheckRow(row);
  return row >= state_->Fixed() && state_->outline.Total(row - state_->Fixed()) != 0;
}

SubtotalPosition FlexGrid::SubtotalPosition() const {
  return state_->subtotal_position;
}

void FlexGrid::SetSubtotalPosition(viewkit::SubtotalPosition position) {
  state_->subtotal_position = position;
}

}  // namespace tavrix::viewkit
