#include "book/connection_string.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "host/text.h"

namespace desk::book {

namespace {

constexpr std::string_view kPrefix = "ODBC;";

bool StartsNoCase(std::string_view text, std::string_view start) {
  return tavrix::host::EqualNoCase(text.substr(0, start.size()), start);
}

/// The end of the value that starts at `at`; a value in braces may hold semicolons.
std::size_t EndOfValue(std::string_view text, std::size_t at) {
  if (at < text.size() && text[at] == '{') {
    const std::size_t brace = text.find('}', at);
    if (brace == std::string_view::npos) return text.size();
    at = brace;
  }
  return std::min(text.find(';', at), text.size());
}

bool IsSecret(std::string_view key) {
  using tavrix::host::EqualNoCase;
  return EqualNoCase(tavrix::host::Trimmed(key), "pwd") ||
         EqualNoCase(tavrix::host::Trimmed(key), "password");
}

}  // namespace

bool IsConnectionString(std::string_view place) {
  constexpr std::array<std::string_view, 4> kStarts = {"driver=", "dsn=", "filedsn=", kPrefix};
  return std::ranges::any_of(kStarts,
                             [&](std::string_view start) { return StartsNoCase(place, start); });
}

std::string_view DriverManagerText(std::string_view place) {
  return StartsNoCase(place, kPrefix) ? place.substr(kPrefix.size()) : place;
}

std::string ShownPlace(std::string_view place) {
  if (!IsConnectionString(place)) return std::string(place);
  std::string shown;
  for (std::size_t at = 0; at < place.size();) {
    const std::size_t sign = place.find_first_of("=;", at);
    const bool has_value = sign != std::string_view::npos && place[sign] == '=';
    const std::size_t end = has_value ? EndOfValue(place, sign + 1) : std::min(sign, place.size());
    const bool secret = has_value && IsSecret(place.substr(at, sign - at));
    shown.append(secret ? place.substr(at, sign + 1 - at) : place.substr(at, end - at));
    if (secret) shown += "***";
    if (end < place.size()) shown += ';';
    at = end + 1;
  }
  return shown;
}

}  // namespace desk::book
