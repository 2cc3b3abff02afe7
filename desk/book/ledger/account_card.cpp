#include "book/ledger/account_card.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "book/ledger/code_range.h"
#include "book/ledger/code_rule.h"
#include "book/session/settings.h"
#include "host/account.h"

namespace desk::book {

namespace {

struct FlagWord {
  const char* column;
  const char* word;
};
constexpr std::array kKindWords = {FlagWord{"bdept", "部门核算"}, FlagWord{"bperson", "个人往来"},
                                   FlagWord{"bcus", "客户往来"}, FlagWord{"bsup", "供应商往来"},
                                   FlagWord{"bitem", "项目核算"}};

/// Columns of the statement that reads the account; the flags of `kKindWords` follow.
enum Field {
  kCode,
  kName,
  kCategory,
  kDirection,
  kMnemonic,
  kBookType,
  kForeign,
  kCurrency,
  kUnit,
  kJournal,
  kBankBook,
  kGather,
  kControlledBy,
  kSealed,
  kLeaf,
  kFirstKind
};

bool FlagAt(const Rows& rows, int column) {
  return rows.Get(column).ToNumber() != 0;
}

/// "外币（美元）", or the word alone.
std::string WithDetail(const std::string& word, const std::string& detail) {
  return detail.empty() ? word : word + "（" + detail + "）";
}

std::vector<std::string> BooksOf(const Rows& row) {
  std::vector<std::string> books;
  if (FlagAt(row, kForeign)) books.push_back(WithDetail("外币", row.Get(kCurrency).ToText()));
  const std::string unit = row.Get(kUnit).ToText();
  if (!unit.empty()) books.push_back(WithDetail("数量", unit));
  if (FlagAt(row, kJournal)) books.emplace_back("日记账");
  if (FlagAt(row, kBankBook)) books.emplace_back("银行账");
  const std::string gather = row.Get(kGather).ToText();
  if (!gather.empty()) books.push_back(WithDetail("汇总到", gather));
  return books;
}

std::optional<AccountCard> ReadAccount(Connection& connection, const std::string& code) {
  std::string sql =
      "select ccode,ccode_name,cclass,bproperty,chelp,cbook_type,bexchange,cexch_name,cmeasure,br,"
      "be,cgather,cother,bclose,bend";
  for (const FlagWord& kind : kKindWords) sql.append(",").append(kind.column);
  const host::Value key(code);
  const auto row = connection.Query(sql + " from gl_code where ccode=?", Origin::kDesk, {&key, 1});
  if (!row->Next()) return std::nullopt;
  AccountCard card;
  card.account = {row->Get(kCode).ToText(), row->Get(kName).ToText()};
  card.category = row->Get(kCategory).ToText();
  card.debit_side = FlagAt(*row, kDirection);
  card.mnemonic = row->Get(kMnemonic).ToText();
  card.book_type = row->Get(kBookType).ToText();
  card.controlled_by = row->Get(kControlledBy).ToText();
  card.sealed = FlagAt(*row, kSealed);
  card.leaf = FlagAt(*row, kLeaf);
  card.books = BooksOf(*row);
  for (std::size_t i = 0; i < kKindWords.size(); ++i) {
    if (FlagAt(*row, kFirstKind + static_cast<int>(i))) card.kinds.emplace_back(kKindWords[i].word);
  }
  return card;
}

std::string NameOf(Connection& connection, const std::string& code) {
  const host::Value key(code);
  const auto row =
      connection.Query("select ccode_name from gl_code where ccode=?", Origin::kDesk, {&key, 1});
  return row->Next() ? row->Get(0).ToText() : std::string();
}

std::vector<NamedCode> ParentsOf(Session& session, const std::string& code) {
  const std::string rule = ReadCodeRule(session);
  CodeRuleArithmetic arithmetic;
  std::vector<NamedCode> parents;
  for (std::string above = arithmetic.ParentCode(code, rule); !above.empty();
       above = arithmetic.ParentCode(above, rule)) {
    parents.push_back({above, NameOf(session.Own(), above)});
  }
  std::ranges::reverse(parents);
  return parents;
}

std::vector<MonthMovement> MonthsOf(Connection& connection, const std::string& code) {
  const auto rows = connection.Query(
      "select fiscal_year,fiscal_period,sum(debit),sum(credit) from gl_accsum where ccode>=? and "
      "ccode<=? group by fiscal_year,fiscal_period order by fiscal_year,fiscal_period",
      Origin::kDesk, WithAllBelow(code));
  std::vector<MonthMovement> months;
  MonthMovement before;
  while (rows->Next()) {
    const std::int64_t debit = AmountAt(*rows, 2);
    const std::int64_t credit = AmountAt(*rows, 3);
    if (rows->Get(0).IsNull() || rows->Get(1).IsNull()) {
      before.debit += debit;
      before.credit += credit;
      continue;
    }
    const Month month{rows->Get(0).ToLong(), rows->Get(1).ToLong()};
    months.push_back({.month = month, .debit = debit, .credit = credit});
  }
  // Engines differ in where they sort what has no month.
  if (before.debit != 0 || before.credit != 0) months.insert(months.begin(), before);
  return months;
}

std::int64_t BalanceOf(Connection& connection, const std::string& code) {
  const auto rows =
      connection.Query("select sum(debit-credit) from gl_accsum where ccode>=? and ccode<=?",
                       Origin::kDesk, WithAllBelow(code));
  return rows->Next() ? AmountAt(*rows, 0) : 0;
}

}  // namespace

std::int64_t AccountCard::Balance() const {
  std::int64_t balance = 0;
  for (const MonthMovement& month : months) balance += month.debit - month.credit;
  return balance;
}

std::optional<int> AccountCard::ShareOfParent() const {
  if (!parent_balance || *parent_balance == 0) return std::nullopt;
  const std::int64_t balance = Balance();
  if ((balance < 0) != (*parent_balance < 0) && balance != 0) return std::nullopt;
  constexpr double kWhole = 1000;
  const double share = static_cast<double>(balance) / static_cast<double>(*parent_balance) * kWhole;
  return static_cast<int>(std::lround(share));
}

std::optional<AccountCard> ReadAccountCard(Session& session, const std::string& code) {
  Connection& connection = session.Own();
  auto card = ReadAccount(connection, code);
  if (!card) return std::nullopt;
  card->parents = ParentsOf(session, card->account.code);
  card->months = MonthsOf(connection, card->account.code);
  if (!card->parents.empty()) {
    card->parent_balance = BalanceOf(connection, card->parents.back().code);
  }
  return card;
}

}  // namespace desk::book
