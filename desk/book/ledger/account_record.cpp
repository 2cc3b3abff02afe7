#include "book/ledger/account_record.h"

#include "host/account.h"

namespace desk::book {

namespace {

/// In the order of the fields.
constexpr std::array<std::string_view, kAccountFields> kColumns = {
    "ccode",      "ccode_name", "cclass",  "chelp",     "ccode_engl", "cbook_type",
    "cexch_name", "cmeasure",   "cgather", "cother",    "bproperty",  "bexchange",
    "bdept",      "bperson",    "bcus",    "bsup",      "bitem",      "br",
    "be",         "bcash",      "bbank",   "bcashitem", "bclose"};

std::string Statement(const std::string& condition) {
  std::string columns;
  for (const std::string_view column : kColumns) columns += "," + std::string(column);
  return "select i_id,igrade,bend" + columns + " from gl_code " + condition + " order by ccode";
}

/// A flag that is set: engines give it as a number or as a word.
bool IsSet(const host::Value& value) {
  return value.ToNumber() != 0;
}

KeptAccount AccountAt(const Rows& rows) {
  constexpr int kBefore = 3;
  KeptAccount kept{
      .id = IntegerAt(rows, 0), .level = rows.Get(1).ToLong(), .leaf = IsSet(rows.Get(2))};
  for (std::size_t i = 0; i < kAccountFields; ++i) {
    const auto field = static_cast<AccountField>(i);
    const host::Value value = rows.Get(kBefore + static_cast<int>(i));
    if (IsFlag(field)) {
      kept.account.SetFlag(field, IsSet(value));
    } else {
      kept.account.Text(field) = value.ToText();
    }
  }
  return kept;
}

}  // namespace

std::string_view ColumnOf(AccountField field) {
  return kColumns.at(IndexOf(field));
}

std::string AccountRecord::Shown(AccountField field) const {
  if (!IsFlag(field)) return Text(field);
  if (field == AccountField::kDebit) {
    return std::string(Flag(field) ? host::kDebit : host::kCredit);
  }
  return Flag(field) ? "是" : "";
}

std::vector<KeptAccount> ReadAccounts(Session& session, const std::string& condition,
                                      Values parameters) {
  const auto rows = session.Own().Query(Statement(condition), Origin::kDesk, parameters);
  std::vector<KeptAccount> accounts;
  while (rows->Next()) accounts.push_back(AccountAt(*rows));
  return accounts;
}

}  // namespace desk::book
