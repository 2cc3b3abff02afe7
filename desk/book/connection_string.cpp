#include "book/connection_string.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

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
  return tavrix::host::EqualNoCase(key, "pwd") || tavrix::host::EqualNoCase(key, "password");
}

struct Part {
  std::string_view text;   ///< all of it, up to the semicolon
  std::string_view key;    ///< without blanks around it
  std::string_view value;  ///< empty where there is no "="
};

std::vector<Part> PartsOf(std::string_view place) {
  std::vector<Part> parts;
  for (std::size_t at = 0; at < place.size();) {
    const std::size_t sign = std::min(place.find_first_of("=;", at), place.size());
    const bool has_value = sign < place.size() && place[sign] == '=';
    const std::size_t end = has_value ? EndOfValue(place, sign + 1) : sign;
    parts.push_back({.text = place.substr(at, end - at),
                     .key = tavrix::host::Trimmed(place.substr(at, sign - at)),
                     .value = has_value ? place.substr(sign + 1, end - sign - 1) : ""});
    at = end + 1;
  }
  return parts;
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
  for (const Part& part : PartsOf(place)) {
    if (!shown.empty()) shown += ';';
    shown += part.text.substr(0, part.text.size() - part.value.size());
    shown += IsSecret(part.key) ? "***" : part.value;
  }
  return place.ends_with(';') ? shown + ';' : shown;
}

std::string ShortPlace(std::string_view place) {
  const std::vector<Part> parts = PartsOf(place);
  const auto value = [&](std::string_view key) -> std::string_view {
    const auto found = std::ranges::find_if(
        parts, [&](const Part& part) { return tavrix::host::EqualNoCase(part.key, key); });
    if (found == parts.end()) return {};
    const std::string_view text = found->value;
    return text.starts_with('{') && text.ends_with('}') ? text.substr(1, text.size() - 2) : text;
  };
  for (const char* key : {"database", "dsn", "dbq"}) {
    const std::string_view name = value(key);
    if (name.empty()) continue;
    const std::string server(value("server"));
    return std::string(name) + (server.empty() ? "" : "（" + server + "）");
  }
  return ShownPlace(place);
}

}  // namespace desk::book
