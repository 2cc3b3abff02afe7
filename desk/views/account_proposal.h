#pragma once

#include <optional>
#include <string>
#include <vector>

#include "book/session/session.h"

namespace desk::views {

/// What a new account is proposed to have, because the one beside it has it.
struct AccountProposal {
  /// A box of the account's dialog that is ticked, and what is then chosen in the list beside it.
  struct Box {
    int control = 0;  ///< of the dialog's window, see docs/edit-dialog.md
    int list = 0;     ///< 0 for none
    std::string item = {};
    friend bool operator==(const Box&, const Box&) = default;
  };
  bool debit = true;
  std::vector<Box> boxes = {};
};

/// Nothing when there is no such account. Throws what the database raises.
[[nodiscard]] std::optional<AccountProposal> ProposalBeside(book::Session& session,
                                                            const std::string& code);

/// The largest identifier of an account, 0 without any.
[[nodiscard]] std::int64_t NewestAccount(book::Session& session);
/// The codes of the accounts that are newer, in the order of their making.
[[nodiscard]] std::vector<std::string> NewerAccounts(book::Session& session, std::int64_t than);

}  // namespace desk::views
