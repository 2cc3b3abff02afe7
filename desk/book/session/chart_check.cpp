#include "book/session/chart_check.h"

#include "book/session/settings.h"
#include "book/session/trigger_script.h"
#include "host/account.h"

namespace desk::book {

namespace {

using enum ChartFault::Kind;

const char* LengthFunction(SqlDialect dialect) {
  const bool word = dialect == SqlDialect::kAccess || dialect == SqlDialect::kSqlServer;
  return word ? "len" : dialect == SqlDialect::kMariaDb ? "char_length" : "length";
}

std::string FirstCharacters(SqlDialect dialect, int count) {
  const bool substr = dialect == SqlDialect::kSqlite || dialect == SqlDialect::kPostgres;
  return (substr ? "substr(a.ccode,1," : "left(a.ccode,") + std::to_string(count) + ")";
}

/// The codes that begin with the one of `a` and go on, in the order that the engine has for them.
std::string Below(SqlDialect dialect) {
  if (dialect == SqlDialect::kSqlite) {
    return "b.ccode>a.ccode and b.ccode<a.ccode||char(1114111)";
  }
  if (dialect == SqlDialect::kPostgres) return "b.ccode>a.ccode and b.ccode<a.ccode||chr(1114111)";
  const std::string length = LengthFunction(dialect);
  return "left(b.ccode," + length + "(a.ccode))=a.ccode and " + length + "(b.ccode)>" + length +
         "(a.ccode)";
}

/// The different codes of a ledger: they are few beside its rows, and an index leads from one to
/// the next.
std::string CodesOf(SqlDialect dialect, const std::string& ledger) {
  const bool steps = dialect == SqlDialect::kSqlite || dialect == SqlDialect::kPostgres;
  if (!steps) return "(select distinct ccode from " + ledger + ")";
  return "(with recursive c(ccode)as(select min(ccode)from " + ledger +
         " union all select(select min(l.ccode)from " + ledger +
         " l where l.ccode>c.ccode)from c where c.ccode is not null)select ccode from c where "
         "ccode "
         "is not null)";
}

class Finder {
 public:
  explicit Finder(Session& session)
      : connection_(session.Own()), dialect_(connection_.Dialect()), rule_(ReadCodeRule(session)) {}

  [[nodiscard]] std::vector<ChartFault> Find() {
    if (!rule_.empty()) Add(kNoCode, "select a.i_id,a.ccode from gl_code a where a.ccode is null");
    FindLackingParents();
    Add(kLeafFlag,
        "select a.i_id,a.ccode from gl_code a where (a.bend<>0 and exists(select 1 from gl_code b "
        "where " +
            Below(dialect_) + "))or(a.bend=0 and not exists(select 1 from gl_code b where " +
            Below(dialect_) + "))");
    for (const std::string_view ledger : kLedgerTables) FindWrongPostings(std::string(ledger));
    return std::move(faults_);
  }

 private:
  void Add(ChartFault::Kind kind, const std::string& query) {
    const auto rows = connection_.Query(query, Origin::kDesk);
    while (rows->Next()) {
      faults_.push_back({.kind = kind, .id = IntegerAt(*rows, 0), .code = rows->Get(1).ToText()});
    }
  }

  void FindLackingParents() {
    int above = 0;
    for (const char digit : rule_) {
      const int length = above + (digit >= '1' && digit <= '9' ? digit - '0' : 0);
      if (length == above) continue;
      if (above > 0) {
        Add(kNoParent, "select a.i_id,a.ccode from gl_code a where " +
                           std::string(LengthFunction(dialect_)) +
                           "(a.ccode)=" + std::to_string(length) +
                           " and not exists(select 1 from gl_code b where b.ccode=" +
                           FirstCharacters(dialect_, above) + ")");
      }
      above = length;
    }
  }

  /// On PostgreSQL an index leads through all that this transaction has changed to what is there
  /// now. The text that is added to a code keeps the server from going by it.
  [[nodiscard]] std::string CodesNow(const std::string& ledger) {
    if (dialect_ != SqlDialect::kPostgres) return CodesOf(dialect_, ledger);
    const auto changed = connection_.Query(
        "select pg_stat_get_xact_tuples_updated(cast('" + ledger + "' as regclass))",
        Origin::kDesk);
    constexpr std::int64_t kMany = 10000;
    if (!changed->Next() || IntegerAt(*changed, 0) < kMany) return CodesOf(dialect_, ledger);
    return "(select distinct ccode||'' as ccode from " + ledger + " where ccode is not null)";
  }

  void FindWrongPostings(const std::string& ledger) {
    const std::string codes = CodesNow(ledger);
    const auto rows = connection_.Query(
        "select a.i_id,v.ccode from " + codes +
            " v left join gl_code a on a.ccode=v.ccode where a.i_id is null or a.bend=0",
        Origin::kDesk);
    while (rows->Next()) {
      const host::Value id = rows->Get(0);
      faults_.push_back({.kind = id.IsNull() ? kNoAccount : kPostings,
                         .id = static_cast<std::int64_t>(id.ToNumber()),
                         .code = rows->Get(1).ToText()});
    }
  }

  Connection& connection_;
  SqlDialect dialect_;
  std::string rule_;
  std::vector<ChartFault> faults_;
};

}  // namespace

std::vector<ChartFault> FindChartFaults(Session& session) {
  return Finder(session).Find();
}

std::string FaultText(const ChartFault& fault) {
  std::string account = "科目 " + fault.code;
  switch (fault.kind) {
    case kNoCode:
      return "科目编码不能为空";
    case kNoParent:
      return account + " 的上级科目不存在";
    case kLeafFlag:
      return account + " 的末级标志与下级科目不符";
    case kPostings:
      return account + " 不是末级科目，却有分录";
    case kNoAccount:
      return account + " 有分录，不能没有";
  }
  return account;
}

void CheckChart(Session& session) {
  const std::vector<ChartFault> faults = FindChartFaults(session);
  if (!faults.empty()) throw DatabaseError(ErrorKind::kRefused, FaultText(faults.front()));
}

}  // namespace desk::book
