#include "app/program/account_follower.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "book/ledger/account_card.h"
#include "host/report.h"
#include "host/utf.h"

namespace desk::app {

AccountFollower::AccountFollower(FrameWindow& frame, Calls calls)
    : frame_(frame), calls_(std::move(calls)) {
  pane_ = AccountPane::Make(frame.Hwnd(), frame.CurrentStyle(),
                            {.close =
                                 [this] {
                                   SetShown(false);
                                   calls_.leave();
                                 },
                             .drag =
                                 [this](int width) {
                                   SetDesignWidth(width);
                                   Place();
                                 },
                             .leave = [this] { calls_.leave(); },
                             .due = [this] { Read(); }});
}

void AccountFollower::SetDesignWidth(int width) {
  constexpr int kMaxDesignWidth = 900;
  design_width_ = std::clamp(width, AccountPane::kMinDesignWidth, kMaxDesignWidth);
}

void AccountFollower::SetShown(bool shown) {
  shown_ = shown;
  ShowWindow(pane_->Hwnd(), shown ? SW_SHOWNA : SW_HIDE);
  Place();
  Renew();
}

void AccountFollower::Place() {
  frame_.DockBeside(shown_ ? pane_->Hwnd() : nullptr, design_width_, AccountPane::kMinDesignWidth);
}

void AccountFollower::Follow() {
  if (!shown_) return;
  const Choice choice = calls_.choice();
  if (code_ == choice.code) return;
  code_ = choice.code;
  pane_->Expect();
}

void AccountFollower::Renew() {
  code_.reset();
}

void AccountFollower::Read() {
  const Choice choice = calls_.choice();
  code_ = choice.code;
  if (choice.session == nullptr || choice.code.empty()) {
    return pane_->SetSheet(std::nullopt, choice.session == nullptr ? L"" : L"没有选中科目");
  }
  try {
    const auto card = book::ReadAccountCard(*choice.session, choice.code);
    if (!card) return pane_->SetSheet(std::nullopt, L"账簿中没有这个科目");
    pane_->SetSheet(views::MakeAccountSheet(*card));
  } catch (const std::exception& error) {
    const std::string text = tavrix::host::ErrorText(error);
    pane_->SetSheet(std::nullopt, L"不能读取：" + tavrix::host::Wide(text));
  }
}

}  // namespace desk::app
