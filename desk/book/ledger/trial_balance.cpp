#include "book/ledger/trial_balance.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <utility>
#include <variant>

namespace desk::book {

namespace {

constexpr std::int32_t kMonths = 12;
constexpr std::int32_t kBeforeAll = 0;
constexpr std::int32_t kAfterAll = 1'000'000;

/// Months counted from the year 0, as the statement counts them.
struct Range {
  std::int32_t first = kBeforeAll;
  std::int32_t last = kAfterAll;
};

Range RangeOf(const std::optional<Month>& month) {
  if (!month) return {};
  const std::int32_t position = month->year * kMonths + month->number;
  return {position, position};
}

std::unique_ptr<Rows> QueryTotals(Connection& connection, const Range& range) {
  const host::Value bounds[] = {range.first, range.first, range.first, range.last};
  return connection.Query(
      "select a.cclass,a.ccode,a.ccode_name,a.igrade,a.bclose,s.opening,s.debit,s.credit from "
      "gl_code a "
      "left join(select ccode,sum(case when m<? then debit-credit else 0 end)as opening,"
      "sum(case when m<? then 0 else debit end)as debit,"
      "sum(case when m<? then 0 else credit end)as credit "
      "from(select ccode,debit,credit,coalesce(fiscal_year*12+fiscal_period,0)as m "
      "from gl_accsum)t where m<=? group by ccode)s on s.ccode=a.ccode order by a.ccode",
      Origin::kDesk, bounds);
}

/// Accounts come in the order of their codes, but a category's codes need not follow one another.
void GatherCategories(std::vector<TrialBalanceRow>& rows) {
  std::map<std::string, std::size_t> order;
  for (const TrialBalanceRow& row : rows) order.try_emplace(row.category, order.size());
  std::ranges::stable_sort(rows, {},
                           [&](const TrialBalanceRow& row) { return order.at(row.category); });
}

}  // namespace

std::int64_t AmountAt(const Rows& rows, int column) {
  const host::Value value = rows.Get(column);
  const auto* whole = std::get_if<std::int64_t>(&value.Raw());
  const double number = value.ToNumber();
  constexpr double kMax = 1e18;  // three of them can be added up
  if (!(number < kMax && number > -kMax)) {
    throw DatabaseError(ErrorKind::kOther, "金额超出范围：" + value.ToText());
  }
  return whole != nullptr ? *whole : static_cast<std::int64_t>(number);
}

std::string MonthText(const Month& month) {
  std::array<char, 32> text;
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02d", month.year, month.number);
  return {text.data(), static_cast<std::size_t>(length)};
}

std::vector<Month> PostedMonths(Session& session) {
  const auto rows = session.Own().Query(
      "select distinct fiscal_year,fiscal_period from gl_accsum where fiscal_year between 1 and "
      "9999 and fiscal_period between 0 and 99 order by fiscal_year,fiscal_period",
      Origin::kDesk);
  std::vector<Month> months;
  while (rows->Next()) months.push_back({rows->Get(0).ToLong(), rows->Get(1).ToLong()});
  return months;
}

std::vector<TrialBalanceRow> ReadTrialBalance(Session& session, const std::optional<Month>& month) {
  constexpr int kFirstLevel = 1;
  const auto rows = QueryTotals(session.Own(), RangeOf(month));
  std::vector<TrialBalanceRow> balance;
  std::string head_code;
  std::string head;
  while (rows->Next()) {
    TrialBalanceRow row{.category = rows->Get(0).ToText(),
                        .first_level = {},
                        .code = rows->Get(1).ToText(),
                        .name = rows->Get(2).ToText(),
                        .sealed = rows->Get(4).ToNumber() != 0,
                        .opening = AmountAt(*rows, 5),
                        .debit = AmountAt(*rows, 6),
                        .credit = AmountAt(*rows, 7)};
    // An account that hangs below nothing heads itself.
    const bool below = !head_code.empty() && row.code.starts_with(head_code);
    if (rows->Get(3).ToLong() <= kFirstLevel || !below) {
      head_code = row.code;
      head = row.code + " " + row.name;
    }
    if (row.opening == 0 && row.debit == 0 && row.credit == 0) continue;
    row.first_level = head;
    balance.push_back(std::move(row));
  }
  GatherCategories(balance);
  return balance;
}

}  // namespace desk::book
