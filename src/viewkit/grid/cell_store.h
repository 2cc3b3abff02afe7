#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "host/row_set.h"
#include "viewkit/grid/row_array.h"

namespace tavrix::viewkit {

/// The texts of a grid's data rows: one buffer for the characters and eight bytes a cell. Rows
/// count from 0 without the header. Indices are not checked.
class CellStore {
 public:
  [[nodiscard]] std::size_t Rows() const { return cells_.Rows(); }
  [[nodiscard]] std::size_t Columns() const { return cells_.Width(); }
  /// Valid until any cell or row changes.
  [[nodiscard]] std::string_view Text(std::size_t row, std::size_t col) const {
    const Cell cell = cells_.Get(row, col);
    return {text_.data() + cell.start, cell.length};
  }
  /// `text` may be a part of this store. Throws `std::length_error` above 2^31 - 1 bytes in all.
  void SetText(std::size_t row, std::size_t col, std::string_view text);

  /// Replaces everything by these rows, whose storage is taken over as it is when the number of
  /// columns agrees; otherwise columns are dropped or stay empty.
  void Take(host::RowSet&& rows, std::size_t columns);
  void SetColumns(std::size_t columns) {
    ++version_;
    cells_.SetWidth(columns);
  }
  void Insert(std::size_t at, std::size_t count) {
    ++version_;
    cells_.Insert(at, count);
  }
  /// Frees what the rows held; all of it when no row is left.
  void Erase(std::size_t at, std::size_t count);
  /// As `RowArray` does.
  void InsertAt(std::span<const std::uint32_t> before) {
    ++version_;
    cells_.InsertAt(before);
  }
  void EraseAt(std::span<const std::uint32_t> rows);
  /// Makes `to` the same as `from`. The two share their texts: before a cell of either is set, one
  /// of them must be overwritten in the same way or dropped by `DropCopy`.
  void CopyRow(std::size_t from, std::size_t to) {
    ++version_;
    cells_.CopyRow(from, to);
  }
  void DropCopy(std::size_t row) { cells_.Erase(row, 1); }

  /// Another number after every change, and in every store; never 0.
  [[nodiscard]] std::uint64_t Version() const { return version_; }

  /// Bytes held in all.
  [[nodiscard]] std::size_t TextBytes() const { return text_.size(); }

 private:
  using Cell = host::RowSet::Cell;

  [[nodiscard]] static std::uint64_t FirstVersion();
  [[nodiscard]] std::size_t BytesOf(std::size_t row) const;
  void Waste(std::size_t bytes);
  void Compact();

  RowArray<Cell> cells_{Cell{}, 0};
  std::string text_;
  std::uint64_t version_ = FirstVersion();
  std::size_t wasted_ = 0;  // bytes of the buffer that no cell refers to, at least
};

}  // namespace tavrix::viewkit
