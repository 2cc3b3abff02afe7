#include "book/exchange/csv.h"

#include <algorithm>
#include <map>
#include <utility>

namespace desk::book {

namespace {

constexpr std::string_view kSeparatorLine = "sep=";

bool EndsLine(char unit) {
  return unit == '\n' || unit == '\r';
}

/// Spreadsheets take a cell that begins so for a formula, but for what stands behind a quote; one
/// that begins with a quote of its own gets another.
bool IsProtected(std::string_view cell) {
  return !cell.empty() &&
         std::string_view("=+-@\t\r'").find(cell.front()) != std::string_view::npos;
}

/// `="0101"`: how other programs keep a spreadsheet from making a number of a text.
bool IsTextFormula(std::string_view cell) {
  constexpr std::string_view kStart = "=\"";
  return cell.size() > kStart.size() && cell.starts_with(kStart) &&
         cell.find('"', kStart.size()) == cell.size() - 1;
}

std::string Unprotected(std::string cell) {
  if (IsTextFormula(cell)) return cell.substr(2, cell.size() - 3);
  if (cell.starts_with('\'') && IsProtected(std::string_view(cell).substr(1))) cell.erase(0, 1);
  return cell;
}

/// The rows of a text, one after the other.
class RowReader {
 public:
  RowReader(std::string_view text, char separator) : text_(text), separator_(separator) {}

  [[nodiscard]] bool AtEnd() const { return at_ >= text_.size(); }

  [[nodiscard]] SourceRow Next() {
    SourceRow row{.number = line_};
    for (;;) {
      row.cells.push_back(Unprotected(Cell()));
      if (AtEnd() || EndsLine(text_[at_])) break;
      ++at_;  // the separator
      // A row that is far too long is not gathered to its end: whoever gets it refuses it.
      if (row.cells.size() > kMaxSourceColumns) break;
    }
    SkipLineEnd();
    return row;
  }

 private:
  std::string Cell() {
    if (AtEnd() || text_[at_] != '"') return std::string(Plain());
    ++at_;
    std::string cell;
    while (!AtEnd()) {
      const std::size_t quote = std::min(text_.find('"', at_), text_.size());
      Append(cell, text_.substr(at_, quote - at_));
      at_ = quote + 1;
      if (AtEnd() || text_[at_] != '"') break;
      cell += '"';
      ++at_;
    }
    at_ = std::min(at_, text_.size());
    cell += Plain();  // behind the closing quote nothing should stand
    return cell;
  }
  std::string_view Plain() {
    const std::size_t start = at_;
    while (!AtEnd() && text_[at_] != separator_ && !EndsLine(text_[at_])) ++at_;
    return text_.substr(start, at_ - start);
  }
  void Append(std::string& cell, std::string_view part) {
    line_ += static_cast<int>(std::ranges::count(part, '\n'));
    cell += part;
  }
  void SkipLineEnd() {
    if (AtEnd()) return;
    const bool both = text_.substr(at_, 2) == "\r\n";
    at_ += both ? 2 : 1;
    ++line_;
  }

  std::string_view text_;
  char separator_;
  std::size_t at_ = 0;
  int line_ = 1;
};

/// How many cells the separator makes in the first rows: that of most of them, if more than one.
std::size_t CellsBy(std::string_view text, char separator) {
  constexpr int kRows = 50;
  std::map<std::size_t, int> counts;
  RowReader reader(text, separator);
  for (int i = 0; i < kRows && !reader.AtEnd(); ++i) ++counts[reader.Next().cells.size()];
  counts.erase(1);
  const auto most = std::ranges::max_element(
      counts, {}, [](const auto& count) { return std::pair(count.second, count.first); });
  return most == counts.end() ? 0 : most->first * static_cast<std::size_t>(most->second);
}

}  // namespace

char FindSeparator(std::string_view text) {
  if (text.starts_with(kSeparatorLine) && text.size() > kSeparatorLine.size()) {
    return text[kSeparatorLine.size()];
  }
  return *std::ranges::max_element(kSeparators, {},
                                   [&](char separator) { return CellsBy(text, separator); });
}

SourceTable ReadCsv(std::string_view text, char separator) {
  SourceTable table;
  RowReader reader(text, separator);
  const bool says_separator = text.starts_with(std::string(kSeparatorLine) + separator);
  while (!reader.AtEnd()) {
    SourceRow row = reader.Next();
    if (row.number == 1 && says_separator) continue;
    AddRow(table, std::move(row));
  }
  return table;
}

void AppendCsvRow(std::string& text, std::span<const std::string> cells) {
  bool first = true;
  for (const std::string& cell : cells) {
    if (!std::exchange(first, false)) text += ',';
    const std::string_view mark = IsProtected(cell) ? "'" : "";
    if (cell.find_first_of(",;\t\"\r\n") == std::string::npos) {
      text.append(mark).append(cell);
      continue;
    }
    text.append("\"").append(mark);
    for (const char unit : cell) text.append(unit == '"' ? 2 : 1, unit);
    text += '"';
  }
  text += "\r\n";
}

}  // namespace desk::book
