#include "views/opening_balance_view.h"

#include <algorithm>
#include <array>

#include "book/ledger/money_text.h"
#include "host/error.h"
#include "host/flag_scope.h"
#include "host/grid_update.h"
#include "host/text.h"
#include "views/ledger_grid.h"
#include "views/voucher_lines.h"

namespace desk::views {

using viewkit::UserPort;

OpeningBalanceView::OpeningBalanceView(book::Session& session, viewkit::UserPort& user)
    : Sheet(user), session_(session) {
  MakeControls();
  Load();
}

void OpeningBalanceView::Load() {
  accounts_ = book::ReadOpening(session_);
  changed_.clear();
  ShowRows(0);
}

std::vector<Partner> OpeningBalanceView::WantedOf(const book::OpeningAccount& account) {
  std::vector<Partner> wanted;
  for (std::size_t i = 0; i < account.wanted.size(); ++i) {
    if (account.wanted.at(i)) wanted.push_back(static_cast<Partner>(i));
  }
  return wanted;
}

bool OpeningBalanceView::Takes(const Row& row) const {
  const book::OpeningAccount& account = accounts_[row.account];
  return account.leaf && (row.line.has_value() || !account.WantsPartner());
}

std::int64_t OpeningBalanceView::BalanceOf(std::size_t account) const {
  std::int64_t balance = 0;
  for (const book::OpeningLine& line : accounts_[account].lines) balance += line.balance;
  return balance;
}

void OpeningBalanceView::Total::Add(const book::OpeningLine& line, const std::string& unit) {
  balance += line.balance;
  foreign += line.foreign_amount;
  quantity += line.quantity;
  if (line.foreign_amount != 0) currencies.insert(line.currency);
  if (line.quantity != 0) units.insert(unit);
}

void OpeningBalanceView::Total::Add(const Total& below) {
  balance += below.balance;
  foreign += below.foreign;
  quantity += below.quantity;
  currencies.insert(below.currencies.begin(), below.currencies.end());
  units.insert(below.units.begin(), below.units.end());
}

book::OpeningLine OpeningBalanceView::Total::Shown() const {
  book::OpeningLine line{.balance = balance};
  if (currencies.size() == 1) line.currency = *currencies.begin();
  if (currencies.size() == 1) line.foreign_amount = foreign;
  if (units.size() == 1) line.quantity = quantity;
  return line;
}

void OpeningBalanceView::AddUp() {
  totals_.assign(accounts_.size(), {});
  std::vector<std::size_t> above;
  const auto end = [&] {
    const std::size_t ended = above.back();
    above.pop_back();
    if (!above.empty()) totals_[above.back()].Add(totals_[ended]);
  };
  for (std::size_t i = 0; i < accounts_.size(); ++i) {
    while (static_cast<int>(above.size()) >= accounts_[i].level) end();
    for (const book::OpeningLine& line : accounts_[i].lines) {
      totals_[i].Add(line, accounts_[i].unit);
    }
    above.push_back(i);
  }
  while (!above.empty()) end();
}

void OpeningBalanceView::ShowRows(std::size_t row) {
  AddUp();
  rows_.clear();
  host::RowSet texts(kColumns);
  const auto append = [&](const std::string& code, const std::string& name, bool debit_side,
                          const std::string& partner, const book::OpeningLine& line) {
    const bool total = !Takes(rows_.back());
    const bool credit = line.balance < 0;
    const std::int64_t foreign = credit ? -line.foreign_amount : line.foreign_amount;
    texts.AppendText(code);
    texts.AppendText(name);
    texts.AppendText(name.empty() ? "" : debit_side ? "借" : "贷");
    texts.AppendText(partner);
    texts.AppendText(foreign == 0 ? std::string() : line.currency);
    texts.AppendText(AmountCell(foreign));
    // A sum may hold amounts that are in no foreign currency.
    texts.AppendText(total ? std::string()
                           : RateText(credit ? -line.balance : line.balance, foreign));
    texts.AppendText(QuantityText(credit ? -line.quantity : line.quantity));
    texts.AppendText(AmountCell(std::max<std::int64_t>(line.balance, 0)));
    texts.AppendText(AmountCell(std::max<std::int64_t>(-line.balance, 0)));
  };
  for (std::size_t i = 0; i < accounts_.size(); ++i) {
    const book::OpeningAccount& account = accounts_[i];
    std::string name;
    for (int level = 1; level < account.level; ++level) name += "　";
    rows_.push_back({i, {}});
    append(account.code, name + account.name, account.debit_side, {}, totals_[i].Shown());
    if (!account.leaf || !account.WantsPartner()) continue;
    for (std::size_t line = 0; line < account.lines.size(); ++line) {
      const std::string partner = PartnersText(account.lines[line].auxiliary);
      rows_.push_back({i, line});
      append({}, {}, true, partner.empty() ? "（未指定）" : partner, account.lines[line]);
    }
  }
  const host::FlagScope showing(showing_);
  {
    const host::GridUpdate update(grid_);
    const int top = grid_.TopRow();
    grid_.LoadRows(std::move(texts));
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (!Takes(rows_[i])) DressTotal(grid_, grid_.FixedRows() + static_cast<int>(i));
    }
    RedNegatives(grid_, kForeign, kQuantity);
    ShowColumns();
    grid_.SetTopRow(top);
    if (!rows_.empty()) {
      grid_.SetRow(grid_.FixedRows() + static_cast<int>(std::min(row, rows_.size() - 1)));
    }
  }
  ShowRow();
  Summarise();
}

std::optional<std::size_t> OpeningBalanceView::Chosen() const {
  const int at = grid_.Row() - grid_.FixedRows();
  if (at < 0 || at >= static_cast<int>(rows_.size())) return std::nullopt;
  return static_cast<std::size_t>(at);
}

void OpeningBalanceView::Summarise() {
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  for (const book::OpeningAccount& account : accounts_) {
    for (const book::OpeningLine& line : account.lines) {
      (line.balance > 0 ? debit : credit) += line.balance > 0 ? line.balance : -line.balance;
    }
  }
  std::string text =
      "借方合计 " + book::MoneyText(debit) + "    贷方合计 " + book::MoneyText(credit) + "    ";
  text += debit == credit ? "借贷平衡" : "借贷不平，差额 " + book::MoneyText(debit - credit);
  if (HasChanges()) text += "    " + std::to_string(changed_.size()) + " 个科目尚未保存";
  if (saved_ && !HasChanges()) text += "    已保存";
  sums_.SetCaption(std::move(text));
  save_.SetEnabled(HasChanges());
}

/// To the next row that takes an amount, in the box of its side.
void OpeningBalanceView::Move(int direction) {
  const auto chosen = Chosen();
  if (!chosen) return;
  auto at = static_cast<std::ptrdiff_t>(*chosen) + direction;
  const auto end = static_cast<std::ptrdiff_t>(rows_.size());
  while (at >= 0 && at < end && !Takes(rows_[static_cast<std::size_t>(at)])) at += direction;
  if (at < 0 || at >= end) return;
  grid_.SetRow(grid_.FixedRows() + static_cast<int>(at));
  grid_.ShowRow(grid_.Row());
  EnterBoxes();
}

void OpeningBalanceView::GoOn() {
  if (TakeBoxes()) Move(1);
}

void OpeningBalanceView::EnterBoxes() {
  const auto chosen = Chosen();
  if (!chosen) return;
  const Row row = rows_[*chosen];
  const book::OpeningAccount& account = accounts_[row.account];
  if (!Takes(row)) {
    if (account.leaf && account.WantsPartner()) AddPartner();
    return;
  }
  Enter(row.line && host::Trimmed(partner_.Text()).empty() ? partner_ : FirstAmount());
}

void OpeningBalanceView::AddPartner() {
  const auto chosen = Chosen();
  if (!chosen) return;
  const std::size_t account = rows_[*chosen].account;
  if (!accounts_[account].leaf || !accounts_[account].WantsPartner()) return;
  std::vector<book::OpeningLine>& lines = accounts_[account].lines;
  const bool blank = !lines.empty() && lines.back() == book::OpeningLine();
  if (!blank) lines.emplace_back();
  const auto first = std::ranges::find(rows_, account, &Row::account) - rows_.begin();
  ShowRows(static_cast<std::size_t>(first) + lines.size());
  grid_.ShowRow(grid_.Row());
  partner_.SetFocus();
}

void OpeningBalanceView::Save() {
  if (!TakeBoxes() || !HasChanges()) return;
  Trapped([this] {
    std::int64_t difference = 0;
    for (std::size_t i = 0; i < accounts_.size(); ++i) difference += BalanceOf(i);
    if (difference != 0 &&
        User().Ask("期初余额借贷不平，差额 " + book::MoneyText(difference) + "。\n\n是否仍然保存？",
                   Title(), UserPort::Icon::kWarning,
                   UserPort::Buttons::kYesNoDefaultNo) != UserPort::Answer::kYes) {
      return;
    }
    std::vector<book::OpeningChange> changes;
    for (const std::size_t i : changed_) changes.push_back({accounts_[i].code, accounts_[i].lines});
    book::SaveOpening(session_, changes);
    const std::size_t row = Chosen().value_or(0);
    accounts_ = book::ReadOpening(session_);
    changed_.clear();
    saved_ = true;
    ShowRows(row);
    grid_.SetFocus();
  });
}

void OpeningBalanceView::Read() {
  if (HasChanges() || typed_) return;
  const std::size_t row = Chosen().value_or(0);
  accounts_ = book::ReadOpening(session_);
  ShowRows(row);
}

bool OpeningBalanceView::MayClose() {
  if (!HasChanges() && !typed_) return true;
  const std::string what = HasChanges()
                               ? "有 " + std::to_string(changed_.size()) + " 个科目的期初余额"
                               : "填写的期初余额";
  return User().Ask(what + "尚未保存，将会丢失。\n\n是否关闭？", Title(), UserPort::Icon::kWarning,
                    UserPort::Buttons::kYesNoDefaultNo) == UserPort::Answer::kYes;
}

bool OpeningBalanceView::UseKey(viewkit::Key key, viewkit::Modifiers modifiers) {
  using viewkit::Key;
  constexpr Key kLetterS{'S'};
  constexpr Key kInsert{0x2D};
  if (modifiers.control && key == kLetterS) return Save(), true;
  if (modifiers.control || modifiers.alt) return false;
  if (grid_.Focused() && key == kInsert) return AddPartner(), true;
  if (grid_.Focused() && key == Key::kEnter) return EnterBoxes(), true;
  if (!InBoxes()) return false;
  if (key == Key::kEscape) return ShowRow(), grid_.SetFocus(), true;
  const bool moves = key == Key::kUp || key == Key::kDown;
  if (moves) {
    if (TakeBoxes()) Move(key == Key::kUp ? -1 : 1);
    return true;
  }
  if (key != Key::kEnter) return false;
  if (viewkit::TextBox* next = NextBox()) {
    bool good = false;
    Trapped([&] {
      WorkOut();
      good = true;
    });
    if (good) Enter(*next);
    return true;
  }
  GoOn();
  return true;
}

std::vector<Sheet::MenuItem> OpeningBalanceView::Menu() {
  return {{.text = "填写金额(&E)\tEnter",
           .run = [this] { EnterBoxes(); },
           .enabled = take_.Enabled() || add_.Enabled()},
          {.text = "增加往来(&A)\tIns", .run = [this] { AddPartner(); }, .enabled = add_.Enabled()},
          {.text = "保存(&S)\tCtrl+S", .run = [this] { Save(); }, .enabled = HasChanges()}};
}

}  // namespace desk::views
