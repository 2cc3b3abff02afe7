#include "views/voucher_lines.h"

#include <algorithm>
#include <array>

#include "host/grid_update.h"
#include "viewkit/grid/number_format.h"
#include "views/column_fit.h"
#include "views/ledger_grid.h"
#include "views/posting_account.h"

namespace desk::views {

namespace {

using enum LedgerColumn::Kind;
constexpr std::array<LedgerColumn, VoucherLines::kColumns> kPlans = {{{"摘要", 3600},
                                                                      {"科目编码", 1290},
                                                                      {"科目名称", 2100},
                                                                      {"往来", 1650},
                                                                      {"外币", 750, kCentred},
                                                                      {"外币金额", 1500, kAmount},
                                                                      {"汇率", 960, kQuantity},
                                                                      {"数量", 1050, kQuantity},
                                                                      {"借方金额", 1590, kAmount},
                                                                      {"贷方金额", 1590, kAmount}}};
constexpr int kMinSummary = 1800;

void AppendEntry(host::RowSet& rows, const book::Entry& entry, const std::string& name) {
  rows.AppendText(entry.summary);
  rows.AppendText(entry.code);
  rows.AppendText(name);
  rows.AppendText(PartnersText(entry.auxiliary));
  rows.AppendText(entry.currency);
  rows.AppendText(AmountCell(entry.foreign_amount));
  rows.AppendText(RateText(entry.debit + entry.credit, entry.foreign_amount));
  rows.AppendText(QuantityText(entry.quantity));
  rows.AppendText(AmountCell(entry.debit));
  rows.AppendText(AmountCell(entry.credit));
}

}  // namespace

std::string RateText(std::int64_t amount, std::int64_t foreign_amount) {
  if (foreign_amount == 0) return {};
  const double rate = static_cast<double>(amount) / static_cast<double>(foreign_amount);
  return viewkit::FormatNumber(rate, "0.######");
}

std::string QuantityText(double quantity) {
  return quantity == 0 ? std::string() : viewkit::FormatNumber(quantity, "#,##0.######");
}

VoucherLines::VoucherLines(viewkit::FlexGrid& grid) : grid_(grid) {
  MakeLedgerGrid(grid_, kPlans, "凭证分录");
}

void VoucherLines::Show(book::Session& session, const book::Voucher& voucher) {
  host::RowSet rows(kColumns);
  book::Entry sums{.summary = "合计"};
  for (const book::Entry& entry : voucher.entries) {
    const auto account = FindPostingAccount(session, entry.code);
    AppendEntry(rows, entry, account ? account->name : std::string());
    sums.debit += entry.debit;
    sums.credit += entry.credit;
  }
  AppendEntry(rows, {.summary = sums.summary}, {});
  const host::GridUpdate update(grid_);
  grid_.LoadRows(std::move(rows));
  const int last = grid_.Rows() - 1;
  grid_.SetTextMatrix(last, kDebit, AmountCell(sums.debit));
  grid_.SetTextMatrix(last, kCredit, AmountCell(sums.credit));
  DressTotal(grid_, last);
  RedNegatives(grid_, kForeign, kForeign);
  RedNegatives(grid_, kQuantity, kCredit);
  const auto show = [&](int col, auto&& says) {
    grid_.SetColHidden(col, !std::ranges::any_of(voucher.entries, says));
  };
  const auto foreign = [](const book::Entry& entry) { return entry.foreign_amount != 0; };
  show(kPartner, [](const book::Entry& entry) { return entry.auxiliary != book::Auxiliary(); });
  for (const int col : {kCurrency, kForeign, kRate}) show(col, foreign);
  show(kQuantity, [](const book::Entry& entry) { return entry.quantity != 0; });
  WidenToFit(grid_, kCode);
  Fit();
  grid_.SetRow(grid_.FixedRows());
}

void VoucherLines::Clear() {
  grid_.LoadRows(host::RowSet(kColumns));
}

void VoucherLines::Fit() {
  FitColumn(grid_, kSummary, kMinSummary);
}

std::string VoucherLines::ChosenCode() const {
  const int row = grid_.Row();
  if (row < grid_.FixedRows() || row >= grid_.Rows()) return {};
  return std::string(grid_.TextMatrix(row, kCode));
}

}  // namespace desk::views
