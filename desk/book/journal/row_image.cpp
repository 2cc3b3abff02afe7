#include "book/journal/row_image.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "book/database/tables.h"
#include "host/utf.h"

namespace desk::book {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

/// The end of the cell that starts `text`.
std::size_t EndOfCell(std::string_view text) {
  if (!text.starts_with('"')) return std::min(text.find_first_of(",] "), text.size());
  std::size_t at = 1;
  while (at < text.size() && text[at] != '"') at += text[at] == '\\' ? 2 : 1;
  return std::min(at + 1, text.size());
}

char16_t UnitOf(std::string_view digits) {
  unsigned unit = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
  return static_cast<char16_t>(unit);
}

char16_t Escaped(char c) {
  constexpr std::string_view kLetters = "bfnrt";
  constexpr std::u16string_view kMeant = u"\b\f\n\r\t";
  const std::size_t at = kLetters.find(c);
  return at == std::string_view::npos ? static_cast<char16_t>(c) : kMeant[at];
}

std::string Unescaped(std::string_view quoted) {
  std::string text;
  std::u16string units;  // a character may be written as two of them
  const auto take_units = [&] { text += tavrix::host::ToUtf8(std::exchange(units, {})); };
  for (std::size_t at = 0; at < quoted.size(); ++at) {
    if (quoted[at] != '\\' || at + 1 == quoted.size()) {
      take_units();
      text += quoted[at];
      continue;
    }
    const char kind = quoted[++at];
    units += kind == 'u' ? UnitOf(quoted.substr(at + 1, 4)) : Escaped(kind);
    if (kind == 'u') at += 4;
  }
  take_units();
  return text;
}

}  // namespace

RowImage::RowImage(std::string json) : json_(std::move(json)), cells_(SpansOf(json_)) {}

std::vector<RowImage::Span> RowImage::SpansOf(std::string_view json) {
  std::vector<Span> cells;
  std::size_t at = json.find('[');
  while (at < json.size()) {
    at = json.find_first_not_of(kBlanks, at + 1);
    if (at >= json.size() || json[at] == ']') break;
    const std::size_t length = EndOfCell(json.substr(at));
    cells.push_back({.start = at, .length = length});
    at = json.find_first_of(",]", at + length);
  }
  return cells;
}

std::string RowImage::Text(std::size_t column) const {
  const std::string_view cell = Cell(column);
  if (cell == "null") return {};
  if (!cell.starts_with('"') || cell.size() < 2) return std::string(cell);
  return Unescaped(cell.substr(1, cell.size() - 2));
}

std::size_t AccountColumn(std::string_view name) noexcept {
  const auto columns = SchemaTables()[0].columns;
  const auto found = std::ranges::find(columns, name, &Column::name);
  return static_cast<std::size_t>(found - columns.begin());
}

}  // namespace desk::book
