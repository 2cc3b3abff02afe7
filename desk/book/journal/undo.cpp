#include "book/journal/undo.h"

#include <algorithm>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>

#include "book/database/tables.h"
#include "book/journal/command_text.h"
#include "book/journal/local_time.h"
#include "book/session/journal_rules.h"
#include "book/session/rules_pause.h"
#include "book/session/settings.h"
#include "book/session/trigger_script.h"

namespace desk::book {

namespace {

/// So many accounts' postings move with each statement: between two the user may cancel.
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
    ReturnPostings(command.Id());
    Tell(progress_, {.step = "正在恢复科目"});
    RestoreAccounts();
    if (rule && (returns_rule || CanReturnRule(*rule))) command.PutCodeRule(rule->from);
    MovePostingsAlong(command);
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

  void CheckAccounts() {
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
           QueryForNetChanges(entry_.id) + ")r";
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

  /// All notes of one account's postings in one ledger that went to another account.
  struct Move {
    std::string ledger;
    std::string to;
    std::string notes;  ///< the condition for them, as `m`
    std::string there;  ///< and for their postings, as the ledger
    std::int64_t postings = 0;
  };

  [[nodiscard]] std::vector<Move> Moves() {
    std::vector<Move> moves;
    const auto rows = connection_.Query(
        "select ledger,to_code,min(id),max(id),sum(row_count),count(*)from desk_moved where "
        "follows=0 and command_id=" +
            std::to_string(entry_.id) + " group by ledger,from_code,to_code order by max(id) desc",
        Origin::kDesk);
    while (rows->Next()) {
      const std::string ledger = rows->Get(0).ToText();
      // Of many ranges of a file each is read by its identifiers, of few by the account's index.
      const bool many = !server_ && rows->Get(5).ToNumber() > 4;
      moves.push_back({.ledger = ledger,
                       .to = rows->Get(1).ToText(),
                       .notes = "m.command_id=" + std::to_string(entry_.id) + " and m.ledger='" +
                                ledger + "' and m.follows=0 and m.id between " +
                                rows->Get(2).ToText() + " and " + rows->Get(3).ToText(),
                       .there = (many ? "+" : "") + ledger + ".ccode=m.to_code and " + ledger +
                                ".i_id between m.first_id and m.last_id",
                       .postings = IntegerAt(*rows, 4)});
    }
    return moves;
  }

  /// Whether postings are missing, have come, or have had amounts added to them.
  [[nodiscard]] bool HasChanged(const Move& move) {
    const auto sum = [&](const std::string& column) {
      return "coalesce(sum(" + move.ledger + "." + column + "),0)";
    };
    const auto rows = connection_.Query(
        "select 1 from desk_moved m left join " + move.ledger + " on " + move.there + " where " +
            move.notes +
            " group by m.id,m.row_count,m.id_sum,m.debit_sum,m.credit_sum having count(" +
            move.ledger + ".i_id)<>m.row_count or " + sum("i_id") + "<>m.id_sum or " +
            sum("debit") + "<>m.debit_sum or " + sum("credit") + "<>m.credit_sum limit 1",
        Origin::kDesk);
    return rows->Next();
  }

  /// Postings that went from one account to another go back, the last move first: exactly those,
  /// and only while they are all there as they were.
  void ReturnPostings(std::int64_t command) {
    for (const Move& move : Moves()) {
      const std::string changed = "科目 " + move.to + " 的分录之后又有变动";
      if (HasChanged(move)) Refuse(changed);
      connection_.Execute(
          "insert into desk_moved(command_id,ledger,from_code,to_code,first_id,last_id,row_count,"
          "id_sum,debit_sum,credit_sum,follows)select " +
              std::to_string(command) +
              ",ledger,to_code,from_code,first_id,last_id,row_count,id_sum,debit_sum,credit_sum,0 "
              "from desk_moved m where " +
              move.notes + " order by m.id",
          Origin::kDesk);
      const std::int64_t moved = connection_.Execute(
          "update " + move.ledger + " set ccode=m.from_code from desk_moved m where " + move.there +
              " and " + move.notes,
          Origin::kDesk);
      if (moved != move.postings) Refuse(changed);  // another program has posted meanwhile
    }
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
    connection_.Execute("delete from gl_code where i_id in(select n.row_id from " + net +
                            " where n.old_row is null)",
                        Origin::kDesk);
    UpdateAccounts(net);
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

  struct NewCode {
    std::string from;
    std::string to;
  };
  /// In the order of the codes that the accounts had until now.
  [[nodiscard]] std::vector<NewCode> NewCodes() const {
    std::vector<NewCode> codes;
    for (const AccountChange& change : changes_) {
      if (change.Stays() && change.Differs(kCode)) {
        codes.push_back({.from = change.after.Text(kCode), .to = change.before.Text(kCode)});
      }
    }
    std::ranges::sort(codes, {}, &NewCode::from);
    return codes;
  }

  /// Postings follow the codes of their accounts.
  void MovePostingsAlong(JournalCommand& command) {
    const std::vector<NewCode> codes = NewCodes();
    if (codes.empty()) return;
    // What the server knows of the codes is older than the command: it would compare each posting
    // with each code.
    if (server_) connection_.Execute("set local enable_nestloop=off", Origin::kDesk);
    // Where codes meet, postings that have moved must not move again with the next portion.
    const std::size_t portion = CodesMeet() ? codes.size() : kPortion;
    WorkState state{.step = "正在移动分录",
                    .all = static_cast<std::int64_t>(codes.size() * kLedgerTables.size())};
    for (const std::string_view ledger : kLedgerTables) {
      std::int64_t moved = 0;
      for (std::size_t i = 0; i < codes.size(); i += portion) {
        Tell(progress_, state);
        const std::size_t size = std::min(portion, codes.size() - i);
        moved += MoveAlong(std::string(ledger), std::span(codes).subspan(i, size));
        state.done += static_cast<std::int64_t>(size);
      }
      command.NoteFollowed(ledger, moved);
    }
    if (server_) connection_.Execute("set local enable_nestloop=on", Origin::kDesk);
  }

  [[nodiscard]] std::int64_t MoveAlong(const std::string& ledger, std::span<const NewCode> codes) {
    std::string list;
    for (const NewCode& code : codes) {
      list += (list.empty() ? "(" : ",(") + Literal(code.from) + "," + Literal(code.to) + ")";
    }
    // A server would read the whole ledger for each portion. Of a file the index is read, where
    // codes stand in another order.
    const std::string range = server_ ? " and " + ledger + ".ccode between " +
                                            Literal(codes.front().from) + " and " +
                                            Literal(codes.back().from)
                                      : std::string();
    return connection_.Execute("update " + ledger +
                                   " set ccode=c.column2 from(select column1,column2 from(values" +
                                   list + ")v)c where " + ledger + ".ccode=c.column1" + range,
                               Origin::kDesk);
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
  Transaction transaction(session);
  if (session.Own().Dialect() == SqlDialect::kPostgres) {
    // Of many accounts a statement takes longer than one of the user's may.
    session.Own().Execute("set local statement_timeout='10min'", Origin::kDesk);
  }
  const std::int64_t id = Undo(session, EntryToUndo(session, command), progress).Run();
  transaction.Commit();
  session.NoteChange();
  return id;
}

}  // namespace desk::book
