#include "book/odbc/odbc_text.h"

#include <algorithm>

#include "host/utf.h"

namespace desk::book {

WideText::WideText(std::string_view text) : units_(tavrix::host::ToUtf16(text)) {}

std::string FromWide(const SQLWCHAR* text, std::size_t length) {
  std::string narrow;
  AppendWide(narrow, text, length);
  return narrow;
}

void AppendWide(std::string& to, const SQLWCHAR* text, std::size_t length) {
  const auto plain = std::find_if(text, text + length, [](SQLWCHAR unit) { return unit >= 0x80; });
  const std::size_t start = to.size();
  to.resize(start + static_cast<std::size_t>(plain - text));
  std::transform(text, plain, to.begin() + static_cast<std::ptrdiff_t>(start),
                 [](SQLWCHAR unit) { return static_cast<char>(unit); });
  if (plain == text + length) return;
  const std::u16string rest(plain, text + length);
  to += tavrix::host::ToUtf8(rest);
}

}  // namespace desk::book
