#include "component/base/bstr.h"

#include <new>

#include "viewkit/win32/wide.h"

namespace tavrix::component {

Bstr::Bstr(std::wstring_view text)
    : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
  if (text_ == nullptr) throw std::bad_alloc();
}

Bstr::Bstr(std::string_view text) : Bstr(std::wstring_view(viewkit::win32::Wide(text))) {}

std::wstring_view ViewOf(BSTR text) {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

std::string TextOf(BSTR text) {
  return viewkit::win32::Narrow(ViewOf(text));
}

}  // namespace tavrix::component
