#pragma once

#include <string>
#include <vector>

#include "book/ledger/account_card.h"

namespace desk::views {

/// What a pane shows of one account, in words and in parts of a thousand, ready to be drawn.
struct AccountSheet {
  struct Line {
    std::string label;
    std::string text;
    friend bool operator==(const Line&, const Line&) = default;
  };
  /// One month. The bars are thousandths of the largest movement that is shown.
  struct Bar {
    std::string month;
    std::string debit;  ///< empty for none, as are the others
    std::string credit;
    std::string balance;  ///< at its end, with its side
    int debit_bar = 0;
    int credit_bar = 0;
    friend bool operator==(const Bar&, const Bar&) = default;
  };
  static constexpr int kMaxMonths = 12;

  std::string code = {};
  std::string name = {};
  std::string path = {};  ///< category and parents, from the outside in
  bool sealed = false;
  std::vector<Line> lines = {};
  std::string balance = {};      ///< with its side
  std::string share = {};        ///< of the parent's balance; empty where there is none
  int share_bar = 0;             ///< at most 1000
  std::vector<Bar> months = {};  ///< the last of them, the newest at the end
};

[[nodiscard]] AccountSheet MakeAccountSheet(const book::AccountCard& card);

/// All of it line by line, for users who hear it.
[[nodiscard]] std::vector<std::string> SpokenLines(const AccountSheet& sheet);

/// "借 1,234.50", "贷 …"; "平" for zero.
[[nodiscard]] std::string SidedAmount(std::int64_t balance);

}  // namespace desk::views
