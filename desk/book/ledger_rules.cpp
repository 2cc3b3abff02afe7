#include "book/ledger_rules.h"

#include <utility>

namespace desk::book {

namespace {

constexpr const char* kLedgers[] = {"gl_accvouch", "gl_accass", "gl_accsum"};

constexpr const char* kNotMoved = "科目已有下级，不能修改编码";
constexpr const char* kPosted = "科目已经记账，不能删除";
constexpr const char* kNoParent = "上级科目不存在，可能已被其他用户删除";
constexpr const char* kAccountsBelow = "科目还有下级，不能删除";

// Behind a code come those that begin with it; no code has anything behind "~".
std::string Below(const std::string& code) {
  return "ccode>" + code + " and ccode<" + code + "||'~'";
}
std::string HasBelow(const std::string& code) {
  return "exists(select 1 from gl_code where " + Below(code) + ")";
}

std::string FirstLeafBelowNew() {
  return "select ccode from gl_code where " + Below("new.ccode") +
         " and bend<>0 order by ccode limit 1";
}

/// The lengths of codes that the code rule knows, as `l`: what its digits come to. `position` is
/// the engine's function that finds a text in another.
std::string Lengths(const std::string& position) {
  std::string levels = "(values(1)";  // more than any code rule has
  for (int i = 2; i <= 20; ++i) levels += ",(" + std::to_string(i) + ")";
  levels += ")";
  return "select cast((select sum(" + position +
         "('123456789',substr(item_value,m.column1,1)))from" + levels +
         "m where m.column1<=n.column1)as integer)as l from xt_accinformation," + levels +
         "n where system_code='system' and item_code='kmbm' and n.column1<=length(item_value)";
}

std::string Moves(const std::string& from, const std::string& to) {
  std::string moves;
  for (const char* ledger : kLedgers) {
    moves += std::string("update ") + ledger + " set ccode=" + to + " where ccode=" + from + ";";
  }
  return moves;
}

/// The change of `gl_code` that sets a rule off, which both engines write in one way.
std::string Trigger(const std::string& name, const std::string& change,
                    const std::string& condition) {
  return "create trigger gl_code_" + name + " after " + change + " on gl_code for each row when (" +
         condition + ") ";
}

std::string OnLosingLeaf() {
  return Trigger("parent", "update of bend", "old.bend<>0 and new.bend=0");
}
std::string OnNewCode() {
  return Trigger("moved", "update of ccode", "old.ccode<>new.ccode");
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

constexpr const char* kSetLeavesAboveOld =
    "update gl_code set bend=1 where bend=0 and ccode in(select substr(old.ccode,1,l)from "
    "gl_code_length where l<length(old.ccode))and not exists(select 1 from gl_code b where "
    "b.ccode>gl_code.ccode and b.ccode<gl_code.ccode||'~');";

std::string PostedOld() {
  std::string any;
  for (const char* ledger : kLedgers) {
    any += std::string(any.empty() ? "" : " or ") + "exists(select 1 from " + ledger +
           " where ccode=old.ccode)";
  }
  return any;
}

/// One statement may delete a parent before the accounts below it, which its rows do not know of
/// each other. A parent that goes while accounts have it as theirs is noted in a table whose key
/// refers to nothing: a note that is left at the end of the statement makes it fail.
void AppendSqliteDeletion(std::vector<std::string>& rules) {
  rules.emplace_back(
      "create table if not exists desk_lost_parent(code text primary key collate nocase,"
      "child_length integer,none text not null references desk_lost_parent(code))");
  rules.push_back(Trigger("deleted", "delete", "true") +
                  Body(Refuse(kPosted, PostedOld()) + kSetLeavesAboveOld));
  rules.push_back(
      Trigger("left", "delete", HasBelow("old.ccode")) +
      Body("insert into desk_lost_parent select old.ccode,below,'' from(select(select min(b.l)from "
           "gl_code_length b where b.l>c.l)as below from gl_code_length c where "
           "c.l=length(old.ccode)limit 1)where exists(select 1 from gl_code where " +
           Below("old.ccode") + " and length(ccode)=below);"));
  rules.push_back(
      Trigger("last", "delete", "exists(select 1 from desk_lost_parent)") +
      Body("delete from desk_lost_parent where length(old.ccode)=child_length and "
           "substr(old.ccode,1,length(code))=code and not exists(select 1 from gl_code where "
           "ccode>code and ccode<code||'~' and length(ccode)=child_length);"));
}

std::vector<std::string> SqliteRules() {
  const std::string leaf = "coalesce((" + FirstLeafBelowNew() + "),ccode)";
  std::vector<std::string> rules = {
      "create view if not exists gl_code_length as " + Lengths("instr"),
      OnLosingLeaf() + Body(Moves("new.ccode", leaf)),
      OnNewCode() +
          Body(Refuse(kNotMoved, HasBelow("old.ccode")) + Refuse(kNoParent, kLacksParent) +
               Moves("old.ccode", "new.ccode") + kSetLeavesAboveOld),
      Trigger("flag", "update of bend", "(new.bend<>0)=" + HasBelow("new.ccode")) +
          Body("update gl_code set bend=not " + HasBelow("new.ccode") + " where ccode=new.ccode;"),
      Trigger("added", "insert", "true") +
          Body(Refuse(kNoParent, kLacksParent) +
               "delete from desk_lost_parent where code=new.ccode;")};
  AppendSqliteDeletion(rules);
  return rules;
}

// ---- PostgreSQL: rules for rows that look at others run when the statement is through. ----

class PostgresScript {
 public:
  /// A function `name` that `trigger` runs.
  void Add(const std::string& trigger, const std::string& name, const std::string& body) {
    rules_.push_back("create function " + name + "() returns trigger language plpgsql as $$" +
                     body + "$$");
    rules_.push_back(trigger + "execute function " + name + "()");
  }
  void AddPlain(const std::string& statement) { rules_.push_back(statement); }
  [[nodiscard]] std::vector<std::string> Take() { return std::move(rules_); }

 private:
  std::vector<std::string> rules_;
};

std::string RaiseIf(const char* text, const std::string& when) {
  return "if " + when + " then raise exception using errcode='restrict_violation',message='" +
         text + "'; end if;";
}

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
         "where b.ccode>g.ccode and b.ccode<g.ccode||'~');";
}

std::string PostedGone() {
  std::string any;
  for (const std::string ledger : kLedgers) {
    any += (any.empty() ? "" : " or ") + std::string("exists(select 1 from gone join ") + ledger +
           " v on v.ccode=gone.ccode)";
  }
  return any;
}

constexpr const char* kLeftBelowGone =
    "exists(select 1 from gone o join(select l,(select min(b.l)from gl_code_lengths()b(l)where "
    "b.l>c.l)as below from gl_code_lengths()c(l))k on k.l=length(o.ccode)join gl_code g on "
    "g.ccode>o.ccode and g.ccode<o.ccode||'~' and length(g.ccode)=k.below)";

/// A function's statements see what others have committed meanwhile. Whoever changes accounts waits
/// first, before holding any row, until those who change accounts or post are done.
std::vector<std::string> PostgresRules() {
  PostgresScript script;
  const std::string end = " return null; end";
  script.AddPlain(
      "create function gl_code_lengths()returns setof integer language sql stable as $$" +
      Lengths("strpos") + "$$");
  script.Add(
      "create trigger gl_code_turn before insert or update of bend,ccode or delete on gl_code for "
      "each statement ",
      "gl_code_wait",
      "begin perform 1 from desk_identifier where table_name='schema_version' for update;" + end);
  script.Add("create trigger gl_code_flag before update of bend on gl_code for each row ",
             "gl_code_set_flag",
             "begin if " + HasBelow("new.ccode") +
                 " then new.bend:=0; elsif new.bend=0 then new.bend:=1; end if; return new; end");
  script.Add(OnLosingLeaf(), "gl_code_hand_down",
             "declare leaf text; begin leaf:=(" + FirstLeafBelowNew() +
                 ");if leaf is not null then " + Moves("new.ccode", "leaf") + " end if;" + end);
  script.Add(OnNewCode(), "gl_code_take_along",
             "begin " + RaiseIf(kNotMoved, HasBelow("old.ccode")) +
                 RaiseIf(kNoParent, LackParent("select new.ccode as ccode")) +
                 Moves("old.ccode", "new.ccode") + SetLeavesAbove("select old.ccode as ccode") +
                 end);
  script.Add(
      "create trigger gl_code_added after insert on gl_code referencing new table as added for "
      "each statement ",
      "gl_code_find_parents",
      "begin " + RaiseIf(kNoParent, LackParent("select ccode from added")) + end);
  script.Add(
      "create trigger gl_code_deleted after delete on gl_code referencing old table as gone for "
      "each statement ",
      "gl_code_keep",
      "begin " + RaiseIf(kPosted, PostedGone()) + RaiseIf(kAccountsBelow, kLeftBelowGone) +
          SetLeavesAbove("select ccode from gone") + end);
  return script.Take();
}

}  // namespace

std::vector<std::string> LedgerRules(Flavor flavor) {
  if (flavor == Flavor::kSqlite) return SqliteRules();
  if (flavor == Flavor::kPostgres) return PostgresRules();
  return {};
}

std::vector<std::string> DropEarlierRules(Flavor flavor) {
  if (flavor != Flavor::kSqlite && flavor != Flavor::kPostgres) return {};
  const bool server = flavor == Flavor::kPostgres;
  std::vector<std::string> drops;
  for (const std::string name : {"turn", "parent", "moved", "deleted"}) {
    drops.push_back("drop trigger if exists gl_code_" + name + (server ? " on gl_code" : ""));
  }
  if (!server) return drops;
  for (const std::string name : {"wait", "hand_down", "take_along", "keep"}) {
    drops.push_back("drop function if exists gl_code_" + name + "()");
  }
  return drops;
}

}  // namespace desk::book
