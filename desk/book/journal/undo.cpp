#include "book/journal/undo.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "book/database/tables.h"
#include "book/journal/command_text.h"
#include "book/journal/local_time.h"
#include "book/journal/posting_moves.h"
#include "book/session/journal_rules.h"
#include "book/session/rules_pause.h"
#include "book/session/settings.h"

namespace desk::book {

namespace {

/// So many codes are looked for at once.
constexpr std::size_t kPortion = 500;

const std::size_t kCode = AccountColumn("ccode");
const std::size_t kLeaf = AccountColumn("bend");

const char* TypeOf(ColumnKind kind) {
  using enum ColumnKind;
  if (kind == kFlag) return "smallint";
  return kind == kKey || kind == kInteger || kind == kOptional ? "integer" : "text";
}

class Undo {
 public:
  Undo(Session& session, HistoryEntry entry, const Progress& progress)
      : session_(session),
        connection_(session.Own()),
        server_(connection_.Dialect() == SqlDialect::kPostgres),
        entry_(std::move(entry)),
        progress_(progress) {}

  std::int64_t Run() {
    Tell(progress_, {.step = "正在核对"});
    changes_ = ReadChanges(session_, entry_.id);
    CheckAccounts();
    CheckCodes();
    const std::optional<RuleChange> rule = ReadRuleChange(session_, entry_.id);
    const bool returns_rule = rule && entry_.turn == 1 && NeedsRule(*rule);
    std::optional<RulesPause> pause;
    if (ConcernsRules()) pause.emplace(session_);
    JournalCommand command(session_, entry_.kind, DeedText(entry_),
                           {.turn = entry_.turn == 1 ? 2 : 1, .target = entry_.id});
    const std::string changed = ReturnPostings(session_, entry_.id, command.Id());
    if (!changed.empty()) Refuse("科目 " + changed + " 的分录之后又有变动");
    Tell(progress_, {.step = "正在恢复科目"});
    RestoreAccounts();
    if (rule && (returns_rule || CanReturnRule(*rule))) command.PutCodeRule(rule->from);
    FollowCodes(session_, entry_.id, CodesBack(), CodesMeet(), command, progress_);
    Tell(progress_, {.step = "正在核对"});
    if (pause) Resume(*pause);
    return command.Id();
  }

 private:
  [[noreturn]] void Refuse(const std::string& why) const {
    const char* what = entry_.turn == 1 ? "不能重做：" : "不能撤销：";
    throw DatabaseError(ErrorKind::kRefused, what + why);
  }

  /// Whether an account is as the command left it, where that counts. Flags of leaves follow the
  /// chart.
  [[nodiscard]] static bool IsAsLeft(const AccountChange& change, const RowImage& now) {
    if (change.Deleted()) return !now.IsThere();
    if (!now.IsThere()) return false;
    for (std::size_t i = 0; i < SchemaTables()[0].columns.size(); ++i) {
      const bool counts = i != kLeaf && (change.Added() || change.Differs(i));
      if (counts && now.Cell(i) != change.after.Cell(i)) return false;
    }
    return true;
  }

  /// Whether codes or flags change, or postings move.
  [[nodiscard]] bool ConcernsRules() const {
    return std::ranges::any_of(changes_, [](const AccountChange& change) {
      return !change.Stays() || change.Differs(kCode) || change.Differs(kLeaf);
    });
  }

  /// No other program may change them before they are as they were.
  void LockAccounts() {
    if (!server_) return;
    connection_.Execute(
        "select count(*)from(select 1 from gl_code where i_id in(select row_id from desk_change "
        "where command_id=" +
            std::to_string(entry_.id) + ")for update)a",
        Origin::kDesk);
  }

  void CheckAccounts() {
    LockAccounts();
    const std::vector<RowImage> now = ReadAccountsNow(session_, entry_.id);
    for (std::size_t i = 0; i < changes_.size(); ++i) {
      if (i >= now.size() || !IsAsLeft(changes_[i], now[i])) RefuseChanged(changes_[i]);
    }
  }

  [[noreturn]] void RefuseChanged(const AccountChange& change) {
    const RowImage& known = change.Deleted() ? change.before : change.after;
    const std::string account = "科目 " + known.Text(kCode) + " 之后又";
    const auto rows = connection_.Query(
        "select c.who,c.made_at,d.new_row is null from desk_change d join desk_command c on "
        "c.id=d.command_id where d.row_id=" +
            std::to_string(change.id) + " and d.command_id>" + std::to_string(entry_.id) +
            " order by d.id desc limit 1",
        Origin::kDesk);
    if (!rows->Next()) Refuse(account + "有改动");
    const std::string who = rows->Get(0).ToText();
    const std::string at = LocalTime(rows->Get(1).ToText());
    const host::Value gone = rows->Get(2);
    const bool deleted = gone.ToText() == "1" || gone.ToText() == "True";
    Refuse(account + "被 " + (who.empty() ? "其他程序" : who) + (deleted ? " 删除" : " 修改过") +
           "（" + at + "）");
  }

  /// A code that comes back may be another account's by now.
  void CheckCodes() {
    std::set<std::int64_t> own;
    std::vector<std::string> codes;
    for (const AccountChange& change : changes_) {
      own.insert(change.id);
      const bool comes = change.Deleted() || (change.Stays() && change.Differs(kCode));
      if (comes) codes.push_back(change.before.Text(kCode));
    }
    for (std::size_t i = 0; i < codes.size(); i += kPortion) {
      std::string list;
      for (std::size_t j = i; j < std::min(i + kPortion, codes.size()); ++j) {
        list += (list.empty() ? "" : ",") + Literal(codes[j]);
      }
      const auto rows = connection_.Query(
          "select i_id,ccode from gl_code where ccode in(" + list + ")", Origin::kDesk);
      while (rows->Next()) {
        if (own.contains(IntegerAt(*rows, 0))) continue;
        Refuse("编码 " + rows->Get(1).ToText() + " 现在是另一个科目的");
      }
    }
  }

  /// A book has only accounts that follow its rule. One that somebody has given it since stays.
  [[nodiscard]] bool CanReturnRule(const RuleChange& rule) {
    return ReadCodeRule(session_) == rule.to &&
           !connection_.Query("select 1 from gl_code limit 1", Origin::kDesk)->Next();
  }
  /// The accounts that come back need the rule that came with them.
  bool NeedsRule(const RuleChange& rule) {
    if (CanReturnRule(rule)) return true;
    if (ReadCodeRule(session_) == rule.from) return false;
    Refuse("这些科目的编码规则是 " + rule.from + "，账簿的现在是 " + ReadCodeRule(session_));
  }

  /// The accounts of the command, with their images as the engine reads cells of them.
  [[nodiscard]] std::string Net() const {
    if (!server_) return QueryForNetChanges(entry_.id);
    return "select row_id,cast(old_row as jsonb)as old_row,cast(new_row as jsonb)as new_row from(" +
           QueryForNetChanges(entry_.id) + ")r offset 0";  // reads each image once
  }
  [[nodiscard]] std::string CellOf(const char* image, std::string_view column) const {
    const std::string place = std::to_string(AccountColumn(column));
    if (!server_) return std::string("json_extract(n.") + image + ",'$[" + place + "]')";
    return std::string("cast(n.") + image + "->>" + place + " as " +
           TypeOf(SchemaTables()[0].columns[AccountColumn(column)].kind) + ")";
  }
  [[nodiscard]] std::string Before(std::string_view column) const {
    return CellOf("old_row", column);
  }
  [[nodiscard]] std::string After(std::string_view column) const {
    return CellOf("new_row", column);
  }

  /// The columns in which accounts that stay differ.
  [[nodiscard]] std::vector<std::string_view> ChangedColumns() const {
    std::vector<std::string_view> names;
    const auto columns = SchemaTables()[0].columns;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const bool any = std::ranges::any_of(changes_, [i](const AccountChange& change) {
        return change.Stays() && change.Differs(i);
      });
      if (any) names.push_back(columns[i].name);
    }
    return names;
  }

  /// Whether a code that an account gets is, or was, that of another one of them.
  [[nodiscard]] bool CodesMeet() const {
    std::set<std::string> after;
    for (const AccountChange& change : changes_) {
      if (!change.Deleted()) after.insert(change.after.Text(kCode));
    }
    return std::ranges::any_of(changes_, [&](const AccountChange& change) {
      return change.Stays() && change.Differs(kCode) && after.contains(change.before.Text(kCode));
    });
  }

  void RestoreAccounts() {
    const std::string net = "(" + Net() + ")n";
    if (std::ranges::any_of(changes_, &AccountChange::Added)) {
      connection_.Execute("delete from gl_code where i_id in(select n.row_id from " + net +
                              " where n.old_row is null)",
                          Origin::kDesk);
    }
    UpdateAccounts(net);
    if (std::ranges::any_of(changes_, &AccountChange::Deleted)) InsertAccounts(net);
  }

  void InsertAccounts(const std::string& net) {
    std::string columns;
    std::string cells;
    for (const Column& column : SchemaTables()[0].columns) {
      columns += (columns.empty() ? "" : ",") + std::string(column.name);
      cells += (cells.empty() ? "" : ",") + Before(column.name);
    }
    connection_.Execute("insert into gl_code(" + columns + ")select " + cells + " from " + net +
                            " where n.new_row is null",
                        Origin::kDesk);
  }

  void UpdateAccounts(const std::string& net) {
    const std::string which =
        " where gl_code.i_id=n.row_id and n.old_row is not null and n.new_row is not null";
    const char* differs = server_ ? " is distinct from " : " is not ";
    std::string sets;
    for (const std::string_view column : ChangedColumns()) {
      const std::string name(column);
      sets += (sets.empty() ? "" : ",") + name + "=case when " + Before(name) + differs +
              After(name) + " then " + Before(name) + " else gl_code." + name + " end";
    }
    if (sets.empty()) return;
    if (CodesMeet()) {  // no two accounts may have one code, not for a moment
      connection_.Execute("update gl_code set ccode='~'||gl_code.i_id from " + net + which +
                              " and " + Before("ccode") + differs + After("ccode"),
                          Origin::kDesk);
    }
    connection_.Execute("update gl_code set " + sets + " from " + net + which, Origin::kDesk);
  }

  /// In the order of the codes that the accounts had until now.
  [[nodiscard]] std::vector<CodeChange> CodesBack() const {
    std::vector<CodeChange> codes;
    for (const AccountChange& change : changes_) {
      if (change.Stays() && change.Differs(kCode)) {
        codes.push_back({.from = change.after.Text(kCode), .to = change.before.Text(kCode)});
      }
    }
    std::ranges::sort(codes, {}, &CodeChange::from);
    return codes;
  }

  /// The chart may have changed around these accounts: their flags say what it says now.
  void Resume(RulesPause& pause) {
    try {
      pause.ResumeWithFlags();
    } catch (const DatabaseError& error) {
      if (error.Kind() != ErrorKind::kRefused) throw;
      Refuse(error.what());
    }
  }

  Session& session_;
  Connection& connection_;
  bool server_;
  HistoryEntry entry_;
  const Progress& progress_;
  std::vector<AccountChange> changes_;
};

HistoryEntry EntryToUndo(Session& session, std::int64_t command) {
  const auto found = ReadEntry(session, command);
  if (!found) throw DatabaseError(ErrorKind::kRefused, "变更记录中已经没有这次操作");
  if (found->kind == CommandKind::kUnknown) {
    throw DatabaseError(ErrorKind::kRefused, "其他程序的改动不能在这里撤销");
  }
  if (!found->answered) return *found;
  throw DatabaseError(ErrorKind::kRefused,
                      found->turn == 1 ? "这次操作已经重做" : "这次操作已经撤销");
}

}  // namespace

std::int64_t UndoCommand(Session& session, std::int64_t command, const Progress& progress) {
  const LongWork long_work(session);
  Transaction transaction(session);
  const std::int64_t id = Undo(session, EntryToUndo(session, command), progress).Run();
  transaction.Commit();
  session.NoteChange();
  return id;
}

}  // namespace desk::book
