// What the boxes of the opening balances hold, and where Enter leads among them.

#include <algorithm>
#include <cmath>

#include "book/ledger/money_text.h"
#include "host/error.h"
#include "host/flag_scope.h"
#include "host/text.h"
#include "viewkit/grid/number_format.h"
#include "views/foreign_amount.h"
#include "views/ledger_grid.h"
#include "views/opening_balance_view.h"
#include "views/voucher_lines.h"

namespace desk::views {

namespace {

std::string Trimmed(const viewkit::TextBox& box) {
  return std::string(host::Trimmed(box.Text()));
}

double ReadNumber(const viewkit::TextBox& box, const char* name) {
  if (Trimmed(box).empty()) return 0;
  const auto number = viewkit::WholeNumber(box.Text());
  if (!number || !std::isfinite(*number)) throw host::HostError(std::string(name) + "不正确");
  return *number;
}

std::int64_t ReadAmount(const viewkit::TextBox& box) {
  const std::string text = Trimmed(box);
  const auto amount = book::ParseMoney(text);
  if (!amount) throw host::HostError("“" + text + "”：" + book::WhyNoMoney(text));
  return *amount;
}

}  // namespace

book::OpeningLine OpeningBalanceView::LineOf(const Row& row) const {
  const std::vector<book::OpeningLine>& lines = accounts_[row.account].lines;
  if (row.line) return lines[*row.line];
  return lines.empty() ? book::OpeningLine() : lines.front();
}

void OpeningBalanceView::WorkOut() {
  if (!foreign_.Visible() || worked_out_) return;
  viewkit::TextBox& box = SideBox();
  ForeignAmount known{.amount = ReadAmount(box),
                      .foreign = ReadAmount(foreign_),
                      .rate = ReadNumber(rate_, "汇率")};
  const ForeignAmount::Worked worked = known.WorkOut(by_rate_);
  if (worked == ForeignAmount::Worked::kTooLarge) {
    throw host::HostError("外币金额与汇率的乘积过大");
  }
  const host::FlagScope filling(filling_);
  if (worked == ForeignAmount::Worked::kAmount) box.SetText(AmountCell(known.amount));
  if (worked == ForeignAmount::Worked::kForeign) foreign_.SetText(AmountCell(known.foreign));
  if (worked == ForeignAmount::Worked::kRate) rate_.SetText(RateText(known.amount, known.foreign));
  worked_out_ = true;
}

book::OpeningLine OpeningBalanceView::ReadLine(const Row& row) const {
  const std::int64_t debit = ReadAmount(debit_);
  const std::int64_t credit = ReadAmount(credit_);
  if (debit != 0 && credit != 0) throw host::HostError("只能填写借方或贷方之一");
  const book::OpeningLine before = LineOf(row);
  book::OpeningLine line{.auxiliary = before.auxiliary, .balance = debit - credit};
  // What the account has no box for goes on as long as the amount that it belongs to does.
  if (line.balance == before.balance) {
    line.currency = before.currency;
    line.foreign_amount = before.foreign_amount;
    line.quantity = before.quantity;
  }
  ReadForeign(accounts_[row.account], line);
  if (line.balance == 0 && !line.Empty() && line != before) {
    throw host::HostError("填写了外币或数量，也要填写借方或贷方金额");
  }
  return line;
}

void OpeningBalanceView::ReadForeign(const book::OpeningAccount& account,
                                     book::OpeningLine& line) const {
  const int side = line.balance < 0 ? -1 : 1;
  if (foreign_.Visible()) {
    const std::int64_t foreign = ReadAmount(foreign_);
    const bool kept = foreign != 0 && side * foreign == line.foreign_amount;
    line.foreign_amount = side * foreign;
    if (!kept) line.currency = foreign == 0 ? std::string() : account.currency;
  }
  if (quantity_.Visible()) line.quantity = side * ReadNumber(quantity_, "数量");
}

void OpeningBalanceView::SetLine(const Row& row, book::OpeningLine line) {
  book::OpeningAccount& account = accounts_[row.account];
  const std::vector<Partner> wanted = WantedOf(account);
  line.auxiliary = ReadPartners(wanted, Trimmed(partner_));
  if (line == LineOf(row)) return;
  if (!row.line) {
    account.lines = {line};
  } else {
    const auto lacking = Lacking(wanted, line.auxiliary);
    if (lacking && !line.Empty()) {
      throw host::HostError("“" + account.name + "”要填写" + NameOf(*lacking));
    }
    for (std::size_t i = 0; i < account.lines.size(); ++i) {
      if (i == *row.line || account.lines[i].auxiliary != line.auxiliary || line.Empty()) continue;
      throw host::HostError("“" + PartnersText(line.auxiliary) + "”已有一行");
    }
    account.lines[*row.line] = line;
  }
  changed_.insert(row.account);
  saved_ = false;
  ShowRows(*Chosen());
}

bool OpeningBalanceView::TakeBoxes() {
  const auto chosen = Chosen();
  if (!chosen || !Takes(rows_[*chosen])) return true;
  bool taken = false;
  // Who empties the amount gives up what belongs to it.
  const bool emptied =
      !worked_out_ && !by_rate_ && Trimmed(debit_).empty() && Trimmed(credit_).empty();
  if (emptied) {
    for (viewkit::TextBox* box : {&foreign_, &rate_, &quantity_}) box->SetText({});
  }
  Trapped([&] {
    WorkOut();
    SetLine(rows_[*chosen], ReadLine(rows_[*chosen]));
    typed_ = false;
    taken = true;
  });
  return taken;
}

bool OpeningBalanceView::InBoxes() {
  return std::ranges::any_of(Boxes(), [](const viewkit::TextBox* box) { return box->Focused(); });
}

viewkit::TextBox& OpeningBalanceView::SideBox() {
  if (!Trimmed(debit_).empty()) return debit_;
  const auto chosen = Chosen();
  const bool debit_side = !chosen || accounts_[rows_[*chosen].account].debit_side;
  return !Trimmed(credit_).empty() || !debit_side ? credit_ : debit_;
}

viewkit::TextBox& OpeningBalanceView::FirstAmount() {
  if (foreign_.Visible()) return foreign_;
  return quantity_.Visible() ? quantity_ : SideBox();
}

viewkit::TextBox* OpeningBalanceView::NextBox() {
  if (partner_.Focused()) return Trimmed(partner_).empty() ? nullptr : &FirstAmount();
  if (foreign_.Focused() && !Trimmed(foreign_).empty()) return &rate_;
  const bool before_quantity = foreign_.Focused() || rate_.Focused();
  if (before_quantity && quantity_.Visible()) return &quantity_;
  return before_quantity || quantity_.Focused() ? &SideBox() : nullptr;
}

void OpeningBalanceView::Enter(viewkit::TextBox& box) {
  box.SetFocus();
  box.SelectAll();
}

}  // namespace desk::views
