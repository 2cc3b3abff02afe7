#include "book/session/engine_text.h"

namespace desk::book {

namespace {

struct Question {
  const char* name;
  const char* sql;  ///< null: none that is known
};

Question QuestionFor(SqlDialect dialect) {
  switch (dialect) {
    case SqlDialect::kSqlite:
      return {"SQLite", "select sqlite_version()"};
    case SqlDialect::kPostgres:
      return {"PostgreSQL", "select current_setting('server_version')"};
    case SqlDialect::kSqlServer:
      return {"SQL Server", "select cast(serverproperty('ProductVersion')as varchar(40))"};
    case SqlDialect::kMariaDb:
      return {"MariaDB", "select version()"};
    case SqlDialect::kAccess:
      return {"Access", nullptr};
    case SqlDialect::kOther:
      break;
  }
  return {"", nullptr};
}

}  // namespace

std::string EngineText(Connection& connection) {
  const Question question = QuestionFor(connection.Dialect());
  std::string name = *question.name == '\0' ? connection.Driver() : question.name;
  if (question.sql == nullptr) return name;
  try {
    const auto row = connection.Query(question.sql, Origin::kDesk);
    return row->Next() ? name + " " + row->Get(0).ToText() : name;
  } catch (const DatabaseError&) {  // it is for people to read: the name will do
    return name;
  }
}

}  // namespace desk::book
