#include "book/sqlite/sqlite_functions.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "book/sqlite/sqlite_error.h"
#include "book/sqlite/sqlite_rows.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::book {

namespace {

bool IsNull(sqlite3_value* value) {
  return sqlite3_value_type(value) == SQLITE_NULL;
}

void Len(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (IsNull(arguments[0])) return;
  const std::size_t length = host::TextLength(TextOf(arguments[0]));
  sqlite3_result_int64(context, static_cast<std::int64_t>(length));
}

std::string Leading(std::string_view text, std::int64_t count) {
  const auto most = static_cast<std::size_t>(std::max<std::int64_t>(count, 0));
  const bool plain = std::ranges::all_of(text, [](char c) { return c >= 0; });
  if (plain) return std::string(text.substr(0, most));
  return host::ToUtf8(host::ToUtf16(text).substr(0, most));
}

/// No exception may pass through the engine.
void Left(sqlite3_context* context, int, sqlite3_value** arguments) noexcept {
  if (IsNull(arguments[0]) || IsNull(arguments[1])) return;
  try {
    const std::string text = Leading(TextOf(arguments[0]), sqlite3_value_int64(arguments[1]));
    sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

using Function = void (*)(sqlite3_context*, int, sqlite3_value**);

void Add(sqlite3* database, const char* name, int arguments, Function function) {
  constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  const int result = sqlite3_create_function(database, name, arguments, kFlags, nullptr, function,
                                             nullptr, nullptr);
  if (result != SQLITE_OK) throw SqliteError(database);
}

}  // namespace

void AddSqliteFunctions(sqlite3* database) {
  Add(database, "len", 1, &Len);
  Add(database, "left", 2, &Left);
}

}  // namespace desk::book
