#include "book/sample.h"

#include <utility>

#include "book/ledger/posting.h"

namespace desk::book {

namespace {

constexpr int kYear = 2024;
constexpr std::int64_t kYuan = 100;

/// The codes in which the two charts differ.
struct Codes {
  std::string capital;
  std::string input_tax = "22210101";
  std::string output_tax;
  std::string unpaid_tax = "222102";
  std::string tax_transfer;
  std::string sales;
  std::string cost;
  std::string wages;
  std::string travel;
  std::string fees;
};

Codes CodesOf(StandardChart chart) {
  if (chart == StandardChart::kEnterprise) {
    return {.capital = "4001",
            .output_tax = "22210107",
            .tax_transfer = "22210104",
            .sales = "6001",
            .cost = "6401",
            .wages = "660201",
            .travel = "660206",
            .fees = "660303"};
  }
  return {.capital = "3001",
          .output_tax = "22210105",
          .tax_transfer = "22210103",
          .sales = "5001",
          .cost = "5401",
          .wages = "560201",
          .travel = "560207",
          .fees = "560303"};
}

Entry Debit(std::string summary, std::string code, std::int64_t amount, Auxiliary with = {}) {
  return {.summary = std::move(summary),
          .code = std::move(code),
          .debit = amount,
          .auxiliary = std::move(with)};
}

Entry Credit(std::string summary, std::string code, std::int64_t amount, Auxiliary with = {}) {
  return {.summary = std::move(summary),
          .code = std::move(code),
          .credit = amount,
          .auxiliary = std::move(with)};
}

Entry WithQuantity(Entry entry, double quantity) {
  entry.quantity = quantity;
  return entry;
}

const std::string kBank = "100201";
const std::string kGoods = "1405";

Voucher Dated(int month, int day, std::vector<Entry> entries) {
  return {.year = kYear,
          .month = month,
          .day = day,
          .prepared_by = "王会计",
          .entries = std::move(entries)};
}

std::vector<Voucher> Opening(const Codes& codes) {
  const std::string capital = "收到股东投资款";
  const std::string cash = "提取备用金";
  return {Dated(1, 3,
                {Debit(capital, kBank, 500'000 * kYuan),
                 Credit(capital, codes.capital, 500'000 * kYuan)}),
          Dated(1, 4, {Debit(cash, "1001", 5'000 * kYuan), Credit(cash, kBank, 5'000 * kYuan)})};
}

/// Goods are bought and sold in every month; `n` makes the months differ.
std::vector<Voucher> Trade(const Codes& codes, int month, std::int64_t n) {
  const Auxiliary supplier = {.supplier = "华东贸易公司"};
  const Auxiliary customer = {.customer = n % 2 == 0 ? "长江商场" : "黄河百货"};
  const std::int64_t bought = 60'000 * kYuan + n * 5'000 * kYuan;
  const std::int64_t sold = 90'000 * kYuan + n * 7'000 * kYuan;
  const std::string buying = "采购商品入库";
  const std::string paying = "支付货款";
  const std::string selling = "销售商品";
  const std::string cost = "结转销售成本";
  return {
      Dated(month, 8,
            {WithQuantity(Debit(buying, kGoods, bought), 600 + 50.0 * static_cast<double>(n)),
             Debit(buying, codes.input_tax, bought * 13 / 100),
             Credit(buying, "220201", bought * 113 / 100, supplier)}),
      Dated(month, 12, {Debit(paying, "220201", bought, supplier), Credit(paying, kBank, bought)}),
      Dated(month, 18,
            {Debit(selling, "1122", sold * 113 / 100, customer), Credit(selling, codes.sales, sold),
             Credit(selling, codes.output_tax, sold * 13 / 100)}),
      Dated(month, 20,
            {Debit(cost, codes.cost, sold * 6 / 10),
             WithQuantity(Credit(cost, kGoods, sold * 6 / 10), 540.0)})};
}

std::vector<Voucher> Running(const Codes& codes, int month) {
  const Auxiliary office = {.department = "行政部"};
  const std::string wages = "计提本月工资";
  const std::string paying = "发放工资";
  const std::string travel = "报销差旅费";
  const std::string fees = "银行手续费";
  return {Dated(month, 22,
                {Debit(travel, codes.travel, 1'280 * kYuan + 50, office),
                 Credit(travel, "1001", 1'280 * kYuan + 50)}),
          Dated(month, 25,
                {Debit(wages, codes.wages, 18'000 * kYuan, office),
                 Credit(wages, "221101", 18'000 * kYuan)}),
          Dated(month, 26,
                {Debit(paying, "221101", 18'000 * kYuan), Credit(paying, kBank, 18'000 * kYuan)}),
          Dated(month, 28, {Debit(fees, codes.fees, 36 * kYuan), Credit(fees, kBank, 36 * kYuan)})};
}

Voucher UnpaidTax(const Codes& codes, int month, std::int64_t n) {
  const std::int64_t tax = (30'000 + n * 2'000) * kYuan * 13 / 100;
  const std::string text = "转出未交增值税";
  return Dated(month, 28,
               {Debit(text, codes.tax_transfer, tax), Credit(text, codes.unpaid_tax, tax)});
}

/// Only the chart for enterprises keeps a foreign account.
Voucher ForeignDeposit() {
  const std::string text = "购入美元";
  Entry dollars = Debit(text, "100203", 71'000 * kYuan);
  dollars.currency = "美元";
  dollars.foreign_amount = 10'000 * kYuan;
  return Dated(2, 15, {std::move(dollars), Credit(text, kBank, 71'000 * kYuan)});
}

void PostAll(Session& session, const std::vector<Voucher>& vouchers) {
  for (const Voucher& voucher : vouchers) Post(session, voucher);
}

}  // namespace

Book CreateSampleBook(const std::string& path, StandardChart chart) {
  return Book::Create(path, LoadTemplate(chart), [&](Session& session) {
    const Codes codes = CodesOf(chart);
    PostAll(session, Opening(codes));
    for (int month = 1; month <= 3; ++month) {
      const std::int64_t n = month - 1;
      PostAll(session, Trade(codes, month, n));
      PostAll(session, Running(codes, month));
      Post(session, UnpaidTax(codes, month, n));
    }
    if (chart == StandardChart::kEnterprise) Post(session, ForeignDeposit());
  });
}

}  // namespace desk::book
