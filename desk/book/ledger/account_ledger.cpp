#include "book/ledger/account_ledger.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>

#include "book/ledger/code_range.h"

namespace desk::book {

namespace {

/// Entries of the account in the period, in the order of the ledger.
const std::string kInPeriod = std::string(" from gl_accvouch where ccode>=? and ccode<=? and ") +
                              kMonthPosition + ">=? and " + kMonthPosition + "<=?";
constexpr char kInOrder[] =
    " order by fiscal_year,fiscal_period,entry_date,voucher_number,line_number,i_id limit ";

std::vector<host::Value> BoundsOf(const std::string& code, const Period& period) {
  const auto codes = WithAllBelow(code);
  return {codes[0], codes[1], period.FirstPosition(), period.LastPosition()};
}

/// The names of the accounts that entries mention, each asked for once.
class Names {
 public:
  explicit Names(Connection& connection) : connection_(connection) {}
  [[nodiscard]] const std::string& Of(const std::string& code) {
    const auto [at, added] = names_.try_emplace(code);
    if (!added) return at->second;
    const host::Value key(code);
    const auto row =
        connection_.Query("select ccode_name from gl_code where ccode=?", Origin::kDesk, {&key, 1});
    if (row->Next()) at->second = row->Get(0).ToText();
    return at->second;
  }

 private:
  Connection& connection_;
  std::map<std::string, std::string> names_;
};

/// What the entries of the period come to: all of them, or so many at the beginning.
struct Sums {
  std::int64_t count = 0;
  std::int64_t balance = 0;
};

Sums SumOfAll(Connection& connection, const std::string& code, const Period& period) {
  const auto row = connection.Query("select count(*),sum(debit-credit)" + kInPeriod, Origin::kDesk,
                                    BoundsOf(code, period));
  if (!row->Next()) return {};
  return {AmountAt(*row, 0), AmountAt(*row, 1)};
}

std::int64_t SumOfFirst(Connection& connection, const std::string& code, const Period& period,
                        std::int64_t count) {
  if (count == 0) return 0;
  const auto row = connection.Query(std::string("select sum(debit-credit) from(select "
                                                "debit,credit") +
                                        kInPeriod + kInOrder + std::to_string(count) + ")f",
                                    Origin::kDesk, BoundsOf(code, period));
  return row->Next() ? AmountAt(*row, 0) : 0;
}

/// What the lines before the period have come to in foreign currency and quantity, as far as all
/// are of one currency, or of one account.
void AddForeign(Connection& connection, const std::string& code, const Period& period,
                LedgerLine& opening) {
  const auto codes = WithAllBelow(code);
  const host::Value values[] = {codes[0], codes[1], period.FirstPosition()};
  const auto rows = connection.Query(
      std::string("select ccode,currency_name,"
                  "sum(case when credit<>0 then -foreign_amount else foreign_amount end),"
                  "sum(case when credit<>0 then -quantity else quantity end)from gl_accvouch where "
                  "ccode>=? and ccode<=? and(foreign_amount<>0 or quantity<>0)and coalesce(") +
          kMonthPosition + ",0)<? group by ccode,currency_name",
      Origin::kDesk, values);
  std::set<std::string> currencies;
  std::set<std::string> accounts;
  while (rows->Next()) {
    const std::int64_t foreign = AmountAt(*rows, 2);
    const double quantity = rows->Get(3).ToNumber();
    if (foreign != 0) currencies.insert(rows->Get(1).ToText());
    if (quantity != 0) accounts.insert(rows->Get(0).ToText());
    opening.foreign_amount += foreign;
    opening.quantity += quantity;
  }
  if (currencies.size() != 1) opening.foreign_amount = 0;
  if (accounts.size() != 1) opening.quantity = 0;
  if (currencies.size() == 1) opening.currency = *currencies.begin();
  if (opening.balance >= 0) return;
  opening.foreign_amount = -opening.foreign_amount;
  opening.quantity = -opening.quantity;
}

/// A page of entries, by their identifiers.
std::string PageText(std::int64_t first, std::int64_t count) {
  return "select i_id" + kInPeriod + kInOrder + std::to_string(count) + " offset " +
         std::to_string(first);
}

/// The least and the greatest code on each side of a voucher.
struct VoucherSides {
  std::array<std::string, 2> debit;
  std::array<std::string, 2> credit;
};
using AllSides = std::map<std::pair<int, int>, VoucherSides>;

std::pair<int, int> KeyOf(const Month& month, int voucher) {
  return {PositionOf(month), voucher};
}

/// Of all vouchers of a page, each read once, however many of its lines stand there.
AllSides ReadSides(Connection& connection, const std::string& page, Values bounds) {
  const auto rows = connection.Query(
      "select o.fiscal_year,o.fiscal_period,o.voucher_number,min(case when o.debit<>0 then o.ccode "
      "end),max(case when o.debit<>0 then o.ccode end),min(case when o.credit<>0 then o.ccode "
      "end),max(case when o.credit<>0 then o.ccode end)from(select distinct fiscal_year as "
      "y,fiscal_period as p,voucher_number as n from gl_accvouch where i_id in(" +
          page +
          "))k join gl_accvouch o on o.fiscal_year=k.y and o.fiscal_period=k.p and "
          "o.voucher_number=k.n group by o.fiscal_year,o.fiscal_period,o.voucher_number",
      Origin::kDesk, bounds);
  AllSides sides;
  while (rows->Next()) {
    const auto text = [&](int column) { return rows->Get(column).ToText(); };
    const Month month{rows->Get(0).ToLong(), rows->Get(1).ToLong()};
    sides[KeyOf(month, rows->Get(2).ToLong())] = {.debit = {text(3), text(4)},
                                                  .credit = {text(5), text(6)}};
  }
  return sides;
}

void NameCounters(Connection& connection, const AllSides& sides, std::vector<LedgerLine>& entries) {
  Names names(connection);
  for (LedgerLine& entry : entries) {
    const auto found = sides.find(KeyOf(entry.month, entry.voucher));
    if (found == sides.end()) continue;
    const auto& other = entry.debit != 0 ? found->second.credit : found->second.debit;
    if (other[0].empty()) continue;
    entry.counter = other[0] + " " + names.Of(other[0]) + (other[0] == other[1] ? "" : " 等");
  }
}

std::vector<LedgerLine> ReadEntries(Connection& connection, const std::string& code,
                                    const Period& period, std::int64_t first, std::int64_t page) {
  const std::string ids = PageText(first, page + 1);
  const std::vector<host::Value> bounds = BoundsOf(code, period);
  const auto rows = connection.Query(
      "select e.fiscal_year,e.fiscal_period,e.entry_date,e.voucher_number,e.summary,e.ccode,"
      "e.debit,e.credit,e.currency_name,e.foreign_amount,e.quantity,e.department,e.person,"
      "e.customer,e.supplier,e.project from gl_accvouch e where e.i_id in(" +
          ids +
          ") order by e.fiscal_year,e.fiscal_period,e.entry_date,e.voucher_number,e.line_number,"
          "e.i_id",
      Origin::kDesk, bounds);
  std::vector<LedgerLine> entries;
  while (rows->Next()) {
    const auto text = [&](int column) { return rows->Get(column).ToText(); };
    entries.push_back({.month = {rows->Get(0).ToLong(), rows->Get(1).ToLong()},
                       .date = text(2),
                       .voucher = rows->Get(3).ToLong(),
                       .summary = text(4),
                       .code = text(5),
                       .auxiliary = {text(11), text(12), text(13), text(14), text(15)},
                       .currency = text(8),
                       .foreign_amount = AmountAt(*rows, 9),
                       .quantity = rows->Get(10).ToNumber(),
                       .debit = AmountAt(*rows, 6),
                       .credit = AmountAt(*rows, 7)});
  }
  NameCounters(connection, ReadSides(connection, ids, bounds), entries);
  return entries;
}

/// Puts the lines of the ledger one behind the other.
class Lines {
 public:
  Lines(AccountLedger& ledger, const Period& period) : ledger_(ledger) {
    for (const MonthMovement& each : ledger.card.months) {
      const int position = each.month ? PositionOf(*each.month) : 0;
      if (position < period.FirstPosition()) {
        ledger.opening += each.debit - each.credit;
        AddToYear(each);
      } else if (position <= period.LastPosition()) {
        ledger.debit += each.debit;
        ledger.credit += each.credit;
        months_.push_back(each);
      }
    }
    at_month_end_ = ledger.opening;
  }

  void Open(std::int64_t balance) {
    balance_ = balance;
    ledger_.lines.push_back({.kind = LedgerLine::Kind::kOpening, .balance = balance});
  }
  /// Months that have ended before the first of the lines are on the pages before.
  void PassOver(const Month& month) { EndMonths(PositionOf(month), false); }
  void Add(LedgerLine entry) {
    EndMonths(PositionOf(entry.month), true);
    balance_ += entry.debit - entry.credit;
    entry.balance = balance_;
    ledger_.lines.push_back(std::move(entry));
  }
  void EndBefore(const Month& month) { EndMonths(PositionOf(month), true); }
  void EndAll() { EndMonths(Period().LastPosition(), true); }

 private:
  void AddToYear(const MonthMovement& each) {
    if (!each.month) return;
    if (each.month->year != year_.year) year_ = {.year = each.month->year};
    year_.debit += each.debit;
    year_.credit += each.credit;
  }

  /// Ends the months before a position.
  void EndMonths(int position, bool shown) {
    for (; next_ < months_.size() && PositionOf(*months_[next_].month) < position; ++next_) {
      const MonthMovement& each = months_[next_];
      AddToYear(each);
      at_month_end_ += each.debit - each.credit;
      if (!shown) continue;
      ledger_.lines.push_back({.kind = LedgerLine::Kind::kMonth,
                               .month = *each.month,
                               .debit = each.debit,
                               .credit = each.credit,
                               .balance = at_month_end_});
      ledger_.lines.push_back({.kind = LedgerLine::Kind::kYear,
                               .month = *each.month,
                               .debit = year_.debit,
                               .credit = year_.credit,
                               .balance = at_month_end_});
    }
  }

  struct Year {
    int year = 0;
    std::int64_t debit = 0;
    std::int64_t credit = 0;
  };

  AccountLedger& ledger_;
  std::vector<MonthMovement> months_;  // of the period, by the monthly totals
  std::size_t next_ = 0;               // the first of them that has not ended
  Year year_;
  std::int64_t balance_ = 0;
  std::int64_t at_month_end_ = 0;
};

}  // namespace

std::optional<AccountLedger> ReadAccountLedger(Session& session, const std::string& code,
                                               const Period& period, std::int64_t first,
                                               std::int64_t page) {
  Connection& connection = session.Own();
  auto card = ReadAccountCard(session, code);
  if (!card) return std::nullopt;
  AccountLedger ledger{.card = std::move(*card)};
  const std::string& own = ledger.card.account.code;
  Lines lines(ledger, period);
  const Sums all = SumOfAll(connection, own, period);
  ledger.entries = all.count;
  ledger.difference = all.balance - (ledger.debit - ledger.credit);
  ledger.first = std::clamp<std::int64_t>(first, 0, all.count);
  std::vector<LedgerLine> entries = ReadEntries(connection, own, period, ledger.first, page);
  std::optional<LedgerLine> next;  // of the page that follows: which months have ended before it
  if (static_cast<std::int64_t>(entries.size()) > page) {
    next = std::move(entries.back());
    entries.pop_back();
  }
  ledger.shown = static_cast<std::int64_t>(entries.size());
  lines.Open(ledger.opening + SumOfFirst(connection, own, period, ledger.first));
  if (ledger.first == 0) AddForeign(connection, own, period, ledger.lines.front());
  if (ledger.first > 0 && !entries.empty()) lines.PassOver(entries.front().month);
  for (LedgerLine& entry : entries) lines.Add(std::move(entry));
  if (next) {
    lines.EndBefore(next->month);
  } else {
    lines.EndAll();
  }
  return ledger;
}

}  // namespace desk::book
