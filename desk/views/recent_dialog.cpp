#include "views/recent_dialog.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include "host/grid_update.h"
#include "host/row_set.h"
#include "viewkit/controls/form_rows.h"
#include "views/ledger_grid.h"

namespace desk::views {

namespace form = viewkit::form;

namespace {

using enum LedgerColumn::Kind;
constexpr std::array<LedgerColumn, RecentDialog::kColumns> kPlans = {
    {{"固定", 660, kCentred}, {"账簿", 2700}, {"位置", 5400}, {"状态", 960, kCentred}}};
constexpr int kWidth = 10500;  // twips
constexpr int kListHeight = 9 * 330 + 90;

}  // namespace

RecentDialog::RecentDialog(book::RecentBooks& books, Calls calls)
    : DialogModel("DeskRecent"), books_(books), calls_(std::move(calls)) {
  SetCaption("最近的账簿");
  books_.Reread();
  MakeControls();
  ShowRows(0);
}

void RecentDialog::MakeControls() {
  MakeLedgerGrid(list_, kPlans, "最近的账簿");
  list_.SetBounds({form::kMargin, form::kMargin, kWidth - 2 * form::kMargin, kListHeight});
  FitColumn(list_, kPlace, kPlans[kPlace].width);
  const int note = form::kMargin + kListHeight + form::kGap;
  note_.SetBounds({form::kMargin, note, kWidth - 2 * form::kMargin, form::kBoxHeight});
  open_.SetCaption("打开(&O)");
  remove_.SetCaption("移除(&R)");
  close_.SetCaption("关闭");
  const int top = note + form::kRowPitch;
  int position = 4;
  for (viewkit::CommandButton* button : {&open_, &pin_, &remove_, &close_}) {
    button->SetBounds(form::Button(kWidth, --position, top));
  }
  for (viewkit::Control* control :
       std::initializer_list<viewkit::Control*>{&list_, &note_, &open_, &pin_, &remove_, &close_}) {
    Add(*control);
  }
  SetSize(kWidth, top + form::kButtonHeight + form::kMargin);
  SetButtons(open_, close_);
  list_.RowColChange.Add([this] { ShowRow(); });
  list_.DoubleClick.Add([this] { Open(); });
  list_.KeyDown.Add([this](viewkit::Key key, viewkit::Modifiers modifiers) {
    if (modifiers.control || modifiers.alt) return;
    if (key == viewkit::Key::kSpace) Pin();
    if (key == viewkit::Key::kDelete) Remove();
  });
  open_.Clicked.Add([this] { Open(); });
  pin_.Clicked.Add([this] { Pin(); });
  remove_.Clicked.Add([this] { Remove(); });
  close_.Clicked.Add([this] { Close(); });
}

void RecentDialog::ShowRows(int row) {
  there_.clear();
  host::RowSet rows(kColumns);
  for (const auto& [place, pinned] : books_.Entries()) {
    there_.push_back(calls_.may_be_there(place));
    const std::string name = calls_.name(place);
    rows.AppendText(pinned ? "★" : "");
    rows.AppendText(name);
    rows.AppendText(place);
    rows.AppendText(there_.back() ? "" : "找不到");
  }
  {
    const host::GridUpdate update(list_);
    list_.LoadRows(std::move(rows));
    for (std::size_t i = 0; i < there_.size(); ++i) {
      for (int col = 0; col < kColumns && !there_[i]; ++col) {
        list_.SetCellForeColor(list_.FixedRows() + static_cast<int>(i), col,
                               viewkit::color::kGrayText);
      }
    }
    const int last = list_.Rows() - 1;
    if (last >= list_.FixedRows()) list_.SetRow(std::min(list_.FixedRows() + row, last));
  }
  ShowRow();
}

const book::RecentBooks::Entry* RecentDialog::Chosen() const {
  const int at = list_.Row() - list_.FixedRows();
  const auto& entries = books_.Entries();
  if (at < 0 || at >= static_cast<int>(entries.size())) return nullptr;
  return &entries[static_cast<std::size_t>(at)];
}

void RecentDialog::ShowRow() {
  const book::RecentBooks::Entry* chosen = Chosen();
  const auto at = static_cast<std::size_t>(list_.Row() - list_.FixedRows());
  const bool there = chosen != nullptr && at < there_.size() && there_[at];
  open_.SetEnabled(there);
  pin_.SetEnabled(chosen != nullptr);
  remove_.SetEnabled(chosen != nullptr);
  pin_.SetCaption(chosen != nullptr && chosen->pinned ? "取消固定(&P)" : "固定(&P)");
  note_.SetCaption(chosen == nullptr ? "没有打开过的账簿"
                   : there           ? "固定的账簿排在前面，不会被新打开的挤掉"
                           : "找不到这个账簿：已移走或删除，或所在的位置现在不能访问");
}

void RecentDialog::Open() {
  const book::RecentBooks::Entry* chosen = Chosen();
  if (chosen == nullptr || !open_.Enabled()) return;
  wanted_ = chosen->place;
  Close();
}

/// The book stays chosen where it comes to stand.
void RecentDialog::Pin() {
  const book::RecentBooks::Entry* chosen = Chosen();
  if (chosen == nullptr) return;
  const std::string place = chosen->place;
  const bool done = books_.SetPinned(place, !chosen->pinned);
  const auto& entries = books_.Entries();
  const auto at = std::ranges::find(entries, place, &book::RecentBooks::Entry::place);
  ShowRows(static_cast<int>(at - entries.begin()));
  if (!done)
    note_.SetCaption("最多固定 " + std::to_string(book::RecentBooks::kMax - 1) + " 个账簿");
}

void RecentDialog::Remove() {
  const book::RecentBooks::Entry* chosen = Chosen();
  if (chosen == nullptr) return;
  const int row = list_.Row() - list_.FixedRows();
  books_.Forget(std::string(chosen->place));
  ShowRows(row);
}

}  // namespace desk::views
