// The controls of the opening balances: making, arranging and filling them.

#include <algorithm>
#include <array>
#include <initializer_list>

#include "host/flag_scope.h"
#include "views/caption_text.h"
#include "views/column_fit.h"
#include "views/ledger_grid.h"
#include "views/opening_balance_view.h"
#include "views/voucher_lines.h"

namespace desk::views {

namespace {

using enum LedgerColumn::Kind;
constexpr std::array<LedgerColumn, OpeningBalanceView::kColumns> kPlans = {
    {{"科目编码", 1500},
     {"科目名称", 4200},
     {"方向", 660, kCentred},
     {"往来", 1800},
     {"外币", 690, kCentred},
     {"外币金额", 1410, kAmount},
     {"汇率", 900, kQuantity},
     {"数量", 1050, kQuantity},
     {"借方", 1590, kAmount},
     {"贷方", 1590, kAmount}}};
constexpr int kMinName = 2400;

constexpr int kBoxLine = Strip::kLine + Strip::kEdge / 2;

}  // namespace

void OpeningBalanceView::MakeControls() {
  MakeLedgerGrid(grid_, kPlans, "期初余额");
  partner_label_.SetCaption("往来(&P)");
  debit_label_.SetCaption("借方(&D)");
  credit_label_.SetCaption("贷方(&C)");
  rate_label_.SetCaption("汇率(&R)");
  for (viewkit::TextBox* box : {&debit_, &credit_, &foreign_, &rate_, &quantity_}) {
    box->SetAlignRight(true);
  }
  take_.SetCaption("确认(&T)");
  add_.SetCaption("增加往来(&A)");
  save_.SetCaption("保存(&S)");
  for (viewkit::Control* control : std::initializer_list<viewkit::Control*>{
           &grid_, &account_, &partner_label_, &partner_, &foreign_label_, &foreign_, &rate_label_,
           &rate_, &quantity_label_, &quantity_, &debit_label_, &debit_, &credit_label_, &credit_,
           &take_, &add_, &sums_, &save_}) {
    controls_.Add(*control);
  }
  Listen();
}

void OpeningBalanceView::Listen() {
  grid_.RowColChange.Add([this] {
    if (!showing_) ShowRow();
  });
  grid_.DoubleClick.Add([this] { EnterBoxes(); });
  grid_.AfterUserResize.Add([this](int) { sized_ = true; });
  take_.Clicked.Add([this] { GoOn(); });
  add_.Clicked.Add([this] { AddPartner(); });
  save_.Clicked.Add([this] { Save(); });
  for (viewkit::TextBox* box : Boxes()) {
    box->Changed.Add([this, box] {
      if (filling_) return;
      typed_ = true;
      if (box == &partner_ || box == &quantity_) return;
      by_rate_ = box == &foreign_ || box == &rate_;
      worked_out_ = false;
      // Without a foreign amount there is no rate that could bring it back.
      if (box == &foreign_ && box->Text().empty()) rate_.SetText({});
    });
  }
}

std::array<viewkit::TextBox*, 6> OpeningBalanceView::Boxes() {
  return {&partner_, &foreign_, &rate_, &quantity_, &debit_, &credit_};
}

/// Columns that no account needs are not there, nor is the line of their boxes.
void OpeningBalanceView::ShowColumns() {
  bool partner = false;
  bool foreign = false;
  bool quantity = false;
  for (const book::OpeningAccount& account : accounts_) {
    partner = partner || account.WantsPartner();
    foreign = foreign || !account.currency.empty();
    quantity = quantity || !account.unit.empty();
    for (const book::OpeningLine& line : account.lines) {
      foreign = foreign || line.foreign_amount != 0;
      quantity = quantity || line.quantity != 0;
    }
  }
  grid_.SetColHidden(kPartner, !partner);
  for (const int col : {kCurrency, kForeign, kRate}) grid_.SetColHidden(col, !foreign);
  grid_.SetColHidden(kQuantity, !quantity);
  foreign_kept_ = foreign || quantity;
  WidenToFit(grid_, kCode);
  Resize(width_, height_);
}

void OpeningBalanceView::ShowRow() {
  const auto chosen = Chosen();
  const Row row = chosen ? rows_[*chosen] : Row();
  const book::OpeningAccount* account = chosen ? &accounts_[row.account] : nullptr;
  const bool takes = chosen && Takes(row);
  const bool by_partner = account != nullptr && account->leaf && account->WantsPartner();
  for (viewkit::TextBox* box : {&debit_, &credit_}) box->SetEnabled(takes);
  partner_.SetEnabled(takes && row.line);
  const bool other_boxes = partner_.Visible() != by_partner;
  partner_label_.SetVisible(by_partner);
  partner_.SetVisible(by_partner);
  if (other_boxes) Resize(width_, height_);
  take_.SetEnabled(takes);
  add_.SetEnabled(by_partner);
  account_.SetCaption(account == nullptr ? std::string()
                                         : EscapedCaption(account->code + " " + account->name));
  std::string label;
  if (by_partner) {
    for (const Partner each : WantedOf(*account)) {
      label.append(label.empty() ? "" : "/").append(NameOf(each));
    }
  }
  partner_label_.SetCaption((label.empty() ? "往来" : label) + "(&P)");
  const book::OpeningLine line = takes ? LineOf(row) : book::OpeningLine();
  const host::FlagScope filling(filling_);
  partner_.SetText(PartnersText(line.auxiliary));
  debit_.SetText(AmountCell(std::max<std::int64_t>(line.balance, 0)));
  credit_.SetText(AmountCell(std::max<std::int64_t>(-line.balance, 0)));
  ShowForeign(takes ? account : nullptr, line);
  typed_ = false;
}

/// Boxes for what the account is kept in.
void OpeningBalanceView::ShowForeign(const book::OpeningAccount* account,
                                     const book::OpeningLine& line) {
  const bool currency = account != nullptr && !account->currency.empty();
  const bool unit = account != nullptr && !account->unit.empty();
  if (currency) {
    foreign_label_.SetCaption("外币（" + EscapedCaption(account->currency) + "）(&F)");
  }
  if (unit) quantity_label_.SetCaption("数量（" + EscapedCaption(account->unit) + "）(&Q)");
  for (viewkit::Control* control :
       std::initializer_list<viewkit::Control*>{&foreign_label_, &foreign_, &rate_label_, &rate_}) {
    control->SetVisible(currency);
  }
  quantity_label_.SetVisible(unit);
  quantity_.SetVisible(unit);
  const int side = line.balance < 0 ? -1 : 1;
  foreign_.SetText(AmountCell(side * line.foreign_amount));
  rate_.SetText(RateText(line.balance, line.foreign_amount));
  quantity_.SetText(QuantityText(side * line.quantity));
  worked_out_ = true;
  by_rate_ = false;
  ArrangeForeign(grid_.GetBounds().height + kBoxLine);
}

void OpeningBalanceView::ArrangeForeign(int top) {
  constexpr int kLabel = 1950;
  constexpr int kRateLabel = 750;
  constexpr int kAmount = 1650;
  constexpr int kNumber = 1200;
  Strip line(top);
  if (foreign_.Visible()) {
    line.PutLabel(foreign_label_, kLabel);
    line.Put(foreign_, kAmount, 240);
    line.PutLabel(rate_label_, kRateLabel);
    line.Put(rate_, kNumber, 240);
  }
  line.PutLabel(quantity_label_, kLabel);
  line.Put(quantity_, kNumber);
}

void OpeningBalanceView::Resize(int width, int height) {
  constexpr int kAmount = 1650;
  constexpr int kLabel = 780;
  constexpr int kPartnerLabel = 1080;
  constexpr int kButton = 1350;
  width_ = width;
  height_ = height;
  const int more = foreign_kept_ ? kBoxLine : 0;
  const int foot = std::max(0, height - 2 * Strip::kHeight + Strip::kEdge - more);
  grid_.SetBounds({0, 0, width, foot});
  if (!sized_) FitColumn(grid_, kName, kMinName);
  Strip boxes(foot);
  constexpr int kAmounts = 2 * (kLabel + 60 + kAmount + 90);
  const int room = std::max(0, width - kAmounts - Strip::kEdge * 2);
  // The account's name has what a partner does not need.
  const int partner = partner_.Visible() ? std::max(0, room * 2 / 5 - kPartnerLabel) : 0;
  const int name = partner_.Visible() ? room - partner - kPartnerLabel - 150 : room;
  boxes.PutLabel(account_, std::max(0, name), 90);
  if (partner_.Visible()) {
    boxes.PutLabel(partner_label_, kPartnerLabel);
    boxes.Put(partner_, partner);
  }
  boxes.PutLabel(debit_label_, kLabel);
  boxes.Put(debit_, kAmount);
  boxes.PutLabel(credit_label_, kLabel);
  boxes.Put(credit_, kAmount);
  ArrangeForeign(foot + kBoxLine);
  Strip below(foot + kBoxLine + more);
  constexpr int kButtons = 3 * (kButton + 90);
  below.PutLabel(sums_, std::max(0, width - 2 * Strip::kEdge - kButtons), 90);
  below.Put(take_, kButton);
  below.Put(add_, kButton);
  below.Put(save_, kButton);
}

}  // namespace desk::views
