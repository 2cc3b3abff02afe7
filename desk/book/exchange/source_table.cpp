#include "book/exchange/source_table.h"

#include <algorithm>
#include <utility>

#include "host/text.h"

namespace desk::book {

namespace {

bool IsEmpty(const std::string& cell) {
  return tavrix::host::Trimmed(cell).empty();
}

}  // namespace

std::string LetterOf(std::size_t column) {
  constexpr std::size_t kLetters = 26;
  std::string letters;
  for (std::size_t rest = column + 1; rest > 0; rest = (rest - 1) / kLetters) {
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % kLetters));
  }
  return letters;
}

void AddRow(SourceTable& table, SourceRow row) {
  const auto last = std::ranges::find_if_not(row.cells.rbegin(), row.cells.rend(), IsEmpty);
  row.cells.erase(last.base(), row.cells.end());
  if (row.cells.empty()) return;
  if (row.cells.size() > kMaxSourceColumns) {
    throw SourceError("第 " + std::to_string(row.number) + " 行的列太多，这不像一张科目表");
  }
  if (table.rows.size() >= kMaxSourceRows) {
    throw SourceError("文件超过 " + std::to_string(kMaxSourceRows) + " 行");
  }
  for (const std::string& cell : row.cells) table.bytes += cell.size();
  table.cells += row.cells.size();
  if (table.bytes > kMaxSourceBytes || table.cells > kMaxSourceCells)
    throw SourceError("文件的内容太多");
  table.columns = std::max(table.columns, row.cells.size());
  table.rows.push_back(std::move(row));
}

}  // namespace desk::book
