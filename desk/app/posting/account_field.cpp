#include "app/posting/account_field.h"

#include <algorithm>
#include <utility>

#include "app/frame/search_strip.h"
#include "app/posting/account_range.h"
#include "app/posting/posting_ids.h"
#include "host/error.h"
#include "host/flag_scope.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
using tavrix::host::FlagScope;
using tavrix::host::Narrow;
using tavrix::host::Wide;

std::wstring Quoted(const std::wstring& text) {
  return L"“" + text + L"”";
}

}  // namespace

void AccountField::Attach(HWND box, SharedStyle style, Plan plan) {
  box_ = box;
  style_ = std::move(style);
  plan_ = std::move(plan);
}

void AccountField::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  if (drop_down_) drop_down_->SetStyle(style_);
}

void AccountField::SetRange(std::size_t range, std::string typed) {
  if (range_ == range && range_typed_ == typed) return;
  range_ = range;
  range_typed_ = std::move(typed);
  // What was allowed before may not be now.
  account_.reset();
  plan_.changed();
}

std::wstring AccountField::Typed() const {
  return Wide(std::string(host::Trimmed(Narrow(WindowText(box_)))));
}

PickerDropDown& AccountField::DropDown() {
  if (drop_down_) return *drop_down_;
  const auto system = plan_.system();
  if (!system) throw host::HostError("没有打开的账簿");
  drop_down_ = PickerDropDown::Make(
      GetAncestor(box_, GA_ROOT), style_, system.Get(),
      {.closed = [this](const std::vector<std::wstring>& codes) { OnClosed(codes); }});
  return *drop_down_;
}

std::wstring AccountField::Resolve() {
  const std::wstring typed = Typed();
  if (account_ || typed.empty()) return {};
  return Find(typed);
}

std::wstring AccountField::Find(const std::wstring& typed) {
  // The picker puts what is typed into its statement as it stands.
  if (typed.find(L'\'') != std::wstring::npos) return L"科目中不能有单引号（'），可以改用’";
  AccountPicker& picker = DropDown().Picker();
  picker.SetParameters(ParametersOf(AccountRanges()[range_], range_typed_, true));
  const auto code = picker.Resolve(typed);
  std::vector<PostingAccount> found = plan_.typed(typed);
  if (!code) return Refusal(typed, found);
  // A name may stand under several parents, and the picker answers with any of them.
  const bool exact = std::ranges::any_of(
      found, [&](const PostingAccount& account) { return account.code == typed; });
  if (!exact) {
    std::erase_if(found, [&](const PostingAccount& account) {
      return picker.Resolve(account.code) != account.code;
    });
  }
  if (!exact && found.size() > 1) {
    return L"有" + std::to_wstring(found.size()) + L"个科目符合" + Quoted(typed) + L"，请按F4选择";
  }
  const auto account = plan_.account(*code);
  if (account) Set(*account);
  return {};
}

std::wstring AccountField::Refusal(const std::wstring& typed,
                                   const std::vector<PostingAccount>& found) const {
  if (found.empty()) return L"没有编码、名称或助记码为" + Quoted(typed) + L"的科目";
  const PostingAccount& first = found.front();  // a leaf account, if there is one
  const std::wstring name = Quoted(first.code + L" " + first.name);
  if (!first.leaf) return name + L"不是明细科目，请选择它的下级";
  return name + L"不在所选范围" + Quoted(AccountRanges()[range_].title) + L"之内";
}

void AccountField::Set(const PostingAccount& account) {
  account_ = account;
  const FlagScope showing(showing_);
  SetWindowTextW(box_, account.code.c_str());
  plan_.changed();
}

void AccountField::Clear() {
  account_.reset();
  const FlagScope showing(showing_);
  SetWindowTextW(box_, L"");
  plan_.changed();
}

void AccountField::OnTextChanged() {
  const bool same = account_ && Typed() == account_->code;
  if (showing_ || same) return;
  account_.reset();
  plan_.changed();
}

void AccountField::Open(bool several) {
  PickerDropDown& drop_down = DropDown();
  several_ = several;
  drop_down.Picker().SetParameters(ParametersOf(AccountRanges()[range_], range_typed_, !several));
  RECT field{};
  GetWindowRect(box_, &field);
  // A text that is an account already is where the list begins; it must not narrow the list.
  const bool narrows = account_ && drop_down.Picker().Filters();
  drop_down.Open(field, several || narrows ? std::wstring() : Typed());
}

void AccountField::OnClosed(const std::vector<std::wstring>& codes) {
  std::vector<PostingAccount> accounts;
  for (const std::wstring& code : codes) {
    if (const auto account = plan_.account(code)) accounts.push_back(*account);
  }
  if (!accounts.empty() && several_) return plan_.several(std::move(accounts));
  if (!accounts.empty()) Set(accounts.front());
  Focus();
}

void AccountField::Focus() {
  SetFocus(box_);
  SendMessageW(box_, EM_SETSEL, 0, -1);
}

bool AccountField::Translate(MSG& message) {
  if (drop_down_) {
    const auto keep = drop_down_;
    if (keep->Translate(message)) return true;
  }
  if (message.hwnd != box_) return false;
  const bool f4 = message.message == WM_KEYDOWN && message.wParam == VK_F4;
  const bool alt_down = message.message == WM_SYSKEYDOWN && message.wParam == VK_DOWN;
  if (!f4 && !alt_down) return false;
  const int id = f4 && GetKeyState(VK_SHIFT) < 0 ? kPostingSeveral : kPostingDrop;
  SendMessageW(GetParent(box_), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0);
  return true;
}

void AccountField::ForgetBook() {
  drop_down_.reset();
  Clear();
}

}  // namespace desk::app
