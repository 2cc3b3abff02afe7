#include "book/odbc/odbc_engine.h"

#include <string>

#include "book/database/connection_string.h"
#include "book/odbc/odbc_connection.h"
#include "book/session/schema.h"
#include "book/session/session.h"

namespace desk::book {

namespace {

std::unique_ptr<Connection> Connect(const Place& place, bool to_make) {
  try {
    auto connection = std::make_unique<OdbcConnection>(place);
    const bool made = to_make && connection->HasTable(SchemaTables().front().name);
    if (made && !HasEmptySchema(*connection)) {
      throw DatabaseError(ErrorKind::kOther, "数据库中已经有账簿");
    }
    return connection;
  } catch (const DatabaseError& error) {
    throw DatabaseError(error.Kind(), error.what() + std::string("：") + ShownPlace(place.path));
  }
}

}  // namespace

std::unique_ptr<Connection> OdbcEngine::Open(const Place& place) const {
  return Connect(place, false);
}

std::shared_ptr<Session> OdbcEngine::Make(const Place& place, const Filling& fill) const {
  auto session = std::make_shared<Session>(Connect(place, true));
  fill(*session);
  return session;
}

}  // namespace desk::book
