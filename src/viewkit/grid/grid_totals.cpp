#include "viewkit/grid/grid_totals.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace tavrix::viewkit {

namespace {

bool Contains(const std::vector<int>& cols, int col) {
  return std::find(cols.begin(), cols.end(), col) != cols.end();
}

void AppendNumber(GridTotals::Column& column, std::string_view text) {
  if (text.empty()) return column.units.push_back(std::nan(""));
  const Decimal number = ReadDecimal(text);
  if (number.decimals > column.decimals) {
    const double factor = PowerOfTen(number.decimals - column.decimals);
    for (double& units : column.units) units *= factor;
    column.decimals = number.decimals;
  }
  column.units.push_back(number.units * PowerOfTen(column.decimals - number.decimals));
}

}  // namespace

void NumberTotals::Rescale(int decimals) {
  const double factor = PowerOfTen(decimals - decimals_);
  sum_ *= factor;
  min_ *= factor;
  max_ *= factor;
  decimals_ = decimals;
}

/// Two sums side by side: an addition need not wait for the one before it.
void NumberTotals::AddAll(std::span<const double> units) {
  NumberTotals even(decimals_);
  NumberTotals odd(decimals_);
  for (; units.size() > 1; units = units.subspan(2)) {
    even.AddUnlessNan(units[0]);
    odd.AddUnlessNan(units[1]);
  }
  if (!units.empty()) even.AddUnlessNan(units[0]);
  for (const NumberTotals& part : {even, odd}) {
    sum_ += part.sum_;
    min_ = std::min(min_, part.min_);
    max_ = std::max(max_, part.max_);
    count_ += part.count_;
  }
}

Decimal NumberTotals::Result(SubtotalFunction function, const Decimal& whole) const {
  if (count_ == 0) return {};
  switch (function) {
    case SubtotalFunction::kSum:
      return Sum();
    case SubtotalFunction::kPercent:
      return {whole.units == 0 ? 0 : Sum().Value() / whole.Value() * 100};
    case SubtotalFunction::kCount:
      return {static_cast<double>(count_)};
    case SubtotalFunction::kAverage:
      return {Sum().Value() / static_cast<double>(count_)};
    case SubtotalFunction::kMax:
      return {max_, decimals_};
    case SubtotalFunction::kMin:
      return {min_, decimals_};
    case SubtotalFunction::kNone:
    case SubtotalFunction::kClear:
      break;
  }
  return {};
}

template <class Visit>
void GridTotals::ForEachRow(Visit&& visit) const {
  const std::span<const std::uint16_t> totals = outline_.Totals();
  int place = 0;
  const int rows = cells_.Rows();
  for (int row = 0; row < rows; ++row) {
    if (totals.empty() || ItemAt(totals, row) == 0) visit(row, place++);
  }
}

void GridTotals::Forget() {
  levels_.clear();
  ForgetColumns();
  version_ = 0;
}

void GridTotals::Refresh() {
  if (version_ == cells_.Version()) return;
  version_ = cells_.Version();
  ForgetColumns();
  const auto totals = outline_.Totals();
  std::erase_if(levels_, [&](const Level& level) {
    const auto outside = [&](int col) { return col >= cells_.Columns(); };
    return std::any_of(level.cols.begin(), level.cols.end(), outside) ||
           std::find(totals.begin(), totals.end(), level.mark) == totals.end();
  });
  for (Level& level : levels_) {
    level.ends.clear();
    level.rows.clear();
    level.texts_stand = false;
  }
}

std::vector<int> GridTotals::ColumnsOf(const SubtotalOptions& options) const {
  std::vector<int> cols;
  if (options.group_on < 0) return cols;
  if (options.match_from) {
    for (int col = *options.match_from; col < options.group_on; ++col) cols.push_back(col);
  } else {
    for (const Level& level : levels_) {
      const int col = level.options.group_on;
      if (col >= 0 && !Contains(cols, col)) cols.push_back(col);
    }
  }
  if (!Contains(cols, options.group_on)) cols.push_back(options.group_on);
  return cols;
}

std::uint16_t GridTotals::NewMark(const SubtotalOptions& options) const {
  std::uint16_t mark = kWholeGrid;
  if (options.group_on < 0) return mark;
  for (const Level& level : levels_) mark = std::max(mark, level.mark);
  return static_cast<std::uint16_t>(mark + 1);
}

/// A group ends where any of its columns changes.
void GridTotals::FindEnds(Level& level) {
  std::vector<int> ends;
  for (const int col : level.cols) {
    const std::vector<int>& breaks = Read(col, Column::Use::kGroups).breaks;
    std::vector<int> all;
    std::set_union(ends.begin(), ends.end(), breaks.begin(), breaks.end(), std::back_inserter(all));
    ends = std::move(all);
  }
  int count = 0;
  ForEachRow([&](int, int place) { count = place + 1; });
  if (count > 0) ends.push_back(count);
  level.ends = std::move(ends);
}

GridTotals::Level& GridTotals::LevelOf(const SubtotalOptions& options, bool above) {
  auto level = std::find_if(levels_.begin(), levels_.end(), [&](const Level& other) {
    return other.options.group_on == options.group_on;
  });
  const bool fits = level != levels_.end() && level->options.match_from == options.match_from;
  if (!fits) {
    Level made;
    made.mark = level != levels_.end() ? level->mark : NewMark(options);
    if (level != levels_.end()) levels_.erase(level);
    made.cols = ColumnsOf(options);
    made.options.group_on = options.group_on;
    made.options.match_from = options.match_from;
    made.above = above;
    level = levels_.insert(levels_.end(), std::move(made));
  }
  if (level->ends.empty()) FindEnds(*level);
  return *level;
}

GridTotals::Sites GridTotals::FindSites(const Level& level) const {
  const std::span<const std::uint16_t> totals = outline_.Totals();
  const std::uint16_t own = level.mark;
  const int rows = cells_.Rows();
  const auto mark = [&](int row) { return totals.empty() ? 0 : ItemAt(totals, row); };
  Sites sites;
  int group = 0;
  const auto add = [&](int before, bool exists, int row) {
    sites.before.push_back(before);
    if (exists) sites.existing.push_back(row);
  };
  ForEachRow([&](int row, int place) {
    if (group == CountOf(level.ends)) return;
    const bool first = place == (group == 0 ? 0 : ItemAt(level.ends, group - 1));
    const bool last = place + 1 == ItemAt(level.ends, group);
    // Totals of inner groups stand nearer to the rows.
    if (level.above && first) {
      int before = row;
      while (before > 0 && mark(before - 1) > own) --before;
      add(before, before > 0 && mark(before - 1) == own, before - 1);
    } else if (!level.above && last) {
      int after = row + 1;
      while (after < rows && mark(after) > own) ++after;
      add(after, after < rows && mark(after) == own, after);
    }
    if (last) ++group;
  });
  return sites;
}

void GridTotals::RowsMoved(const Level& known) {
  for (Level& level : levels_) {
    if (&level != &known) level.rows.clear();
  }
}

/// Totals are asked for column by column, and after a reload for the same ones again: what was
/// asked for last time is read beside, as one pass over the rows costs little more than another.
const GridTotals::Column& GridTotals::Read(int col, Column::Use use) {
  const auto find = [this](int each, Column::Use its_use) {
    return std::find_if(columns_.begin(), columns_.end(), [&](const Column& column) {
      return column.col == each && column.use == its_use;
    });
  };
  if (find(col, use) == columns_.end()) {
    const std::size_t known = columns_.size();
    columns_.push_back({.col = col, .use = use});
    for (const Column& wanted : std::exchange(wanted_, {})) {
      const bool there = wanted.col < cells_.Columns();
      if (there && find(wanted.col, wanted.use) == columns_.end()) columns_.push_back(wanted);
    }
    ReadRows(std::span(columns_).subspan(known));
  }
  const auto column = find(col, use);
  column->asked = true;
  return *column;
}

void GridTotals::ReadRows(std::span<Column> columns) const {
  std::vector<std::string_view> before(columns.size());
  for (Column& column : columns) {
    if (column.use == Column::Use::kNumbers) column.units.reserve(SizeOf(cells_.Rows()));
  }
  ForEachRow([&](int row, int place) {
    auto last = before.begin();
    for (Column& column : columns) {
      const std::string_view text = cells_.Text(row, column.col);
      if (column.use == Column::Use::kNumbers) {
        AppendNumber(column, text);
      } else if (text != *last) {
        if (place > 0) column.breaks.push_back(place);
        *last = text;
      }
      ++last;
    }
  });
}

void GridTotals::ForgetColumns() {
  if (columns_.empty()) return;
  wanted_.clear();
  for (const Column& column : columns_) {
    if (column.asked) wanted_.push_back({.col = column.col, .use = column.use});
  }
  columns_.clear();
}

}  // namespace tavrix::viewkit
