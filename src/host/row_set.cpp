#include "host/row_set.h"

#include <charconv>
#include <stdexcept>

namespace tavrix::host {

void RowSet::Reserve(std::size_t rows, std::size_t bytes) {
  cells_.reserve(rows * columns_);
  text_.reserve(bytes);
}

void RowSet::ThrowTooLarge() {
  throw std::length_error("查询结果过大");
}

void RowSet::AppendInteger(std::int64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  AppendText({digits, static_cast<std::size_t>(end - digits)});
}

RowSet::Storage RowSet::Release() && {
  Storage storage{columns_, std::move(text_), std::move(cells_)};
  text_.clear();
  cells_.clear();
  return storage;
}

}  // namespace tavrix::host
