#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "viewkit/grid/row_array.h"

namespace tavrix::viewkit {

/// The outline of a grid's data rows and, following from it, which of them are shown.
///
/// A row is a node or a plain row. The parent of a node is the nearest node above it with a lower
/// level, that of a plain row the nearest node above it. A row is shown unless it is hidden itself
/// or lies below a collapsed node; hiding a node does not hide what is below it.
///
/// A row of totals carries a mark of its own, whatever it is in the outline.
///
/// Rows count from 0 without the header; a row outside is the caller's error. What follows from the
/// rows is kept for stretches of them and brought up to date at the first question after a change:
/// a changed row costs its own stretch and a short pass over the others, a collapsed or expanded
/// node the rows below it. Questions take that long at most, whatever the number of rows below or
/// above.
class OutlineRows {
 public:
  static constexpr int kDeepest = 0x7FFF;  ///< levels are held between 0 and this

  [[nodiscard]] int Rows() const { return marks_.Rows(); }
  /// Plain, shown rows of level 0.
  void Reset(int rows);
  void Insert(int at, int count);
  void Erase(int at, int count);
  // As `RowArray` does.
  void InsertAt(RowSpan before);
  void EraseAt(RowSpan rows);
  void Reorder(const RowOrder& order);

  [[nodiscard]] bool IsNode(int row) const { return (Mark(row) & kPlain) == 0; }
  /// A row that is no node any more is not collapsed either. True when this changed anything.
  bool SetNode(int row, bool node);
  [[nodiscard]] int Level(int row) const { return Mark(row) & kDeepest; }
  bool SetLevel(int row, int level);
  /// Makes all rows expanded plain rows of level 0.
  void Clear();
  /// Makes all rows nodes of the levels that `level_of` gives for them.
  template <class LevelOf>
  void MakeNodes(LevelOf&& level_of) {
    int row = 0;
    for (std::uint16_t& mark : marks_.All()) mark = Bounded(level_of(row++));
    ChangedFrom(0);
  }

  [[nodiscard]] bool IsCollapsed(int row) const { return (Flags(row) & kCollapsed) != 0; }
  /// Plain rows stay as they are. True when this changed anything.
  bool SetCollapsed(int row, bool collapsed);
  /// Collapses the nodes of `level` and deeper and expands the others; a negative level expands
  /// all.
  bool CollapseTo(int level);
  [[nodiscard]] bool IsHidden(int row) const { return (Flags(row) & kHidden) != 0; }
  bool SetHidden(int row, bool hidden);

  /// What the row is a total of; 0 for a row that is none.
  [[nodiscard]] std::uint16_t Total(int row) const { return totals_.Get(row); }
  void SetTotal(int row, std::uint16_t total) { totals_.Set(row, total); }
  [[nodiscard]] bool HasTotals() const;
  /// `Total` of all rows, or nothing while no row has been one.
  [[nodiscard]] std::span<const std::uint16_t> Totals() const { return totals_.Existing(); }
  /// There is no row of totals any more.
  void ForgetTotals() { totals_.Reset(totals_.Rows()); }
  /// Gives all rows of totals a place in the outline that changes nothing for the others: where
  /// there are nodes, that of the row that follows. Among plain rows they are plain too, or with
  /// `parents` their nodes, on level `Total` - 1.
  void FitTotals(bool parents);

  /// -1 for none.
  [[nodiscard]] int Parent(int row) const;
  /// The first node whose parent is `row`; -1 for none.
  [[nodiscard]] int FirstChild(int row) const;
  /// Nodes whose parent is `row`.
  [[nodiscard]] int ChildCount(int row) const;
  /// Last row of the whole subtree; `row` itself when there is none, as for every plain row.
  [[nodiscard]] int LastOfNode(int row) const;
  /// Whether anything hangs below `row`, at once.
  [[nodiscard]] bool HasRowsBelow(int row) const;

  [[nodiscard]] int ShownCount() const;
  /// Shown rows above `row`, which may be the number of rows.
  [[nodiscard]] int ShownBefore(int row) const;
  /// `position` from 0 to `ShownCount` - 1.
  [[nodiscard]] int ShownAt(int position) const;
  [[nodiscard]] bool IsShown(int row) const;

 private:
  // A mark is the level, with the highest bit set for a plain row: so whatever hangs below a node
  // has a greater mark than the node.
  static constexpr std::uint16_t kPlain = 0x8000;
  static constexpr std::uint8_t kCollapsed = 1;
  static constexpr std::uint8_t kHidden = 2;

  [[nodiscard]] std::uint16_t Mark(int row) const { return marks_.Get(row); }
  [[nodiscard]] std::uint8_t Flags(int row) const { return flags_.Get(row); }
  [[nodiscard]] static std::uint16_t Bounded(int level) {
    return static_cast<std::uint16_t>(level < 0 ? 0 : level > kDeepest ? kDeepest : level);
  }
  // --- what follows from marks and flags
  static constexpr int kWordRows = 64;
  static constexpr int kStretchWords = 4;
  static constexpr int kStretchRows = kStretchWords * kWordRows;
  static constexpr int kNone = std::numeric_limits<int>::max();
  static constexpr std::uint16_t kOpen = 0xFFFF;  ///< no collapsed node; no mark is greater
  struct Stretch {
    std::uint16_t lowest = 0;  ///< of the marks of its rows
    /// The mark of the collapsed node that the row before belongs to, and the last row; or `kOpen`.
    std::uint16_t collapsed_before = kOpen;
    std::uint16_t collapsed_after = kOpen;
    bool stale = true;
    std::int32_t shown = 0;
    std::int32_t shown_before = 0;  ///< in all stretches above
  };

  [[nodiscard]] bool HasNodesBesideTotals() const;
  bool SetMark(int row, int mark);
  bool SetFlag(int row, std::uint8_t flag, bool on);
  void Changed(int row);
  /// Everything from `row` on.
  void ChangedFrom(int row);
  /// Before the stretches or the bits are read.
  void BringUpToDate() const;
  void WorkOut(int at, std::uint16_t collapsed_before) const;
  [[nodiscard]] std::span<std::uint64_t> BitsOf(int stretch) const {
    return {&ItemAt(shown_bits_, stretch * kStretchWords), SizeOf(kStretchWords)};
  }

  RowArray<std::uint16_t> marks_{kPlain};
  RowArray<std::uint8_t> flags_{0};
  RowArray<std::uint16_t> totals_{0};
  mutable std::vector<Stretch> stretches_;
  mutable std::vector<std::uint64_t> shown_bits_;  // a bit for each row, whole stretches
  mutable int first_stale_ = 0;                    // stretch; `kNone` when all are up to date
  mutable int stale_from_ = 0;  // stretch from which on all are stale, or `kNone`
};

}  // namespace tavrix::viewkit
