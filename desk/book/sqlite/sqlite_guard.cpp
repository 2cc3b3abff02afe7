#include "book/sqlite/sqlite_guard.h"

#include <utility>

#include "book/database/tables.h"

namespace desk::book {

void SqliteGuard::Install(sqlite3* database) {
  sqlite3_set_authorizer(database, &SqliteGuard::Authorize, this);
}

int SqliteGuard::Authorize(void* self, int action, const char* first, const char* second,
                           const char*, const char* trigger) noexcept {
  try {
    return static_cast<SqliteGuard*>(self)->Judge(action, first, second, trigger);
  } catch (...) {
    return SQLITE_DENY;
  }
}

int SqliteGuard::Judge(int action, const char* table, const char* column, const char* trigger) {
  if (!on_) return SQLITE_OK;
  // What a view or a trigger of the book does is not the caller's; and callers cannot name one of
  // their own, since no statement of theirs begins with WITH.
  const bool of_book = trigger != nullptr;
  switch (action) {
    case SQLITE_RECURSIVE:
      if (of_book) return SQLITE_OK;
      break;
    case SQLITE_SELECT:
    case SQLITE_FUNCTION:
      return SQLITE_OK;
    case SQLITE_READ:
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
      return JudgeTable(table, column, of_book);
    default:
      break;
  }
  return Object("语句不能改变账簿的结构和设置");
}

int SqliteGuard::JudgeTable(const char* table, const char* column, bool of_book) {
  const std::string name = table == nullptr ? "" : table;
  if (FindSchemaTable(name) != nullptr) return SQLITE_OK;
  if (of_book) {
    tables_of_book_.insert(name);
    return SQLITE_OK;
  }
  // When a view has become part of the statement, a table of which no column is needed is named
  // once more, without the view.
  const bool no_column = column != nullptr && *column == '\0';
  if (no_column && tables_of_book_.contains(name)) return SQLITE_OK;
  return Object("不允许访问表：" + name);
}

int SqliteGuard::Object(std::string reason) {
  if (objection_.empty()) objection_ = std::move(reason);
  return SQLITE_DENY;
}

}  // namespace desk::book
