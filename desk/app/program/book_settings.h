#pragma once

#include <string>

#include "book/book.h"

/// What the desk keeps among the settings of a book.
namespace desk::app {

inline constexpr char kDeskSection[] = "desk";
inline constexpr char kCompanyKey[] = "company";
inline constexpr char kCurrencyKey[] = "currency";

/// Whose book it is; may be empty. `DatabaseError`, as below.
[[nodiscard]] inline std::string CompanyOf(const book::Book& book) {
  return book.Setting(kDeskSection, kCompanyKey);
}
/// In which currency the book is kept; empty for the usual one.
[[nodiscard]] inline std::string CurrencyOf(const book::Book& book) {
  std::string currency = book.Setting(kDeskSection, kCurrencyKey);
  if (currency == book::kUsualCurrency) currency.clear();
  return currency;
}

}  // namespace desk::app
