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

bool IsAmong(std::string_view names, std::string_view name) {
  while (!names.empty()) {
    const std::size_t end = std::min(names.find('|'), names.size());
    if (names.substr(0, end) == name) return true;
    names.remove_prefix(std::min(end + 1, names.size()));
  }
  return false;
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
    if (name == info.title || name == info.column || IsAmong(info.others, name)) return info.field;
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
  std::size_t most = 0;
  for (std::size_t i = 0; i < std::min(table.rows.size(), kLooked); ++i) {
    const ColumnMap map = MatchHeader(table.rows[i]);
    if (!map.ColumnOf(kCode) || !map.ColumnOf(kName)) continue;
    const auto fields = static_cast<std::size_t>(std::ranges::count_if(
        Fields(), [&](const FieldInfo& info) { return map.ColumnOf(info.field).has_value(); }));
    if (fields <= most) continue;
    most = fields;
    header = i;
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
