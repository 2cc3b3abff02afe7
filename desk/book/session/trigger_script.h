#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

/// What the triggers of a book are written with.
namespace desk::book {

/// The tables of postings.
inline constexpr std::array<std::string_view, 3> kLedgerTables = {"gl_accvouch", "gl_accass",
                                                                  "gl_accsum"};

/// On PostgreSQL: a transaction, or a trigger, that moves postings keeps other programs' out.
inline constexpr std::string_view kLockLedgers =
    "lock table gl_accvouch,gl_accass,gl_accsum in share row exclusive mode";

/// Statements that make functions and triggers on PostgreSQL.
class PostgresScript {
 public:
  /// A function `name` that `trigger` runs. Its tables are those beside the one that changes,
  /// whichever book of the database the connection is for; for as long as it runs.
  void Add(const std::string& trigger, const std::string& name, const std::string& body);
  /// Another trigger for the function that was added last.
  void AddTrigger(const std::string& trigger);
  void AddPlain(const std::string& statement) { script_.push_back(statement); }
  [[nodiscard]] std::vector<std::string> Take();

 private:
  std::vector<std::string> script_;
  std::string function_;
};

}  // namespace desk::book
