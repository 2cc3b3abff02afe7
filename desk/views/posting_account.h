#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "book/ledger/posting.h"
#include "book/session/session.h"

namespace desk::views {

/// What an entry may have to name beside its account, in the order of the account's flags.
enum class Partner { kDepartment, kPerson, kCustomer, kSupplier, kProject };

/// An account as vouchers need it.
struct PostingAccount {
  std::string code;
  std::string name;
  bool leaf = false;
  std::vector<Partner> wanted;
  std::string currency;  ///< the foreign currency it is kept in; empty for none
  std::string unit;      ///< the unit in which quantities are kept; empty for none
};

/// "部门", "客户" and so on.
[[nodiscard]] const char* NameOf(Partner partner);
/// All that an entry names, with a slash between.
[[nodiscard]] std::string PartnersText(const book::Auxiliary& auxiliary);

/// What is typed for the partners that an account wants, in its order, with a slash between.
[[nodiscard]] book::Auxiliary ReadPartners(const std::vector<Partner>& wanted,
                                           std::string_view typed);
/// What an account wants and an entry does not name; nothing when all is there.
[[nodiscard]] std::optional<Partner> Lacking(const std::vector<Partner>& wanted,
                                             const book::Auxiliary& auxiliary);

/// Nothing when there is no account of that code. Throws what the database raises.
[[nodiscard]] std::optional<PostingAccount> FindPostingAccount(book::Session& session,
                                                               const std::string& code);

/// All accounts with this code, name or mnemonic, leaf accounts first. Throws what the database
/// raises.
[[nodiscard]] std::vector<PostingAccount> FindTypedAccounts(book::Session& session,
                                                            const std::string& typed);

}  // namespace desk::views
