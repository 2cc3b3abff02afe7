#include "app/posting/posting_account.h"

#include <array>

#include "host/utf.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

struct Flag {
  Partner partner;
  const wchar_t* name;
};

/// In the order of the columns in the statement below.
constexpr std::array kFlags = {Flag{Partner::kDepartment, L"部门"}, Flag{Partner::kPerson, L"个人"},
                               Flag{Partner::kCustomer, L"客户"},
                               Flag{Partner::kSupplier, L"供应商"},
                               Flag{Partner::kProject, L"项目"}};

const std::string kSelect =
    "select ccode,ccode_name,bend,bdept,bperson,bcus,bsup,bitem from gl_code where ";

PostingAccount ReadAccount(const book::Rows& rows) {
  using tavrix::host::Wide;
  constexpr int kCode = 0;
  constexpr int kName = 1;
  constexpr int kLeaf = 2;
  constexpr int kFirstFlag = 3;
  PostingAccount account;
  account.code = Wide(rows.Get(kCode).ToText());
  account.name = Wide(rows.Get(kName).ToText());
  account.leaf = rows.Get(kLeaf).ToNumber() != 0;
  for (std::size_t i = 0; i < kFlags.size(); ++i) {
    const int column = kFirstFlag + static_cast<int>(i);
    if (rows.Get(column).ToNumber() != 0) account.wanted.push_back(kFlags[i].partner);
  }
  return account;
}

}  // namespace

const wchar_t* NameOf(Partner partner) {
  return kFlags[static_cast<std::size_t>(partner)].name;
}

std::wstring PartnersText(const book::Auxiliary& auxiliary) {
  std::string text;
  for (const std::string* part : {&auxiliary.department, &auxiliary.person, &auxiliary.customer,
                                  &auxiliary.supplier, &auxiliary.project}) {
    if (!part->empty()) text += (text.empty() ? "" : "/") + *part;
  }
  return tavrix::host::Wide(text);
}

std::optional<PostingAccount> FindPostingAccount(book::Session& session, const std::string& code) {
  const host::Value key(code);
  const auto rows = session.Own().Query(kSelect + "ccode=?", book::Origin::kDesk, {&key, 1});
  if (!rows->Next()) return std::nullopt;
  return ReadAccount(*rows);
}

std::vector<PostingAccount> FindTypedAccounts(book::Session& session, const std::string& typed) {
  const std::array<host::Value, 3> keys = {typed, typed, typed};
  const auto rows =
      session.Own().Query(kSelect + "ccode=? or ccode_name=? or chelp=? order by bend desc,ccode",
                          book::Origin::kDesk, keys);
  std::vector<PostingAccount> accounts;
  while (rows->Next()) accounts.push_back(ReadAccount(*rows));
  return accounts;
}

}  // namespace desk::app
