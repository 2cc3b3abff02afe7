#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "viewkit/grid/row_order.h"
#include "viewkit/indexing.h"

namespace tavrix::viewkit {

/// Makes room for `more` elements with a slack of an eighth: a table of 100,000 rows that gets one
/// row more shall not take twice the memory.
template <class Container>
void GrowBy(Container& container, std::size_t more) {
  const std::size_t wanted = container.size() + more;
  if (wanted > container.capacity()) container.reserve(wanted + wanted / 8);
}

/// Rows in ascending order.
using RowList = std::vector<int>;
using RowSpan = std::span<const int>;

/// One value for each row and column of a table, row after row. Nothing is allocated while all
/// values are the blank one. Rows and columns outside the table are the caller's error.
template <class T>
class RowArray {
 public:
  explicit RowArray(T blank, int width = 1) : blank_(blank), width_(width) {}

  [[nodiscard]] int Rows() const { return rows_; }
  [[nodiscard]] int Width() const { return width_; }
  [[nodiscard]] bool IsBlank() const { return values_.empty(); }
  [[nodiscard]] T Get(int row, int col = 0) const {
    assert(Holds(row, col));
    return values_.empty() ? blank_ : values_.data()[Offset(row, col)];
  }
  void Set(int row, T value, int col = 0) {
    assert(Holds(row, col));
    if (values_.empty() && value == blank_) return;
    All().data()[Offset(row, col)] = value;
  }
  /// All values, allocated now. Valid until rows or columns change.
  [[nodiscard]] std::span<T> All() {
    if (values_.empty()) values_.assign(Size(rows_), blank_);
    return values_;
  }
  [[nodiscard]] std::span<const T> Existing() const { return values_; }

  void Adopt(std::vector<T> values, int width) {
    assert(width > 0 && CountOf(values) % width == 0);
    width_ = width;
    rows_ = CountOf(values) / width;
    values_ = std::move(values);
  }
  /// All rows blank.
  void Reset(int rows) {
    assert(rows >= 0);
    rows_ = rows;
    std::vector<T>().swap(values_);
  }
  void Insert(int at, int count) {
    assert(at >= 0 && at <= rows_ && count >= 0);
    if (!values_.empty()) {
      GrowBy(values_, Size(count));
      values_.insert(Place(at), Size(count), blank_);
    }
    rows_ += count;
  }
  void Erase(int at, int count) {
    assert(at >= 0 && count >= 0 && at + count <= rows_);
    rows_ -= count;
    if (rows_ == 0) return Reset(0);
    if (!values_.empty()) values_.erase(Place(at), Place(at + count));
  }
  /// One blank row in front of each of the rows `before` as they are now, in one pass. They ascend;
  /// one may come several times, and the end counts as one too.
  void InsertAt(RowSpan before) {
    assert(before.empty() || (before.front() >= 0 && before.back() <= rows_));
    assert(std::is_sorted(before.begin(), before.end()));
    const int count = CountOf(before);
    if (!values_.empty()) {
      GrowBy(values_, Size(count));
      values_.resize(values_.size() + Size(count), blank_);
      auto from_end = Place(rows_);
      auto to_end = values_.end();
      for (int i = count; i-- > 0;) {
        const auto from = Place(ItemAt(before, i));
        const auto blank_end = std::move_backward(from, from_end, to_end);
        to_end = blank_end - width_;
        std::fill(to_end, blank_end, blank_);
        from_end = from;
      }
    }
    rows_ += count;
  }
  /// `rows`, not none, ascend. In one pass.
  void EraseAt(RowSpan rows) {
    assert(!rows.empty() && rows.front() >= 0 && rows.back() < rows_);
    assert(std::ranges::adjacent_find(rows, std::greater_equal<>()) == rows.end());
    const int count = CountOf(rows);
    if (rows_ == count) return Reset(0);
    if (!values_.empty()) {
      auto to = Place(rows.front());
      for (int i = 0; i < count; ++i) {
        const auto end = i + 1 < count ? Place(ItemAt(rows, i + 1)) : values_.end();
        to = std::move(Place(ItemAt(rows, i) + 1), end, to);
      }
      values_.erase(to, values_.end());
    }
    rows_ -= count;
  }
  void Reorder(const RowOrder& order) {
    if (values_.empty()) return;
    std::vector<T> aside(Size(1), blank_);
    order.ForEachCycle([&](RowSpan rows) {
      CopyRow(Place(rows.front()), aside.begin());
      auto to = Place(rows.front());
      for (const int row : rows.subspan(1)) {
        CopyRow(Place(row), to);
        to = Place(row);
      }
      CopyRow(aside.begin(), to);
    });
  }
  /// Drops columns on the right or adds blank ones.
  void SetWidth(int width) {
    assert(width >= 0);
    if (width != width_ && !values_.empty()) {
      std::vector<T> values(SizeOf(rows_) * SizeOf(width), blank_);
      auto to = values.begin();
      for (int row = 0; row < rows_; ++row, to += width) {
        std::copy_n(Place(row), std::min(width, width_), to);
      }
      values_ = std::move(values);
    }
    width_ = width;
  }

 private:
  [[nodiscard]] bool Holds(int row, int col) const {
    return row >= 0 && row < rows_ && col >= 0 && col < width_;
  }
  [[nodiscard]] std::size_t Size(int rows) const { return SizeOf(rows) * SizeOf(width_); }
  [[nodiscard]] std::ptrdiff_t Offset(int row, int col) const {
    return std::ptrdiff_t{row} * width_ + col;
  }
  using Iterator = typename std::vector<T>::iterator;
  void CopyRow(Iterator from, Iterator to) const {
    for (int col = 0; col < width_; ++col) to[col] = from[col];
  }
  [[nodiscard]] Iterator Place(int row) { return values_.begin() + Offset(row, 0); }

  T blank_;
  int width_;
  int rows_ = 0;
  std::vector<T> values_;
};

}  // namespace tavrix::viewkit
