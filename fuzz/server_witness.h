#pragma once

#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "book/database/database.h"
#include "book/engines.h"
#include "book/session/schema.h"
#include "host/non_copyable.h"
#include "too_far.h"

namespace tavrix::fuzz {

/// A role on a PostgreSQL server (the one that TAVRIX_ODBC names) with rights on the tables of the
/// schema alone. Whatever else an accepted statement reaches for shows in the server's plan of it,
/// or is refused as "permission denied": `TooFar`.
class ServerWitness : private host::NonCopyable {
 public:
  explicit ServerWitness(const std::string& place) : owner_(Open(place)) {
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    name_ = "fuzz_" + std::to_string(now);
    Own("create role " + name_ + " login");
    Own("create schema " + name_ + "_hr");
    Own("create table " + name_ + "_hr.pay(i_id integer,ccode text,salary integer)");
    Own("create schema " + name_);
    Own("set search_path to " + name_ + "," + name_ + "_hr");
    for (const std::string& sql : desk::book::SchemaScript(desk::book::SqlDialect::kPostgres))
      Own(sql);
    // What the triggers touch is not the statement's affair.
    Own("alter table gl_code disable trigger user");
    Own("create table a(i_id integer,ccode text,salary integer)");
    Own("insert into gl_code(i_id,ccode)values(1,'1'),(2,'2')");
    Own("grant usage on schema " + name_ + "," + name_ + "_hr to " + name_);
    for (const auto& table : desk::book::SchemaTables()) {
      Own("grant select,insert,update,delete on " + std::string(table.name) + " to " + name_);
    }
    caller_ = Open(place + "Uid=" + name_ + ";");
    Caller("set search_path to " + name_ + "," + name_ + "_hr");
    Caller("set statement_timeout=1000");
  }
  ~ServerWitness() {
    caller_.reset();
    try {
      Own("drop schema " + name_ + "," + name_ + "_hr cascade");
      Own("drop role " + name_);
    } catch (const desk::book::DatabaseError&) {
      // What stays belongs to a server for tests.
    }
  }

  /// The server that the environment names; null without one.
  static ServerWitness* OfEnvironment() {
    static const std::unique_ptr<ServerWitness> witness = [] {
      const char* place = std::getenv("TAVRIX_ODBC");
      const bool named = place != nullptr && *place != '\0';
      return named ? std::make_unique<ServerWitness>(place) : nullptr;
    }();
    return witness.get();
  }

  /// Whether the server takes the statement; runs only some of those that it plans, to save time.
  [[nodiscard]] bool Look(const std::string& sql) {
    if (!Try([&] { CheckPlan(sql); })) return false;
    return ++planned_ % 8 != 0 || Try([&] { RunAndUndo(sql); });
  }

 private:
  static std::unique_ptr<desk::book::Connection> Open(const std::string& place) {
    return desk::book::EngineFor(place).Open({.path = place});
  }
  void Own(const std::string& sql) { owner_->Execute(sql, desk::book::Origin::kDesk); }
  void Caller(const std::string& sql) { caller_->Execute(sql, desk::book::Origin::kDesk); }

  template <class Action>
  static bool Try(const Action& action) {
    try {
      action();
      return true;
    } catch (const desk::book::DatabaseError& error) {
      const std::string text = error.what();
      RequireNear(text.find("permission denied") == std::string::npos, text);
      RequireNear(error.Kind() != desk::book::ErrorKind::kGone, text);
      // All that follows would be refused for that, and nothing looked at.
      RequireNear(text.find("transaction is aborted") == std::string::npos, text);
      return false;
    }
  }

  void RunAndUndo(const std::string& sql) {
    struct Undone : private host::NonCopyable {
      desk::book::Connection& connection;
      explicit Undone(desk::book::Connection& on) : connection(on) { connection.Begin(); }
      ~Undone() { connection.Rollback(); }
    };
    const Undone undone(*caller_);
    Caller(sql);
  }

  void CheckPlan(const std::string& sql) {
    const auto rows =
        caller_->Query("explain (verbose,format json) " + sql, desk::book::Origin::kDesk);
    std::string plan;
    while (rows->Next()) plan += rows->Get(0).ToText();
    RequireNear(plan.find("\"Plan\"") != std::string::npos, "no plan");
    ForEach(plan, "\"Schema\": \"",
            [this](const std::string& schema) { RequireNear(schema == name_, schema); });
    ForEach(plan, "\"Relation Name\": \"",
            [](std::string_view table) { Require(desk::book::FindSchemaTable(table) != nullptr); });
    RequireNear(plan.find("\"Function Name\"") == std::string::npos, "a function as a table");
    CheckCalls(WithoutTexts(plan));
  }

  template <class Use>
  static void ForEach(const std::string& plan, std::string_view key, const Use& use) {
    for (std::size_t at = 0; (at = plan.find(key, at)) != std::string::npos;) {
      at += key.size();
      use(plan.substr(at, plan.find('"', at) - at));
    }
  }

  static std::string WithoutTexts(const std::string& plan) {
    std::string rest;
    bool text = false;
    for (const char c : plan) {
      if (c == '\'') text = !text;
      if (!text && c != '\'') rest += c;
    }
    return rest;
  }

  /// Functions in expressions; those behind "octet_length" are the body of len.
  static void CheckCalls(const std::string& plan) {
    static constexpr std::string_view kKnown =
        " count max min sum avg len left coalesce abs round upper lower octet_length char_length "
        "regexp_replace ";
    for (std::size_t at = 0; (at = plan.find('(', at)) != std::string::npos; ++at) {
      std::size_t start = at;
      while (start > 0 &&
             (plan[start - 1] == '_' || (plan[start - 1] >= 'a' && plan[start - 1] <= 'z')))
        --start;
      if (start == at) continue;
      const std::string name = " " + plan.substr(start, at - start) + " ";
      RequireNear(kKnown.find(name) != std::string_view::npos, name);
    }
    for (const char* word : {"CURRENT_", "SESSION_USER", "LOCALTIME", ".*)::", "pg_catalog."}) {
      RequireNear(plan.find(word) == std::string::npos, word);
    }
  }

  std::unique_ptr<desk::book::Connection> owner_;
  std::unique_ptr<desk::book::Connection> caller_;
  std::string name_;
  long planned_ = 0;
};

}  // namespace tavrix::fuzz
