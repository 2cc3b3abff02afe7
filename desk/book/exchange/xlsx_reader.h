#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "book/exchange/source_table.h"

/// Workbooks (XLSX): what their cells hold, as texts.
namespace desk::book {

/// Whether the bytes begin as a workbook does.
[[nodiscard]] bool IsWorkbook(std::string_view bytes);
/// Whether they begin as an older workbook, or one with a password, does.
[[nodiscard]] bool IsOldWorkbook(std::string_view bytes);

/// The names of the sheets, in their order. `SourceError` when the workbook cannot be read.
[[nodiscard]] std::vector<std::string> SheetNames(std::string_view bytes);

/// The rows of a sheet, from 0. Numbers come without needless decimals (1001 also where "1001.0"
/// stands), formulas as what they gave last. `SourceError` as above, and when it is too large.
[[nodiscard]] SourceTable ReadSheet(std::string_view bytes, std::size_t sheet);

/// A text as a cell holds it, and back: characters that XML cannot hold stand as `_x000D_`.
[[nodiscard]] std::string EscapedCell(std::string_view text);
[[nodiscard]] std::string UnescapedCell(std::string_view text);

}  // namespace desk::book
