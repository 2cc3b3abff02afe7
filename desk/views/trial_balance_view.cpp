#include "views/trial_balance_view.h"

#include <algorithm>
#include <array>
#include <utility>

#include "book/ledger/money_text.h"
#include "host/grid_update.h"
#include "host/row_set.h"
#include "viewkit/layout/m_mode.h"
#include "views/column_fit.h"
#include "views/default_layout.h"
#include "views/ledger_grid.h"

namespace desk::views {

using viewkit::Alignment;
using viewkit::CheckBox;

namespace {

constexpr char kTitle[] = "试算平衡";
constexpr char kLayoutName[] = "TrialBalance";
constexpr char kAllMonths[] = "全部期间";
constexpr char kMoneyFormat[] = "#,##0.00";

struct ColumnPlan {
  const char* heading;
  int width;
};
constexpr int kAmountWidth = 1590;
constexpr std::array<ColumnPlan, TrialBalanceView::kColumns> kPlans = {
    {{"期间", 1200},
     {"类别", 840},
     {"一级科目", 2100},
     {"科目编码", 1200},
     {"科目名称", 2250},
     {"期初借方", kAmountWidth},
     {"期初贷方", kAmountWidth},
     {"本期借方", kAmountWidth},
     {"本期贷方", kAmountWidth},
     {"期末借方", kAmountWidth},
     {"期末贷方", kAmountWidth}}};

constexpr int kRowHeight = 330;
constexpr int kFirstAmount = TrialBalanceView::kOpeningDebit;

/// What a balance adds to a side: zero where it stands on the other one.
std::int64_t OnDebit(std::int64_t balance) {
  return std::max<std::int64_t>(balance, 0);
}
std::int64_t OnCredit(std::int64_t balance) {
  return std::max<std::int64_t>(-balance, 0);
}

/// What rows come to, in the order of the columns of amounts.
struct Sums {
  std::array<std::int64_t, TrialBalanceView::kColumns - kFirstAmount> amounts = {};
  void Add(const book::TrialBalanceRow& row) {
    const std::int64_t closing = row.Closing();
    const std::array added = {OnDebit(row.opening), OnCredit(row.opening), row.debit,
                              row.credit,           OnDebit(closing),      OnCredit(closing)};
    for (std::size_t i = 0; i < added.size(); ++i) amounts.at(i) += added.at(i);
  }
  void AppendTo(host::RowSet& rows) const {
    for (const std::int64_t amount : amounts) rows.AppendText(AmountCell(amount));
  }
};

/// The name stands as far in as there are accounts above.
void AppendRow(host::RowSet& rows, const std::string& month, const book::TrialBalanceRow& row,
               int above) {
  std::string indent;
  for (int i = 0; i < above; ++i) indent += "　";
  rows.AppendText(month);
  rows.AppendText(row.category);
  rows.AppendText(row.first_level);
  rows.AppendText(row.code);
  rows.AppendText(indent + row.name);
  Sums sums;
  sums.Add(row);
  sums.AppendTo(rows);
}

void AppendSums(host::RowSet& rows, const std::string& caption, const Sums& sums) {
  for (int col = 0; col < kFirstAmount; ++col) {
    rows.AppendText(col == TrialBalanceView::kName ? caption : "");
  }
  sums.AppendTo(rows);
}

/// A first-level account that is itself the leaf is the only row of its subtotal.
bool RepeatsItsAccount(const viewkit::FlexGrid& grid, int total) {
  using View = TrialBalanceView;
  const int account = total - 1;
  const auto text = [&](int row, int col) { return std::string(grid.TextMatrix(row, col)); };
  if (account < grid.FixedRows() || grid.IsTotalRow(account)) return false;
  const std::string head = text(account, View::kFirstLevel);
  if (head != text(account, View::kCode) + " " + text(account, View::kName)) return false;
  const bool alone = account == grid.FixedRows() || grid.IsTotalRow(account - 1) ||
                     text(account - 1, View::kFirstLevel) != head;
  return alone && text(total, View::kFirstLevel) == head + "小计";
}

}  // namespace

TrialBalanceView::TrialBalanceView(book::Session& session,
                                   std::shared_ptr<host::SystemObject> system,
                                   viewkit::UserPort& user, OpenAccount open_account)
    : Sheet(user),
      session_(session),
      system_(std::move(system)),
      open_account_(std::move(open_account)),
      layout_path_(viewkit::GetSelfFilePath(kLayoutName, *system_)) {
  MakeStrip();
  MakeGrid();
  controls_.Add(summary_);
  EnsureLayout(DefaultLayout::kTrialBalance, layout_path_);
  ReadMonths();
  Load();
  ApplyLayout();
}

TrialBalanceView::~TrialBalanceView() {
  viewkit::SaveVsLayout(layout_path_, grid_, false, *system_);
}

std::string TrialBalanceView::Title() const {
  return kTitle;
}

std::vector<Sheet::MenuItem> TrialBalanceView::Menu() {
  std::vector<MenuItem> items;
  if (open_account_) {
    items.push_back({.text = "明细账(&D)\tEnter",
                     .run = [this] { OpenChosen(); },
                     .enabled = !ChosenCode().empty()});
  }
  items.push_back({.text = "列布局(&L)…", .run = [this] { Trapped([this] { AskLayout(); }); }});
  return items;
}

std::string TrialBalanceView::Subtitle() const {
  return "期间 " + month_.Text() + "    级次 " + level_.Text();
}

bool TrialBalanceView::UseKey(viewkit::Key key, viewkit::Modifiers) {
  if (key != viewkit::Key::kEnter || !grid_.Focused() || ChosenCode().empty()) return false;
  OpenChosen();
  return true;
}

std::string TrialBalanceView::ChosenCode() const {
  const int row = grid_.Row();
  if (row < grid_.FixedRows() || row >= grid_.Rows() || IsTotal(row)) return {};
  return std::string(grid_.TextMatrix(row, kCode));
}

void TrialBalanceView::OpenChosen() {
  const std::string code = ChosenCode();
  if (code.empty() || !open_account_) return;
  Trapped([&] { open_account_(code, book::Period::Of(ChosenMonth())); });
}

bool TrialBalanceView::IsTotal(int row) const {
  return grid_.IsTotalRow(row) || std::ranges::find(own_totals_, row) != own_totals_.end();
}

void TrialBalanceView::MakeStrip() {
  month_label_.SetCaption("期间(&Q)");
  level_label_.SetCaption("级次(&J)");
  by_first_level_.SetCaption("一级科目小计(&F)");
  layout_.SetCaption("列布局(&L)...");
  reload_.SetCaption("刷新(&R)");
  for (viewkit::Control* control : std::initializer_list<viewkit::Control*>{
           &month_label_, &month_, &level_label_, &level_, &by_first_level_, &layout_, &reload_}) {
    controls_.Add(*control);
  }
  month_.Changed.Add([this] {
    if (!filling_) Trapped([this] { Load(); });
  });
  FillLevels();
  level_.Changed.Add([this] {
    if (!filling_) Trapped([this] { OnLevel(); });
  });
  by_first_level_.Clicked.Add([this] {
    if (filling_) return;
    Trapped([this] {
      try {
        SetByFirstLevel(by_first_level_.Value() == CheckBox::kChecked);
      } catch (...) {
        ShowByFirstLevel();
        throw;
      }
    });
  });
  layout_.Clicked.Add([this] { Trapped([this] { AskLayout(); }); });
  reload_.Clicked.Add([this] { Reload(); });
}

void TrialBalanceView::FillLevels() {
  constexpr std::array kNumbers = {"一", "二", "三", "四", "五", "六", "七", "八", "九"};
  level_.AddItem("末级", book::kLeafAccounts);
  const int levels = std::min(book::LevelsOfChart(session_), static_cast<int>(kNumbers.size()));
  for (int level = 1; level <= levels; ++level) {
    level_.AddItem(std::string(kNumbers.at(static_cast<std::size_t>(level - 1))) + "级", level);
  }
  level_.AddItem("全部", book::kAllAccounts);
  level_.SetListIndex(0);
}

void TrialBalanceView::OnLevel() {
  by_first_level_.SetEnabled(ChosenLevel() != book::kAllAccounts);
  Load();
}

void TrialBalanceView::MakeGrid() {
  grid_.SetFixedRows(1);
  grid_.SetFixedCols(0);
  grid_.SetRowHeightMin(kRowHeight);
  grid_.SetCols(kColumns);
  for (int col = 0; col < kColumns; ++col) {
    grid_.SetTextMatrix(0, col, kPlans.at(static_cast<std::size_t>(col)).heading);
    grid_.SetFixedAlignment(col, Alignment::kCenterCenter);
  }
  ResetColumns();
  grid_.SetSelectionMode(viewkit::SelectionMode::kByRow);
  grid_.SetAccessibleName("试算平衡表");
  grid_.DoubleClick.Add([this] { OpenChosen(); });
  controls_.Add(grid_);
}

/// As they are without a layout.
void TrialBalanceView::ResetColumns() {
  for (int col = 0; col < kColumns; ++col) {
    const bool amount = col >= kFirstAmount;
    grid_.SetColWidth(col, kPlans.at(static_cast<std::size_t>(col)).width);
    grid_.SetColDataType(col, amount ? viewkit::ColumnType::kDouble : viewkit::ColumnType::kString);
    grid_.SetColAlignment(col, amount ? Alignment::kRightCenter : Alignment::kLeftCenter);
    grid_.SetColFormat(col, amount ? kMoneyFormat : "");
    grid_.SetMergeCol(col, false);
  }
  grid_.SetFrozenCols(0);
  grid_.SetRowHeight(0, 0);
}

void TrialBalanceView::Resize(int width, int height) {
  constexpr int kEdge = 120;
  constexpr int kLine = 345;
  constexpr int kLabelDrop = 60;
  int left = kEdge;
  const auto put = [&](viewkit::Control& control, int room, int gap, int drop = 0) {
    control.SetBounds({left, kEdge + drop, room, kLine - drop});
    left += room + gap;
  };
  put(month_label_, 780, 60, kLabelDrop);
  put(month_, 1650, 240);
  put(level_label_, 780, 60, kLabelDrop);
  put(level_, 1050, 240);
  put(by_first_level_, 1950, 240);
  put(layout_, 1350, 90);
  put(reload_, 1050, 0);
  const int top = 2 * kEdge + kLine;
  const int bottom = std::max(top, height - kLine);
  grid_.SetBounds({0, top, width, bottom - top});
  summary_.SetBounds(
      {kEdge, bottom + kLabelDrop, std::max(0, width - 2 * kEdge), kLine - kLabelDrop});
}

void TrialBalanceView::ReadMonths() {
  const std::optional<book::Month> chosen = ChosenMonth();
  months_ = book::PostedMonths(session_);
  filling_ = true;
  month_.Clear();
  month_.AddItem(kAllMonths);
  for (const book::Month& month : months_) month_.AddItem(book::MonthText(month));
  month_.SetListIndex(0);
  if (chosen) month_.SetText(book::MonthText(*chosen));
  filling_ = false;
}

std::optional<book::Month> TrialBalanceView::ChosenMonth() const {
  const int position = month_.ListIndex() - 1;
  if (position < 0 || position >= static_cast<int>(months_.size())) return std::nullopt;
  return months_[static_cast<std::size_t>(position)];
}

void TrialBalanceView::Load() {
  const std::vector<book::TrialBalanceRow> balance =
      book::ReadTrialBalance(session_, book::Period::Of(ChosenMonth()), ChosenLevel());
  const bool all = ChosenLevel() == book::kAllAccounts;
  host::RowSet rows(kColumns);
  own_totals_.clear();
  if (all) {
    AppendTotals(rows, balance);
  } else {
    for (const book::TrialBalanceRow& row : balance) AppendRow(rows, month_.Text(), row, 0);
  }
  const host::GridUpdate update(grid_);
  grid_.LoadRows(std::move(rows));
  GreySealed(balance);
  if (!all) viewkit::ApplyVsRows(layout_path_, grid_, *system_);
  RedNegatives(grid_, kFirstAmount, kClosingCredit);
  DressTotals();
  WidenToFit(grid_, kCode);
  Summarise(balance);
}

void TrialBalanceView::AppendTotals(host::RowSet& rows,
                                    const std::vector<book::TrialBalanceRow>& balance) {
  Sums whole;
  Sums category;
  int row = grid_.FixedRows();
  const auto end = [&](const std::string& caption, const Sums& sums) {
    own_totals_.push_back(row++);
    AppendSums(rows, caption, sums);
  };
  for (std::size_t i = 0; i < balance.size(); ++i) {
    AppendRow(rows, month_.Text(), balance[i], balance[i].level - 1);
    ++row;
    if (balance[i].leaf) {
      category.Add(balance[i]);
      whole.Add(balance[i]);
    }
    if (i + 1 < balance.size() && balance[i + 1].category == balance[i].category) continue;
    end(balance[i].category + "小计", std::exchange(category, {}));
  }
  if (!balance.empty()) end("合计", whole);
}

void TrialBalanceView::DressTotals() {
  const host::GridUpdate update(grid_);
  const int last = grid_.Rows() - 1;
  for (int row = grid_.FixedRows(); row <= last; ++row) {
    if (!IsTotal(row)) continue;
    if (grid_.IsTotalRow(row) && RepeatsItsAccount(grid_, row)) grid_.SetRowHidden(row, true);
    DressTotal(grid_, row);
    for (int col = kFirstAmount; col < kColumns; ++col) {
      if (grid_.ValueMatrix(row, col) == 0) grid_.SetTextMatrix(row, col, "");
    }
  }
}

/// Sealed accounts stand back; amounts do not.
void TrialBalanceView::GreySealed(const std::vector<book::TrialBalanceRow>& rows) {
  int row = grid_.FixedRows() - 1;
  for (const book::TrialBalanceRow& each : rows) {
    do ++row;
    while (IsTotal(row));
    if (!each.sealed) continue;
    for (const int col : {kCode, kName})
      grid_.SetCellForeColor(row, col, viewkit::color::kGrayText);
  }
}

void TrialBalanceView::Read() {
  ReadMonths();
  Load();
}

void TrialBalanceView::Summarise(const std::vector<book::TrialBalanceRow>& rows) {
  std::int64_t debit = 0;
  std::int64_t credit = 0;
  const bool all = ChosenLevel() == book::kAllAccounts;
  for (const book::TrialBalanceRow& row : rows) {
    if (all && !row.leaf) continue;
    debit += OnDebit(row.Closing());
    credit += OnCredit(row.Closing());
  }
  const std::string verdict =
      debit == credit ? "借贷平衡" : "借贷不平，差额 " + book::MoneyText(debit - credit);
  const auto unlisted = std::ranges::count(rows, false, &book::TrialBalanceRow::listed);
  const auto listed = static_cast<std::ptrdiff_t>(rows.size()) - unlisted;
  summary_.SetCaption(
      std::to_string(listed) + " 个科目    期末借方余额 " + book::MoneyText(debit) +
      "    期末贷方余额 " + book::MoneyText(credit) + "    " + verdict +
      (unlisted == 0 ? "" : "    " + std::to_string(unlisted) + " 个编码不在科目表中"));
}

}  // namespace desk::views
