#include "com/bstr.h"

#include <array>
#include <new>

#include "host/utf.h"

namespace tavrix::com {

Bstr::Bstr(std::wstring_view text)
    : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
  if (text_ == nullptr) throw std::bad_alloc();
}

Bstr::Bstr(std::string_view text) {
  // Rows are given out as one string for each cell: a short one takes no memory beside its own.
  std::array<wchar_t, 128> short_text;
  if (text.size() > short_text.size()) {
    *this = Bstr(std::wstring_view(host::Wide(text)));
    return;
  }
  const wchar_t* const end = host::PutWide(text, short_text.data());
  *this = Bstr(std::wstring_view(short_text.data(), end));
}

std::wstring_view ViewOf(BSTR text) {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

std::string TextOf(BSTR text) {
  return host::Narrow(ViewOf(text));
}

}  // namespace tavrix::com
