#include "host/utf.h"

#include <cstddef>

#include "host/code_points.h"

namespace tavrix::host {

namespace {

constexpr std::size_t kMaxBytes = 3;  // of one unit of UTF-16

template <class Unit>
Unit* PutUtf16(std::string_view text, Unit* to) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t point = NextCodePoint(text, at);
    if (point < 0x10000) {
      *to++ = static_cast<Unit>(point);
    } else {
      *to++ = static_cast<Unit>(0xD7C0 + (point >> 10));
      *to++ = static_cast<Unit>(0xDC00 | (point & 0x3FF));
    }
  }
  return to;
}

template <class Unit>
void AppendUtf16(std::basic_string<Unit>& target, std::string_view text) {
  const std::size_t start = target.size();
  target.resize(start + text.size());
  const Unit* const end = PutUtf16(text, target.data() + start);
  target.resize(static_cast<std::size_t>(end - target.data()));
}

template <class Unit>
void AppendNarrowed(std::string& target, std::basic_string_view<Unit> text) {
  const std::size_t start = target.size();
  target.resize(start + text.size() * kMaxBytes);
  char* end = target.data() + start;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto unit = static_cast<char32_t>(text[at]);
    if (unit < 0xD800 || unit > 0xDFFF) {
      end = PutUtf8(end, unit);
      continue;
    }
    const bool pair =
        unit < 0xDC00 && at + 1 < text.size() && text[at + 1] >= 0xDC00 && text[at + 1] < 0xE000;
    if (!pair) {
      end = PutUtf8(end, kReplacement);
      continue;
    }
    ++at;
    end = PutUtf8(end,
                  0x10000 + ((unit - 0xD800) << 10) + (static_cast<char32_t>(text[at]) - 0xDC00));
  }
  target.resize(static_cast<std::size_t>(end - target.data()));
}

template <class Unit>
std::basic_string<Unit> Widened(std::string_view text) {
  std::basic_string<Unit> wide;
  AppendUtf16(wide, text);
  return wide;
}

template <class Unit>
std::string Narrowed(std::basic_string_view<Unit> text) {
  std::string narrow;
  AppendNarrowed(narrow, text);
  return narrow;
}

}  // namespace

std::u16string ToUtf16(std::string_view text) {
  return Widened<char16_t>(text);
}

std::string ToUtf8(std::u16string_view text) {
  return Narrowed(text);
}

std::wstring Wide(std::string_view text) {
  return Widened<wchar_t>(text);
}

std::string Narrow(std::wstring_view text) {
  return Narrowed(text);
}

wchar_t* PutWide(std::string_view text, wchar_t* to) {
  return PutUtf16(text, to);
}

void AppendWide(std::wstring& target, std::string_view text) {
  AppendUtf16(target, text);
}

void AppendNarrow(std::string& target, std::wstring_view text) {
  AppendNarrowed(target, text);
}

}  // namespace tavrix::host
