#include "views/voucher_view.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include "book/ledger/money_text.h"
#include "host/report.h"
#include "host/text.h"
#include "views/account_range.h"

namespace desk::views {

namespace host = tavrix::host;
using viewkit::CommandButton;
using viewkit::Key;

VoucherView::VoucherView(Plan plan, AccountChooser& chooser, viewkit::UserPort& user)
    : plan_(std::move(plan)),
      user_(user),
      field_(code_, chooser,
             {.session = plan_.session,
              .changed = [this] { ShowAccount(); },
              .several = [this](const auto& accounts) { AddAccounts(accounts); }}) {
  MakeControls();
  Listen();
  EditNew();
}

/// What the user has asked for; a failure is told at the foot.
template <class Body>
void VoucherView::Trapped(Body&& body) {
  try {
    body();
  } catch (const std::exception& error) {
    Answer(host::ErrorText(error), true, &code_);
  }
}

void VoucherView::Listen() {
  for (std::size_t i = 0; i < controls_.Count(); ++i) {
    viewkit::Control& control = controls_.At(i);
    control.GotFocus.Add([this, &control] { FocusArrived(control); });
  }
  const auto on_click = [this](CommandButton& button, auto&& action) {
    button.Clicked.Add([this, action] { Trapped(action); });
  };
  on_click(drop_, [this] { field_.Open(false); });
  on_click(several_, [this] { field_.Open(true); });
  on_click(take_, [this] { TakeSelected(); });
  on_click(add_, [this] { OnEnter(); });
  remove_.Clicked.Add([this] { RemoveChosen(); });
  clear_.Clicked.Add([this] { AskClear(); });
  post_.Clicked.Add([this] { Post(); });
  range_.Changed.Add([this] { OnRange(); });
  range_codes_.Changed.Add([this] { OnRange(); });
  code_.LostFocus.Add([this] { plan_.account_left(); });
  for (viewkit::TextBox* box : {&foreign_, &rate_, &debit_, &credit_}) {
    box->Changed.Add([this, box] {
      if (filling_) return;
      by_rate_ = box == &foreign_ || box == &rate_;
      worked_out_ = false;
    });
  }
  list_.DoubleClick.Add([this] { EditChosen(); });
  list_.GotFocus.Add([this] { OnListFocus(true); });
  list_.LostFocus.Add([this] { OnListFocus(false); });
  list_.KeyDown.Add([this](Key key, viewkit::Modifiers) {
    if (key == Key::kDelete) RemoveChosen();
  });
}

/// A control without a window is told by nobody else that it has lost the focus.
void VoucherView::FocusArrived(viewkit::Control& control) {
  viewkit::Control* left = std::exchange(focus_, &control);
  if (left != nullptr && left != &control) left->NotifyFocus(false);
}

void VoucherView::OnListFocus(bool focused) {
  list_frame_.SetVisible(focused);
  if (!focused || lines_.empty() || HasChosenLine()) return;
  const int last = list_.Count();
  list_.SetSelected(last, true);
  list_.SetSelectedItem(last);
}

void VoucherView::OnRange() {
  const auto chosen = static_cast<std::size_t>(std::max(0, range_.ListIndex()));
  const AccountRange& range = AccountRanges()[chosen];
  const bool typed = range.key != nullptr && range.value == nullptr;
  range_codes_.SetEnabled(typed);
  field_.SetRange(chosen, typed ? std::string(host::Trimmed(range_codes_.Text())) : std::string());
}

void VoucherView::FocusFirst() {
  viewkit::Control& first =
      lines_.empty() && field_.Typed().empty() ? static_cast<viewkit::Control&>(date_) : code_;
  first.SetFocus();
  if (&first == &code_) code_.SelectAll();
}

CommandButton* VoucherView::FocusedButton() const {
  auto* const button = dynamic_cast<CommandButton*>(focus_);
  return button != nullptr && button->Focused() && button->TabStop() ? button : nullptr;
}

const CommandButton& VoucherView::DefaultButton() const {
  const CommandButton* focused = FocusedButton();
  return focused == nullptr ? add_ : *focused;
}

void VoucherView::Enter() {
  if (CommandButton* button = FocusedButton()) return button->Click();
  Trapped([this] { OnEnter(); });
}

viewkit::Control* VoucherView::NextBox() {
  const auto empty = [](const viewkit::TextBox& box) { return host::Trimmed(box.Text()).empty(); };
  if (date_.Focused()) return &summary_;
  if (summary_.Focused() || range_codes_.Focused()) return &code_;
  if (range_.Focused()) return range_codes_.Enabled() ? &range_codes_ : &code_;
  if (debit_.Focused() && empty(debit_) && empty(credit_)) return &credit_;
  const bool in_amount = debit_.Focused() || credit_.Focused();
  return in_amount && partner_.Enabled() && empty(partner_) ? &partner_ : nullptr;
}

/// Enter in a box goes on, from the last one of an entry into the list.
void VoucherView::OnEnter() {
  if (list_.Focused()) return EditChosen();
  const bool in_amount = debit_.Focused() || credit_.Focused();
  if ((in_amount || InForeign()) && !WorkOut()) return;
  viewkit::Control* next = InForeign() ? &NextOfForeign() : NextBox();
  // Enter in the account's box ends the typing there; an empty box goes on too.
  if (code_.Focused()) {
    next = ResolveAccount() || field_.Typed().empty() ? &NextOfForeign() : &code_;
  }
  if (next == nullptr) return AddLine();
  next->SetFocus();
  if (const auto* box = dynamic_cast<viewkit::TextBox*>(next)) box->SelectAll();
}

bool VoucherView::UseKey(Key key, viewkit::Modifiers modifiers) {
  if (!code_.Focused()) return false;
  constexpr Key kF4{0x73};
  const bool f4 = key == kF4 && !modifiers.alt;
  if (!f4 && (key != Key::kDown || !modifiers.alt)) return false;
  Trapped([&] { field_.Open(f4 && modifiers.shift); });
  return true;
}

bool VoucherView::UseCharacter(char32_t character) {
  if (character != U'=' || (!debit_.Focused() && !credit_.Focused())) return false;
  Balance();
  return true;
}

void VoucherView::OnAccountLeft() {
  const bool stays = field_.IsOpen() || code_.Focused() || drop_.Focused() || several_.Focused() ||
                     range_.Focused() || range_codes_.Focused();
  if (stays) return;
  // Who goes on with the entry comes back to what was refused; who leaves it may.
  const bool goes_on = debit_.Focused() || credit_.Focused() || partner_.Focused() || InForeign();
  try {
    if (ResolveAccount() || !refusal_ || !goes_on) return;
    code_.SetFocus();
    code_.SelectAll();
  } catch (const std::exception& error) {
    Answer(host::ErrorText(error), true);
  }
}

void VoucherView::Picked(const std::vector<std::string>& codes) {
  Trapped([&] { field_.Picked(codes); });
}

void VoucherView::EditChosen() {
  if (HasChosenLine()) EditLine(static_cast<std::size_t>(list_.FirstSelected()) - 1);
}

void VoucherView::RemoveChosen() {
  const int chosen = list_.FirstSelected();
  if (chosen == 0) return Answer("请选择要删除的分录", true, &list_);
  lines_.erase(lines_.begin() + chosen - 1);
  EditNew();
  Answer({}, false);
}

void VoucherView::Post() {
  Trapped([this] { PostVoucher(); });
}

void VoucherView::AskClear() {
  if (HasLines() && !MayForget("是否清空？")) return;
  Clear();
  Answer({}, false, &date_);
}

bool VoucherView::MayForget(const std::string& question) {
  const bool typed =
      std::ranges::any_of(std::array{&code_, &debit_, &credit_},
                          [](const auto* box) { return !host::Trimmed(box->Text()).empty(); });
  if (lines_.empty() && !typed) return true;
  const std::string lost =
      lines_.empty() ? "正在录入的分录" : "已录入的" + std::to_string(lines_.size()) + "条分录";
  return user_.Ask("凭证还没有过账，" + lost + "将会丢失。\n\n" + question, "提示：",
                   viewkit::UserPort::Icon::kWarning,
                   viewkit::UserPort::Buttons::kYesNoDefaultNo) == viewkit::UserPort::Answer::kYes;
}

void VoucherView::Clear() {
  lines_.clear();
  summary_.SetText({});
  EditNew();
}

void VoucherView::ForgetBook() {
  Clear();
  Answer({}, false);
}

book::Voucher VoucherView::ReadVoucher() const {
  const std::chrono::year_month_day date = date_.Value();
  book::Voucher voucher{.year = static_cast<int>(date.year()),
                        .month = static_cast<int>(static_cast<unsigned>(date.month())),
                        .day = static_cast<int>(static_cast<unsigned>(date.day()))};
  for (const Line& line : lines_) voucher.entries.push_back(line.entry);
  return voucher;
}

void VoucherView::PostVoucher() {
  if (const auto open = OpenLine()) {
    EditLine(*open);
    return Answer("“" + lines_[*open].account.name + "”还没有金额", true);
  }
  const book::Voucher voucher = ReadVoucher();
  int number = 0;
  try {
    number = plan_.post(voucher);
  } catch (const book::EntryRefused& refusal) {
    Line& line = lines_[refusal.Position()];
    if (const auto account = field_.AccountOf(line.account.code)) line.account = *account;
    EditLine(refusal.Position());
    return Answer(refusal.what(), true, refusal.LacksPartner() ? &partner_ : &code_);
  }
  Clear();
  Answer("已过账：" + std::to_string(voucher.year) + "年" + std::to_string(voucher.month) + "月第" +
             std::to_string(number) + "号凭证",
         false, &date_);
}

void VoucherView::Answer(const std::string& text, bool refusal, viewkit::Control* box) {
  refusal_ = refusal;
  answer_.SetForeColor(refusal ? refused_color_ : done_color_);
  answer_.SetCaption(text);
  if (box == nullptr) return;
  box->SetFocus();
  if (const auto* typed = dynamic_cast<viewkit::TextBox*>(box)) typed->SelectAll();
}

}  // namespace desk::views
