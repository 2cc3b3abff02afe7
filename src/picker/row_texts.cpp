#include "picker/row_texts.h"

#include <algorithm>

#include "host/text.h"

namespace tavrix::picker {

namespace {

/// Appends `text` in lower case. Chinese and digits, most of every text, have no case.
void AppendLower(std::string& to, std::string_view text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
    const auto unit = static_cast<unsigned char>(c);
    const bool latin_capital = unit >= 'A' && unit <= 'Z';
    // UTF-8 lead bytes below U+0800, and of U+F000 to U+FFFF with the full-width letters.
    const bool other_letter = (unit >= 0xC0 && unit < 0xE0) || unit == 0xEF;
    return !latin_capital && !other_letter;
  });
  if (plain) {
    to.append(text);
  } else {
    to.append(host::LowerCase(text));
  }
}

/// Position of `wanted` in `text` from `from` on. Looks for its last byte, which in UTF-8 tells
/// Chinese characters apart far better than the first one does.
std::size_t FindText(std::string_view text, std::string_view wanted, std::size_t from) {
  const std::size_t tail = wanted.size() - 1;
  for (std::size_t at = text.find(wanted.back(), from + tail); at != std::string_view::npos;
       at = text.find(wanted.back(), at + 1)) {
    if (text.compare(at - tail, tail, wanted.substr(0, tail)) == 0) return at - tail;
  }
  return std::string_view::npos;
}

}  // namespace

void RowTexts::Update(const viewkit::FlexGrid& grid) {
  if (version_ == grid.TextVersion()) return;
  texts_.clear();
  ends_.clear();
  const int cols = grid.Cols();
  for (int row = grid.FixedRows(); row < grid.Rows(); ++row) {
    const int searched = grid.IsTotalRow(row) ? 0 : cols;
    for (int col = 0; col < searched; ++col) {
      AppendLower(texts_, grid.TextMatrix(row, col));
      texts_.push_back('%');
    }
    ends_.push_back(texts_.size());
  }
  version_ = grid.TextVersion();
}

int RowTexts::Find(std::string_view wanted, int from) const {
  const int rows = static_cast<int>(ends_.size());
  if (from >= rows) return -1;
  if (wanted.empty()) return from;
  int row = from;
  std::size_t at = Start(row);
  while ((at = FindText(texts_, wanted, at)) != std::string_view::npos) {
    while (ends_[static_cast<std::size_t>(row)] <= at) ++row;
    if (at + wanted.size() <= ends_[static_cast<std::size_t>(row)]) return row;
    at = ends_[static_cast<std::size_t>(row)];  // it lay across two rows: not a match
  }
  return -1;
}

}  // namespace tavrix::picker
