#pragma once

#include <memory>
#include <span>
#include <string>

#include "book/host/parameters.h"

namespace desk::views {

/// A choice of which accounts a voucher line may take, besides that they are leaf accounts.
struct AccountRange {
  const char* title;
  const char* key = nullptr;    ///< the picker's parameter; null for none
  const char* value = nullptr;  ///< null: the user types it
};

/// In the order in which they are offered; the first is all accounts.
[[nodiscard]] std::span<const AccountRange> AccountRanges();

/// The picker's parameters for `range`; `typed` is the user's part of it.
[[nodiscard]] std::shared_ptr<book::ParameterList> ParametersOf(const AccountRange& range,
                                                                const std::string& typed,
                                                                bool single);

}  // namespace desk::views
