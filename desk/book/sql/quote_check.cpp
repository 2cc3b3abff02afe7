#include "book/sql/quote_check.h"

#include <algorithm>
#include <array>
#include <string>

#include "host/text.h"

namespace desk::book {

namespace {

namespace host = tavrix::host;

/// A unit of a word: letters, digits and all that is not ASCII.
bool IsInWord(char unit) {
  const auto byte = static_cast<unsigned char>(unit);
  return byte >= 0x80 || unit == '_' || host::IsDigit(unit) || (byte | 0x20u) - 'a' < 26u;
}

bool MayFollow(std::string_view word) {
  constexpr std::array kWords = {
      "and",    "as",   "asc",   "between", "collate", "desc",      "else", "end",  "escape",
      "except", "from", "group", "having",  "in",      "intersect", "is",   "like", "limit",
      "not",    "or",   "order", "then",    "union",   "when",      "where"};
  const std::string lower = host::LowerCase(word);
  return std::ranges::find(kWords, lower) != kWords.end();
}

}  // namespace

bool HasQuoteInText(std::string_view sql) {
  for (std::size_t at = sql.find('\''); at != sql.npos; at = sql.find('\'', at)) {
    std::size_t end = sql.find('\'', at + 1);
    while (end != sql.npos && sql.substr(end + 1).starts_with('\'')) end = sql.find('\'', end + 2);
    if (end == sql.npos) return true;
    std::string_view rest = sql.substr(end + 1);
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    // Behind a comment everything else of the statement would be gone.
    if (rest.starts_with('\'') || rest.starts_with("--") || rest.starts_with("/*")) return true;
    const std::string_view word(rest.begin(), std::ranges::find_if_not(rest, IsInWord));
    if (!word.empty() && !MayFollow(word)) return true;
    at = end + 1;
  }
  return false;
}

}  // namespace desk::book
