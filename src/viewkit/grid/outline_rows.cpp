#include "viewkit/grid/outline_rows.h"

#include <algorithm>
#include <bit>
#include <cassert>

namespace tavrix::viewkit {

void OutlineRows::Reset(int rows) {
  marks_.Reset(rows);
  flags_.Reset(rows);
  totals_.Reset(rows);
  ChangedFrom(0);
}

void OutlineRows::Insert(int at, int count) {
  marks_.Insert(at, count);
  flags_.Insert(at, count);
  totals_.Insert(at, count);
  ChangedFrom(at);
}

void OutlineRows::Erase(int at, int count) {
  marks_.Erase(at, count);
  flags_.Erase(at, count);
  totals_.Erase(at, count);
  ChangedFrom(at);
}

void OutlineRows::InsertAt(RowSpan before) {
  marks_.InsertAt(before);
  flags_.InsertAt(before);
  totals_.InsertAt(before);
  if (!before.empty()) ChangedFrom(before.front());
}

void OutlineRows::EraseAt(RowSpan rows) {
  marks_.EraseAt(rows);
  flags_.EraseAt(rows);
  totals_.EraseAt(rows);
  ChangedFrom(rows.front());
}

void OutlineRows::Reorder(const RowOrder& order) {
  marks_.Reorder(order);
  flags_.Reorder(order);
  totals_.Reorder(order);
  ChangedFrom(order.First());
}

bool OutlineRows::HasTotals() const {
  const auto totals = totals_.Existing();
  return std::any_of(totals.begin(), totals.end(), [](std::uint16_t total) { return total != 0; });
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
  ChangedFrom(0);
}

bool OutlineRows::SetMark(int row, int mark) {
  if (Mark(row) == mark) return false;
  marks_.Set(row, static_cast<std::uint16_t>(mark));
  Changed(row);
  return true;
}

bool OutlineRows::SetFlag(int row, std::uint8_t flag, bool on) {
  const std::uint8_t flags = Flags(row);
  const int changed = on ? flags | flag : flags & ~flag;
  if (changed == flags) return false;
  flags_.Set(row, static_cast<std::uint8_t>(changed));
  return true;
}

bool OutlineRows::SetNode(int row, bool node) {
  if (!node) (void)SetCollapsed(row, false);
  return SetMark(row, node ? Level(row) : Level(row) | kPlain);
}

bool OutlineRows::SetLevel(int row, int level) {
  return SetMark(row, (Mark(row) & kPlain) | Bounded(level));
}

void OutlineRows::Clear() {
  marks_.Reset(marks_.Rows());
  CollapseTo(-1);
  ChangedFrom(0);
}

bool OutlineRows::SetCollapsed(int row, bool collapsed) {
  if (!IsNode(row) || !SetFlag(row, kCollapsed, collapsed)) return false;
  // A node without rows below changes nothing that is shown; but the last row of a stretch is what
  // the next one begins with, whatever comes there.
  const bool last = (row + 1) % kStretchRows == 0;
  if (last || HasRowsBelow(row)) Changed(row);
  return true;
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
  if (changed != 0) ChangedFrom(0);
  return changed != 0;
}

bool OutlineRows::SetHidden(int row, bool hidden) {
  if (!SetFlag(row, kHidden, hidden)) return false;
  Changed(row);
  return true;
}

int OutlineRows::Parent(int row) const {
  const std::span<const std::uint16_t> marks = marks_.Existing();
  const std::uint16_t below = std::min(Mark(row), kPlain);
  if (marks.empty() || below == 0) return -1;
  BringUpToDate();
  for (int end = row; end > 0;) {
    const int stretch = (end - 1) / kStretchRows;
    const int first = stretch * kStretchRows;
    for (; ItemAt(stretches_, stretch).lowest < below && end > first; --end) {
      if (ItemAt(marks, end - 1) < below) return end - 1;
    }
    end = first;
  }
  return -1;
}

bool OutlineRows::HasRowsBelow(int row) const {
  return IsNode(row) && row + 1 < Rows() && Mark(row + 1) > Mark(row);
}

int OutlineRows::LastOfNode(int row) const {
  if (!IsNode(row)) return row;
  BringUpToDate();
  const std::span<const std::uint16_t> marks = marks_.Existing();
  const std::uint16_t mark = Mark(row);
  for (int after = row + 1; after < CountOf(marks);) {
    const int stretch = after / kStretchRows;
    const int end = std::min((stretch + 1) * kStretchRows, CountOf(marks));
    for (; ItemAt(stretches_, stretch).lowest <= mark && after < end; ++after) {
      if (ItemAt(marks, after) <= mark) return after - 1;
    }
    after = end;
  }
  return Rows() - 1;
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

void OutlineRows::Changed(int row) {
  assert(row >= 0 && row < Rows());
  const int stretch = row / kStretchRows;
  if (stretch < CountOf(stretches_)) ItemAt(stretches_, stretch).stale = true;
  first_stale_ = std::min(first_stale_, stretch);
}

void OutlineRows::ChangedFrom(int row) {
  stale_from_ = std::min(stale_from_, row / kStretchRows);
  first_stale_ = std::min(first_stale_, stale_from_);
}

void OutlineRows::BringUpToDate() const {
  if (first_stale_ == kNone) return;
  const int count = (Rows() + kStretchRows - 1) / kStretchRows;
  stretches_.resize(SizeOf(count));
  shown_bits_.resize(SizeOf(count * kStretchWords));
  const bool from_top = first_stale_ == 0 || count == 0;
  std::int32_t shown = 0;
  std::uint16_t collapsed = kOpen;
  if (!from_top) {
    const Stretch& above = ItemAt(stretches_, std::min(first_stale_, count) - 1);
    shown = above.shown_before + above.shown;
    collapsed = above.collapsed_after;
  }
  for (int at = first_stale_; at < count; ++at) {
    Stretch& stretch = ItemAt(stretches_, at);
    if (at >= stale_from_) stretch.stale = true;
    if (stretch.stale || stretch.collapsed_before != collapsed) WorkOut(at, collapsed);
    stretch.shown_before = shown;
    shown += stretch.shown;
    collapsed = stretch.collapsed_after;
  }
  first_stale_ = stale_from_ = kNone;
}

void OutlineRows::WorkOut(int at, std::uint16_t collapsed_before) const {
  Stretch& stretch = ItemAt(stretches_, at);
  const std::span<std::uint64_t> bits = BitsOf(at);
  std::ranges::fill(bits, 0);
  stretch.collapsed_before = collapsed_before;
  if (!stretch.stale && collapsed_before < stretch.lowest) {
    stretch.shown = 0;
    stretch.collapsed_after = collapsed_before;
    return;
  }
  const std::span<const std::uint16_t> marks = marks_.Existing();
  const std::span<const std::uint8_t> flags = flags_.Existing();
  const int first = at * kStretchRows;
  const int count = std::min(kStretchRows, Rows() - first);
  std::uint16_t lowest = kOpen;
  std::uint16_t collapsed = collapsed_before;
  std::int32_t shown = 0;
  for (int i = 0; i < count; ++i) {
    const std::uint16_t mark = marks.empty() ? kPlain : ItemAt(marks, first + i);
    const std::uint8_t flag = flags.empty() ? 0 : ItemAt(flags, first + i);
    lowest = std::min(lowest, mark);
    if (mark > collapsed) continue;
    collapsed = (flag & kCollapsed) != 0 ? mark : kOpen;
    if ((flag & kHidden) != 0) continue;
    ItemAt(bits, i / kWordRows) |= std::uint64_t{1} << i % kWordRows;
    ++shown;
  }
  stretch.lowest = lowest;
  stretch.collapsed_after = collapsed;
  stretch.shown = shown;
  stretch.stale = false;
}

int OutlineRows::ShownCount() const {
  if (flags_.IsBlank()) return Rows();
  BringUpToDate();
  return stretches_.empty() ? 0 : stretches_.back().shown_before + stretches_.back().shown;
}

int OutlineRows::ShownBefore(int row) const {
  assert(row >= 0 && row <= Rows());
  if (flags_.IsBlank()) return row;
  if (row == Rows()) return ShownCount();
  BringUpToDate();
  const int inside = row % kStretchRows;
  const std::span<const std::uint64_t> bits = BitsOf(row / kStretchRows);
  int count = ItemAt(stretches_, row / kStretchRows).shown_before;
  for (int word = 0; word < inside / kWordRows; ++word) count += std::popcount(ItemAt(bits, word));
  const std::uint64_t above = (std::uint64_t{1} << inside % kWordRows) - 1;
  return count + std::popcount(ItemAt(bits, inside / kWordRows) & above);
}

int OutlineRows::ShownAt(int position) const {
  assert(position >= 0 && position < ShownCount());
  if (flags_.IsBlank()) return position;
  BringUpToDate();
  // The last of those with as many rows above: others before it show none.
  const auto next = std::ranges::upper_bound(stretches_, position, {}, &Stretch::shown_before);
  const int stretch = static_cast<int>(next - stretches_.begin()) - 1;
  int left = position - ItemAt(stretches_, stretch).shown_before;
  int word = stretch * kStretchWords;
  for (int here = 0; left >= (here = std::popcount(ItemAt(shown_bits_, word))); ++word)
    left -= here;
  std::uint64_t bits = ItemAt(shown_bits_, word);
  for (; left > 0; --left) bits &= bits - 1;
  return word * kWordRows + std::countr_zero(bits);
}

bool OutlineRows::IsShown(int row) const {
  assert(row >= 0 && row < Rows());
  if (flags_.IsBlank()) return true;
  BringUpToDate();
  return (ItemAt(shown_bits_, row / kWordRows) >> row % kWordRows & 1) != 0;
}

}  // namespace tavrix::viewkit
