#include "viewkit/win32/wide.h"

#include "host/text.h"

namespace tavrix::viewkit::win32 {

std::wstring Wide(std::string_view text) {
  const std::u16string units = host::ToUtf16(text);
  return {units.begin(), units.end()};
}

std::string Narrow(std::wstring_view text) {
  return host::ToUtf8(std::u16string(text.begin(), text.end()));
}

}  // namespace tavrix::viewkit::win32
