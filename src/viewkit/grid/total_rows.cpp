#include "viewkit/grid/total_rows.h"

#include <algorithm>
#include <span>
#include <utility>

#include "viewkit/grid/number_format.h"

namespace tavrix::viewkit {

namespace {

NumberTotals Over(const GridTotals::Column& numbers, int first, int end) {
  NumberTotals totals(numbers.decimals);
  totals.AddAll(std::span(numbers.units).subspan(SizeOf(first), SizeOf(end - first)));
  return totals;
}

/// Rows of totals by their marks.
template <class Wanted>
RowList RowsWhere(const OutlineRows& outline, const Wanted& wanted) {
  const auto marks = outline.Totals();
  RowList rows;
  for (int row = 0; row < CountOf(marks); ++row) {
    if (wanted(ItemAt(marks, row))) rows.push_back(row);
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

void TotalRows::Clear() {
  const RowList gone =
      RowsWhere(model_.rows.Outline(), [](std::uint16_t mark) { return mark != 0; });
  groups_.Forget();
  if (gone.empty()) return sorting_.DropPostponed();
  model_.EraseRowsAt(gone);
  model_.rows.Outline().ForgetTotals();
  sorting_.SortPostponed();
}

void TotalRows::MakePlain(int data) {
  model_.rows.Outline().SetTotal(data, 0);
  groups_.RowsRedefined();
}

/// Whether any of them is new.
bool TotalRows::EnsureRows(GridTotals::Level& level) {
  OutlineRows& outline = model_.rows.Outline();
  GridTotals::Sites sites = groups_.FindSites(level);
  const auto marks = outline.Totals();
  const auto standing = std::count(marks.begin(), marks.end(), level.mark);
  if (sites.existing.size() == level.ends.size() && standing == std::ssize(level.ends)) {
    level.rows = std::move(sites.existing);
    return false;
  }
  if (standing > 0) {
    model_.EraseRowsAt(RowsWhere(outline, [&](std::uint16_t mark) { return mark == level.mark; }));
    sites = groups_.FindSites(level);
  }
  model_.InsertRowsAt(sites.before);
  level.rows = std::move(sites.before);
  int above = 0;
  for (int& row : level.rows) {
    row += above++;
    outline.SetTotal(row, level.mark);
  }
  outline.FitTotals(level.above);
  groups_.RowsMoved(level);
  return true;
}

/// A row of the group that the total in row `data` is made over.
int TotalRows::RowOfGroup(const GridTotals::Level& level, int data) const {
  int sample = data;
  while (model_.rows.Outline().Total(sample) != 0) sample += level.above ? 1 : -1;
  return sample;
}

void TotalRows::SetText(int data, int col, std::string_view text) {
  model_.rows.SetText(data + model_.rows.Fixed(), col, text);
}

void TotalRows::WriteTexts(const GridTotals::Level& level, const SubtotalOptions& options) {
  const GridRows& rows = model_.rows;
  const bool whole_grid = options.group_on < 0;
  const std::size_t sign = std::min(options.caption.find("%s"), options.caption.size());
  std::string caption;
  const int caption_col =
      whole_grid ? std::min(model_.columns.Fixed(), rows.Cols() - 1) : options.group_on;
  for (const int data : level.rows) {
    const int sample = RowOfGroup(level, data);
    for (const int shared : level.cols) {
      if (options.total_only || shared == options.group_on) continue;
      SetText(data, shared, rows.DataText(sample, shared));
    }
    caption.assign(options.caption, 0, sign);
    if (sign < options.caption.size()) {
      if (!whole_grid) caption += rows.DataText(sample, options.group_on);
      caption.append(options.caption, sign + 2);
    }
    SetText(data, caption_col, caption);
  }
}

void TotalRows::WriteNumbers(const GridTotals::Level& level, SubtotalFunction function,
                             const SubtotalOptions& options) {
  const GridTotals::Column& numbers = groups_.NumbersOf(options.total_on);
  Decimal whole;
  if (function == SubtotalFunction::kPercent) {
    whole = Over(numbers, 0, CountOf(numbers.units)).Sum();
  }
  int first = 0;
  for (int group = 0; group < CountOf(level.rows); ++group) {
    const int end = ItemAt(level.ends, group);
    const Decimal total = Over(numbers, std::exchange(first, end), end).Result(function, whole);
    SetText(
        ItemAt(level.rows, group), options.total_on,
        options.format.empty() ? DecimalText(total) : FormatNumber(total.Value(), options.format));
  }
}

void TotalRows::Add(SubtotalFunction function, const SubtotalOptions& options) {
  groups_.Refresh();
  const std::uint64_t version = model_.rows.Cells().Version();
  GridTotals::Level& level = groups_.LevelOf(options, position_ == SubtotalPosition::kAbove);
  const bool fresh = level.rows.empty() && EnsureRows(level);
  if (fresh || !level.texts_stand || !SameTexts(level.options, options)) {
    WriteTexts(level, options);
    level.texts_stand = true;
  }
  if (fresh || !SameLook(level.options, options)) {
    const CellStyle style{options.fore, options.back, options.bold};
    for (const int data : level.rows) model_.rows.SetRowStyle(data, model_.columns.Fixed(), style);
  }
  WriteNumbers(level, function, options);
  level.options = options;
  groups_.Follow(version);
  model_.changes.Content();
}

}  // namespace tavrix::viewkit
