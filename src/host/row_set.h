#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrix::host {

/// All rows of a query as text: one buffer for the characters, eight bytes a cell beside it.
/// Cells are appended in reading order, row after row; a row is complete when each of its columns
/// has been appended. At most 2^31 - 1 bytes of text.
class RowSet {
 public:
  struct Cell {
    std::uint32_t start = 0;
    std::uint32_t length = 0;  ///< kNull for a null
    friend bool operator==(const Cell&, const Cell&) = default;
  };
  static constexpr std::uint32_t kNull = 0xFFFFFFFF;

  RowSet() = default;
  explicit RowSet(std::size_t columns) : columns_(columns) {}

  void Reserve(std::size_t rows, std::size_t bytes);
  /// Throws `std::length_error` when the buffer would pass its limit.
  void AppendText(std::string_view text) {  // here, since it runs for every cell of every load
    constexpr std::size_t kMaxText = 0x7FFFFFFF;
    if (text.size() > kMaxText - text_.size()) ThrowTooLarge();
    cells_.push_back(
        {static_cast<std::uint32_t>(text_.size()), static_cast<std::uint32_t>(text.size())});
    text_.append(text);
  }
  void AppendInteger(std::int64_t number);
  void AppendNull() { cells_.push_back({0, kNull}); }

  [[nodiscard]] std::size_t Columns() const { return columns_; }
  /// Complete rows.
  [[nodiscard]] std::size_t Rows() const { return columns_ == 0 ? 0 : cells_.size() / columns_; }
  [[nodiscard]] bool IsNull(std::size_t row, std::size_t column) const {
    return At(row, column).length == kNull;
  }
  [[nodiscard]] std::size_t TextBytes() const { return text_.size(); }
  /// A null gives an empty text. Valid until the row set changes.
  [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const {
    const Cell& cell = At(row, column);
    if (cell.length == kNull) return {};
    return std::string_view(text_).substr(cell.start, cell.length);
  }

  /// Hands the storage over, so that a grid can own it without a copy. The row set is empty after.
  struct Storage {
    std::size_t columns = 0;
    std::string text;
    std::vector<Cell> cells;
  };
  [[nodiscard]] Storage Release() &&;

 private:
  [[noreturn]] static void ThrowTooLarge();
  [[nodiscard]] const Cell& At(std::size_t row, std::size_t column) const {
    return cells_[row * columns_ + column];
  }

  std::size_t columns_ = 0;
  std::string text_;
  std::vector<Cell> cells_;
};

}  // namespace tavrix::host
