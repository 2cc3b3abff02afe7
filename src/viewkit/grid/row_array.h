#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace tavrix::viewkit {

/// Makes room for `more` elements with a slack of an eighth: a table of 100,000 rows that gets one
/// row more shall not take twice the memory.
template <class Container>
void GrowBy(Container& container, std::size_t more) {
  const std::size_t wanted = container.size() + more;
  if (wanted > container.capacity()) container.reserve(wanted + wanted / 8);
}

/// One value for each row and column of a table, row after row. Nothing is allocated while all
/// values are the blank one. Indices are not checked.
template <class T>
class RowArray {
 public:
  explicit RowArray(T blank, std::size_t width = 1) : blank_(blank), width_(width) {}

  [[nodiscard]] std::size_t Rows() const { return rows_; }
  [[nodiscard]] std::size_t Width() const { return width_; }
  [[nodiscard]] bool IsBlank() const { return values_.empty(); }
  [[nodiscard]] T Get(std::size_t row, std::size_t col = 0) const {
    return values_.empty() ? blank_ : values_[row * width_ + col];
  }
  void Set(std::size_t row, T value, std::size_t col = 0) {
    if (values_.empty() && value == blank_) return;
    All()[row * width_ + col] = value;
  }
  /// All values, allocated now. Valid until rows or columns change.
  [[nodiscard]] std::span<T> All() {
    if (values_.empty()) values_.assign(rows_ * width_, blank_);
    return values_;
  }
  [[nodiscard]] std::span<const T> Existing() const { return values_; }

  void Adopt(std::vector<T> values, std::size_t width) {
    width_ = width;
    rows_ = values.size() / width;
    values_ = std::move(values);
  }
  /// All rows blank.
  void Reset(std::size_t rows) {
    rows_ = rows;
    std::vector<T>().swap(values_);
  }
  void Insert(std::size_t at, std::size_t count) {
    if (!values_.empty()) {
      GrowBy(values_, count * width_);
      values_.insert(Place(at), count * width_, blank_);
    }
    rows_ += count;
  }
  void Erase(std::size_t at, std::size_t count) {
    rows_ -= count;
    if (rows_ == 0) return Reset(0);
    if (!values_.empty()) values_.erase(Place(at), Place(at + count));
  }
  /// One blank row in front of each of the rows `before`, in one pass. They are counted from row
  /// `offset` as it is now and ascend; one may come several times, and the end counts as one too.
  void InsertAt(std::span<const std::uint32_t> before, std::size_t offset = 0) {
    if (!values_.empty()) {
      GrowBy(values_, before.size() * width_);
      values_.resize(values_.size() + before.size() * width_, blank_);
      auto from_end = Place(rows_);
      auto to_end = values_.end();
      for (std::size_t i = before.size(); i-- > 0;) {
        const auto from = Place(before[i] + offset);
        const auto blank_end = std::move_backward(from, from_end, to_end);
        to_end = blank_end - static_cast<std::ptrdiff_t>(width_);
        std::fill(to_end, blank_end, blank_);
        from_end = from;
      }
    }
    rows_ += before.size();
  }
  /// `rows`, not none, ascend and are counted from row `offset`. In one pass.
  void EraseAt(std::span<const std::uint32_t> rows, std::size_t offset = 0) {
    if (rows_ == rows.size()) return Reset(0);
    if (!values_.empty()) {
      auto to = Place(rows.front() + offset);
      for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto end = i + 1 < rows.size() ? Place(rows[i + 1] + offset) : values_.end();
        to = std::move(Place(rows[i] + offset + 1), end, to);
      }
      values_.erase(to, values_.end());
    }
    rows_ -= rows.size();
  }
  void CopyRow(std::size_t from, std::size_t to) {
    if (!values_.empty()) std::copy_n(Place(from), width_, Place(to));
  }
  /// Drops columns on the right or adds blank ones.
  void SetWidth(std::size_t width) {
    if (width != width_ && !values_.empty()) {
      std::vector<T> values(rows_ * width, blank_);
      for (std::size_t row = 0; row < rows_; ++row) {
        std::copy_n(Place(row), std::min(width, width_),
                    values.begin() + static_cast<std::ptrdiff_t>(row * width));
      }
      values_ = std::move(values);
    }
    width_ = width;
  }

 private:
  [[nodiscard]] auto Place(std::size_t row) {
    return values_.begin() + static_cast<std::ptrdiff_t>(row * width_);
  }

  T blank_;
  std::size_t width_;
  std::size_t rows_ = 0;
  std::vector<T> values_;
};

}  // namespace tavrix::viewkit
