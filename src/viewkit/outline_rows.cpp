#include "viewkit/outline_rows.h"

#include <algorithm>

namespace tavrix::viewkit {

void OutlineRows::Reset(int rows) {
  marks_.Reset(static_cast<std::size_t>(rows));
  flags_.Reset(static_cast<std::size_t>(rows));
  totals_.Reset(static_cast<std::size_t>(rows));
  Invalidate();
}

void OutlineRows::Insert(int at, int count) {
  marks_.Insert(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
  flags_.Insert(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
  totals_.Insert(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
  Invalidate();
}

void OutlineRows::Erase(int at, int count) {
  marks_.Erase(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
  flags_.Erase(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
  totals_.Erase(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
  Invalidate();
}

void OutlineRows::CopyRow(int from, int to) {
  marks_.CopyRow(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
  flags_.CopyRow(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
  totals_.CopyRow(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
  Invalidate();
}

void OutlineRows::InsertAt(std::span<const std::uint32_t> before) {
  marks_.InsertAt(before);
  flags_.InsertAt(before);
  totals_.InsertAt(before);
  Invalidate();
}

void OutlineRows::EraseAt(std::span<const std::uint32_t> rows) {
  marks_.EraseAt(rows);
  flags_.EraseAt(rows);
  totals_.EraseAt(rows);
  Invalidate();
}

bool OutlineRows::HasNodesBesideTotals() const {
  const std::span<const std::uint16_t> marks = marks_.Existing();
  const std::span<const std::uint16_t> totals = totals_.Existing();
  for (std::size_t row = 0; row < marks.size(); ++row) {
    if (marks[row] < kPlain && (totals.empty() || totals[row] == 0)) return true;
  }
  return false;
}

void OutlineRows::FitTotals(bool parents) {
  const std::span<const std::uint16_t> totals = totals_.Existing();
  if (totals.empty()) return;
  const bool nodes = HasNodesBesideTotals();
  const std::span<std::uint16_t> marks = marks_.All();
  std::uint16_t following = 0;  // the end is no place below a node either
  for (std::size_t row = marks.size(); row-- > 0;) {
    if (totals[row] == 0) {
      following = marks[row];
    } else if (nodes) {
      marks[row] = following;
    } else {
      const int level = Bounded(totals[row] - 1);
      marks[row] = static_cast<std::uint16_t>(parents ? level : level | kPlain);
    }
  }
  Invalidate();
}

bool OutlineRows::SetMark(int row, int mark) {
  if (Mark(row) == mark) return false;
  marks_.Set(static_cast<std::size_t>(row), static_cast<std::uint16_t>(mark));
  Invalidate();
  return true;
}

bool OutlineRows::SetFlag(int row, std::uint8_t flag, bool on) {
  const std::uint8_t flags = Flags(row);
  const int changed = on ? flags | flag : flags & ~flag;
  if (changed == flags) return false;
  flags_.Set(static_cast<std::size_t>(row), static_cast<std::uint8_t>(changed));
  Invalidate();
  return true;
}

bool OutlineRows::SetNode(int row, bool node) {
  if (!node) SetFlag(row, kCollapsed, false);
  return SetMark(row, node ? Level(row) : Level(row) | kPlain);
}

bool OutlineRows::SetLevel(int row, int level) {
  return SetMark(row, (Mark(row) & kPlain) | Bounded(level));
}

void OutlineRows::Clear() {
  marks_.Reset(marks_.Rows());
  CollapseTo(-1);
  Invalidate();
}

bool OutlineRows::SetCollapsed(int row, bool collapsed) {
  return IsNode(row) && SetFlag(row, kCollapsed, collapsed);
}

bool OutlineRows::CollapseTo(int level) {
  if (flags_.IsBlank() && (level < 0 || marks_.IsBlank())) return false;
  const std::span<std::uint8_t> flags = flags_.All();
  const std::span<const std::uint16_t> marks = marks_.Existing();
  const int from = level < 0 || marks.empty() ? kPlain : level;
  int changed = 0;
  for (std::size_t row = 0; row < flags.size(); ++row) {
    const std::uint16_t mark = marks.empty() ? kPlain : marks[row];
    const std::uint8_t collapsed = mark >= from && mark < kPlain ? kCollapsed : 0;
    changed |= (flags[row] ^ collapsed) & kCollapsed;
    flags[row] = static_cast<std::uint8_t>((flags[row] & ~kCollapsed) | collapsed);
  }
  if (changed != 0) Invalidate();
  return changed != 0;
}

bool OutlineRows::SetHidden(int row, bool hidden) {
  return SetFlag(row, kHidden, hidden);
}

int OutlineRows::Parent(int row) const {
  const std::span<const std::uint16_t> marks = marks_.Existing();
  if (marks.empty()) return -1;
  const std::uint16_t below = std::min(Mark(row), kPlain);
  while (--row >= 0 && marks[static_cast<std::size_t>(row)] >= below) {
  }
  return row;
}

bool OutlineRows::HasRowsBelow(int row) const {
  return IsNode(row) && row + 1 < Rows() && Mark(row + 1) > Mark(row);
}

int OutlineRows::LastOfNode(int row) const {
  if (!IsNode(row)) return row;
  const std::span<const std::uint16_t> marks = marks_.Existing();
  const std::uint16_t mark = Mark(row);
  const auto after = marks.begin() + row + 1;
  const auto end =
      std::find_if(after, marks.end(), [mark](std::uint16_t other) { return other <= mark; });
  return static_cast<int>(end - marks.begin()) - 1;
}

int OutlineRows::FirstChild(int row) const {
  if (!IsNode(row)) return -1;
  // Above the first node that follows there is no other that could be its parent.
  for (int child = row + 1; child < Rows(); ++child) {
    if (IsNode(child)) return Mark(child) > Mark(row) ? child : -1;
  }
  return -1;
}

int OutlineRows::ChildCount(int row) const {
  int count = 0;
  int child = FirstChild(row);
  if (child < 0) return 0;
  for (const int last = LastOfNode(row); child <= last; child = LastOfNode(child) + 1) ++count;
  return count;
}

template <class Visit>
void OutlineRows::VisitShown(Visit&& visit) const {
  const std::span<const std::uint16_t> marks = marks_.Existing();
  const std::span<const std::uint8_t> flags = flags_.Existing();
  constexpr std::uint16_t kNone = 0xFFFF;
  std::uint16_t collapsed = kNone;  // mark of the collapsed node that the pass is in
  for (std::size_t row = 0; row < flags.size(); ++row) {
    const std::uint16_t mark = marks.empty() ? kPlain : marks[row];
    if (mark > collapsed) continue;
    collapsed = (flags[row] & kCollapsed) != 0 ? mark : kNone;
    if ((flags[row] & kHidden) == 0) visit(static_cast<std::int32_t>(row));
  }
}

void OutlineRows::EnsureMap() const {
  if (map_ != Map::kUnknown) return;
  std::size_t count = marks_.Rows();
  if (!flags_.IsBlank()) {
    count = 0;
    VisitShown([&](std::int32_t) { ++count; });
  }
  shown_.clear();
  if (shown_.capacity() > count + count / 8) shown_.shrink_to_fit();
  map_ = count == marks_.Rows() ? Map::kAll : Map::kListed;
  if (map_ == Map::kAll) return;
  shown_.reserve(count);
  VisitShown([&](std::int32_t row) { shown_.push_back(row); });
}

int OutlineRows::ShownCount() const {
  EnsureMap();
  return map_ == Map::kAll ? Rows() : static_cast<int>(shown_.size());
}

int OutlineRows::ShownBefore(int row) const {
  EnsureMap();
  if (map_ == Map::kAll) return row;
  return static_cast<int>(std::lower_bound(shown_.begin(), shown_.end(), row) - shown_.begin());
}

int OutlineRows::ShownAt(int position) const {
  EnsureMap();
  return map_ == Map::kAll ? position : shown_[static_cast<std::size_t>(position)];
}

bool OutlineRows::IsShown(int row) const {
  EnsureMap();
  return map_ == Map::kAll || std::binary_search(shown_.begin(), shown_.end(), row);
}

}  // namespace tavrix::viewkit
