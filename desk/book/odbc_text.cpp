#include "book/odbc_text.h"

#include "host/text.h"

namespace desk::book {

WideText::WideText(std::string_view text) : units_(tavrix::host::ToUtf16(text)) {}

std::string FromWide(const SQLWCHAR* text, std::size_t length) {
  std::string narrow;
  AppendWide(narrow, text, length);
  return narrow;
}

void AppendWide(std::string& to, const SQLWCHAR* text, std::size_t length) {
  std::size_t plain = 0;
  while (plain < length && text[plain] < 0x80) to += static_cast<char>(text[plain++]);
  if (plain == length) return;
  const std::u16string rest(text + plain, text + length);
  to += tavrix::host::ToUtf8(rest);
}

}  // namespace desk::book
