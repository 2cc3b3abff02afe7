#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "book/exchange/source_table.h"
#include "host/non_copyable.h"

/// Workbooks (XLSX): what their cells hold, as texts.
namespace desk::book {

/// Whether the bytes begin as a workbook does.
[[nodiscard]] bool IsWorkbook(std::string_view bytes);
/// Whether they begin as an older workbook, or one with a password, does.
[[nodiscard]] bool IsOldWorkbook(std::string_view bytes);

/// A workbook in memory. All of it throws `SourceError` when the workbook cannot be read, or is too
/// large: one bound holds for all that is read until `Renew`.
class Workbook : private tavrix::host::NonCopyable {
 public:
  explicit Workbook(std::string bytes);
  ~Workbook();

  /// The names of the sheets, in their order.
  [[nodiscard]] const std::vector<std::string>& Sheets() const;
  /// The rows of a sheet, from 0. Numbers come without needless decimals (1001 also where "1001.0"
  /// stands), formulas as what they gave last.
  [[nodiscard]] SourceTable Read(std::size_t sheet);
  void Renew();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// A text as a cell holds it, and back: characters that XML cannot hold stand as `_x000D_`.
[[nodiscard]] std::string EscapedCell(std::string_view text);
[[nodiscard]] std::string UnescapedCell(std::string_view text);

}  // namespace desk::book
