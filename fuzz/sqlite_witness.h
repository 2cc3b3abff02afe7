#pragma once

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "book/session/schema.h"
#include "book/sql/sql_words.h"
#include "book/sqlite/sqlite_functions.h"
#include "host/non_copyable.h"
#include "input.h"
#include "too_far.h"

namespace tavrix::fuzz {

/// A database with more in it than callers may see. SQLite tells its authorizer of all that a
/// statement touches: anything outside the tables of the schema is too far.
class SqliteWitness : private host::NonCopyable {
 public:
  SqliteWitness() {
    Require(sqlite3_open(":memory:", &database_) == SQLITE_OK);
    desk::book::AddSqliteFunctions(database_);
    for (const std::string& sql : desk::book::SchemaScript(desk::book::SqlDialect::kSqlite))
      Run(sql);
    Run("attach ':memory:' as hr");
    Run("create table hr.pay(i_id,ccode,salary)");
    Run("create table pay(i_id,ccode,salary)");
    Run("create table a(i_id,ccode,salary)");
    Run("create table pg_authid(rolname)");
    sqlite3_set_authorizer(database_, &SqliteWitness::Touched, this);
  }
  ~SqliteWitness() { sqlite3_close(database_); }

  /// Whether SQLite takes the statement; throws `TooFar` for what it touches in any case.
  [[nodiscard]] bool Look(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    too_far_.clear();
    const bool taken =
        sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, &tail) == SQLITE_OK;
    sqlite3_finalize(statement);
    if (!too_far_.empty()) throw TooFar(too_far_);
    if (taken && std::string_view(tail).find_first_not_of(" ;") != std::string_view::npos) {
      throw TooFar("a second statement");
    }
    return taken;
  }

 private:
  void Run(const std::string& sql) {
    Require(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK);
  }

  static int Touched(void* self, int action, const char* first, const char* second,
                     const char* database, const char* trigger) noexcept {
    const auto text = [](const char* given) { return given == nullptr ? "" : given; };
    // What the triggers of the schema touch is not the statement's affair.
    const std::string_view rule = text(trigger);
    if (rule.starts_with("gl_code_") || rule.starts_with("desk_journal_")) return SQLITE_OK;
    const bool fine = IsFine(action, text(first), text(second)) && trigger == nullptr &&
                      (database == nullptr || std::string_view(database) == "main");
    if (fine) return SQLITE_OK;
    static_cast<SqliteWitness*>(self)->too_far_ =
        std::to_string(action) + " " + text(first) + " " + text(second) + " " + text(database);
    return SQLITE_DENY;
  }

  static bool IsFine(int action, std::string_view first, std::string_view second) {
    switch (action) {
      case SQLITE_SELECT:
        return true;
      case SQLITE_FUNCTION:
        // SQLite does not say that this one is a trigger's; callers' statements have no "over".
        return IsFunction(second) || second == "row_number";
      case SQLITE_READ:
      case SQLITE_UPDATE:
        return IsColumn(first, second);
      case SQLITE_INSERT:
      case SQLITE_DELETE:
        return desk::book::FindSchemaTable(first) != nullptr;
      default:
        return false;
    }
  }

  static bool IsFunction(std::string_view name) {
    static constexpr std::array<std::string_view, 14> kKnown = {
        "count", "max",  "min",      "sum", "avg",   "len",   "left",
        "iif",   "like", "coalesce", "abs", "round", "upper", "lower"};
    return std::ranges::find(kKnown, name) != kKnown.end();
  }

  /// A table comes without a column when its rows are only counted.
  static bool IsColumn(std::string_view table, std::string_view column) {
    const auto* known = desk::book::FindSchemaTable(table);
    return known != nullptr && (column.empty() || std::ranges::any_of(known->columns, [&](auto& c) {
                                  return desk::book::IsSameName(c.name, column);
                                }));
  }

  std::string too_far_;
  sqlite3* database_ = nullptr;
};

}  // namespace tavrix::fuzz
