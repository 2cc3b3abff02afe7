#include "app/program/book_place.h"

#include <filesystem>

#include "book/database/connection_string.h"
#include "book/odbc/wire_text.h"
#include "host/utf.h"

namespace desk::app {

namespace fs = std::filesystem;
using tavrix::host::Narrow;
using tavrix::host::Wide;

bool IsOnServer(const std::wstring& place) {
  return book::IsConnectionString(Narrow(place));
}

bool MayBeKept(const std::wstring& place) {
  return !IsOnServer(place) || !book::HoldsSecret(Narrow(place));
}

bool MayBeThere(const std::wstring& place) {
  return IsOnServer(place) || fs::exists(place);
}

std::wstring NameOf(const std::wstring& place) {
  if (IsOnServer(place)) return Wide(book::ShortPlace(Narrow(place)));
  return fs::path(place).filename().wstring();
}

std::wstring MarkedName(const book::Book& book, const std::wstring& place) {
  const std::wstring wire = Wide(book::WireMark(book.GetSession().Own().Encryption()));
  std::wstring name = NameOf(place);
  if (wire.empty()) return book.ReadOnly() ? name + L"（只读）" : name;
  return name + (book.ReadOnly() ? L" 只读，" : L" ") + wire;
}

}  // namespace desk::app
