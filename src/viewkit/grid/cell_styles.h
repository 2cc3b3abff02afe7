#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
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

/// The looks of a grid's cells, header included: each different style once, and a small number a
/// cell as soon as one cell differs from the default.
class CellStyles {
 public:
  [[nodiscard]] const CellStyle& Get(std::size_t row, std::size_t col) const {
    return styles_[numbers_.Get(row, col)];
  }
  /// True when this changed anything. Throws `std::length_error` beyond 65,535 different styles.
  bool Set(std::size_t row, std::size_t col, const CellStyle& style) {
    if (Get(row, col) == style) return false;
    numbers_.Set(row, NumberOf(style), col);
    return true;
  }
  /// All cells of the row from `first_col` on.
  void SetRow(std::size_t row, std::size_t first_col, const CellStyle& style) {
    const std::uint16_t number = NumberOf(style);
    for (std::size_t col = first_col; col < numbers_.Width(); ++col) numbers_.Set(row, number, col);
  }
  [[nodiscard]] bool AllDefault() const { return numbers_.IsBlank(); }

  void SetColumns(std::size_t columns) { numbers_.SetWidth(columns); }
  void Insert(std::size_t at, std::size_t count) { numbers_.Insert(at, count); }
  void Erase(std::size_t at, std::size_t count) { numbers_.Erase(at, count); }
  /// As `RowArray` does.
  void InsertAt(std::span<const std::uint32_t> before, std::size_t offset) {
    numbers_.InsertAt(before, offset);
  }
  void EraseAt(std::span<const std::uint32_t> rows, std::size_t offset) {
    numbers_.EraseAt(rows, offset);
  }
  void CopyRow(std::size_t from, std::size_t to) { numbers_.CopyRow(from, to); }

 private:
  std::uint16_t NumberOf(const CellStyle& style) {
    const auto known = std::find(styles_.begin(), styles_.end(), style);
    const auto number = static_cast<std::size_t>(known - styles_.begin());
    if (known != styles_.end()) return static_cast<std::uint16_t>(number);
    if (number > std::numeric_limits<std::uint16_t>::max()) {
      throw std::length_error("too many different cell styles");
    }
    styles_.push_back(style);
    return static_cast<std::uint16_t>(number);
  }

  RowArray<std::uint16_t> numbers_{0, 0};
  std::vector<CellStyle> styles_{CellStyle{}};  // number 0 is the default
};

}  // namespace tavrix::viewkit
