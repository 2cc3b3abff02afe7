#pragma once

#include <span>
#include <string>
#include <string_view>

#include "book/exchange/source_table.h"

/// Texts with one row a line and separators between the cells. A cell that holds separators, quotes
/// or ends of lines stands between quotes, with its own quotes doubled. One that a spreadsheet
/// would take for a formula is written behind a single quote, which goes again when it is read.
namespace desk::book {

/// The separators that programs write, as they are offered.
inline constexpr char kSeparators[] = {',', ';', '\t'};

/// The one that parts the first rows into the most cells, the same number in most of them. What a
/// first line `sep=;` says goes before.
[[nodiscard]] char FindSeparator(std::string_view text);

/// Never fails but for too many rows or columns: what is wrong with quotes is taken as it stands.
[[nodiscard]] SourceTable ReadCsv(std::string_view text, char separator);

/// Appends a row with commas, and the end of a line as programs on Windows expect it.
void AppendCsvRow(std::string& text, std::span<const std::string> cells);

}  // namespace desk::book
