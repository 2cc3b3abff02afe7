#include "app/com/wide_text.h"

#include <cstddef>
#include <new>

#include "app/com/values.h"
#include "viewkit/win32/wide.h"

namespace desk::app {
namespace {

struct Shape {
  std::size_t units = 0;     ///< length in UTF-16
  bool two_or_three = true;  ///< no character of four bytes, which would be a pair of units
};

unsigned char Byte(char unit) {
  return static_cast<unsigned char>(unit);
}

bool Continues(char unit) {
  return (Byte(unit) & 0xC0) == 0x80;
}

Shape ShapeOf(std::string_view text) {
  Shape shape;
  for (const char unit : text) {
    shape.units += Continues(unit) ? 0 : 1;
    shape.two_or_three = shape.two_or_three && Byte(unit) < 0xF0;
  }
  return shape;
}

wchar_t Tail(char unit) {
  return static_cast<wchar_t>(Byte(unit) & 0x3F);
}

constexpr std::size_t kMalformed = 0;

/// Takes the character at the start of `text`, of up to three bytes; gives how many they are.
std::size_t Take(std::string_view text, wchar_t& unit) {
  const unsigned char lead = Byte(text[0]);
  if (lead < 0x80) {
    unit = lead;
    return 1;
  }
  if (lead >= 0xE0 && text.size() > 2 && Continues(text[1]) && Continues(text[2])) {
    unit = static_cast<wchar_t>((lead & 0x0F) << 12 | Tail(text[1]) << 6 | Tail(text[2]));
    const bool surrogate = unit >= 0xD800 && unit < 0xE000;
    return unit >= 0x800 && !surrogate ? 3 : kMalformed;
  }
  if (lead >= 0xC2 && lead < 0xE0 && text.size() > 1 && Continues(text[1])) {
    unit = static_cast<wchar_t>((lead & 0x1F) << 6 | Tail(text[1]));
    return 2;
  }
  return kMalformed;
}

/// False when `text` is malformed; `target` then holds nothing of use.
bool Decode(std::string_view text, wchar_t* target) {
  while (!text.empty()) {
    const std::size_t bytes = Take(text, *target);
    if (bytes == kMalformed) return false;
    text.remove_prefix(bytes);
    ++target;
  }
  return true;
}

}  // namespace

void AppendWide(std::wstring& target, std::string_view text) {
  const std::size_t start = target.size();
  const Shape shape = ShapeOf(text);
  target.resize(start + shape.units);
  if (shape.two_or_three && Decode(text, target.data() + start)) return;
  target.resize(start);
  target += tavrix::viewkit::win32::Wide(text);
}

BSTR NewBstrDirectly(std::string_view text) {
  if (text.empty()) return nullptr;
  const Shape shape = ShapeOf(text);
  if (!shape.two_or_three || shape.units == 0) return NewBstr(text);
  BSTR made = SysAllocStringLen(nullptr, static_cast<UINT>(shape.units));
  if (made == nullptr) throw std::bad_alloc();
  if (Decode(text, made)) return made;
  SysFreeString(made);
  return NewBstr(text);
}

}  // namespace desk::app
