#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "book/chart/chart_account.h"
#include "book/chart/code_map.h"

/// Another code for an account, and with it for all accounts below it: what would change, before
/// anything does.
namespace desk::book {

/// The account that gets another code, with all below it, as they were read.
struct MovedSubtree {
  std::vector<ChartAccount> accounts = {};  ///< the topmost first
  PostingCount postings = {};
  std::string rule = {};
  [[nodiscard]] const ChartAccount& Top() const { return accounts.front(); }
};
/// `DatabaseError` also when there is no such account, or accounts cannot be rearranged here.
[[nodiscard]] MovedSubtree ReadMovedSubtree(Session& session, const std::string& code);

struct MovedAccount {
  ChartAccount account;
  std::string new_code = {};
  std::string note = {};     ///< what else becomes of it
  std::string refusal = {};  ///< why it cannot get that code; empty when it can
  friend bool operator==(const MovedAccount&, const MovedAccount&) = default;
};

struct MovePlan {
  std::string code;
  std::string new_code = {};
  std::vector<MovedAccount> rows;
  std::vector<std::string> notes;  ///< what becomes of others
  std::string refusal = {};  ///< of the whole; empty when single accounts are all that hinders
  std::size_t refused = 0;   ///< rows with a refusal
  std::string category;      ///< that all of them get; empty when they keep theirs

  [[nodiscard]] bool Allowed() const { return refusal.empty() && refused == 0; }
  /// The first reason against it; empty when there is none.
  [[nodiscard]] std::string WhyNot() const;
};

/// What becomes of `subtree` when its topmost account gets the code `new_code`. Refused are
/// - codes that the code rule has no level for, or whose parent is not there,
/// - codes that other accounts have, or that other accounts or postings begin with,
/// - places below the account itself,
/// - a parent that has been posted to: these postings would come to the account that moves, which
///   has its own.
/// The category follows the new parent's. `DatabaseError` when the book cannot be read.
[[nodiscard]] MovePlan PlanMove(Session& session, const MovedSubtree& subtree,
                                const std::string& new_code);

/// A free code for the account below `parent` (empty: on the first level), one behind those that
/// are there; nothing when the code rule has no room.
[[nodiscard]] std::optional<std::string> ProposeCode(Session& session, const MovedSubtree& subtree,
                                                     const std::string& parent);

}  // namespace desk::book
