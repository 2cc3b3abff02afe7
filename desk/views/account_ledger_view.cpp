#include "views/account_ledger_view.h"

#include <algorithm>
#include <array>
#include <utility>

#include "book/ledger/money_text.h"
#include "host/error.h"
#include "host/flag_scope.h"
#include "host/grid_update.h"
#include "host/text.h"
#include "views/account_sheet.h"
#include "views/column_fit.h"
#include "views/ledger_grid.h"
#include "views/posting_account.h"
#include "views/typed_account.h"
#include "views/voucher_lines.h"

namespace desk::views {

using book::LedgerLine;

namespace {

constexpr char kFromFirst[] = "最早";
constexpr char kToLast[] = "最后";
constexpr int kMinSummary = 1800;

using enum LedgerColumn::Kind;
constexpr std::array<LedgerColumn, AccountLedgerView::kColumns> kPlans = {
    {{"日期", 1230, kCentred},
     {"凭证号", 750, kCentred},
     {"摘要", 3000},
     {"科目", 1200},
     {"对方科目", 2100},
     {"往来", 1500},
     {"外币", 690, kCentred},
     {"外币金额", 1500, kAmount},
     {"数量", 1050, kQuantity},
     {"借方", 1590, kAmount},
     {"贷方", 1590, kAmount},
     {"方向", 570, kCentred},
     {"余额", 1650, kAmount}}};

const char* SummaryOf(LedgerLine::Kind kind) {
  if (kind == LedgerLine::Kind::kOpening) return "期初余额";
  return kind == LedgerLine::Kind::kMonth ? "本月合计" : "本年累计";
}

void AppendLine(host::RowSet& rows, const LedgerLine& line, bool continued) {
  const bool entry = line.kind == LedgerLine::Kind::kEntry;
  const bool total = !entry && line.kind != LedgerLine::Kind::kOpening;
  rows.AppendText(total ? book::MonthText(line.month) : line.date);
  rows.AppendText(line.voucher == 0 ? "" : "记-" + std::to_string(line.voucher));
  rows.AppendText(entry ? line.summary : continued ? "承前页" : SummaryOf(line.kind));
  rows.AppendText(line.code);
  rows.AppendText(line.counter);
  rows.AppendText(PartnersText(line.auxiliary));
  rows.AppendText(line.foreign_amount == 0 ? std::string() : line.currency);
  rows.AppendText(AmountCell(line.foreign_amount));
  rows.AppendText(QuantityText(line.quantity));
  rows.AppendText(AmountCell(line.debit));
  rows.AppendText(AmountCell(line.credit));
  rows.AppendText(SideOf(line.balance));
  rows.AppendText(AmountCell(line.balance < 0 ? -line.balance : line.balance));
}

std::int64_t AccountId(book::Session& session, const std::string& code) {
  const host::Value key(code);
  const auto row =
      session.Own().Query("select i_id from gl_code where ccode=?", book::Origin::kDesk, {&key, 1});
  return row->Next() ? row->Get(0).ToLong() : 0;
}

}  // namespace

AccountLedgerView::AccountLedgerView(book::Session& session, viewkit::UserPort& user, Plan plan)
    : Sheet(user), session_(session), plan_(std::move(plan)) {
  MakeControls();
  FillMonths(plan_.period);
  Load(plan_.code, 0);
}

void AccountLedgerView::MakeControls() {
  code_label_.SetCaption("科目(&K)");
  code_.SetPlaceholder("编码、名称或助记码");
  first_label_.SetCaption("期间(&Q)");
  last_label_.SetCaption("至");
  previous_.SetCaption("上一页(&P)");
  next_.SetCaption("下一页(&N)");
  MakeLedgerGrid(grid_, kPlans, "明细账");
  for (viewkit::Control* control : std::initializer_list<viewkit::Control*>{
           &code_label_, &code_, &name_, &first_label_, &first_, &last_label_, &last_, &previous_,
           &next_, &grid_, &summary_}) {
    controls_.Add(*control);
  }
  for (viewkit::ComboBox* box : {&first_, &last_}) {
    box->Changed.Add([this, box] {
      if (!filling_) Trapped([&] { OnPeriod(*box); });
    });
  }
  previous_.Clicked.Add([this] { Trapped([this] { TurnPage(-1); }); });
  next_.Clicked.Add([this] { Trapped([this] { TurnPage(1); }); });
  grid_.DoubleClick.Add([this] { OpenChosen(); });
  grid_.AfterUserResize.Add([this](int) { sized_ = true; });
}

std::string AccountLedgerView::Title() const {
  const book::NamedCode& account = ledger_.card.account;
  return "明细账 " + account.code + " " + account.name;
}

std::string AccountLedgerView::Subtitle() const {
  const bool all = first_.ListIndex() <= 0 && last_.ListIndex() <= 0;
  const std::string period = all ? "全部期间" : "期间 " + first_.Text() + " 至 " + last_.Text();
  return period + (ledger_.shown < ledger_.entries ? "    " + PageText() : "");
}

void AccountLedgerView::FillMonths(const std::optional<book::Period>& wanted) {
  months_ = book::PostedMonths(session_);
  book::Period period = wanted.value_or(book::Period());
  if (!wanted && !months_.empty()) {
    const auto same_year = [&](const book::Month& month) {
      return month.year == months_.back().year;
    };
    period.first = *std::ranges::find_if(months_, same_year);
  }
  const host::FlagScope filling(filling_);
  const auto fill = [&](viewkit::ComboBox& box, const char* open,
                        const std::optional<book::Month>& month) {
    box.Clear();
    box.AddItem(open);
    for (const book::Month& each : months_) box.AddItem(book::MonthText(each));
    box.SetListIndex(0);
    if (month) box.SetText(book::MonthText(*month));
  };
  fill(first_, kFromFirst, period.first);
  fill(last_, kToLast, period.last);
}

std::optional<book::Month> AccountLedgerView::MonthOf(const viewkit::ComboBox& box) const {
  const int position = box.ListIndex() - 1;
  if (position < 0 || position >= static_cast<int>(months_.size())) return std::nullopt;
  return months_[static_cast<std::size_t>(position)];
}

book::Period AccountLedgerView::ChosenPeriod() const {
  return {MonthOf(first_), MonthOf(last_)};
}

void AccountLedgerView::SetPeriod(const book::Period& period) {
  if (period == ChosenPeriod()) return;
  Trapped([&] {
    FillMonths(period);
    Load(ledger_.card.account.code, 0);
  });
}

/// A period that would end before it begins becomes the month that was chosen last.
void AccountLedgerView::OnPeriod(viewkit::ComboBox& changed) {
  const book::Period period = ChosenPeriod();
  if (period.FirstPosition() > period.LastPosition()) {
    const host::FlagScope filling(filling_);
    (&changed == &first_ ? last_ : first_).SetListIndex(changed.ListIndex());
  }
  Load(ledger_.card.account.code, 0);
}

void AccountLedgerView::Load(const std::string& code, std::int64_t first) {
  const viewkit::WaitCursor wait(User());
  auto ledger = book::ReadAccountLedger(session_, code, ChosenPeriod(), first);
  if (!ledger) throw host::HostError("没有编码为“" + code + "”的科目");
  ledger_ = std::move(*ledger);
  id_ = AccountId(session_, ledger_.card.account.code);
  code_.SetText(ledger_.card.account.code);
  name_.SetCaption(ledger_.card.account.name);
  ShowRows();
  Summarise();
  TitleChanged.Raise();
}

void AccountLedgerView::ShowRows() {
  host::RowSet rows(kColumns);
  for (const LedgerLine& line : ledger_.lines) {
    AppendLine(rows, line, line.kind == LedgerLine::Kind::kOpening && ledger_.first > 0);
  }
  const host::GridUpdate update(grid_);
  grid_.LoadRows(std::move(rows));
  for (std::size_t i = 0; i < ledger_.lines.size(); ++i) {
    if (ledger_.lines[i].kind == LedgerLine::Kind::kEntry) continue;
    DressTotal(grid_, grid_.FixedRows() + static_cast<int>(i));
  }
  RedNegatives(grid_, kForeign, kCredit);
  ShowColumns();
  grid_.SetRow(grid_.FixedRows());
}

/// Columns without anything to say are not there.
void AccountLedgerView::ShowColumns() {
  const auto any = [&](auto&& says) { return std::ranges::any_of(ledger_.lines, says); };
  const auto show = [&](int col, bool shown) { grid_.SetColHidden(col, !shown); };
  show(kCode, !ledger_.card.leaf);
  show(kPartner, any([](const LedgerLine& line) { return line.auxiliary != book::Auxiliary(); }));
  const bool foreign = any([](const LedgerLine& line) { return line.foreign_amount != 0; });
  for (const int col : {kCurrency, kForeign}) show(col, foreign);
  show(kQuantity, any([](const LedgerLine& line) { return line.quantity != 0; }));
  WidenToFit(grid_, kCode);
  if (!sized_) FitColumn(grid_, kSummary, kMinSummary);
}

std::string AccountLedgerView::PageText() const {
  return "共 " + std::to_string(ledger_.entries) + " 笔，列出第 " +
         std::to_string(ledger_.first + 1) + " 至 " +
         std::to_string(ledger_.first + ledger_.shown) + " 笔";
}

void AccountLedgerView::Summarise() {
  const std::int64_t entries = ledger_.entries;
  const bool paged = ledger_.shown < entries;
  std::string text = std::to_string(entries) + " 笔";
  if (paged) text = PageText();
  text += "    期初余额 " + SidedAmount(ledger_.opening) + "    本期借方 " +
          book::MoneyText(ledger_.debit) + "    本期贷方 " + book::MoneyText(ledger_.credit) +
          "    期末余额 " + SidedAmount(ledger_.Closing());
  if (ledger_.difference != 0) {
    text += "    分录与总账不符，差额 " + book::MoneyText(ledger_.difference);
  }
  summary_.SetCaption(std::move(text));
  for (viewkit::CommandButton* button : {&previous_, &next_}) button->SetVisible(paged);
  previous_.SetEnabled(ledger_.first > 0);
  next_.SetEnabled(ledger_.first + ledger_.shown < entries);
}

void AccountLedgerView::TurnPage(int direction) {
  Load(ledger_.card.account.code, ledger_.first + direction * book::kLedgerPage);
  grid_.SetFocus();
}

std::string AccountLedgerView::CodeNow() const {
  const host::Value id(id_);
  const auto row =
      session_.Own().Query("select ccode from gl_code where i_id=?", book::Origin::kDesk, {&id, 1});
  return row->Next() ? row->Get(0).ToText() : std::string();
}

/// Often nobody has asked for it: what has gone is said at the foot, without a question.
void AccountLedgerView::Read() {
  const std::string code = CodeNow();
  if (code.empty()) {
    return summary_.SetCaption("科目 " + ledger_.card.account.code +
                               " 已不在科目表中（已删除或合并），以上是此前的内容");
  }
  const int row = grid_.Row();
  const int top = grid_.TopRow();
  const std::string typed = code_.Text();
  const bool begun = typed != ledger_.card.account.code;
  FillMonths(ChosenPeriod());
  Load(code, ledger_.first);
  if (begun) code_.SetText(typed);
  grid_.SetRow(std::min(row, grid_.Rows() - 1));
  grid_.SetTopRow(top);
}

void AccountLedgerView::TakeTyped() {
  const std::string typed(host::Trimmed(code_.Text()));
  if (typed == ledger_.card.account.code) {
    grid_.SetFocus();
    return;
  }
  Load(TypedAccountCode(session_, typed), 0);
  grid_.SetFocus();
}

bool AccountLedgerView::UseKey(viewkit::Key key, viewkit::Modifiers modifiers) {
  if (key != viewkit::Key::kEnter || modifiers.alt || modifiers.control) return false;
  if (code_.Focused()) {
    Trapped([this] { TakeTyped(); });
    return true;
  }
  if (!grid_.Focused()) return false;
  OpenChosen();
  return true;
}

const LedgerLine* AccountLedgerView::ChosenEntry() const {
  const int at = grid_.Row() - grid_.FixedRows();
  if (at < 0 || at >= static_cast<int>(ledger_.lines.size())) return nullptr;
  const LedgerLine& line = ledger_.lines[static_cast<std::size_t>(at)];
  const bool has_voucher = line.kind == LedgerLine::Kind::kEntry && line.voucher != 0;
  return has_voucher ? &line : nullptr;
}

void AccountLedgerView::OpenChosen() {
  const LedgerLine* entry = ChosenEntry();
  if (entry == nullptr || !plan_.open_voucher) return;
  Trapped([&] { plan_.open_voucher(entry->month, entry->voucher); });
}

std::vector<Sheet::MenuItem> AccountLedgerView::Menu() {
  if (!plan_.open_voucher) return {};
  return {{.text = "打开凭证(&O)\tEnter",
           .run = [this] { OpenChosen(); },
           .enabled = ChosenEntry() != nullptr}};
}

void AccountLedgerView::Resize(int width, int height) {
  constexpr int kMonth = 1350;
  constexpr int kPage = 1200;
  constexpr int kPages = 2 * (kPage + 90);
  Strip strip;
  strip.PutLabel(code_label_, 780);
  strip.Put(code_, 1800);
  constexpr int kRest = 240 + 780 + 60 + kMonth + 90 + 240 + 60 + kMonth + 240 + kPages;
  strip.PutLabel(name_, std::clamp(width - strip.Left() - kRest, 600, 4500), 240);
  strip.PutLabel(first_label_, 780);
  strip.Put(first_, kMonth);
  strip.PutLabel(last_label_, 240);
  strip.Put(last_, kMonth, 240);
  strip.Put(previous_, kPage);
  strip.Put(next_, kPage);
  const int bottom = std::max(Strip::kHeight, height - Strip::kLine);
  grid_.SetBounds({0, Strip::kHeight, width, bottom - Strip::kHeight});
  summary_.SetBounds(FootLine(width, height));
  if (!sized_) FitColumn(grid_, kSummary, kMinSummary);
}

}  // namespace desk::views
