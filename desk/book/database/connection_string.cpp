#include "book/database/connection_string.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "book/database/database.h"
#include "book/database/libpq_string.h"
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

/// Keys that may follow a password without braces. Whatever else follows may be the rest of it.
bool IsPlainKey(std::string_view key) {
  constexpr std::array<std::string_view, 22> kKeys = {
      "driver",   "dsn",      "filedsn", "server",     "servername", "host",
      "port",     "database", "dbq",     "uid",        "user",       "username",
      "sslmode",  "ca",       "encrypt", "option",     "charset",    "mars_connection",
      "readonly", "timeout",  "app",     "description"};
  return std::ranges::any_of(kKeys,
                             [&](auto known) { return tavrix::host::EqualNoCase(known, key); });
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

std::string_view ManagerText(std::string_view place) {
  const std::string_view text = tavrix::host::Trimmed(place);
  return StartsNoCase(text, kPrefix) ? text.substr(kPrefix.size()) : text;
}

std::string Unbraced(std::string_view value) {
  const std::string_view text = tavrix::host::Trimmed(value);
  if (!text.starts_with('{') || !text.ends_with('}')) return std::string(text);
  return std::string(text.substr(1, text.size() - 2));
}

std::string ValueOf(const std::vector<Part>& parts, std::string_view key) {
  const auto found =
      std::ranges::find_if(parts, [&](const Part& part) { return IsKey(part, key); });
  return found == parts.end() ? std::string() : Unbraced(found->value);
}

/// PostgreSQL's words for what encryption is wanted ("SSL Mode Descriptions" of its documentation).
constexpr std::array<std::string_view, 6> kEncryptions = {"disable", "allow",     "prefer",
                                                          "require", "verify-ca", "verify-full"};

void CheckEncryption(std::string_view word) {
  if (std::ranges::find(kEncryptions, word) != kEncryptions.end()) return;
  std::string known;
  for (const std::string_view one : kEncryptions)
    known += (known.empty() ? "" : "、") + std::string(one);
  throw DatabaseError(ErrorKind::kRefused,
                      "连接字符串中 SSLmode 的值“" + std::string(word) + "”无效，可以是：" + known);
}

/// What the connection string says of encryption: under the driver's two names for it, or in the
/// option that goes to the server's own library.
std::vector<std::string> EncryptionWords(const std::vector<Part>& parts) {
  std::vector<std::string> words;
  for (const Part& part : parts) {
    if (IsKey(part, "sslmode") || IsKey(part, "ca")) words.push_back(Unbraced(part.value));
    if (!IsKey(part, "pqopt")) continue;
    for (const auto& [key, value] : ParseLibpq(Unbraced(part.value)).value_or(LibpqWords())) {
      if (key == "sslmode") words.push_back(value);
    }
  }
  return words;
}

/// With cursors of its own the driver crashes when the server goes away among the rows.
void CheckFetching(const std::vector<Part>& parts) {
  for (const Part& part : parts) {
    const bool named = IsKey(part, "usedeclarefetch") || IsKey(part, "b7");
    if (!named || Unbraced(part.value) == "0") continue;
    throw DatabaseError(ErrorKind::kRefused,
                        "连接字符串中不能有 UseDeclareFetch=1：服务器中断时，"
                        "ODBC 驱动程序会使程序崩溃");
  }
}

/// With the wish for encryption, where PostgreSQL's driver is named and nothing is said of it.
std::string WithEncryption(std::string text) {
  const std::vector<Part> parts = PartsOf(text);
  if (!Contains(ValueOf(parts, "driver"), "postgres")) return text;
  CheckFetching(parts);
  const std::vector<std::string> words = EncryptionWords(parts);
  std::ranges::for_each(words, CheckEncryption);
  if (!words.empty()) return text;
  const bool open = !text.empty() && !text.ends_with(';');
  return text + (open ? ";" : "") + "SSLmode=prefer;";
}

LibpqWords LibpqWordsOf(std::string_view place) {
  const auto words = ParseLibpq(place);
  if (words) return *words;
  throw DatabaseError(ErrorKind::kRefused, "连接字符串的写法不正确");
}

std::string ShownLibpq(std::string_view place) {
  const auto words = ParseLibpq(place);
  if (!words) return "postgresql://***";
  std::string shown;
  for (const auto& [key, value] : *words) {
    const bool secret = IsSecret({.text = {}, .key = key, .value = value});
    shown += (shown.empty() ? "" : " ") + key + "=" + (secret ? "***" : value);
  }
  return shown;
}

}  // namespace

bool IsConnectionString(std::string_view place) {
  if (StartsNoCase(tavrix::host::Trimmed(place), kPrefix) || StartsAsLibpq(place)) return true;
  const std::vector<Part> parts = PartsOf(place);
  if (parts.empty()) return false;
  const auto first = [&](std::string_view key) { return IsKey(parts.front(), key); };
  if (first("driver") || first("dsn") || first("filedsn")) return true;
  // Taken for a file it would stand in messages as it is.
  return std::ranges::any_of(
      parts, [](const Part& part) { return IsKey(part, "pwd") || IsKey(part, "password"); });
}

std::string DriverText(std::string_view place) {
  if (!IsLibpqString(place)) return WithEncryption(std::string(ManagerText(place)));
  return WithEncryption(OdbcFromLibpq(LibpqWordsOf(place)));
}

std::string ShownPlace(std::string_view place) {
  if (!IsConnectionString(place)) return std::string(place);
  if (IsLibpqString(place)) return ShownLibpq(place);
  std::string shown;
  bool open_secret = false;  // a password without braces may go on behind a semicolon
  for (const Part& part : PartsOf(place)) {
    if (!shown.empty()) shown += ';';
    const bool rest = open_secret && !tavrix::host::Trimmed(part.text).empty() &&
                      !(part.HasValue() && IsPlainKey(part.key));
    const std::string_view hidden = rest ? part.text : part.value;
    shown += part.text.substr(0, part.text.size() - hidden.size());
    shown += IsSecret(part) || rest ? "***" : part.value;
    const bool braces = tavrix::host::Trimmed(part.value).starts_with('{');
    open_secret = open_secret || (IsSecret(part) && !braces);
  }
  return place.ends_with(';') ? shown + ';' : shown;
}

bool HoldsSecret(std::string_view place) {
  if (!IsLibpqString(place)) return ShownPlace(place) != place;
  const auto words = ParseLibpq(place);
  return !words || std::ranges::any_of(*words, [](const auto& word) {
    return IsSecret({.text = {}, .key = word.first, .value = word.second});
  });
}

std::string ShortPlace(std::string_view place) {
  if (IsLibpqString(place)) {
    const auto words = ParseLibpq(place);
    return words ? ShortPlace(OdbcFromLibpq(*words)) : ShownPlace(place);
  }
  const std::vector<Part> parts = PartsOf(place);
  for (const char* key : {"database", "dsn", "dbq"}) {
    const std::string name = ValueOf(parts, key);
    if (name.empty()) continue;
    const std::string server = ServerName(place);
    return name + (server.empty() ? "" : "（" + server + "）");
  }
  return ShownPlace(place);
}

std::string ServerName(std::string_view place) {
  if (IsLibpqString(place)) {
    const auto words = ParseLibpq(place);
    return words ? ServerName(OdbcFromLibpq(*words)) : std::string();
  }
  const std::vector<Part> parts = PartsOf(place);
  const std::string name = ValueOf(parts, "server");
  return name.empty() ? ValueOf(parts, "servername") : name;
}

bool IsThisMachine(std::string_view server) {
  if (const std::size_t comma = server.find(','); comma != std::string_view::npos) {
    return IsThisMachine(server.substr(0, comma)) && IsThisMachine(server.substr(comma + 1));
  }
  const std::string name = tavrix::host::LowerCase(tavrix::host::Trimmed(server));
  constexpr std::array<std::string_view, 5> kNames = {"", "localhost", "::1", ".", "(local)"};
  return std::ranges::find(kNames, name) != kNames.end() || name.starts_with("127.") ||
         name.starts_with('/');  // a socket in a folder
}

}  // namespace desk::book
