#include "views/account_sheet.h"

#include <algorithm>

#include "book/ledger/money_text.h"
#include "host/account.h"

namespace desk::views {

namespace {

namespace host = tavrix::host;
using book::AccountCard;
using book::MonthMovement;

constexpr std::int64_t kWhole = 1000;

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text.append(text.empty() ? "" : "、").append(word);
  return text;
}

std::string PathOf(const AccountCard& card) {
  std::string path = card.category;
  for (const book::NamedCode& parent : card.parents) {
    path.append("\n").append(parent.code).append(" ").append(parent.name);
  }
  return path;
}

/// What an account does not have takes no line, but for the kinds of auxiliary accounting: that
/// there are none is asked often.
std::vector<AccountSheet::Line> LinesOf(const AccountCard& card) {
  std::vector<AccountSheet::Line> lines;
  const auto add = [&](const char* label, const std::string& text) {
    if (!text.empty()) lines.push_back({label, text});
  };
  add("状态", card.sealed ? "封存" : card.leaf ? "明细科目" : "有下级科目");
  add("余额方向", card.debit_side ? "借方" : "贷方");
  add("辅助核算", card.kinds.empty() ? "无" : Joined(card.kinds));
  add("其他核算", Joined(card.books));
  add("账页格式", card.book_type);
  add("助记码", card.mnemonic);
  add("受控系统", card.controlled_by);
  return lines;
}

std::string AmountText(std::int64_t amount) {
  return amount == 0 ? std::string() : book::MoneyText(amount);
}

/// A movement that is there shows, however small.
int BarOf(std::int64_t amount, std::int64_t largest) {
  if (amount <= 0 || largest <= 0) return 0;
  const double part = static_cast<double>(amount) / static_cast<double>(largest);
  return std::max(1, static_cast<int>(part * static_cast<double>(kWhole)));
}

std::vector<AccountSheet::Bar> BarsOf(const std::vector<MonthMovement>& months) {
  const std::size_t shown = std::min<std::size_t>(months.size(), AccountSheet::kMaxMonths);
  const std::size_t first = months.size() - shown;
  std::int64_t largest = 0;
  for (std::size_t i = first; i < months.size(); ++i) {
    largest = std::max({largest, months[i].debit, months[i].credit});
  }
  std::vector<AccountSheet::Bar> bars;
  std::int64_t balance = 0;
  for (std::size_t i = 0; i < months.size(); ++i) {
    const MonthMovement& month = months[i];
    balance += month.debit - month.credit;
    if (i < first) continue;
    bars.push_back({.month = month.month ? book::MonthText(*month.month) : "以前",
                    .debit = AmountText(month.debit),
                    .credit = AmountText(month.credit),
                    .balance = SidedAmount(balance),
                    .debit_bar = BarOf(month.debit, largest),
                    .credit_bar = BarOf(month.credit, largest)});
  }
  return bars;
}

/// 623 is "62.3 %".
std::string ShareText(int thousandths) {
  return std::to_string(thousandths / 10) + "." + std::to_string(thousandths % 10) + " %";
}

}  // namespace

std::string SidedAmount(std::int64_t balance) {
  if (balance == 0) return "平";
  const std::string_view side = balance > 0 ? host::kDebit : host::kCredit;
  return std::string(side) + " " + book::MoneyText(balance > 0 ? balance : -balance);
}

std::vector<std::string> SpokenLines(const AccountSheet& sheet) {
  std::vector<std::string> lines;
  lines.push_back(sheet.code + " " + sheet.name);
  std::string path = sheet.path;
  std::ranges::replace(path, '\n', ' ');
  if (!path.empty()) lines.push_back(path);
  lines.push_back("余额 " + sheet.balance);
  if (!sheet.share.empty()) lines.push_back("占上级 " + sheet.share);
  for (const AccountSheet::Line& line : sheet.lines) lines.push_back(line.label + " " + line.text);
  for (auto month = sheet.months.rbegin(); month != sheet.months.rend(); ++month) {
    std::string text = month->month;
    if (!month->debit.empty()) text += " 借方 " + month->debit;
    if (!month->credit.empty()) text += " 贷方 " + month->credit;
    lines.push_back(text + " 余额 " + month->balance);
  }
  return lines;
}

AccountSheet MakeAccountSheet(const AccountCard& card) {
  AccountSheet sheet{.code = card.account.code,
                     .name = card.account.name,
                     .path = PathOf(card),
                     .sealed = card.sealed,
                     .lines = LinesOf(card),
                     .balance = SidedAmount(card.Balance()),
                     .months = BarsOf(card.months)};
  if (const auto share = card.ShareOfParent()) {
    sheet.share = ShareText(*share);
    sheet.share_bar = std::min(*share, static_cast<int>(kWhole));
  }
  return sheet;
}

}  // namespace desk::views
