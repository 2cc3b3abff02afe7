#include "book/ledger_rules.h"

namespace desk::book {

namespace {

constexpr const char* kLedgers[] = {"gl_accvouch", "gl_accass", "gl_accsum"};

// Behind a code come those that begin with it; no code has anything behind "~".
constexpr const char* kFirstLeafBelow =
    "select ccode from gl_code where ccode>new.ccode and ccode<new.ccode||'~' and bend<>0 "
    "order by ccode limit 1";
constexpr const char* kHasBelowOld =
    "exists(select 1 from gl_code where ccode>old.ccode and ccode<old.ccode||'~')";
constexpr const char* kNotMoved = "科目已有下级，不能修改编码";
constexpr const char* kNotDeleted = "科目已经记账，不能删除";

std::string Moves(const std::string& from, const std::string& to) {
  std::string moves;
  for (const char* ledger : kLedgers) {
    moves += std::string("update ") + ledger + " set ccode=" + to + " where ccode=" + from + ";";
  }
  return moves;
}

std::string HasPostings() {
  std::string any;
  for (const char* ledger : kLedgers) {
    any += std::string(any.empty() ? "" : " or ") + "exists(select 1 from " + ledger +
           " where ccode=old.ccode)";
  }
  return any;
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

std::vector<std::string> SqliteRules() {
  const auto refuse = [](const char* text, const std::string& when) {
    return std::string("select raise(abort,'") + text + "') where " + when + ";";
  };
  const auto body = [](const std::string& steps) { return "begin " + steps + " end"; };
  const std::string leaf = std::string("coalesce((") + kFirstLeafBelow + "),ccode)";
  return {OnLosingLeaf() + body(Moves("new.ccode", leaf)),
          OnNewCode() + body(refuse(kNotMoved, kHasBelowOld) + Moves("old.ccode", "new.ccode")),
          Trigger("deleted", "delete", "true") + body(refuse(kNotDeleted, HasPostings()))};
}

/// A function's statements see what others have committed meanwhile. Whoever changes accounts waits
/// first, before holding any row, until those who change accounts or post are done.
std::vector<std::string> PostgresRules() {
  std::vector<std::string> rules;
  const auto add = [&](const std::string& trigger, const std::string& name,
                       const std::string& body) {
    rules.push_back("create function " + name + "() returns trigger language plpgsql as $$" + body +
                    "$$");
    rules.push_back(trigger + "execute function " + name + "()");
  };
  const auto refuse = [](const char* text, const std::string& when) {
    return "if " + when + " then raise exception using errcode='restrict_violation',message='" +
           text + "'; end if;";
  };
  const std::string end = " return null; end";
  add("create trigger gl_code_turn before update of bend,ccode or delete on gl_code for each "
      "statement ",
      "gl_code_wait",
      "begin perform 1 from desk_identifier where table_name='schema_version' for update;" + end);
  add(OnLosingLeaf(), "gl_code_hand_down",
      std::string("declare leaf text; begin leaf:=(") + kFirstLeafBelow + ");if leaf is not null " +
          "then " + Moves("new.ccode", "leaf") + " end if;" + end);
  add(OnNewCode(), "gl_code_take_along",
      "begin " + refuse(kNotMoved, kHasBelowOld) + Moves("old.ccode", "new.ccode") + end);
  add(Trigger("deleted", "delete", "true"), "gl_code_keep",
      "begin " + refuse(kNotDeleted, HasPostings()) + end);
  return rules;
}

}  // namespace

std::vector<std::string> LedgerRules(Flavor flavor) {
  if (flavor == Flavor::kSqlite) return SqliteRules();
  if (flavor == Flavor::kPostgres) return PostgresRules();
  return {};
}

}  // namespace desk::book
