#include "book/engines.h"

#include "book/database/connection_string.h"
#include "book/odbc/odbc_engine.h"
#include "book/sqlite/sqlite_engine.h"

namespace desk::book {

const Engine& EngineFor(std::string_view path) {
  static const SqliteEngine files;
  static const OdbcEngine servers;
  if (IsConnectionString(path)) return servers;
  return files;
}

}  // namespace desk::book
