#include "book/session/ledger_portions.h"

#include "book/session/trigger_script.h"

namespace desk::book {

bool LedgerRange::IsReadFor(std::int64_t rows, SqlDialect dialect) const {
  // A file changes fastest in the order of an index; a server keeps its rows apart from it.
  const std::int64_t share = dialect == SqlDialect::kSqlite ? 3 : 20;
  return rows > (end - first) / share;
}

LedgerRange RangeOfLedger(Connection& connection, const std::string& ledger) {
  const auto ids = connection.Query("select min(i_id),max(i_id) from " + ledger, Origin::kDesk);
  if (!ids->Next() || ids->Get(0).IsNull()) return {};
  return {.first = IntegerAt(*ids, 0), .end = IntegerAt(*ids, 1) + 1};
}

void LockLedgers(Connection& connection) {
  if (connection.Dialect() != SqlDialect::kPostgres) return;
  connection.Execute(std::string(kLockLedgers), Origin::kDesk);
}

}  // namespace desk::book
