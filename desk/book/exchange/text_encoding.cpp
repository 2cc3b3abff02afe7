#include "book/exchange/text_encoding.h"

#include <algorithm>

#include "book/exchange/gb18030.h"
#include "host/code_points.h"
#include "host/utf.h"

namespace desk::book {

namespace {

namespace host = tavrix::host;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";

/// Whether half of the bytes at these places are zero, as in a text with ASCII among it.
bool IsHalfZero(std::string_view bytes, std::size_t from) {
  constexpr std::size_t kLooked = 4096;
  std::size_t zeros = 0;
  std::size_t all = 0;
  for (std::size_t i = from; i < std::min(bytes.size(), kLooked); i += 2, ++all) {
    if (bytes[i] == 0) ++zeros;
  }
  return all > 0 && zeros * 5 > all;  // codes, separators and ends of lines are a fifth at least
}

bool IsUtf8(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t start = at;
    const char32_t point = host::NextCodePoint(bytes, at);
    if (point == host::kReplacement && bytes.substr(start, 3) != "\xEF\xBF\xBD") return false;
  }
  return true;
}

std::string FromUtf8(std::string_view bytes) {
  if (IsUtf8(bytes)) return std::string(bytes);
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) {
    host::AppendUtf8(text, host::NextCodePoint(bytes, at));
  }
  return text;
}

std::string FromUtf16(std::string_view bytes, std::size_t low) {
  std::u16string units;
  units.reserve(bytes.size() / 2);
  const auto byte = [&](std::size_t i) {
    return static_cast<char16_t>(static_cast<unsigned char>(bytes[i]));
  };
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    units.push_back(static_cast<char16_t>(byte(i + low) | (byte(i + 1 - low) << 8)));
  }
  return host::ToUtf8(units);
}

std::string_view Without(std::string_view mark, std::string_view bytes) {
  if (bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
  return bytes;
}

}  // namespace

Encoding FindEncoding(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return Encoding::kUtf8;
  if (bytes.starts_with(kLittleMark)) return Encoding::kUtf16Little;
  if (bytes.starts_with(kBigMark)) return Encoding::kUtf16Big;
  if (IsHalfZero(bytes, 1)) return Encoding::kUtf16Little;
  if (IsHalfZero(bytes, 0)) return Encoding::kUtf16Big;
  return IsUtf8(bytes) ? Encoding::kUtf8 : Encoding::kGb18030;
}

std::string Decoded(std::string_view bytes, Encoding encoding) {
  switch (encoding) {
    case Encoding::kUtf8:
      return FromUtf8(Without(kUtf8Mark, bytes));
    case Encoding::kUtf16Little:
      return FromUtf16(Without(kLittleMark, bytes), 0);
    case Encoding::kUtf16Big:
      return FromUtf16(Without(kBigMark, bytes), 1);
    case Encoding::kGb18030:
      break;
  }
  return FromGb18030(bytes);
}

}  // namespace desk::book
