#include "viewkit/grid/grid_totals.h"

#include <algorithm>
#include <cmath>

namespace tavrix::viewkit {

namespace {

bool Contains(const std::vector<int>& cols, int col) {
  return std::find(cols.begin(), cols.end(), col) != cols.end();
}

}  // namespace

void NumberTotals::Rescale(int decimals) {
  const double factor = PowerOfTen(decimals - decimals_);
  sum_ *= factor;
  min_ *= factor;
  max_ *= factor;
  decimals_ = decimals;
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
  numbers_.clear();
  version_ = 0;
}

void GridTotals::Refresh() {
  if (version_ == cells_.Version()) return;
  version_ = cells_.Version();
  numbers_.clear();
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

/// The level with most of these columns and no other: whatever ends a group there ends one here.
const GridTotals::Level* GridTotals::LevelWithin(const std::vector<int>& cols) const {
  const Level* best = nullptr;
  for (const Level& level : levels_) {
    const bool within = std::all_of(level.cols.begin(), level.cols.end(),
                                    [&](int col) { return Contains(cols, col); });
    if (!within || level.ends.empty()) continue;
    if (best == nullptr || level.cols.size() > best->cols.size()) best = &level;
  }
  return best;
}

void GridTotals::FindEnds(Level& level) const {
  const Level* outer = LevelWithin(level.cols);
  std::vector<int> cols = level.cols;
  if (outer != nullptr) std::erase_if(cols, [&](int col) { return Contains(outer->cols, col); });
  std::vector<std::string_view> texts(cols.size());  // of the row before
  const auto differs = [&](int row) {
    bool other = false;
    auto before = texts.begin();
    for (const int col : cols) {
      const std::string_view text = cells_.Text(row, col);
      if (text != *before) {
        *before = text;
        other = true;
      }
      ++before;
    }
    return other;
  };
  std::vector<int> ends;
  int known = 0;
  int count = 0;
  ForEachRow([&](int row, int place) {
    const bool own_end = differs(row);
    const bool outer_end = place > 0 && outer != nullptr && ItemAt(outer->ends, known) == place;
    if (outer_end) ++known;
    if (place > 0 && (outer_end || own_end)) ends.push_back(place);
    count = place + 1;
  });
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

const GridTotals::Numbers& GridTotals::NumbersOf(int col) {
  const auto known = std::find_if(numbers_.begin(), numbers_.end(),
                                  [col](const Numbers& numbers) { return numbers.col == col; });
  if (known != numbers_.end()) return *known;
  Numbers& numbers = numbers_.emplace_back();
  numbers.col = col;
  numbers.units.reserve(SizeOf(cells_.Rows()));
  ForEachRow([&](int row, int) {
    const std::string_view text = cells_.Text(row, col);
    if (text.empty()) return numbers.units.push_back(std::nan(""));
    const Decimal number = ReadDecimal(text);
    if (number.decimals > numbers.decimals) {
      const double factor = PowerOfTen(number.decimals - numbers.decimals);
      for (double& units : numbers.units) units *= factor;
      numbers.decimals = number.decimals;
    }
    numbers.units.push_back(number.units * PowerOfTen(numbers.decimals - number.decimals));
  });
  return numbers;
}

}  // namespace tavrix::viewkit
