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

/// The end of the value that starts at `at`. A value in braces may hold semicolons, and closing
/// braces when they are doubled.
std::size_t EndOfValue(std::string_view text, std::size_t at) {
  at = std::min(text.find_first_not_of(' ', at), text.size());
  if (at < text.size() && text[at] == '{') {
    at = text.find('}', at);
    while (text.substr(std::min(at, text.size())).starts_with("}}")) at = text.find('}', at + 2);
  }
  return std::min(text.find(';', at), text.size());
}

struct Part {
  std::string_view text;   ///< all of it, up to the semicolon
  std::string_view key;    ///< without blanks around it
  std::string_view value;  ///< empty where there is no "="

  [[nodiscard]] bool HasValue() const { return text.find('=') != std::string_view::npos; }
};

bool Contains(std::string_view text, std::string_view lower_word) {
  return tavrix::host::LowerCase(text).find(lower_word) != std::string::npos;
}

/// Also what some drivers take beside the password, and options that hold others in one value.
bool IsSecret(const Part& part) {
  constexpr std::array<std::string_view, 4> kWords = {"pwd", "passw", "secret", "token"};
  return Contains(part.value, "passw") ||
         std::ranges::any_of(kWords, [&](auto word) { return Contains(part.key, word); });
}

bool IsKey(const Part& part, std::string_view key) {
  return part.HasValue() && tavrix::host::EqualNoCase(part.key, key);
}

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
  if (StartsNoCase(tavrix::host::Trimmed(place), kPrefix)) return true;
  const std::vector<Part> parts = PartsOf(place);
  const auto first = [&](std::string_view key) { return IsKey(parts.front(), key); };
  if (parts.empty()) return false;
  if (first("driver") || first("dsn") || first("filedsn")) return true;
  // Taken for a file it would stand in messages as it is.
  return std::ranges::any_of(
      parts, [](const Part& part) { return IsKey(part, "pwd") || IsKey(part, "password"); });
}

std::string_view DriverManagerText(std::string_view place) {
  const std::string_view text = tavrix::host::Trimmed(place);
  return StartsNoCase(text, kPrefix) ? text.substr(kPrefix.size()) : text;
}

std::string ShownPlace(std::string_view place) {
  if (!IsConnectionString(place)) return std::string(place);
  std::string shown;
  bool secret_before = false;
  for (const Part& part : PartsOf(place)) {
    if (!shown.empty()) shown += ';';
    const bool rest = secret_before && !part.HasValue() && !part.key.empty();
    const std::string_view hidden = rest ? part.text : part.value;
    shown += part.text.substr(0, part.text.size() - hidden.size());
    // A semicolon in a password without braces has cut it in two.
    shown += IsSecret(part) || rest ? "***" : part.value;
    secret_before = secret_before || IsSecret(part);
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
