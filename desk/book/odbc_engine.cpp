#include "book/odbc_engine.h"

#include <string>

#include "book/connection_string.h"
#include "book/odbc_connection.h"
#include "book/schema.h"

namespace desk::book {

std::unique_ptr<Connection> OdbcEngine::Open(const Place& place) const {
  try {
    auto connection = std::make_unique<OdbcConnection>(place);
    if (place.access != Access::kCreate) return connection;
    const bool made = connection->HasTable(SchemaTables().front().name);
    if (made && !HasEmptySchema(*connection)) {
      throw DatabaseError(Trouble::kOther, "数据库中已经有账簿");
    }
    return connection;
  } catch (const DatabaseError& error) {
    throw DatabaseError(error.Reason(), error.what() + std::string("：") + ShownPlace(place.path));
  }
}

}  // namespace desk::book
