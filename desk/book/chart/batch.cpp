#include "book/chart/batch.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "book/ledger/code_rule.h"
#include "book/session/journal_command.h"
#include "host/text.h"

namespace desk::book {

namespace {

bool IsWithin(const std::string& code, const std::string& top) {
  return code.size() >= top.size() && host::EqualNoCase(code.substr(0, top.size()), top);
}

/// One plan in the making.
class Planner {
 public:
  Planner(const BatchChart& chart, BatchAction action) : chart_(chart) { plan_.action = action; }

  BatchPlan Make(const std::set<std::size_t>& chosen) {
    const std::vector<std::size_t> members = MembersOf(chosen);
    if (plan_.action == BatchAction::kDelete) {
      AddDeletions(members);
    } else {
      for (const std::size_t account : members) AddSealing(account);
    }
    return std::move(plan_);
  }

 private:
  /// Those below an account follow it in the order of codes.
  [[nodiscard]] std::vector<std::size_t> MembersOf(const std::set<std::size_t>& chosen) const {
    std::vector<std::size_t> members;
    for (std::size_t account : chosen) {
      const std::string& top = chart_.accounts[account].code;
      if (!members.empty() && account <= members.back()) continue;
      for (; account < chart_.accounts.size() && IsWithin(chart_.accounts[account].code, top);
           ++account) {
        members.push_back(account);
      }
    }
    return members;
  }

  void Add(std::size_t account, const std::string& reason, bool hinders) {
    plan_.rows.push_back({.account = account, .changes = reason.empty(), .reason = reason});
    if (reason.empty()) ++plan_.changing;
    if (!reason.empty() && hinders) ++plan_.refused;
  }

  void AddSealing(std::size_t account) {
    const bool seal = plan_.action == BatchAction::kSeal;
    const bool is = chart_.accounts[account].sealed == seal;
    Add(account, is ? (seal ? "已经封存" : "没有封存") : "", false);
  }

  /// From the last to the first: whether those below an account go is known before its own turn.
  void AddDeletions(const std::vector<std::size_t>& members) {
    std::vector<std::string> reasons(members.size());
    const auto used_by = GatheredInto(members);
    std::size_t staying = members.size();  // the last one found that stays
    for (std::size_t i = members.size(); i-- > 0;) {
      const ChartAccount& account = chart_.accounts[members[i]];
      const bool keeps = staying < members.size() &&
                         IsWithin(chart_.accounts[members[staying]].code, account.code);
      const auto used = used_by.find(host::LowerCase(account.code));
      if (chart_.posted[members[i]]) {
        reasons[i] = "已经记账";
      } else if (keeps) {
        reasons[i] = "下级 " + chart_.accounts[members[staying]].code + " 不能删除";
      } else if (used != used_by.end()) {
        reasons[i] = "科目 " + used->second + " 汇总到它";
      }
      if (!reasons[i].empty()) staying = i;
    }
    for (std::size_t i = 0; i < members.size(); ++i) Add(members[i], reasons[i], true);
  }

  /// By the account summarised into, in small letters: one that is not a member.
  [[nodiscard]] std::map<std::string, std::string> GatheredInto(
      const std::vector<std::size_t>& members) const {
    std::map<std::string, std::string> by;
    auto member = members.begin();
    for (std::size_t i = 0; i < chart_.accounts.size(); ++i) {
      if (member != members.end() && *member == i) {
        ++member;
        continue;
      }
      const ChartAccount& account = chart_.accounts[i];
      if (!account.gather.empty()) by.emplace(host::LowerCase(account.gather), account.code);
    }
    return by;
  }

  const BatchChart& chart_;
  BatchPlan plan_;
};

struct ActionSense {
  CommandKind kind;
  std::string_view title;
  std::string_view step;
  const char* statement;  ///< without its list of identifiers
};

ActionSense SenseOf(BatchAction action) {
  switch (action) {
    case BatchAction::kSeal:
      return {CommandKind::kSeal, "封存", "正在封存科目",
              "update gl_code set bclose=1 where i_id in("};
    case BatchAction::kUnseal:
      return {CommandKind::kUnseal, "解除封存", "正在解除封存",
              "update gl_code set bclose=0 where i_id in("};
    case BatchAction::kDelete:
      break;
  }
  return {CommandKind::kDelete, "删除", "正在删除科目", "delete from gl_code where i_id in("};
}

/// "封存 1002 等"; how many they are the history says itself.
std::string TitleOf(const ActionSense& sense, const BatchChart& chart, const BatchPlan& plan) {
  const auto first = std::ranges::find_if(plan.rows, &BatchRow::changes);
  if (first == plan.rows.end()) return std::string(sense.title);
  return std::string(sense.title) + " " + chart.accounts[first->account].code +
         (plan.changing > 1 ? " 等" : "");
}

/// The parents of accounts that go: what others are left below them is to be seen then.
std::set<std::string> ParentsOf(Session& session, const BatchChart& chart, const BatchPlan& plan) {
  std::set<std::string> parents;
  const std::string rule = ReadCodeRule(session);
  for (const BatchRow& row : plan.rows) {
    if (!row.changes || plan.action != BatchAction::kDelete) continue;
    parents.insert(CodeRuleArithmetic().ParentCode(chart.accounts[row.account].code, rule));
  }
  return parents;
}

/// The identifiers of the accounts that change: what is below comes before what is above it.
std::vector<std::int64_t> IdentifiersOf(const BatchChart& chart, const BatchPlan& plan) {
  std::vector<std::int64_t> ids;
  for (const BatchRow& row : plan.rows) {
    if (row.changes) ids.push_back(chart.accounts[row.account].id);
  }
  std::ranges::reverse(ids);
  return ids;
}

/// The positions, in another reading of the chart, of accounts that were chosen.
std::set<std::size_t> SameIn(const BatchChart& now, const BatchChart& chart,
                             const std::set<std::size_t>& chosen) {
  std::set<std::int64_t> ids;
  for (const std::size_t account : chosen) ids.insert(chart.accounts[account].id);
  std::set<std::size_t> positions;
  for (std::size_t i = 0; i < now.accounts.size(); ++i) {
    if (ids.contains(now.accounts[i].id)) positions.insert(i);
  }
  return positions;
}

}  // namespace

BatchChart ReadBatchChart(Session& session) {
  if (!CanRearrange(session)) RefuseChange("这个账簿不能批量处理科目");
  BatchChart chart{.accounts = ReadChart(session)};
  chart.posted.resize(chart.accounts.size());
  std::set<std::int64_t> ids;
  const auto rows = session.Own().Query(
      "select i_id from gl_code g where exists(select 1 from gl_accvouch v where v.ccode=g.ccode)"
      "or exists(select 1 from gl_accsum s where s.ccode=g.ccode)"
      "or exists(select 1 from gl_accass a where a.ccode=g.ccode)",
      Origin::kDesk);
  while (rows->Next()) ids.insert(IntegerAt(*rows, 0));
  for (std::size_t i = 0; i < chart.accounts.size(); ++i) {
    chart.posted[i] = ids.contains(chart.accounts[i].id);
  }
  return chart;
}

BatchPlan PlanBatch(const BatchChart& chart, BatchAction action,
                    const std::set<std::size_t>& chosen) {
  return Planner(chart, action).Make(chosen);
}

std::int64_t ChangeBatch(Session& session, const BatchChart& chart, const BatchPlan& plan,
                         const std::set<std::size_t>& chosen, const Progress& progress) {
  const ActionSense sense = SenseOf(plan.action);
  Tell(progress, {.step = "正在核对科目"});
  PrepareRearranging(session);
  const LongWork long_work(session);
  Transaction transaction(session);
  const BatchChart now = ReadBatchChart(session);
  const std::vector<std::int64_t> ids = IdentifiersOf(chart, plan);
  if (IdentifiersOf(now, PlanBatch(now, plan.action, SameIn(now, chart, chosen))) != ids) {
    RefuseChange("其他用户刚修改了这些科目，请核对后再试");
  }
  const JournalCommand command(session, sense.kind, TitleOf(sense, chart, plan));
  constexpr std::size_t kAtOnce = 200;
  WorkState state{.step = std::string(sense.step), .all = static_cast<std::int64_t>(ids.size())};
  for (std::size_t first = 0; first < ids.size(); first += kAtOnce) {
    Tell(progress, state);
    std::string list;
    const std::size_t end = std::min(first + kAtOnce, ids.size());
    for (std::size_t i = first; i < end; ++i) {
      list += (i == first ? "" : ",") + std::to_string(ids[i]);
    }
    state.done += session.Own().Execute(sense.statement + list + ")", Origin::kDesk);
  }
  Tell(progress, state);
  for (const std::string& parent : ParentsOf(session, chart, plan)) SetLeafIfLast(session, parent);
  transaction.Commit();
  session.NoteChange();
  return state.done;
}

}  // namespace desk::book
