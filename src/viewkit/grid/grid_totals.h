#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "viewkit/grid/cell_store.h"
#include "viewkit/grid/decimal.h"
#include "viewkit/grid/grid_types.h"
#include "viewkit/grid/outline_rows.h"

namespace tavrix::viewkit {

/// What can be said of many numbers at once. All are reckoned in whole multiples of one power of
/// ten, so that adding up decimal numbers loses nothing.
class NumberTotals {
 public:
  explicit NumberTotals(int decimals = 0) : decimals_(decimals) {}

  void Add(const Decimal& number) {
    if (number.decimals > decimals_) Rescale(number.decimals);
    AddUnits(number.units * PowerOfTen(decimals_ - number.decimals));
  }
  /// A number of the power of ten that this has now.
  void AddUnits(double units) {
    sum_ += units;
    min_ = units < min_ ? units : min_;
    max_ = units > max_ ? units : max_;
    ++count_;
  }
  /// As `AddUnits`, but for what is NaN.
  void AddAll(std::span<const double> units);
  [[nodiscard]] Decimal Sum() const { return {sum_, decimals_}; }
  /// `whole` is what `kPercent` is the share of. 0 over no numbers.
  [[nodiscard]] Decimal Result(SubtotalFunction function, const Decimal& whole) const;

 private:
  void Rescale(int decimals);
  void AddUnlessNan(double units) {
    if (!std::isnan(units)) AddUnits(units);
  }

  int decimals_;
  double sum_ = 0;
  double min_ = std::numeric_limits<double>::infinity();
  double max_ = -std::numeric_limits<double>::infinity();
  std::int64_t count_ = 0;
};

/// The groups of a grid's rows, and what is known of its numbers, from one call of `Subtotal` to
/// the next. Rows count from 0 without the header; a place counts only rows that are no totals.
class GridTotals {
 public:
  /// The mark of the grand total.
  static constexpr std::uint16_t kWholeGrid = 1;
  /// Rows of totals of one `group_on`.
  struct Level {
    SubtotalOptions options;  ///< of the last call
    bool above = false;
    std::vector<int> cols;            ///< the columns in which the rows of a group agree
    std::vector<int> ends;            ///< the place after the last row of each group
    RowList rows;                     ///< the row of totals of each group; none as long as unknown
    std::uint16_t mark = kWholeGrid;  ///< of its rows in the outline; greater for inner groups
    bool texts_stand = false;         ///< its rows show the groups' texts as they are now
  };
  /// What is known of one column.
  struct Column {
    enum class Use { kNumbers, kGroups };
    int col = 0;
    Use use = Use::kNumbers;
    bool asked = false;              ///< not only read beside others
    int decimals = 0;                ///< of the units
    std::vector<double> units = {};  ///< the numbers by their places, empty cells as NaN
    std::vector<int> breaks = {};  ///< the places whose text is another than that of the row before
  };

  GridTotals(const CellStore& cells, const OutlineRows& outline)
      : cells_(cells), outline_(outline) {}

  /// Forgets what no longer holds since the cells have changed.
  void Refresh();
  /// The cells have changed from this version on, but no number that counts.
  void Follow(std::uint64_t from) {
    if (version_ == from) version_ = cells_.Version();
  }
  void Forget();
  /// Rows have become totals, or are none any more.
  void RowsRedefined() { version_ = 0; }
  /// The level of these options, made if there is none. Valid until the next call.
  [[nodiscard]] Level& LevelOf(const SubtotalOptions& options, bool above);
  /// Where the rows of totals of a level stand, or belong: for each group the row in front of which
  /// one must be put in, and the row that is there already.
  struct Sites {
    RowList before;
    RowList existing;
  };
  [[nodiscard]] Sites FindSites(const Level& level) const;
  /// All levels but this one no longer know their rows: some have been put in.
  void RowsMoved(const Level& known);
  /// Valid until the next call.
  [[nodiscard]] const Column& NumbersOf(int col) { return Read(col, Column::Use::kNumbers); }

 private:
  template <class Visit>
  void ForEachRow(Visit&& visit) const;
  [[nodiscard]] std::vector<int> ColumnsOf(const SubtotalOptions& options) const;
  [[nodiscard]] std::uint16_t NewMark(const SubtotalOptions& options) const;
  void FindEnds(Level& level);
  [[nodiscard]] const Column& Read(int col, Column::Use use);
  void ReadRows(std::span<Column> columns) const;
  void ForgetColumns();

  const CellStore& cells_;
  const OutlineRows& outline_;
  std::uint64_t version_ = 0;  // of the cells that the following was made from
  std::vector<Level> levels_;
  std::vector<Column> columns_;
  std::vector<Column> wanted_;  // those asked for before the cells changed, without what they held
};

}  // namespace tavrix::viewkit
