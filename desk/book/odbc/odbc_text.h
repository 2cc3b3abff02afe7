#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "book/odbc/odbc_api.h"

namespace desk::book {

/// A text on its way to the driver manager, ended by a NUL.
class WideText {
 public:
  explicit WideText(std::string_view text);
  /// The functions of ODBC take what they only read as pointers to change; they leave it alone.
  [[nodiscard]] SQLWCHAR* Data() { return reinterpret_cast<SQLWCHAR*>(units_.data()); }
  [[nodiscard]] std::size_t Length() const { return units_.size(); }

 private:
  std::u16string units_;
};

[[nodiscard]] std::string FromWide(const SQLWCHAR* text, std::size_t length);

/// Appends as `FromWide`, without a text in between where all is plain.
void AppendWide(std::string& to, const SQLWCHAR* text, std::size_t length);

}  // namespace desk::book
