#include "book/ledger/trial_balance.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <map>
#include <memory>
#include <utility>
#include <variant>

namespace desk::book {

namespace {

bool Holds(const TrialBalanceRow& row) {
  return row.opening != 0 || row.debit != 0 || row.credit != 0;
}

/// What each code of the ledger comes to; it takes `BoundsOf` the period.
const std::string kTotals =
    std::string(
        "(select ccode,sum(case when m<? then debit-credit else 0 end)as opening,"
        "sum(case when m<? then 0 else debit end)as debit,"
        "sum(case when m<? then 0 else credit end)as credit "
        "from(select ccode,debit,credit,coalesce(") +
    kMonthPosition + ",0)as m from gl_accsum)t where m<=? group by ccode)s";

std::array<host::Value, 4> BoundsOf(const Period& period) {
  const std::int32_t first = period.FirstPosition();
  return {first, first, first, period.LastPosition()};
}

std::unique_ptr<Rows> QueryTotals(Connection& connection, const Period& period) {
  return connection.Query(
      "select a.cclass,a.ccode,a.ccode_name,a.bclose,s.opening,s.debit,s.credit from gl_code a "
      "left join" +
          kTotals + " on s.ccode=a.ccode order by a.ccode",
      Origin::kDesk, BoundsOf(period));
}

/// Books of other makers can hold postings on codes that are no accounts.
std::vector<TrialBalanceRow> ReadUnlisted(Connection& connection, const Period& period) {
  const auto rows = connection.Query(
      "select s.ccode,s.opening,s.debit,s.credit from" + kTotals +
          " where not exists(select 1 from gl_code a where s.ccode=a.ccode)order by s.ccode",
      Origin::kDesk, BoundsOf(period));
  std::vector<TrialBalanceRow> unlisted;
  while (rows->Next()) {
    TrialBalanceRow row{.category = "无科目",
                        .first_level = {},
                        .code = rows->Get(0).ToText(),
                        .name = "（科目表中没有）",
                        .listed = false,
                        .opening = AmountAt(*rows, 1),
                        .debit = AmountAt(*rows, 2),
                        .credit = AmountAt(*rows, 3)};
    row.first_level = row.code + " " + row.name;
    if (Holds(row)) unlisted.push_back(std::move(row));
  }
  return unlisted;
}

/// The accounts in the order of their codes, each with those above it.
class Tree {
 public:
  void Add(TrialBalanceRow row) {
    while (!above_.empty() && !row.code.starts_with(rows_[above_.back()].code)) above_.pop_back();
    row.level = static_cast<int>(above_.size()) + 1;
    // An account that hangs below nothing heads itself.
    row.first_level =
        above_.empty() ? row.code + " " + row.name : rows_[above_.front()].first_level;
    row.leaf = true;
    if (!above_.empty()) rows_[above_.back()].leaf = false;
    above_.push_back(rows_.size());
    parents_.push_back(above_.size() < 2 ? kNone : above_[above_.size() - 2]);
    rows_.push_back(std::move(row));
  }

  /// The rows of a level, those that hold something.
  [[nodiscard]] std::vector<TrialBalanceRow> Take(int level) {
    std::vector<TrialBalanceRow> own = OwnOfParents(level);
    std::vector<char> holds(rows_.size(), 0);
    for (std::size_t i = rows_.size(); i-- > 0;) {
      const TrialBalanceRow& row = rows_[i];
      if (Holds(row)) holds[i] = 1;
      if (level == kLeafAccounts || parents_[i] == kNone || holds[i] == 0) continue;
      TrialBalanceRow& parent = rows_[parents_[i]];
      parent.opening += row.opening;
      parent.debit += row.debit;
      parent.credit += row.credit;
      holds[parents_[i]] = 1;
    }
    std::vector<TrialBalanceRow> taken;
    auto next = own.begin();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      const std::string code = rows_[i].code;
      if (holds[i] != 0 && Shown(rows_[i], level)) taken.push_back(std::move(rows_[i]));
      if (next != own.end() && next->code == code) taken.push_back(std::move(*next++));
    }
    return taken;
  }

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// Only a damaged book has totals of an account with others below it. They are a row of their own
  /// where the sums of that account do not stand for them.
  [[nodiscard]] std::vector<TrialBalanceRow> OwnOfParents(int level) const {
    std::vector<TrialBalanceRow> own;
    for (const TrialBalanceRow& row : rows_) {
      const bool in_sums = level == kLeafAccounts || (level > 0 && row.level >= level);
      if (row.leaf || in_sums || !Holds(row)) continue;
      own.push_back(row);
      own.back().name += "（本级）";
      own.back().leaf = true;
      ++own.back().level;
    }
    return own;
  }

  [[nodiscard]] static bool Shown(const TrialBalanceRow& row, int level) {
    if (level == kLeafAccounts || level == kAllAccounts) return true;
    return row.level == level || (row.leaf && row.level < level);
  }

  std::vector<TrialBalanceRow> rows_;
  std::vector<std::size_t> parents_;  // of each row
  std::vector<std::size_t> above_;    // from the first level down to the last row
};

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

std::vector<TrialBalanceRow> ReadTrialBalance(Session& session, const Period& period, int level) {
  const auto rows = QueryTotals(session.Own(), period);
  Tree tree;
  while (rows->Next()) {
    tree.Add({.category = rows->Get(0).ToText(),
              .first_level = {},
              .code = rows->Get(1).ToText(),
              .name = rows->Get(2).ToText(),
              .sealed = rows->Get(3).ToNumber() != 0,
              .opening = AmountAt(*rows, 4),
              .debit = AmountAt(*rows, 5),
              .credit = AmountAt(*rows, 6)});
  }
  std::vector<TrialBalanceRow> balance = tree.Take(level);
  GatherCategories(balance);
  std::ranges::move(ReadUnlisted(session.Own(), period), std::back_inserter(balance));
  return balance;
}

int LevelsOfChart(Session& session) {
  const auto rows = session.Own().Query("select max(igrade) from gl_code", Origin::kDesk);
  return rows->Next() ? std::max<int>(1, rows->Get(0).ToLong()) : 1;
}

}  // namespace desk::book
