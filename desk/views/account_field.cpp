#include "views/account_field.h"

#include <algorithm>
#include <utility>

#include "host/flag_scope.h"
#include "host/text.h"
#include "views/account_range.h"

namespace desk::views {

namespace host = tavrix::host;

namespace {

std::string Quoted(const std::string& text) {
  return "“" + text + "”";
}

}  // namespace

AccountField::AccountField(viewkit::TextBox& box, AccountChooser& chooser, Calls calls)
    : box_(box), chooser_(chooser), calls_(std::move(calls)) {
  box_.Changed.Add([this] { OnTextChanged(); });
}

void AccountField::SetRange(std::size_t range, std::string typed) {
  if (range_ == range && range_typed_ == typed) return;
  range_ = range;
  range_typed_ = std::move(typed);
  // What was allowed before may not be now.
  account_.reset();
  calls_.changed();
}

std::string AccountField::Typed() const {
  return std::string(host::Trimmed(box_.Text()));
}

std::optional<PostingAccount> AccountField::AccountOf(const std::string& code) const {
  book::Session* session = calls_.session();
  return session == nullptr ? std::nullopt : FindPostingAccount(*session, code);
}

std::vector<PostingAccount> AccountField::TypedAccounts(const std::string& typed) const {
  book::Session* session = calls_.session();
  return session == nullptr ? std::vector<PostingAccount>() : FindTypedAccounts(*session, typed);
}

std::string AccountField::Resolve() {
  const std::string typed = Typed();
  if (account_ || typed.empty()) return {};
  return Find(typed);
}

std::string AccountField::Find(const std::string& typed) {
  // The picker puts what is typed into its statement as it stands.
  if (typed.find('\'') != std::string::npos) return "科目中不能有单引号（'），可以改用’";
  chooser_.SetParameters(ParametersOf(AccountRanges()[range_], range_typed_, true));
  auto code = chooser_.Resolve(typed);
  std::vector<PostingAccount> found = TypedAccounts(typed);
  if (!code) code = ResolvedWithoutCase(found);
  if (!code) return Refusal(typed, found);
  // A name may stand under several parents, and the picker answers with any of them.
  const bool exact = std::ranges::any_of(
      found, [&](const PostingAccount& account) { return account.code == typed; });
  if (!exact) {
    std::erase_if(found, [&](const PostingAccount& account) {
      return chooser_.Resolve(account.code) != account.code;
    });
  }
  if (!exact && found.size() > 1) {
    return "有" + std::to_string(found.size()) + "个科目符合" + Quoted(typed) + "，请按F4选择";
  }
  if (const auto account = AccountOf(*code)) Set(*account);
  return {};
}

/// The picker compares mnemonics with case, people do not: the first account that it takes by its
/// code.
std::optional<std::string> AccountField::ResolvedWithoutCase(
    const std::vector<PostingAccount>& found) {
  for (const PostingAccount& account : found) {
    if (auto code = chooser_.Resolve(account.code); code == account.code) return code;
  }
  return std::nullopt;
}

std::string AccountField::Refusal(const std::string& typed,
                                  const std::vector<PostingAccount>& found) const {
  if (found.empty()) return "没有编码、名称或助记码为" + Quoted(typed) + "的科目";
  const PostingAccount& first = found.front();  // a leaf account, if there is one
  const std::string name = Quoted(first.code + " " + first.name);
  if (!first.leaf) return name + "不是明细科目，请选择它的下级";
  return name + "不在所选范围" + Quoted(AccountRanges()[range_].title) + "之内";
}

void AccountField::Set(const PostingAccount& account) {
  account_ = account;
  const host::FlagScope showing(showing_);
  box_.SetText(account.code);
  calls_.changed();
}

void AccountField::SetTyped(const std::string& text) {
  account_.reset();
  const host::FlagScope showing(showing_);
  box_.SetText(text);
  calls_.changed();
}

void AccountField::OnTextChanged() {
  const bool same = account_ && Typed() == account_->code;
  if (showing_ || same) return;
  account_.reset();
  calls_.changed();
}

void AccountField::Open(bool several) {
  several_ = several;
  chooser_.SetParameters(ParametersOf(AccountRanges()[range_], range_typed_, !several));
  // A text that is an account already is where the list begins; it must not narrow the list.
  const bool narrows = account_ && chooser_.Filters();
  chooser_.Open(several || narrows ? std::string() : Typed());
}

void AccountField::Picked(const std::vector<std::string>& codes) {
  std::vector<PostingAccount> accounts;
  for (const std::string& code : codes) {
    if (const auto account = AccountOf(code)) accounts.push_back(*account);
  }
  if (!accounts.empty() && several_) return calls_.several(accounts);
  if (!accounts.empty()) Set(accounts.front());
  box_.SetFocus();
  box_.SelectAll();
}

}  // namespace desk::views
