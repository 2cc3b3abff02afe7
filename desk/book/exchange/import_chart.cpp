#include "book/exchange/import_chart.h"

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>

#include "book/database/row_loader.h"
#include "book/ledger/code_rule.h"
#include "book/session/identifiers.h"
#include "book/session/journal_command.h"

namespace desk::book {

namespace {

using enum AccountField;

Column LoadColumn(AccountField field) {
  return {ColumnOf(field), IsFlag(field) ? ColumnKind::kFlag : ColumnKind::kText};
}

/// What is written of a new account, in order. The first names a row in messages.
LoadPlan PlanOfRows() {
  LoadPlan plan{.table = "gl_code", .columns = {{"ccode", ColumnKind::kCode}}};
  plan.columns.push_back({"i_id", ColumnKind::kKey});
  plan.columns.push_back({"igrade", ColumnKind::kInteger});
  plan.columns.push_back({"bend", ColumnKind::kFlag});
  for (const FieldInfo& info : Fields()) {
    if (info.field != kCode) plan.columns.push_back(LoadColumn(info.field));
  }
  return plan;
}

/// As the history names it.
std::string TitleOf(const ImportPlan& plan) {
  const auto counted = [&](const char* what, ImportState state) {
    const std::size_t count = plan.Count(state);
    return count == 0 ? std::string() : what + std::to_string(count) + " 个";
  };
  const std::string added = counted("新增 ", ImportState::kAdd);
  const std::string changed = counted("修改 ", ImportState::kChange);
  return "导入科目：" + added + (added.empty() || changed.empty() ? "" : "，") + changed;
}

class Import {
 public:
  Import(Session& session, const ImportPlan& plan, const Progress& progress)
      : session_(session), plan_(plan), progress_(progress) {
    for (const ImportLine& line : plan.lines) {
      if (line.state == ImportState::kAdd) added_.push_back(&line);
      if (line.state == ImportState::kChange) changed_.push_back(&line);
    }
    std::ranges::sort(added_, {}, [](const ImportLine* line) { return line->account.Code(); });
    // One statement after the other is the same then.
    std::ranges::stable_sort(changed_, {}, &ImportLine::changed);
    all_ = static_cast<std::int64_t>(added_.size() + changed_.size());
  }

  void Run() {
    Telling(added_, [this] { Add(); });
    SetParents();
    Telling(changed_, [this] { Change(); });
    Tell(progress_, {.step = kStep, .done = all_, .all = all_});
  }

 private:
  static constexpr const char* kStep = "正在导入科目";
  using Lines = std::vector<const ImportLine*>;

  /// Whoever reads the refusal of a row has the file before him.
  static void Telling(const Lines& lines, const std::function<void()>& write) {
    try {
      write();
    } catch (const RowError& error) {
      const ImportLine& line = *lines.at(error.Row());
      throw DatabaseError(error.Kind(), "第 " + std::to_string(line.number) + " 行的科目 " +
                                            line.account.Code() + " 不能导入：" + error.Reason());
    }
  }

  void Step() {
    constexpr std::int64_t kOften = 500;
    if (done_++ % kOften == 0) Tell(progress_, {.step = kStep, .done = done_ - 1, .all = all_});
  }

  void Add() {
    if (added_.empty()) return;
    const auto first =
        ReserveIdentifiers(session_.Own(), "gl_code", "i_id", static_cast<int>(added_.size()));
    const std::unordered_set<std::string> parents = ParentsOfAdded();
    const auto loader = NewRowLoader(session_.Own(), PlanOfRows());
    CodeRuleArithmetic arithmetic;
    std::int64_t id = first;
    for (const ImportLine* line : added_) {
      Step();
      const AccountRecord& account = line->account;
      loader->OnText(account.Code());
      loader->OnInteger(id++);
      loader->OnInteger(arithmetic.LevelOf(account.Code(), plan_.rule));
      loader->OnInteger(parents.contains(account.Code()) ? 0 : 1);
      for (const FieldInfo& info : Fields()) {
        if (info.field != kCode) PutField(*loader, account, info.field);
      }
    }
    loader->Finish();
  }

  static void PutField(CellSink& sink, const AccountRecord& account, AccountField field) {
    if (IsFlag(field)) return sink.OnInteger(account.Flag(field) ? 1 : 0);
    sink.OnText(account.Text(field));
  }

  /// As these accounts write their own codes: the table may compare them with case.
  [[nodiscard]] std::unordered_set<std::string> ParentsOfAdded() const {
    CodeRuleArithmetic arithmetic;
    std::unordered_set<std::string> parents;
    for (const ImportLine* line : added_) {
      parents.insert(arithmetic.ParentCode(line->account.Code(), plan_.rule));
    }
    return parents;
  }

  void SetParents() {
    const auto loader = NewRowLoader(
        session_.Own(), {.table = "gl_code",
                         .columns = {{"ccode", ColumnKind::kCode}, {"bend", ColumnKind::kFlag}},
                         .kind = LoadKind::kChange});
    for (const std::string& code : plan_.new_parents) {
      loader->OnText(code);
      loader->OnInteger(0);
    }
    loader->Finish();
  }

  /// Only the columns of a line that change: the others may be somebody else's by now.
  void Change() {
    LoadPlan plan{
        .table = "gl_code", .columns = {{"i_id", ColumnKind::kKey}}, .kind = LoadKind::kChange};
    const std::vector<AccountField> fields = ChangedFields();
    for (const AccountField field : fields) plan.columns.push_back(LoadColumn(field));
    const auto loader = NewRowLoader(session_.Own(), std::move(plan));
    for (const ImportLine* line : changed_) {
      Step();
      loader->OnInteger(line->id);
      for (const AccountField field : fields) {
        const bool changes = std::ranges::find(line->changed, field) != line->changed.end();
        if (changes) PutField(*loader, line->account, field);
        if (!changes) loader->OnNull();
      }
    }
    loader->Finish();
  }

  /// Those that any line changes.
  [[nodiscard]] std::vector<AccountField> ChangedFields() const {
    std::set<AccountField> fields;
    for (const ImportLine* line : changed_) {
      fields.insert(line->changed.begin(), line->changed.end());
    }
    return {fields.begin(), fields.end()};
  }

  Session& session_;
  const ImportPlan& plan_;
  const Progress& progress_;
  Lines added_;
  Lines changed_;
  std::int64_t all_ = 0;
  std::int64_t done_ = 0;
};

}  // namespace

void ImportChart(Session& session, const SourceTable& table, const ImportOptions& options,
                 const ImportPlan& plan, const Progress& progress) {
  Tell(progress, {.step = "正在核对账簿", .done = 0, .all = 0});
  Transaction transaction(session);
  // Whoever changes accounts on a server waits from here on, and what they have changed is seen.
  session.Own().Execute("update gl_code set bend=bend where i_id is null", Origin::kDesk);
  if (PlanImport(session, table, options) != plan) {
    throw DatabaseError(ErrorKind::kOther, "其他用户刚修改了科目，没有导入，请重新核对");
  }
  JournalCommand command(session, CommandKind::kImport, TitleOf(plan));
  if (plan.changes_rule) command.PutCodeRule(plan.rule);
  Import(session, plan, progress).Run();
  transaction.Commit();
  session.NoteChange();
}

}  // namespace desk::book
