#include "book/sqlite_guard.h"

#include <utility>

#include "book/ledger_rules.h"
#include "book/schema.h"

namespace desk::book {

void SqliteGuard::Install(sqlite3* database) {
  sqlite3_set_authorizer(database, &SqliteGuard::Authorize, this);
}

int SqliteGuard::Authorize(void* self, int action, const char* first, const char*, const char*,
                           const char* trigger) noexcept {
  try {
    return static_cast<SqliteGuard*>(self)->Judge(action, first, trigger);
  } catch (...) {
    return SQLITE_DENY;
  }
}

int SqliteGuard::Judge(int action, const char* table, const char* trigger) {
  if (!on_) return SQLITE_OK;
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_FUNCTION:
      return SQLITE_OK;
    case SQLITE_READ:
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
      return JudgeTable(table, trigger);
    default:
      return Object("语句不能改变账簿的结构和设置");
  }
}

int SqliteGuard::JudgeTable(const char* table, const char* trigger) {
  const std::string name = table == nullptr ? "" : table;
  if (FindSchemaTable(name) != nullptr) return SQLITE_OK;
  const bool of_rules = name == kLostParentTableName || name == kCodeLengthViewName;
  if (trigger != nullptr && of_rules) return SQLITE_OK;
  return Object("不允许访问表：" + name);
}

int SqliteGuard::Object(std::string reason) {
  if (objection_.empty()) objection_ = std::move(reason);
  return SQLITE_DENY;
}

}  // namespace desk::book
