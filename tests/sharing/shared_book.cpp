#include "sharing/shared_book.h"

#include <map>
#include <set>

namespace tavrix::sharing {

namespace {

constexpr std::size_t kLevelWidth = 4;

}  // namespace

std::vector<std::string> ChartFaultsOf(const desk::book::Book& book) {
  std::vector<std::string> faults;
  struct Account {
    std::string level;
    std::string leaf;
  };
  std::map<std::string, Account> accounts;
  std::set<std::string> parents;
  const auto rows = book.GetSession().Own().Query("select ccode,igrade,bend from gl_code",
                                                  desk::book::Origin::kDesk);
  while (rows->Next()) {
    const std::string code = rows->Get(0).ToText();
    const bool fresh =
        accounts.emplace(code, Account{rows->Get(1).ToText(), rows->Get(2).ToText()}).second;
    if (!fresh) faults.push_back("twice: " + code);
    if (code.size() > kLevelWidth) parents.insert(code.substr(0, code.size() - kLevelWidth));
  }
  for (const std::string& parent : parents) {
    if (!accounts.contains(parent)) faults.push_back("no parent: " + parent);
  }
  for (const auto& [code, account] : accounts) {
    const std::string level = std::to_string(code.size() / kLevelWidth);
    if (code.size() % kLevelWidth != 0 || account.level != level)
      faults.push_back("level: " + code);
    const bool parent = parents.contains(code);
    if (account.leaf == (parent ? "0" : "1")) continue;
    faults.push_back((parent && account.leaf == "1" ? "late leaf: " : "leaf: ") + code);
  }
  return faults;
}

std::vector<std::string> LedgerFaultsOf(const desk::book::Book& book) {
  std::vector<std::string> faults;
  const auto none = [&](const std::string& what, const std::string& sql) {
    for (const std::string& row : test::AllRows(book, sql)) faults.push_back(what + row);
  };
  none("posted above: ",
       "select ccode from gl_accvouch where ccode not in(select ccode from gl_code where bend=1)");
  none("no balance: ",
       "select voucher_number from gl_accvouch group by fiscal_year,fiscal_period,voucher_number "
       "having sum(debit)<>sum(credit) or count(*)<>2");
  const std::string sums = "select ccode,sum(debit),sum(credit) from ";
  none("totals: ", "select * from (" + sums + "gl_accvouch group by ccode except " + sums +
                       "gl_accsum group by ccode) x");
  none("totals: ", "select * from (" + sums + "gl_accsum group by ccode except " + sums +
                       "gl_accvouch group by ccode) x");
  return faults;
}

std::vector<std::string> FaultsOf(const desk::book::Book& book) {
  std::vector<std::string> faults = LedgerFaultsOf(book);
  for (std::string& fault : ChartFaultsOf(book)) faults.push_back(std::move(fault));
  return faults;
}

}  // namespace tavrix::sharing
