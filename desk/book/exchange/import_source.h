#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "book/exchange/import_plan.h"
#include "book/exchange/text_encoding.h"
#include "book/exchange/xlsx_reader.h"

namespace desk::book {

/// A file that accounts are to come from: how it is read is found by looking at it, and can be
/// chosen otherwise.
class ImportSource {
 public:
  /// `SourceError` when the file cannot be read; so for all that reads it otherwise.
  explicit ImportSource(std::string bytes);

  /// A workbook has sheets; all else is text, with an encoding and a separator.
  [[nodiscard]] bool IsSheets() const { return workbook_ != nullptr; }
  /// Where there are any.
  [[nodiscard]] const std::vector<std::string>& Sheets() const { return workbook_->Sheets(); }
  [[nodiscard]] std::size_t Sheet() const { return sheet_; }
  [[nodiscard]] Encoding TextEncoding() const { return encoding_; }
  [[nodiscard]] char Separator() const { return separator_; }
  void ReadSheet(std::size_t sheet);
  void ReadText(Encoding encoding, char separator);

  [[nodiscard]] const SourceTable& Table() const { return table_; }
  /// Where a header was found; the first row when none was.
  [[nodiscard]] std::size_t HeaderPlace() const { return header_.value_or(0); }
  /// What the columns mean as far as that can be seen, with the header if there is one.
  [[nodiscard]] ImportOptions Proposed() const;
  /// The same, should the row at `HeaderPlace` be a header, or not.
  [[nodiscard]] ImportOptions ProposedWith(bool header) const;

 private:
  void Take(SourceTable table);

  std::string bytes_;
  std::unique_ptr<Workbook> workbook_;  ///< null for a text
  std::size_t sheet_ = 0;
  Encoding encoding_ = Encoding::kUtf8;
  char separator_ = ',';
  SourceTable table_;
  std::optional<std::size_t> header_;
};

}  // namespace desk::book
