#include "book/ledger/vouchers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

#include "book/ledger/code_range.h"
#include "host/text.h"
#include "host/utf.h"

namespace desk::book {

namespace {

constexpr std::string_view kReversalWord = "冲销 ";
constexpr char kOfVoucher[] =
    "fiscal_year=? and fiscal_period=? and voucher_number=? order by line_number,i_id";

std::array<host::Value, 3> ValuesOf(const VoucherKey& key) {
  return {key.month.year, key.month.number, key.number};
}

/// What the summaries of a voucher begin with that takes another one back.
std::string ReversalPrefix(const VoucherKey& key) {
  return std::string(kReversalWord) + VoucherName(key);
}

/// The first number in `text`, which then begins behind it; 0 for none.
int TakeNumber(std::string_view& text) {
  const auto digit = std::ranges::find_if(text, host::IsDigit);
  text.remove_prefix(static_cast<std::size_t>(digit - text.begin()));
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return error == std::errc() ? number : 0;
}

std::optional<VoucherKey> KeyInSummary(const std::string& summary) {
  std::string_view rest = summary;
  const int year = TakeNumber(rest);
  const int month = TakeNumber(rest);
  const VoucherKey key{{year, month}, TakeNumber(rest)};
  // Words that merely look like it are no name of a voucher.
  return summary.starts_with(ReversalPrefix(key)) ? std::optional(key) : std::nullopt;
}

/// The conditions of a search, and their values.
class Conditions {
 public:
  Conditions(const VoucherSearch& search, SqlDialect dialect) {
    if (!search.first_date.empty()) Add("entry_date>=?", {search.first_date});
    if (!search.last_date.empty()) Add("entry_date<=?", {search.last_date});
    if (!search.account.empty()) {
      const auto codes = WithAllBelow(search.account);
      Add("ccode>=? and ccode<=?", {codes[0], codes[1]});
    }
    if (!search.text.empty()) AddText(search.text, dialect);
    const auto least = search.least ? search.least : search.most;
    const auto most = search.most ? search.most : search.least;
    if (least) Add("abs(debit+credit)>=? and abs(debit+credit)<=?", {*least, *most});
  }
  [[nodiscard]] const std::string& Sql() const { return sql_; }
  [[nodiscard]] const std::vector<host::Value>& Parameters() const { return values_; }

 private:
  void Add(const std::string& condition, std::initializer_list<host::Value> values) {
    sql_ += " and " + condition;
    values_.insert(values_.end(), values);
  }
  /// Not by LIKE: what the user types holds no wildcards.
  void AddText(const std::string& text, SqlDialect dialect) {
    const std::string find = dialect == SqlDialect::kPostgres ? "strpos" : "instr";
    sql_ += " and (";
    for (const char* column :
         {"summary", "department", "person", "customer", "supplier", "project"}) {
      sql_ += (sql_.back() != '(' ? " or " : "") + find + "(lower(" + std::string(column) +
              "),lower(?))>0";
      values_.emplace_back(text);
    }
    sql_ += ")";
  }

  std::string sql_;
  std::vector<host::Value> values_;
};

/// The same lines, taken back.
std::vector<Entry> Opposite(std::vector<Entry> entries, const VoucherKey& key) {
  for (Entry& entry : entries) {
    entry.debit = -entry.debit;
    entry.credit = -entry.credit;
    entry.foreign_amount = -entry.foreign_amount;
    entry.quantity = -entry.quantity;
    entry.summary = ReversalPrefix(key) + (entry.summary.empty() ? "" : " ") + entry.summary;
  }
  return entries;
}

/// Whether `voucher` is what takes `other` back: every line says so, and the amounts are the
/// opposite ones. Accounts are not compared: they may have been rearranged since.
bool TakesBack(const Voucher& voucher, const Voucher& other, const VoucherKey& key) {
  const std::string prefix = ReversalPrefix(key);
  const auto says_so = [&](const Entry& entry) { return entry.summary.starts_with(prefix); };
  const auto opposite = [](const Entry& entry, const Entry& before) {
    return entry.debit == -before.debit && entry.credit == -before.credit;
  };
  return std::ranges::all_of(voucher.entries, says_so) &&
         std::ranges::equal(voucher.entries, other.entries, opposite);
}

/// The vouchers that may take this one back. What takes a line back stands on the same account,
/// wherever that has moved to.
std::vector<VoucherKey> Candidates(Session& session, const Voucher& voucher,
                                   const VoucherKey& key) {
  const Entry& first = voucher.entries.front();
  const std::string prefix = ReversalPrefix(key);
  const host::Value values[] = {first.code, -first.debit, -first.credit, prefix};
  const auto rows = session.Own().Query(
      "select fiscal_year,fiscal_period,voucher_number from gl_accvouch where ccode=? and debit=? "
      "and credit=? and substr(summary,1," +
          std::to_string(host::ToUtf16(prefix).size()) +
          ")=? and voucher_number is not null order by fiscal_year,fiscal_period,voucher_number",
      Origin::kDesk, values);
  std::vector<VoucherKey> keys;
  while (rows->Next()) {
    keys.push_back({{rows->Get(0).ToLong(), rows->Get(1).ToLong()}, rows->Get(2).ToLong()});
  }
  return keys;
}

Entry EntryAt(const Rows& rows) {
  const auto text = [&](int column) { return rows.Get(column).ToText(); };
  return {.summary = text(0),
          .code = text(1),
          .debit = AmountAt(rows, 2),
          .credit = AmountAt(rows, 3),
          .auxiliary = {text(7), text(8), text(9), text(10), text(11)},
          .currency = text(4),
          .foreign_amount = AmountAt(rows, 5),
          .quantity = rows.Get(6).ToNumber()};
}

/// A date that is none leaves the day at the first.
int DayOf(const std::string& date) {
  int day = 0;
  return std::sscanf(date.c_str(), "%*d-%*d-%d", &day) == 1 && day >= 1 && day <= 31 ? day : 1;
}

}  // namespace

std::string VoucherName(const VoucherKey& key) {
  return MonthText(key.month) + " 记-" + std::to_string(key.number) + " 号";
}

std::vector<VoucherHead> FindVouchers(Session& session, const VoucherSearch& search, int limit) {
  const Conditions conditions(search, session.Own().Dialect());
  const std::string found =
      conditions.Sql().empty()
          ? std::string()
          : " join(select distinct fiscal_year as y,fiscal_period as p,voucher_number as n from "
            "gl_accvouch where voucher_number is not null" +
                conditions.Sql() +
                ")k on k.y=fiscal_year and k.p=fiscal_period and "
                "k.n=voucher_number";
  const auto rows = session.Own().Query(
      "select h.fiscal_year,h.fiscal_period,h.voucher_number,h.d,(select f.summary from "
      "gl_accvouch f where f.fiscal_year=h.fiscal_year and f.fiscal_period=h.fiscal_period and "
      "f.voucher_number=h.voucher_number and f.line_number=h.l),h.t,h.w from(select "
      "fiscal_year,fiscal_period,voucher_number,min(entry_date)as d,min(line_number)as "
      "l,sum(debit)as t,max(prepared_by)as w from gl_accvouch" +
          found +
          " where voucher_number is not null group by fiscal_year,fiscal_period,voucher_number "
          "order by fiscal_year desc,fiscal_period desc,voucher_number desc limit " +
          std::to_string(limit) +
          ")h order by h.fiscal_year desc,h.fiscal_period desc,h.voucher_number desc",
      Origin::kDesk, conditions.Parameters());
  std::vector<VoucherHead> heads;
  while (rows->Next()) {
    const Month month{rows->Get(0).ToLong(), rows->Get(1).ToLong()};
    heads.push_back({.key = {month, rows->Get(2).ToLong()},
                     .date = rows->Get(3).ToText(),
                     .summary = rows->Get(4).ToText(),
                     .total = AmountAt(*rows, 5),
                     .prepared_by = rows->Get(6).ToText()});
  }
  return heads;
}

std::optional<Voucher> ReadVoucher(Session& session, const VoucherKey& key) {
  const auto rows = session.Own().Query(
      std::string("select summary,ccode,debit,credit,currency_name,foreign_amount,quantity,"
                  "department,person,customer,supplier,project,entry_date,prepared_by from "
                  "gl_accvouch where ") +
          kOfVoucher,
      Origin::kDesk, ValuesOf(key));
  std::optional<Voucher> voucher;
  while (rows->Next()) {
    if (!voucher) {
      voucher = {.year = key.month.year,
                 .month = key.month.number,
                 .day = DayOf(rows->Get(12).ToText()),
                 .prepared_by = rows->Get(13).ToText()};
    }
    voucher->entries.push_back(EntryAt(*rows));
  }
  return voucher;
}

Reversal ReversalOf(Session& session, const VoucherKey& key) {
  Reversal known;
  const auto own = ReadVoucher(session, key);
  if (!own) return known;
  const auto of = KeyInSummary(own->entries.front().summary);
  const auto taken_back = of ? ReadVoucher(session, *of) : std::nullopt;
  if (taken_back && TakesBack(*own, *taken_back, *of)) known.of = of;
  for (const VoucherKey& candidate : Candidates(session, *own, key)) {
    const auto other = ReadVoucher(session, candidate);
    if (!other || !TakesBack(*other, *own, key)) continue;
    known.by = candidate;
    break;
  }
  return known;
}

std::string WhyNoReversal(const VoucherKey& key, const Reversal& known) {
  if (known.by) {
    return VoucherName(key) + "凭证已由 " + VoucherName(*known.by) + "凭证冲销，不能再次冲销";
  }
  if (!known.of) return {};
  return VoucherName(key) + "是冲销凭证（冲销 " + VoucherName(*known.of) +
         "），不能冲销。要恢复原凭证，请复制原凭证后过账";
}

VoucherKey Reverse(Session& session, const VoucherKey& key, Voucher date) {
  const auto voucher = ReadVoucher(session, key);
  if (!voucher) throw DatabaseError(ErrorKind::kMissing, "没有 " + VoucherName(key) + "凭证");
  date.entries = Opposite(voucher->entries, key);
  // Asked for inside the transaction: another desk may be taking it back at this moment.
  const int number = Post(session, date, [&] {
    const std::string why = WhyNoReversal(key, ReversalOf(session, key));
    if (!why.empty()) throw DatabaseError(ErrorKind::kRefused, why);
  });
  return {{date.year, date.month}, number};
}

}  // namespace desk::book
