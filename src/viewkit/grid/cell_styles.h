#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

#include "viewkit/color.h"
#include "viewkit/grid/row_array.h"

namespace tavrix::viewkit {

struct CellStyle {
  Color fore = color::kDefault;
  Color back = color::kDefault;
  bool bold = false;
  friend bool operator==(const CellStyle&, const CellStyle&) = default;
};

/// The looks of the cells of a grid's data rows: each different style once, and a small number a
/// cell as soon as one cell differs from the default. Rows count from 0 without the header.
class CellStyles {
 public:
  [[nodiscard]] const CellStyle& Get(int row, int col) const {
    return ItemAt(styles_, numbers_.Get(row, col));
  }
  /// True when this changed anything. Throws `std::length_error` beyond 65,535 different styles.
  bool Set(int row, int col, const CellStyle& style) {
    if (Get(row, col) == style) return false;
    numbers_.Set(row, NumberOf(style), col);
    return true;
  }
  /// All cells of the row from `first_col` on.
  void SetRow(int row, int first_col, const CellStyle& style) {
    const std::uint16_t number = NumberOf(style);
    for (int col = first_col; col < numbers_.Width(); ++col) numbers_.Set(row, number, col);
  }
  [[nodiscard]] bool AllDefault() const { return numbers_.IsBlank(); }

  void SetColumns(int columns) { numbers_.SetWidth(columns); }
  // As `RowArray` does.
  void Reset(int rows) {
    numbers_.Reset(rows);
    styles_.resize(1);
  }
  void Insert(int at, int count) { numbers_.Insert(at, count); }
  void Erase(int at, int count) { numbers_.Erase(at, count); }
  void InsertAt(RowSpan before) { numbers_.InsertAt(before); }
  void EraseAt(RowSpan rows) { numbers_.EraseAt(rows); }
  void Reorder(const RowOrder& order) { numbers_.Reorder(order); }

 private:
  std::uint16_t NumberOf(const CellStyle& style) {
    const auto known = std::find(styles_.begin(), styles_.end(), style);
    const auto number = known - styles_.begin();
    if (number > std::numeric_limits<std::uint16_t>::max()) {
      throw std::length_error("too many different cell styles");
    }
    if (known == styles_.end()) styles_.push_back(style);
    return static_cast<std::uint16_t>(number);
  }

  RowArray<std::uint16_t> numbers_{0, 0};
  std::vector<CellStyle> styles_{CellStyle{}};  // number 0 is the default
};

}  // namespace tavrix::viewkit
