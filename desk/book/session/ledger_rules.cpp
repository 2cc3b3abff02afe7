#include "book/session/ledger_rules.h"

#include <utility>

#include "book/session/journal_rules.h"
#include "book/session/rules_pause.h"
#include "book/session/trigger_script.h"

namespace desk::book {

namespace {

constexpr const char* kNotMoved = "科目已有下级，不能修改编码";
constexpr const char* kPosted = "科目已经记账，不能删除";
constexpr const char* kNoParent = "上级科目不存在，可能已被其他用户删除";
constexpr const char* kAccountsBelow = "科目还有下级，不能删除";
constexpr const char* kNoCode = "科目编码不能为空";
constexpr const char* kWrongIsolation = "科目只能在隔离级别为 read committed 的事务中修改";

/// What both engines write in one way but for the names of a few functions.
class Dialect {
 public:
  /// `character` gives the character of a number, `position` finds a text in another.
  constexpr Dialect(const char* character, const char* position)
      : character_(character), position_(position) {}

  /// The codes that begin with `code` stand behind it, up to the last character that there is.
  [[nodiscard]] std::string Below(const std::string& code,
                                  const std::string& column = "ccode") const {
    return column + ">" + code + " and " + column + "<" + code + "||" + character_ + "(1114111)";
  }
  [[nodiscard]] std::string HasBelow(const std::string& code) const {
    return "exists(select 1 from gl_code where " + Below(code) + ")";
  }
  [[nodiscard]] std::string FirstLeafBelowNew() const {
    return "select ccode from gl_code where " + Below("new.ccode") +
           " and bend<>0 order by ccode limit 1";
  }
  [[nodiscard]] std::string Lengths() const;

 private:
  const char* character_;
  const char* position_;
};

constexpr Dialect kSqlite("char", "instr");
constexpr Dialect kPostgres("chr", "strpos");

/// The lengths of codes that the code rule knows, as `l`: what its digits come to.
std::string Dialect::Lengths() const {
  std::string levels = "(values(1)";  // more than any code rule has
  for (int i = 2; i <= 20; ++i) levels += ",(" + std::to_string(i) + ")";
  levels += ")";
  return "select cast((select sum(" + std::string(position_) +
         "('123456789',substr(item_value,m.column1,1)))from" + levels +
         "m where m.column1<=n.column1)as integer)as l from xt_accinformation," + levels +
         "n where system_code='system' and item_code='kmbm' and n.column1<=length(item_value)";
}

/// Postings that move, after a note of them in the history.
std::string Moves(SqlDialect dialect, MoveKind kind, const std::string& from,
                  const std::string& to) {
  const bool shared = dialect == SqlDialect::kPostgres;
  std::string moves = shared ? std::string(kLockLedgers) + ";" : "";
  for (const std::string_view ledger : kLedgerTables) {
    moves += NoteOfMove(dialect, kind, ledger, from, to) + ";update " + std::string(ledger) +
             " set ccode=" + to + " where ccode=" + from + ";";
  }
  return moves;
}

/// The change of `gl_code` that sets a rule off unless the rules pause.
std::string Trigger(SqlDialect dialect, const std::string& name, const std::string& change,
                    const std::string& condition) {
  return "create trigger gl_code_" + name + " after " + change +
         " on gl_code for each row when ((" + condition + ") and " + RulesWork(dialect) + ") ";
}
std::string SqliteTrigger(const std::string& name, const std::string& change,
                          const std::string& condition) {
  return Trigger(SqlDialect::kSqlite, name, change, condition);
}

std::string OnLosingLeaf(SqlDialect dialect) {
  return Trigger(dialect, "parent", "update of bend", "old.bend<>0 and new.bend=0");
}
/// `differs` is how the engine compares values that may be null.
std::string OnNewCode(SqlDialect dialect, const std::string& differs) {
  return Trigger(dialect, "moved", "update of ccode", "old.ccode " + differs + " new.ccode");
}

// ---- SQLite: each rule looks at one row, as it changes. ----

std::string Body(const std::string& steps) {
  return "begin " + steps + " end";
}

std::string Refuse(const char* text, const std::string& when) {
  return std::string("select raise(abort,'") + text + "')where " + when + ";";
}

constexpr const char* kLacksParent =
    "exists(select 1 from(select(select max(p.l)from gl_code_length p where p.l<c.l)as above "
    "from "
    "gl_code_length c where c.l=length(new.ccode))where above>0 and not exists(select 1 from "
    "gl_code where ccode=substr(new.ccode,1,above)))";

std::string SetLeavesAboveOld() {
  return "update gl_code set bend=1 where bend=0 and ccode in(select substr(old.ccode,1,l)from "
         "gl_code_length where l<length(old.ccode))and not exists(select 1 from gl_code b where " +
         kSqlite.Below("gl_code.ccode", "b.ccode") + ");";
}

/// Only a book with a code rule asks for codes: a copy gets its settings after the accounts.
constexpr const char* kLacksCode = "new.ccode is null and exists(select 1 from gl_code_length)";

/// The flag of an account that is new or has been given one.
std::string SetFlagOfNew() {
  return "update gl_code set bend=not " + kSqlite.HasBelow("new.ccode") + " where ccode=new.ccode;";
}

/// That a ledger has a row, between what stands before and behind its name.
std::string InAnyLedger(const char* before, const char* behind) {
  std::string any;
  for (const std::string_view ledger : kLedgerTables) {
    any +=
        (any.empty() ? "exists(" : " or exists(") + (before + std::string(ledger)) + behind + ")";
  }
  return any;
}

std::string PostedOld() {
  return InAnyLedger("select 1 from ", " where ccode=old.ccode");
}

/// One statement may delete a parent before the accounts below it, which its rows do not know of
/// each other. A parent that goes while accounts have it as theirs is noted in a table whose key
/// refers to nothing: a note that is left at the end of the statement makes it fail.
void AppendSqliteDeletion(std::vector<std::string>& rules) {
  rules.emplace_back(
      "create table desk_lost_parent(code text primary key collate nocase,"
      "child_length integer,none text not null references desk_lost_parent(code))");
  rules.push_back(SqliteTrigger("deleted", "delete", "true") +
                  Body(Refuse(kPosted, PostedOld()) + SetLeavesAboveOld()));
  rules.push_back(SqliteTrigger("left", "delete", kSqlite.HasBelow("old.ccode")) +
                  Body("delete from desk_lost_parent where code=old.ccode;insert into "
                       "desk_lost_parent select old.ccode,below,'' from(select(select min(b.l)from "
                       "gl_code_length b where b.l>c.l)as below from gl_code_length c where "
                       "c.l=length(old.ccode)limit 1)where exists(select 1 from gl_code where " +
                       kSqlite.Below("old.ccode") + " and length(ccode)=below);"));
  rules.push_back(
      SqliteTrigger("last", "delete", "exists(select 1 from desk_lost_parent)") +
      Body("delete from desk_lost_parent where length(old.ccode)=child_length and "
           "substr(old.ccode,1,length(code))=code and not exists(select 1 from gl_code where " +
           kSqlite.Below("code") + " and length(ccode)=child_length);"));
}

std::vector<std::string> SqliteRules() {
  const std::string leaf = "coalesce((" + kSqlite.FirstLeafBelowNew() + "),new.ccode)";
  const std::string below_new = kSqlite.HasBelow("new.ccode");
  std::vector<std::string> rules = {
      "create view gl_code_length as " + kSqlite.Lengths(),
      OnLosingLeaf(SqlDialect::kSqlite) +
          Body(Moves(SqlDialect::kSqlite, MoveKind::kHandedDown, "new.ccode", leaf)),
      OnNewCode(SqlDialect::kSqlite, "is not") +
          Body(Refuse(kNoCode, kLacksCode) + Refuse(kNotMoved, kSqlite.HasBelow("old.ccode")) +
               Refuse(kNoParent, kLacksParent) +
               Moves(SqlDialect::kSqlite, MoveKind::kWithAccount, "old.ccode", "new.ccode") +
               SetLeavesAboveOld()),
      SqliteTrigger("flag", "update of bend", "(new.bend<>0)=" + below_new) + Body(SetFlagOfNew()),
      // None is made a leaf here: the accounts below it may be the next that come.
      SqliteTrigger("above", "insert",
                    "new.bend<>0 and " + below_new + " and exists(select 1 from gl_code_length)") +
          Body(SetFlagOfNew()),
      SqliteTrigger("added", "insert", "true") +
          Body(Refuse(kNoCode, kLacksCode) + Refuse(kNoParent, kLacksParent) +
               "delete from desk_lost_parent where code=new.ccode;")};
  AppendSqliteDeletion(rules);
  return rules;
}

// ---- PostgreSQL: rules for rows that look at others run when the statement is through. ----

std::string RaiseIf(const char* text, const std::string& when) {
  return "if " + when + " then raise exception using errcode='restrict_violation',message='" +
         text + "'; end if;";
}

constexpr SqlDialect kServer = SqlDialect::kPostgres;

constexpr const char* kHasCodeRule = "exists(select 1 from gl_code_lengths())";

/// Whether one of `codes`, a query, lacks its parent.
std::string LackParent(const std::string& codes) {
  return "exists(select 1 from(" + codes +
         ")a join(select l,(select max(p.l)from gl_code_lengths()p(l)where p.l<c.l)as above from "
         "gl_code_lengths()c(l))k on k.l=length(a.ccode)and k.above>0 where not exists(select 1 "
         "from gl_code g where g.ccode=substr(a.ccode,1,k.above)))";
}

/// Accounts above those of `codes` that have nothing below them any more.
std::string SetLeavesAbove(const std::string& codes) {
  return "update gl_code g set bend=1 where bend=0 and ccode in(select substr(a.ccode,1,k.l)from(" +
         codes +
         ")a,gl_code_lengths()k(l)where k.l<length(a.ccode))and not exists(select 1 from gl_code b "
         "where " +
         kPostgres.Below("g.ccode", "b.ccode") + ");";
}

std::string PostedGone() {
  return InAnyLedger("select 1 from gone join ", " v on v.ccode=gone.ccode");
}

/// One look into the index for each that goes: thousands may.
std::string LeftBelowGone() {
  return "exists(select 1 from gone o join(select l,(select min(b.l)from "
         "gl_code_lengths()b(l)where "
         "b.l>c.l)as below from gl_code_lengths()c(l))k on k.l=length(o.ccode)cross join "
         "lateral(select 1 from gl_code g where " +
         kPostgres.Below("o.ccode", "g.ccode") + " and length(g.ccode)=k.below limit 1)b)";
}

/// Whether one of `codes`, a query, is none, in a book with a code rule.
std::string LackCode(const std::string& codes) {
  return kHasCodeRule + (" and exists(select 1 from(" + codes + ")a where a.ccode is null)");
}

/// None is made a leaf here: the accounts below it may be the next that come.
std::string SetFlagsOfAdded() {
  return "if " + std::string(kHasCodeRule) +
         " then update gl_code g set bend=0 where bend<>0 and ccode in(select ccode from added)and "
         "exists(select 1 from gl_code b where " +
         kPostgres.Below("g.ccode", "b.ccode") + "); end if;";
}

/// A function's statements see what others have committed meanwhile, at the level of isolation that
/// the first rule asks for. Whoever changes accounts waits there, before holding any row, until
/// those who change accounts or post are done.
std::vector<std::string> PostgresRules() {
  PostgresScript script;
  const std::string below_new = kPostgres.HasBelow("new.ccode");
  const std::string end = " return null;";
  const std::string statement = "for each statement when (" + RulesWork(kServer) + ") ";
  script.AddPlain(
      "create function gl_code_lengths()returns setof integer language sql stable as $$" +
      kPostgres.Lengths() + "$$");
  script.Add(
      "create trigger gl_code_turn before insert or update of bend,ccode or delete on gl_code for "
      "each statement ",
      "gl_code_wait",
      RaiseIf(kWrongIsolation,
              "current_setting('transaction_isolation')in('repeatable read','serializable')") +
          "perform 1 from desk_identifier where table_name='schema_version' for update;" + end);
  script.Add("create trigger gl_code_flag before update of bend on gl_code for each row when (" +
                 RulesWork(kServer) + ") ",
             "gl_code_set_flag",
             "if " + below_new +
                 " then new.bend:=0; elsif new.bend=0 then new.bend:=1; end if; return new;");
  script.Add(OnLosingLeaf(kServer), "gl_code_hand_down",
             "leaf:=(" + kPostgres.FirstLeafBelowNew() + ");if leaf is not null then " +
                 Moves(kServer, MoveKind::kHandedDown, "new.ccode", "leaf") + " end if;" + end);
  const std::string of_new = "select new.ccode as ccode";
  script.Add(OnNewCode(kServer, "is distinct from"), "gl_code_take_along",
             RaiseIf(kNoCode, LackCode(of_new)) +
                 RaiseIf(kNotMoved, kPostgres.HasBelow("old.ccode")) +
                 RaiseIf(kNoParent, LackParent(of_new)) +
                 Moves(kServer, MoveKind::kWithAccount, "old.ccode", "new.ccode") +
                 SetLeavesAbove("select old.ccode as ccode") + end);
  const std::string of_added = "select ccode from added";
  script.Add(
      "create trigger gl_code_added after insert on gl_code referencing new table as added " +
          statement,
      "gl_code_find_parents",
      RaiseIf(kNoCode, LackCode(of_added)) + RaiseIf(kNoParent, LackParent(of_added)) +
          SetFlagsOfAdded() + end);
  script.Add(
      "create trigger gl_code_deleted after delete on gl_code referencing old table as gone " +
          statement,
      "gl_code_keep",
      RaiseIf(kPosted, PostedGone()) + RaiseIf(kAccountsBelow, LeftBelowGone()) +
          SetLeavesAbove("select ccode from gone") + end);
  return script.Take();
}

}  // namespace

std::vector<std::string> LedgerRules(SqlDialect dialect) {
  if (dialect == SqlDialect::kSqlite) return SqliteRules();
  if (dialect == SqlDialect::kPostgres) return PostgresRules();
  return {};
}

std::vector<std::string> DropEarlierRules(SqlDialect dialect) {
  if (dialect != SqlDialect::kSqlite && dialect != SqlDialect::kPostgres) return {};
  const bool server = dialect == SqlDialect::kPostgres;
  std::vector<std::string> drops;
  for (const std::string name :
       {"turn", "parent", "moved", "deleted", "flag", "above", "added", "left", "last"}) {
    drops.push_back("drop trigger if exists gl_code_" + name + (server ? " on gl_code" : ""));
  }
  if (!server) {
    drops.push_back("drop view if exists " + std::string(kCodeLengthViewName));
    drops.push_back("drop table if exists " + std::string(kLostParentTableName));
    return drops;
  }
  for (const std::string name :
       {"wait", "hand_down", "take_along", "keep", "set_flag", "find_parents", "lengths"}) {
    drops.push_back("drop function if exists gl_code_" + name + "()");
  }
  return drops;
}

}  // namespace desk::book
