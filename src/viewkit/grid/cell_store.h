#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/row_set.h"
#include "viewkit/grid/row_array.h"

namespace tavrix::viewkit {

/// The texts of a grid's data rows: one buffer for the characters and eight bytes a cell. Rows
/// count from 0 without the header. Rows and columns outside the grid are the caller's error.
class CellStore {
 public:
  [[nodiscard]] int Rows() const { return cells_.Rows(); }
  [[nodiscard]] int Columns() const { return cells_.Width(); }
  /// Valid until any cell or row changes.
  [[nodiscard]] std::string_view Text(int row, int col) const {
    const Cell cell = cells_.Get(row, col);
    assert(std::size_t{cell.start} + cell.length <= text_.size());
    return {text_.data() + cell.start, cell.length};
  }
  /// `text` may be a part of this store. Throws `std::length_error` above 2^31 - 1 bytes in all.
  void SetText(int row, int col, std::string_view text);

  /// Replaces everything by these rows, whose storage is taken over as it is when the number of
  /// columns agrees; otherwise columns are dropped or stay empty.
  void Take(host::RowSet&& rows, int columns);
  void SetColumns(int columns) {
    ++version_;
    cells_.SetWidth(columns);
  }
  void Insert(int at, int count) {
    ++version_;
    cells_.Insert(at, count);
  }
  /// Frees what the rows held; all of it when no row is left.
  void Erase(int at, int count);
  /// As `RowArray` does.
  void InsertAt(RowSpan before) {
    ++version_;
    cells_.InsertAt(before);
  }
  void EraseAt(RowSpan rows);
  void Reorder(const RowOrder& order) {
    ++version_;
    cells_.Reorder(order);
  }

  /// Another number after every change, and in every store; never 0.
  [[nodiscard]] std::uint64_t Version() const { return version_; }

  /// Bytes held in all.
  [[nodiscard]] std::size_t TextBytes() const { return text_.size(); }

 private:
  using Cell = host::RowSet::Cell;

  [[nodiscard]] static std::uint64_t FirstVersion();
  [[nodiscard]] std::size_t BytesOf(int row) const;
  void Waste(std::size_t bytes);
  void Compact();

  RowArray<Cell> cells_{Cell{}, 0};
  std::string text_;
  std::uint64_t version_ = FirstVersion();
  std::size_t wasted_ = 0;  // bytes of the buffer that no cell refers to, at least
};

}  // namespace tavrix::viewkit
