#include "views/posting_account.h"

#include <algorithm>
#include <array>

#include "host/text.h"

namespace desk::views {
namespace {

namespace host = tavrix::host;

struct Flag {
  Partner partner;
  const char* name;
};

/// In the order of the columns in the statement below.
constexpr std::array kFlags = {Flag{Partner::kDepartment, "部门"}, Flag{Partner::kPerson, "个人"},
                               Flag{Partner::kCustomer, "客户"}, Flag{Partner::kSupplier, "供应商"},
                               Flag{Partner::kProject, "项目"}};

const std::string kSelect =
    "select ccode,ccode_name,bend,bexchange,cexch_name,cmeasure,bdept,bperson,bcus,bsup,bitem from "
    "gl_code where ";

PostingAccount ReadAccount(const book::Rows& rows) {
  enum Column { kCode, kName, kLeaf, kForeign, kCurrency, kUnit, kFirstFlag };
  PostingAccount account;
  account.code = rows.Get(kCode).ToText();
  account.name = rows.Get(kName).ToText();
  account.leaf = rows.Get(kLeaf).ToNumber() != 0;
  if (rows.Get(kForeign).ToNumber() != 0) account.currency = rows.Get(kCurrency).ToText();
  account.unit = rows.Get(kUnit).ToText();
  for (std::size_t i = 0; i < kFlags.size(); ++i) {
    const int column = kFirstFlag + static_cast<int>(i);
    if (rows.Get(column).ToNumber() != 0) account.wanted.push_back(kFlags[i].partner);
  }
  return account;
}

std::string book::Auxiliary::*TextOf(Partner partner) {
  constexpr std::array kTexts = {&book::Auxiliary::department, &book::Auxiliary::person,
                                 &book::Auxiliary::customer, &book::Auxiliary::supplier,
                                 &book::Auxiliary::project};
  return kTexts.at(static_cast<std::size_t>(partner));
}

}  // namespace

const char* NameOf(Partner partner) {
  return kFlags[static_cast<std::size_t>(partner)].name;
}

std::string PartnersText(const book::Auxiliary& auxiliary) {
  std::string text;
  for (const std::string* part : {&auxiliary.department, &auxiliary.person, &auxiliary.customer,
                                  &auxiliary.supplier, &auxiliary.project}) {
    if (!part->empty()) text += (text.empty() ? "" : "/") + *part;
  }
  return text;
}

book::Auxiliary ReadPartners(const std::vector<Partner>& wanted, std::string_view typed) {
  book::Auxiliary auxiliary;
  for (const Partner partner : wanted) {
    const std::size_t end = std::min(typed.find('/'), typed.size());
    auxiliary.*TextOf(partner) = host::Trimmed(typed.substr(0, end));
    typed.remove_prefix(std::min(end + 1, typed.size()));
  }
  return auxiliary;
}

std::optional<Partner> Lacking(const std::vector<Partner>& wanted,
                               const book::Auxiliary& auxiliary) {
  const auto lacking = std::ranges::find_if(
      wanted, [&](Partner partner) { return (auxiliary.*TextOf(partner)).empty(); });
  if (lacking == wanted.end()) return std::nullopt;
  return *lacking;
}

std::optional<PostingAccount> FindPostingAccount(book::Session& session, const std::string& code) {
  const host::Value key(code);
  const auto rows = session.Own().Query(kSelect + "ccode=?", book::Origin::kDesk, {&key, 1});
  if (!rows->Next()) return std::nullopt;
  return ReadAccount(*rows);
}

std::vector<PostingAccount> FindTypedAccounts(book::Session& session, const std::string& typed) {
  const std::array<host::Value, 3> keys = {typed, typed, host::LowerCase(typed)};
  const auto rows = session.Own().Query(
      kSelect + "ccode=? or ccode_name=? or lower(chelp)=? order by bend desc,ccode",
      book::Origin::kDesk, keys);
  std::vector<PostingAccount> accounts;
  while (rows->Next()) accounts.push_back(ReadAccount(*rows));
  return accounts;
}

}  // namespace desk::views
