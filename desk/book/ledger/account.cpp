#include "book/ledger/account.h"

#include <array>

#include "book/ledger/code_rule.h"
#include "book/session/identifiers.h"

namespace desk::book {

namespace {

void InsertAccount(Connection& connection, const Account& account, std::int32_t id,
                   std::int32_t level, bool leaf) {
  const std::array<host::Value, 24> values = {id,
                                              account.category,
                                              account.code,
                                              account.name,
                                              account.english,
                                              level,
                                              account.debit,
                                              BookTypeOf(account),
                                              account.help,
                                              !account.currency.empty(),
                                              account.currency,
                                              account.unit,
                                              account.person,
                                              account.customer,
                                              account.supplier,
                                              account.department,
                                              account.project,
                                              account.journal,
                                              account.bank_book,
                                              account.cash,
                                              account.bank,
                                              account.cash || account.bank,
                                              leaf,
                                              account.closed};
  connection.Execute(
      "insert into gl_code(i_id,cclass,ccode,ccode_name,ccode_engl,igrade,bproperty,cbook_type,"
      "chelp,bexchange,cexch_name,cmeasure,bperson,bcus,bsup,bdept,bitem,br,be,bcash,bbank,"
      "bcashitem,bend,bclose)values(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
      Origin::kDesk, values);
}

}  // namespace

std::string BookTypeOf(const Account& account) {
  namespace type = host::book_type;
  const bool currency = !account.currency.empty();
  const bool quantity = !account.unit.empty();
  if (currency && quantity) return std::string(type::kAmountCurrencyQuantity);
  if (currency) return std::string(type::kAmountCurrency);
  return std::string(quantity ? type::kAmountQuantity : type::kAmount);
}

void InsertAccounts(Connection& connection, const std::vector<Account>& accounts,
                    const std::string& rule) {
  if (accounts.empty()) return;
  CodeRuleArithmetic arithmetic;
  const auto first =
      ReserveIdentifiers(connection, "gl_code", "i_id", static_cast<int>(accounts.size()));
  for (std::size_t i = 0; i < accounts.size(); ++i) {
    const std::string& code = accounts[i].code;
    const bool leaf = i + 1 == accounts.size() || !accounts[i + 1].code.starts_with(code);
    InsertAccount(connection, accounts[i], first + static_cast<std::int32_t>(i),
                  arithmetic.LevelOf(code, rule), leaf);
  }
}

}  // namespace desk::book
