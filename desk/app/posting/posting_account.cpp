#include "app/posting/posting_account.h"

#include <array>

#include "viewkit/win32/wide.h"

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

}  // namespace

const wchar_t* NameOf(Partner partner) {
  return kFlags[static_cast<std::size_t>(partner)].name;
}

std::optional<PostingAccount> FindPostingAccount(book::Session& session, const std::string& code) {
  constexpr int kName = 0;
  constexpr int kLeaf = 1;
  constexpr int kFirstFlag = 2;
  const host::Value key(code);
  const auto rows = session.Own().Query(
      "select ccode_name,bend,bdept,bperson,bcus,bsup,bitem from gl_code where ccode=?",
      book::Origin::kDesk, {&key, 1});
  if (!rows->Next()) return std::nullopt;
  PostingAccount account;
  account.name = tavrix::viewkit::win32::Wide(rows->Get(kName).ToText());
  account.leaf = rows->Get(kLeaf).ToNumber() != 0;
  for (std::size_t i = 0; i < kFlags.size(); ++i) {
    const int column = kFirstFlag + static_cast<int>(i);
    if (rows->Get(column).ToNumber() != 0) account.wanted.push_back(kFlags[i].partner);
  }
  return account;
}

}  // namespace desk::app
