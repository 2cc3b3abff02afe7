#include "book/session/rules_pause.h"

#include <set>
#include <utility>

#include "book/session/ledger_portions.h"
#include "book/session/ledger_rules.h"

namespace desk::book {

namespace {

constexpr int kFirstVersionWithPause = 5;

void SetPause(Connection& connection, bool on) {
  switch (connection.Dialect()) {
    case SqlDialect::kSqlite:
      // A program that does not keep keys may have left a note there. Books of other makers have no
      // such table.
      if (on && connection.HasTable(kLostParentTableName)) {
        connection.Execute("delete from desk_lost_parent", Origin::kDesk);
      }
      connection.Execute(
          on ? "insert into desk_identifier(table_name,last_id)values('rules_pause',1)"
             : "delete from desk_identifier where table_name='rules_pause'",
          Origin::kDesk);
      return;
    case SqlDialect::kPostgres:
      connection.Execute(on ? "select set_config('desk.rules_pause','on',true)"
                            : "select set_config('desk.rules_pause','',true)",
                         Origin::kDesk);
      return;
    default:
      return;
  }
}

}  // namespace

std::string RulesWork(SqlDialect dialect) {
  if (dialect == SqlDialect::kPostgres) {
    return "coalesce(current_setting('desk.rules_pause',true),'')<>'on'";
  }
  return "not exists(select 1 from desk_identifier where table_name='rules_pause')";
}

bool RulesCanPause(Session& session) {
  const int version = session.Own().SchemaVersion();
  return version == 0 || version >= kFirstVersionWithPause;
}

RulesPause::RulesPause(Session& session) : session_(session) {
  if (!RulesCanPause(session)) {
    throw DatabaseError(ErrorKind::kRefused, "账簿还没有升级，请由其所有者打开一次后再试");
  }
  LockLedgers(session.Own());
  before_ = FindChartFaults(session);
  SetPause(session.Own(), true);
  session.rules_pause_ = true;
}

std::vector<ChartFault> RulesPause::NewFaults() const {
  const std::set<ChartFault> before(before_.begin(), before_.end());
  std::vector<ChartFault> faults = FindChartFaults(session_);
  std::erase_if(faults, [&](const ChartFault& fault) { return before.contains(fault); });
  return faults;
}

void RulesPause::Resume() {
  ResumeWithout(NewFaults());
}

void RulesPause::ResumeWithFlags() {
  std::vector<ChartFault> faults = NewFaults();
  bool set = false;
  for (const ChartFault& fault : faults) {
    if (fault.kind != ChartFault::Kind::kLeafFlag) continue;
    const host::Value id = fault.id;
    session_.Own().Execute(
        "update gl_code set bend=case when bend<>0 then 0 else 1 end where i_id=?", Origin::kDesk,
        {&id, 1});
    set = true;
  }
  ResumeWithout(set ? NewFaults() : std::move(faults));
}

void RulesPause::ResumeWithout(const std::vector<ChartFault>& faults) {
  if (!faults.empty()) throw DatabaseError(ErrorKind::kRefused, FaultText(faults.front()));
  SetPause(session_.Own(), false);
  session_.rules_pause_ = false;
}

}  // namespace desk::book
