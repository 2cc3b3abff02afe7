#pragma once

#include <span>
#include <string>

#include "book/exchange/field_info.h"

/// A chart as a text for other programs. Accounts are in the order of their codes.
namespace desk::book {

/// All fields, in UTF-8 with a byte order mark, as spreadsheets expect it. What is read from it is
/// what was written.
[[nodiscard]] std::string ChartAsCsv(std::span<const KeptAccount> chart);

/// All fields as a workbook: texts throughout, so that codes keep their zeros, the header frozen,
/// accounts below others as groups of rows. What is read from it is what was written.
[[nodiscard]] std::string ChartAsXlsx(std::span<const KeptAccount> chart);

/// What an exported page says besides the accounts.
struct PageTitle {
  std::string title;     ///< "会计科目表"
  std::string subtitle;  ///< company and day
};

/// A page to read and to print: codes, names indented by their level, and the columns in which any
/// account has something.
[[nodiscard]] std::string ChartAsHtml(std::span<const KeptAccount> chart, const PageTitle& page);

}  // namespace desk::book
