#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// An account as the history keeps it: a JSON array of its columns, as the engine writes one.
namespace desk::book {

/// The cells of an image as they are written: an engine writes equal values alike.
class RowImage {
 public:
  RowImage() = default;
  /// An empty text stands for an account that is not there.
  explicit RowImage(std::string json);

  [[nodiscard]] bool IsThere() const { return !cells_.empty(); }
  /// As it is written; empty when there is none.
  [[nodiscard]] std::string_view Cell(std::size_t column) const {
    if (column >= cells_.size()) return {};
    return std::string_view(json_).substr(cells_[column].start, cells_[column].length);
  }
  /// What it says; empty for null.
  [[nodiscard]] std::string Text(std::size_t column) const;

 private:
  struct Span {
    std::size_t start = 0;
    std::size_t length = 0;
  };
  static std::vector<Span> SpansOf(std::string_view json);

  std::string json_;
  std::vector<Span> cells_;
};

/// The place of a column of `gl_code`; it must be one.
[[nodiscard]] std::size_t AccountColumn(std::string_view name) noexcept;

}  // namespace desk::book
