#include "views/voucher_sheet.h"

#include <algorithm>
#include <utility>

#include "host/error.h"
#include "views/date_text.h"
#include "views/ledger_grid.h"

namespace desk::views {

VoucherSheet::VoucherSheet(book::Session& session, viewkit::UserPort& user,
                           const book::VoucherKey& key, VoucherActions::Calls calls)
    : Sheet(user), session_(session), key_(key), actions_(session, user, std::move(calls)) {
  copy_.SetCaption("复制为新凭证(&N)");
  reverse_.SetCaption("冲销(&R)…");
  for (viewkit::Control* control :
       std::initializer_list<viewkit::Control*>{&head_, &grid_, &state_, &copy_, &reverse_}) {
    controls_.Add(*control);
  }
  copy_.Clicked.Add([this] { Copy(); });
  reverse_.Clicked.Add([this] { Reverse(); });
  grid_.DoubleClick.Add([this] { OpenAccount(); });
  Load();
}

std::string VoucherSheet::KeyOf(const book::VoucherKey& key) {
  return book::VoucherName(key);
}

std::string VoucherSheet::Title() const {
  return "记账凭证 " + book::VoucherName(key_);
}

void VoucherSheet::Load() {
  const auto voucher = book::ReadVoucher(session_, key_);
  if (!voucher) throw host::HostError("没有 " + book::VoucherName(key_) + "凭证");
  const std::chrono::year_month_day date{std::chrono::year(voucher->year),
                                         std::chrono::month(static_cast<unsigned>(voucher->month)),
                                         std::chrono::day(static_cast<unsigned>(voucher->day))};
  head_.SetCaption("日期 " + DateText(date) + "    凭证号 记-" + std::to_string(key_.number) +
                   "    制单 " + (voucher->prepared_by.empty() ? "—" : voucher->prepared_by));
  lines_.Show(session_, *voucher);
  const book::Reversal known = book::ReversalOf(session_, key_);
  std::string state;
  if (known.of) state = "本凭证冲销了 " + book::VoucherName(*known.of) + "凭证";
  if (known.by) state = "本凭证已由 " + book::VoucherName(*known.by) + "凭证冲销";
  state_.SetCaption(std::move(state));
  reverse_.SetEnabled(!known.of && !known.by);
}

/// Often nobody has asked for it: what has gone is said at the foot, without a question.
void VoucherSheet::Read() {
  if (book::ReadVoucher(session_, key_)) return Load();
  state_.SetCaption(book::VoucherName(key_) + "凭证已不在账簿中，以上是此前的内容");
}

void VoucherSheet::Copy() {
  Trapped([this] { actions_.Copy(key_); });
}

void VoucherSheet::Reverse() {
  Trapped([this] {
    const auto made = actions_.Reverse(key_);
    if (!made) return;
    Load();
    actions_.Open(*made);
  });
}

void VoucherSheet::OpenAccount() {
  Trapped([this] { actions_.OpenAccount(lines_.ChosenCode()); });
}

std::vector<Sheet::MenuItem> VoucherSheet::Menu() {
  return {{.text = "明细账(&D)\tEnter",
           .run = [this] { OpenAccount(); },
           .enabled = !lines_.ChosenCode().empty()},
          {},
          {.text = "复制为新凭证(&N)", .run = [this] { Copy(); }},
          {.text = "冲销(&X)…", .run = [this] { Reverse(); }, .enabled = reverse_.Enabled()}};
}

bool VoucherSheet::UseKey(viewkit::Key key, viewkit::Modifiers) {
  if (key != viewkit::Key::kEnter || !grid_.Focused()) return false;
  OpenAccount();
  return true;
}

void VoucherSheet::Resize(int width, int height) {
  constexpr int kButton = 1650;
  Strip head;
  head.PutLabel(head_, width - 2 * Strip::kEdge);
  const int foot = std::max(Strip::kHeight, height - Strip::kHeight);
  grid_.SetBounds({0, Strip::kHeight, width, foot - Strip::kHeight});
  lines_.Fit();
  Strip strip(foot);
  strip.PutLabel(state_, width - 2 * Strip::kEdge - 2 * (kButton + 90), 90);
  strip.Put(copy_, kButton);
  strip.Put(reverse_, kButton);
}

}  // namespace desk::views
