#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "book/ledger/account.h"

namespace desk::book {

struct Currency {
  std::string code;
  std::string name;
};
struct Unit {
  std::string code;
  std::string name;
};

/// What a new book starts with.
struct Template {
  std::string title = {};
  std::string code_rule = "4222";
  std::vector<Account> accounts = {};  ///< in order of their codes
  std::vector<Currency> currencies = {};
  std::vector<Unit> units = {};
};

/// The standard charts that new books can start from: for enterprises, and for small enterprises.
/// Their titles are for users, in the order in which to offer them.
enum class StandardChart { kEnterprise, kSmallEnterprise };
inline constexpr StandardChart kStandardCharts[] = {StandardChart::kEnterprise,
                                                    StandardChart::kSmallEnterprise};
[[nodiscard]] std::string_view TitleOf(StandardChart chart);
[[nodiscard]] Template LoadTemplate(StandardChart chart);
/// Currencies and units, and no account.
[[nodiscard]] Template LoadEmptyTemplate();

/// The currency in which a book is kept unless its maker names another.
inline constexpr char kUsualCurrency[] = "人民币";
/// The names of the currencies in which a book may be kept, the usual one first.
[[nodiscard]] std::vector<std::string> BaseCurrencies();
/// Keeps the book in `currency`: what accounts may be kept in beside it are the others.
void SetBaseCurrency(Template& content, const std::string& currency);

/// Why a book cannot have this code rule, for users; empty when it can. The rule says how many
/// characters the codes of each level add, one digit for a level; the accounts that the book starts
/// with must stand on levels of it.
[[nodiscard]] std::string WhyNoCodeRule(const std::string& rule, std::span<const Account> accounts);

/// Reads a chart from lines of six columns separated by tabs: code, name, mnemonic code, category,
/// balance side, marks. What a sub-account leaves out of category and side is its parent's. Throws
/// `host::HostError` that names the line when it is wrong.
[[nodiscard]] std::vector<Account> ParseChart(std::span<const std::string_view> lines);

}  // namespace desk::book
