// Foreign currency and quantities of an entry.

#include <cmath>

#include "book/ledger/money_text.h"
#include "host/flag_scope.h"
#include "host/text.h"
#include "viewkit/grid/number_format.h"
#include "views/foreign_amount.h"
#include "views/voucher_lines.h"
#include "views/voucher_view.h"

namespace desk::views {

namespace host = tavrix::host;

namespace {

bool Empty(const viewkit::TextBox& box) {
  return host::Trimmed(box.Text()).empty();
}

std::string AmountText(std::int64_t amount) {
  return amount == 0 ? std::string() : book::MoneyText(amount);
}

}  // namespace

void VoucherView::ShowForeign() {
  const std::optional<PostingAccount>& account = field_.Account();
  const bool currency = account && !account->currency.empty();
  const bool unit = account && !account->unit.empty();
  if (currency) foreign_label_.SetCaption("外币（" + account->currency + "）");
  if (unit) quantity_label_.SetCaption("数量（" + account->unit + "）");
  const bool same = foreign_.Visible() == currency && quantity_.Visible() == unit;
  for (viewkit::Control* control :
       std::initializer_list<viewkit::Control*>{&foreign_label_, &foreign_, &rate_label_, &rate_}) {
    control->SetVisible(currency);
  }
  quantity_label_.SetVisible(unit);
  quantity_.SetVisible(unit);
  if (!same) Resize(width_, height_);
}

bool VoucherView::InForeign() const {
  return foreign_.Focused() || rate_.Focused() || quantity_.Focused();
}

viewkit::Control& VoucherView::NextOfForeign() {
  if (code_.Focused() && foreign_.Visible()) return foreign_;
  if (foreign_.Focused() && !Empty(foreign_)) return rate_;
  if (!quantity_.Focused() && quantity_.Visible()) return quantity_;
  return Empty(credit_) ? debit_ : credit_;
}

std::optional<double> VoucherView::ReadNumber(viewkit::TextBox& box, const char* name) {
  if (Empty(box)) return 0.0;
  const auto number = viewkit::WholeNumber(box.Text());
  if (!number || !std::isfinite(*number)) Answer(std::string(name) + "不正确", true, &box);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

bool VoucherView::WorkOut() {
  if (!foreign_.Visible() || worked_out_) return true;
  const auto foreign = ReadAmount(foreign_, "外币");
  if (!foreign) return false;
  const auto rate = ReadNumber(rate_, "汇率");
  if (!rate) return false;
  viewkit::TextBox& box = Empty(credit_) ? debit_ : credit_;
  const auto amount = ReadAmount(box, Empty(credit_) ? "借方" : "贷方");
  if (!amount) return false;
  ForeignAmount known{.amount = *amount, .foreign = *foreign, .rate = *rate};
  const ForeignAmount::Worked worked = known.WorkOut(by_rate_);
  const host::FlagScope filling(filling_);
  if (worked == ForeignAmount::Worked::kAmount) box.SetText(AmountText(known.amount));
  if (worked == ForeignAmount::Worked::kForeign) foreign_.SetText(AmountText(known.foreign));
  if (worked == ForeignAmount::Worked::kRate) rate_.SetText(RateText(known.amount, known.foreign));
  worked_out_ = worked != ForeignAmount::Worked::kTooLarge;
  if (!worked_out_) Answer("外币金额与汇率的乘积过大", true, &rate_);
  return worked_out_;
}

bool VoucherView::ReadForeign(book::Entry& entry) {
  if (foreign_.Visible()) {
    const auto foreign = ReadAmount(foreign_, "外币");
    if (!foreign) return false;
    entry.foreign_amount = *foreign;
    entry.currency = *foreign != 0 ? field_.Account()->currency : std::string();
  }
  if (!quantity_.Visible()) return true;
  const auto quantity = ReadNumber(quantity_, "数量");
  if (!quantity) return false;
  entry.quantity = *quantity;
  return true;
}

void VoucherView::FillForeign(const book::Entry& entry) {
  const host::FlagScope filling(filling_);
  foreign_.SetText(AmountText(entry.foreign_amount));
  rate_.SetText(RateText(entry.debit + entry.credit, entry.foreign_amount));
  quantity_.SetText(QuantityText(entry.quantity));
  worked_out_ = true;
}

}  // namespace desk::views
