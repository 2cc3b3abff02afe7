#include "book/exchange/column_match.h"

#include <algorithm>

#include "book/ledger/folded_text.h"
#include "host/code_points.h"
#include "host/text.h"

namespace desk::book {

namespace {

using enum AccountField;

/// Of a folded header: what stands in brackets says more than the name, and signs say nothing.
std::string NameOf(std::string_view header) {
  std::string name;
  int depth = 0;
  for (const char unit : Folded(header)) {
    if (unit == '(' || unit == '[') ++depth;
    const bool sign = static_cast<unsigned char>(unit) < 0x80 && !host::IsDigit(unit) &&
                      (unit < 'a' || unit > 'z');
    if (depth == 0 && !sign) name += unit;
    if ((unit == ')' || unit == ']') && depth > 0) --depth;
  }
  return name;
}

bool LooksLikeCode(std::string_view cell) {
  cell = host::Trimmed(cell);
  constexpr std::size_t kLongest = 40;
  return !cell.empty() && cell.size() <= kLongest && std::ranges::all_of(cell, host::IsDigit);
}

bool MostAre(const SourceTable& table, std::size_t column, bool (*is)(std::string_view)) {
  constexpr std::size_t kLooked = 100;
  std::size_t good = 0;
  std::size_t all = 0;
  for (const SourceRow& row : table.rows) {
    if (all == kLooked) break;
    ++all;
    if (column < row.cells.size() && is(row.cells[column])) ++good;
  }
  return good * 4 > all * 3;
}

std::size_t FieldsOf(const ColumnMap& map) {
  return static_cast<std::size_t>(std::ranges::count_if(
      Fields(), [&](const FieldInfo& info) { return map.ColumnOf(info.field).has_value(); }));
}

/// Whether the row goes on with a header above it: that one names the code, and here stand titles
/// but nothing below the code's.
bool IsSecondRow(const SourceTable& table, std::size_t place) {
  const SourceRow& row = table.rows[place];
  const auto code = MatchHeader(table.rows[place - 1]).ColumnOf(kCode);
  const bool has_code =
      code && *code < row.cells.size() && !host::Trimmed(row.cells[*code]).empty();
  return code && !has_code && FieldsOf(MatchHeader(row)) > 0;
}

}  // namespace

std::optional<AccountField> ColumnMap::FieldAt(std::size_t column) const {
  const auto found = std::ranges::find(columns_, std::optional(column));
  if (found == columns_.end()) return std::nullopt;
  return static_cast<AccountField>(found - columns_.begin());
}

void ColumnMap::Set(std::size_t column, std::optional<AccountField> field) {
  if (const auto before = FieldAt(column)) columns_.at(IndexOf(*before)).reset();
  if (field) columns_.at(IndexOf(*field)) = column;
}

std::optional<AccountField> FieldOfHeader(std::string_view header) {
  const std::string name = NameOf(header);
  if (name.empty()) return std::nullopt;
  for (const FieldInfo& info : Fields()) {
    if (name == info.title || name == ColumnOf(info.field) || IsListed(info.others, name))
      return info.field;
  }
  return std::nullopt;
}

ColumnMap MatchHeader(const SourceRow& header) {
  ColumnMap map;
  for (std::size_t column = 0; column < header.cells.size(); ++column) {
    const auto field = FieldOfHeader(header.cells[column]);
    if (field && !map.ColumnOf(*field)) map.Set(column, field);
  }
  return map;
}

std::optional<std::size_t> FindHeader(const SourceTable& table) {
  constexpr std::size_t kLooked = 20;
  std::optional<std::size_t> header;
  std::size_t most = 1;
  for (std::size_t i = 0; i < std::min(table.rows.size(), kLooked); ++i) {
    const ColumnMap map = MatchHeader(HeaderAt(table, i));
    if (!map.ColumnOf(kCode) || FieldsOf(map) <= most) continue;
    most = FieldsOf(map);
    header = i;
  }
  return header;
}

SourceRow HeaderAt(const SourceTable& table, std::size_t place) {
  SourceRow header = table.rows[place];
  if (place == 0 || !IsSecondRow(table, place)) return header;
  const SourceRow& above = table.rows[place - 1];
  header.cells.resize(std::max(header.cells.size(), above.cells.size()));
  for (std::size_t i = 0; i < above.cells.size(); ++i) {
    if (host::Trimmed(header.cells[i]).empty()) header.cells[i] = above.cells[i];
  }
  return header;
}

ColumnMap GuessColumns(const SourceTable& table) {
  ColumnMap map;
  std::size_t column = 0;
  while (column < table.columns && !MostAre(table, column, LooksLikeCode)) ++column;
  if (column == table.columns) return map;
  map.Set(column, kCode);
  const auto is_text = [](std::string_view cell) {
    return !host::Trimmed(cell).empty() && !LooksLikeCode(cell);
  };
  for (std::size_t next = column + 1; next < table.columns; ++next) {
    if (!MostAre(table, next, is_text)) continue;
    map.Set(next, kName);
    break;
  }
  return map;
}

}  // namespace desk::book
