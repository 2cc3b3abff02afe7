#include "views/opening_balance_view.h"

#include <algorithm>
#include <array>

#include "book/ledger/money_text.h"
#include "host/error.h"
#include "host/flag_scope.h"
#include "host/grid_update.h"
#include "host/text.h"
#include "views/ledger_grid.h"

namespace desk::views {

using viewkit::UserPort;

namespace {

using enum LedgerColumn::Kind;
constexpr std::array<LedgerColumn, OpeningBalanceView::kColumns> kPlans = {
    {{"科目编码", 1500},
     {"科目名称", 4200},
     {"方向", 660, kCentred},
     {"往来", 2400},
     {"借方", 1800, kAmount},
     {"贷方", 1800, kAmount}}};
constexpr int kMinName = 2400;

std::vector<Partner> WantedOf(const book::OpeningAccount& account) {
  std::vector<Partner> wanted;
  for (std::size_t i = 0; i < account.wanted.size(); ++i) {
    if (account.wanted.at(i)) wanted.push_back(static_cast<Partner>(i));
  }
  return wanted;
}

std::string Trimmed(const viewkit::TextBox& box) {
  return std::string(host::Trimmed(box.Text()));
}

std::int64_t ReadAmount(const viewkit::TextBox& box) {
  const std::string text = Trimmed(box);
  const auto amount = book::ParseMoney(text);
  if (!amount) throw host::HostError("“" + text + "”：" + book::WhyNoMoney(text));
  return *amount;
}

}  // namespace

OpeningBalanceView::OpeningBalanceView(book::Session& session, viewkit::UserPort& user)
    : Sheet(user), session_(session) {
  MakeControls();
  Load();
}

void OpeningBalanceView::MakeControls() {
  MakeLedgerGrid(grid_, kPlans, "期初余额");
  partner_label_.SetCaption("往来(&P)");
  debit_label_.SetCaption("借方(&D)");
  credit_label_.SetCaption("贷方(&C)");
  for (viewkit::TextBox* box : {&debit_, &credit_}) box->SetAlignRight(true);
  take_.SetCaption("确认(&T)");
  add_.SetCaption("增加往来(&A)");
  save_.SetCaption("保存(&S)");
  for (viewkit::Control* control : std::initializer_list<viewkit::Control*>{
           &grid_, &account_, &partner_label_, &partner_, &debit_label_, &debit_, &credit_label_,
           &credit_, &take_, &add_, &sums_, &save_}) {
    controls_.Add(*control);
  }
  grid_.RowColChange.Add([this] {
    if (!showing_) ShowRow();
  });
  grid_.DoubleClick.Add([this] { EnterBoxes(); });
  take_.Clicked.Add([this] { GoOn(); });
  add_.Clicked.Add([this] { AddPartner(); });
  save_.Clicked.Add([this] { Save(); });
}

void OpeningBalanceView::Load() {
  accounts_ = book::ReadOpening(session_);
  changed_.clear();
  ShowRows(0);
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

void OpeningBalanceView::AddUp() {
  balances_.assign(accounts_.size(), 0);
  std::vector<std::size_t> above;
  const auto end = [&] {
    const std::size_t ended = above.back();
    above.pop_back();
    if (!above.empty()) balances_[above.back()] += balances_[ended];
  };
  for (std::size_t i = 0; i < accounts_.size(); ++i) {
    while (static_cast<int>(above.size()) >= accounts_[i].level) end();
    balances_[i] = BalanceOf(i);
    above.push_back(i);
  }
  while (!above.empty()) end();
}

void OpeningBalanceView::ShowRows(std::size_t row) {
  AddUp();
  rows_.clear();
  host::RowSet texts(kColumns);
  const auto append = [&](const std::string& code, const std::string& name, bool debit_side,
                          const std::string& partner, std::int64_t balance) {
    texts.AppendText(code);
    texts.AppendText(name);
    texts.AppendText(name.empty() ? "" : debit_side ? "借" : "贷");
    texts.AppendText(partner);
    texts.AppendText(AmountCell(std::max<std::int64_t>(balance, 0)));
    texts.AppendText(AmountCell(std::max<std::int64_t>(-balance, 0)));
  };
  for (std::size_t i = 0; i < accounts_.size(); ++i) {
    const book::OpeningAccount& account = accounts_[i];
    std::string name;
    for (int level = 1; level < account.level; ++level) name += "　";
    rows_.push_back({i, {}});
    append(account.code, name + account.name, account.debit_side, {}, balances_[i]);
    if (!account.leaf || !account.WantsPartner()) continue;
    for (std::size_t line = 0; line < account.lines.size(); ++line) {
      const std::string partner = PartnersText(account.lines[line].auxiliary);
      rows_.push_back({i, line});
      append({}, {}, true, partner.empty() ? "（未指定）" : partner, account.lines[line].balance);
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

void OpeningBalanceView::ShowRow() {
  const auto chosen = Chosen();
  const Row row = chosen ? rows_[*chosen] : Row();
  const bool takes = chosen && Takes(row);
  const bool partner = takes && row.line;
  for (viewkit::TextBox* box : {&debit_, &credit_}) box->SetEnabled(takes);
  partner_.SetEnabled(partner);
  take_.SetEnabled(takes);
  const bool by_partner =
      chosen && accounts_[row.account].leaf && accounts_[row.account].WantsPartner();
  add_.SetEnabled(by_partner);
  account_.SetCaption(chosen ? accounts_[row.account].code + " " + accounts_[row.account].name
                             : std::string());
  std::string label;
  if (by_partner) {
    for (const Partner each : WantedOf(accounts_[row.account])) {
      label.append(label.empty() ? "" : "/").append(NameOf(each));
    }
  }
  partner_label_.SetCaption((label.empty() ? "往来" : label) + "(&P)");
  book::OpeningLine line;
  if (partner) line = accounts_[row.account].lines[*row.line];
  if (takes && !row.line) line.balance = BalanceOf(row.account);
  partner_.SetText(PartnersText(line.auxiliary));
  debit_.SetText(AmountCell(std::max<std::int64_t>(line.balance, 0)));
  credit_.SetText(AmountCell(std::max<std::int64_t>(-line.balance, 0)));
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
  sums_.SetCaption(std::move(text));
  save_.SetEnabled(HasChanges());
}

bool OpeningBalanceView::SetLine(const Row& row, std::int64_t balance) {
  book::OpeningAccount& account = accounts_[row.account];
  const std::vector<Partner> wanted = WantedOf(account);
  book::OpeningLine line{.auxiliary = ReadPartners(wanted, Trimmed(partner_)), .balance = balance};
  if (!row.line) {
    if (balance == BalanceOf(row.account)) return true;
    account.lines = {line};
  } else {
    book::OpeningLine& before = account.lines[*row.line];
    if (line == before) return true;
    const auto lacking = Lacking(wanted, line.auxiliary);
    if (lacking && balance != 0) {
      throw host::HostError("“" + account.name + "”要填写" + NameOf(*lacking));
    }
    for (std::size_t i = 0; i < account.lines.size(); ++i) {
      if (i == *row.line || account.lines[i].auxiliary != line.auxiliary || balance == 0) continue;
      throw host::HostError("“" + PartnersText(line.auxiliary) + "”已有一行");
    }
    before = line;
  }
  changed_.insert(row.account);
  ShowRows(*Chosen());
  return true;
}

bool OpeningBalanceView::TakeBoxes() {
  const auto chosen = Chosen();
  if (!chosen || !Takes(rows_[*chosen])) return true;
  bool taken = false;
  Trapped([&] {
    const std::int64_t debit = ReadAmount(debit_);
    const std::int64_t credit = ReadAmount(credit_);
    if (debit != 0 && credit != 0) throw host::HostError("只能填写借方或贷方之一");
    taken = SetLine(rows_[*chosen], debit - credit);
  });
  return taken;
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
  const bool credit = Trimmed(debit_).empty() && (!Trimmed(credit_).empty() || !account.debit_side);
  viewkit::TextBox& box = row.line && Trimmed(partner_).empty() ? partner_
                          : credit                              ? credit_
                                                                : debit_;
  box.SetFocus();
  box.SelectAll();
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
    ShowRows(row);
    sums_.SetCaption(sums_.Caption() + "    已保存");
    grid_.SetFocus();
  });
}

void OpeningBalanceView::Read() {
  if (HasChanges()) return;
  const std::size_t row = Chosen().value_or(0);
  accounts_ = book::ReadOpening(session_);
  ShowRows(row);
}

bool OpeningBalanceView::MayClose() {
  if (!HasChanges()) return true;
  return User().Ask("有 " + std::to_string(changed_.size()) +
                        " 个科目的期初余额尚未保存，将会丢失。\n\n是否关闭？",
                    Title(), UserPort::Icon::kWarning,
                    UserPort::Buttons::kYesNoDefaultNo) == UserPort::Answer::kYes;
}

bool OpeningBalanceView::InBoxes() const {
  return std::ranges::any_of(std::array{&partner_, &debit_, &credit_},
                             [](const viewkit::TextBox* box) { return box->Focused(); });
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
  if (partner_.Focused() && !Trimmed(partner_).empty()) {
    viewkit::TextBox& box = accounts_[rows_[*Chosen()].account].debit_side ? debit_ : credit_;
    box.SetFocus();
    box.SelectAll();
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

void OpeningBalanceView::Resize(int width, int height) {
  constexpr int kAmount = 1650;
  constexpr int kLabel = 1080;
  constexpr int kButton = 1350;
  const int foot = std::max(0, height - 2 * Strip::kHeight + Strip::kEdge);
  grid_.SetBounds({0, 0, width, foot});
  FitColumn(grid_, kName, kMinName);
  Strip boxes(foot);
  constexpr int kRest = 3 * (kLabel + 60) + 2 * (kAmount + 90) + 2 * (kButton + 90) + 180;
  const int room = std::max(0, width - kRest - Strip::kEdge * 2);
  boxes.PutLabel(account_, room * 3 / 5, 90);
  boxes.PutLabel(partner_label_, kLabel);
  boxes.Put(partner_, room * 2 / 5);
  boxes.PutLabel(debit_label_, kLabel - 240);
  boxes.Put(debit_, kAmount);
  boxes.PutLabel(credit_label_, kLabel - 240);
  boxes.Put(credit_, kAmount);
  boxes.Put(take_, kButton);
  boxes.Put(add_, kButton);
  Strip below(foot + Strip::kLine + Strip::kEdge / 2);
  below.PutLabel(sums_, width - 2 * Strip::kEdge - kButton - 90, 90);
  below.Put(save_, kButton);
}

}  // namespace desk::views
