#include "book/chart/move_accounts.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "book/ledger/code_rule.h"
#include "book/session/ledger_portions.h"
#include "book/session/rules_pause.h"

namespace desk::book {

namespace {

constexpr const char* kChanged = "其他用户刚修改了这些科目，请核对后再试";

/// The statements of one move.
class Mover {
 public:
  Mover(Session& session, JournalCommand& command, const MovedSubtree& subtree,
        const MovePlan& plan, const Progress& progress)
      : session_(session),
        connection_(session.Own()),
        command_(command),
        subtree_(subtree),
        plan_(plan),
        map_(subtree.rule, plan.code, plan.new_code),
        progress_(progress) {
    state_.all = subtree.postings.Rows() + static_cast<std::int64_t>(plan.rows.size());
  }

  MoveResult Run() {
    const PostingCount& postings = subtree_.postings;
    MoveLedger("gl_accvouch", postings.entries, "正在修改凭证");
    MoveLedger("gl_accass", postings.auxiliary, "正在修改辅助账");
    MoveLedger("gl_accsum", postings.totals, "正在修改总账");
    MoveResult result{.postings = state_.done};
    Enter("正在修改科目");
    MoveGathering();
    result.accounts = MoveChart();
    SetParents();
    Enter("正在核对账簿");
    return result;
  }

 private:
  void Enter(std::string_view step) {
    state_.step = step;
    Tell(progress_, state_);
  }

  /// `update TABLE set COLUMN=...` for one part of the codes. The values that `where` wants follow.
  std::int64_t Update(const std::string& change, const CodeMap::Part& part,
                      const std::string& where, Values values) {
    std::vector<host::Value> parameters = {map_.NewTop()};
    parameters.insert(parameters.end(), values.begin(), values.end());
    const std::string condition = part.condition.empty() ? "" : " and " + part.condition;
    return connection_.Execute(change + part.expression + where + condition, Origin::kDesk,
                               parameters);
  }

  /// Postings of codes that the chart does not have stay where they are.
  void MoveLedger(const std::string& ledger, std::int64_t rows, std::string_view step) {
    Enter(step);
    const std::int64_t before = state_.done;
    const LedgerRange range = RangeOfLedger(connection_, ledger);
    if (range.IsReadFor(rows, connection_.Dialect())) {
      MoveByRows(ledger, range);
    } else if (rows > 0) {
      MoveByCodes(ledger);
    }
    command_.NoteFollowed(ledger, state_.done - before);
  }

  void MoveByRows(const std::string& ledger, const LedgerRange& range) {
    const std::string where = std::string(LedgerRange::kPart) +
                              LedgerRange::CodeAsRead(connection_.Dialect()) +
                              " in(select ccode from gl_code where " + kInRange + ")";
    const auto codes = RangeOf(plan_.code);
    range.InParts([&](std::int64_t first, std::int64_t end) {
      const host::Value values[] = {first, end, codes[0], codes[1]};
      UpdateCodes(ledger, where, values);
      Tell(progress_, state_);
    });
  }

  void MoveByCodes(const std::string& ledger) {
    const auto end = static_cast<std::int64_t>(plan_.rows.size());
    Portion portion(1, 64, 4096);
    for (std::int64_t first = 0; first < end;) {
      const host::Value first_code(plan_.rows[static_cast<std::size_t>(first)].account.code);
      first = portion.Take(first, end, [&](std::int64_t stop) {
        const host::Value last(plan_.rows[static_cast<std::size_t>(stop - 1)].account.code);
        const host::Value values[] = {first_code, last, first_code, last};
        UpdateCodes(ledger,
                    " where ccode>=? and ccode<=? and ccode in(select ccode from gl_code where "
                    "ccode>=? and ccode<=?)",
                    values);
      });
      Tell(progress_, state_);
    }
  }

  void UpdateCodes(const std::string& ledger, const std::string& where, Values values) {
    for (const CodeMap::Part& part : map_.Parts("ccode")) {
      state_.done += Update("update " + ledger + " set ccode=", part, where, values);
    }
  }

  /// The accounts that are summarised into those that move.
  void MoveGathering() {
    const host::Value top(plan_.code);
    const std::string begins = " where lower(substr(cgather,1," +
                               std::to_string(CharactersOf(plan_.code)) +
                               "))=lower(cast(? as text))";
    for (const CodeMap::Part& part : map_.Parts("cgather")) {
      Update("update gl_code set cgather=", part, begins, {&top, 1});
    }
  }

  std::int64_t MoveChart() {
    std::int64_t moved = 0;
    const auto range = RangeOf(plan_.code);
    std::vector<host::Value> values;
    std::string others = ",igrade=" + map_.LevelExpression();
    if (!plan_.category.empty()) {
      others += ",cclass=?";
      values.emplace_back(plan_.category);
    }
    values.insert(values.end(), range.begin(), range.end());
    for (const CodeMap::Part& part : map_.Parts("ccode")) {
      moved += Update("update gl_code set ccode=", part, others + " where " + kInRange, values);
    }
    return moved;
  }

  void SetParents() {
    CodeRuleArithmetic arithmetic;
    const host::Value above(arithmetic.ParentCode(plan_.new_code, subtree_.rule));
    connection_.Execute("update gl_code set bend=0 where ccode=? and bend<>0", Origin::kDesk,
                        {&above, 1});
    SetLeafIfLast(session_, arithmetic.ParentCode(plan_.code, subtree_.rule));
  }

  Session& session_;
  Connection& connection_;
  JournalCommand& command_;
  const MovedSubtree& subtree_;
  const MovePlan& plan_;
  CodeMap map_;
  const Progress& progress_;
  WorkState state_;
};

std::string TitleOf(const MovePlan& plan) {
  return "改编码 " + plan.code + " → " + plan.new_code;
}

}  // namespace

MoveResult MoveAccounts(Session& session, const MovePlan& plan, CommandKind kind,
                        const Progress& progress) {
  Tell(progress, {.step = "正在核对科目"});
  PrepareRearranging(session);
  const LongWork long_work(session);
  Transaction transaction(session);
  const MovedSubtree subtree = ReadMovedSubtree(session, plan.code);
  const MovePlan now = PlanMove(session, subtree, plan.new_code);
  if (!now.Allowed()) RefuseChange(now.WhyNot());
  if (now.rows != plan.rows) RefuseChange(kChanged);
  JournalCommand command(session, kind, TitleOf(plan));
  RulesPause pause(session);
  const MoveResult result = Mover(session, command, subtree, now, progress).Run();
  pause.Resume();
  Tell(progress, {.step = "正在保存"});
  transaction.Commit();
  session.NoteChange();
  return result;
}

}  // namespace desk::book
