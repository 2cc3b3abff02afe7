#include "views/history_view.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

#include "book/journal/change_text.h"
#include "book/journal/command_text.h"
#include "book/journal/local_time.h"
#include "book/journal/undo.h"
#include "host/grid_update.h"
#include "host/row_set.h"

namespace desk::views {

using viewkit::Alignment;
using viewkit::UserPort;

namespace {

constexpr char kTitle[] = "变更记录";
constexpr int kRowHeight = 330;
/// So many accounts of a command are listed.
constexpr std::int64_t kMaxAccounts = 500;

struct ColumnPlan {
  const char* heading;
  int width;
};
constexpr std::array<ColumnPlan, HistoryView::kColumns> kCommandPlans = {
    {{"时间", 1950}, {"操作人", 1500}, {"操作", 6300}, {"科目数", 900}, {"状态", 1200}}};
constexpr std::array<ColumnPlan, HistoryView::kDetailColumns> kDetailPlans = {
    {{"科目", 3300}, {"改动", 750}, {"项目", 1350}, {"原值", 3300}, {"新值", 3300}}};

template <std::size_t N>
void SetUpGrid(viewkit::FlexGrid& grid, const std::array<ColumnPlan, N>& plans) {
  grid.SetFixedRows(1);
  grid.SetFixedCols(0);
  grid.SetRowHeightMin(kRowHeight);
  grid.SetCols(static_cast<int>(N));
  int col = 0;
  for (const ColumnPlan& plan : plans) {
    grid.SetTextMatrix(0, col, plan.heading);
    grid.SetFixedAlignment(col, Alignment::kCenterCenter);
    grid.SetColWidth(col, plan.width);
    grid.SetColAlignment(col, Alignment::kLeftCenter);
    ++col;
  }
  grid.SetSelectionMode(viewkit::SelectionMode::kByRow);
}

/// These columns share the room that the others leave, and are never narrower than planned.
template <std::size_t N>
void Stretch(viewkit::FlexGrid& grid, const std::array<ColumnPlan, N>& plans,
             std::initializer_list<int> wide, int width) {
  constexpr int kBar = 330;  // the scroll bar and the frame
  int spare = width - kBar;
  for (const ColumnPlan& plan : plans) spare -= plan.width;
  const int share = std::max(0, spare) / static_cast<int>(wide.size());
  for (const int col : wide) {
    grid.SetColWidth(col, plans.at(static_cast<std::size_t>(col)).width + share);
  }
}

std::string StateText(const book::HistoryEntry& entry) {
  if (entry.turn == 1) return entry.answered ? "已重做" : "";
  return entry.undone ? "已撤销" : "";
}

}  // namespace

HistoryView::HistoryView(book::Session& session, UserPort& user, RunLong run_long)
    : Sheet(user), session_(session), run_long_(std::move(run_long)) {
  reload_.SetCaption("刷新(&R)");
  controls_.Add(undo_);
  controls_.Add(reload_);
  controls_.Add(summary_);
  MakeGrids();
  undo_.Clicked.Add([this] { UndoChosen(); });
  reload_.Clicked.Add([this] { Reload(); });
  grid_.RowColChange.Add([this] {
    if (!loading_) Trapped([this] { ShowDetails(); });
  });
  Load();
}

std::string HistoryView::Title() const {
  return kTitle;
}

void HistoryView::MakeGrids() {
  SetUpGrid(grid_, kCommandPlans);
  grid_.SetColAlignment(kAccounts, Alignment::kRightCenter);
  grid_.SetColDataType(kAccounts, viewkit::ColumnType::kLong);
  grid_.SetAccessibleName(kTitle);
  controls_.Add(grid_);
  details_label_.SetCaption("所选操作的改动(&D)");
  controls_.Add(details_label_);
  SetUpGrid(details_, kDetailPlans);
  details_.SetAccessibleName("所选操作的改动");
  controls_.Add(details_);
}

void HistoryView::Resize(int width, int height) {
  constexpr int kEdge = 120;
  constexpr int kLine = 345;
  constexpr int kDrop = 60;
  constexpr int kUndoWidth = 2400;
  constexpr int kReloadWidth = 1050;
  undo_.SetBounds({kEdge, kEdge, kUndoWidth, kLine});
  reload_.SetBounds({kEdge + kUndoWidth + 90, kEdge, kReloadWidth, kLine});
  const int text = kEdge + kUndoWidth + kReloadWidth + 330;
  summary_.SetBounds({text, kEdge + kDrop, std::max(0, width - text - kEdge), kLine - kDrop});
  Stretch(grid_, kCommandPlans, {kWhat}, width);
  Stretch(details_, kDetailPlans, {kAccount, kBefore, kAfter}, width);
  const int top = 2 * kEdge + kLine;
  const int room = std::max(0, height - top - kLine - kEdge);
  const int upper = room * 11 / 20;
  grid_.SetBounds({0, top, width, upper});
  details_label_.SetBounds({kEdge, top + upper + kEdge / 2 + kDrop, width - kEdge, kLine - kDrop});
  const int below = top + upper + kEdge / 2 + kLine;
  details_.SetBounds({0, below, width, std::max(0, height - below)});
}

void HistoryView::Read() {
  Load();
}

/// The chosen command stays chosen; at first it is the newest.
void HistoryView::Load() {
  const book::HistoryEntry* chosen = Chosen();
  const bool first = chosen == nullptr || chosen == history_.data();
  const std::int64_t id = chosen == nullptr ? 0 : chosen->id;
  history_ = book::ReadHistory(session_);
  host::RowSet rows(kColumns);
  for (const book::HistoryEntry& entry : history_) {
    rows.AppendText(book::LocalTime(entry.made_at));
    rows.AppendText(entry.who.empty() ? "（不详）" : entry.who);
    rows.AppendText(book::CommandText(entry));
    rows.AppendInteger(entry.accounts);
    rows.AppendText(StateText(entry));
  }
  loading_ = true;
  {
    const host::GridUpdate update(grid_);
    grid_.LoadRows(std::move(rows));
    const auto found = std::ranges::find(history_, id, &book::HistoryEntry::id);
    const auto place = first || found == history_.end() ? 0 : found - history_.begin();
    if (!history_.empty()) grid_.SetRow(grid_.FixedRows() + static_cast<int>(place));
    for (std::size_t i = 0; i < history_.size(); ++i) {
      const bool back = history_[i].undone || (history_[i].turn == 1 && history_[i].answered);
      if (!back) continue;
      for (int col = 0; col < kColumns; ++col) {
        grid_.SetCellForeColor(grid_.FixedRows() + static_cast<int>(i), col,
                               viewkit::color::kGrayText);
      }
    }
  }
  loading_ = false;
  shown_ = 0;
  ShowDetails();
}

const book::HistoryEntry* HistoryView::Chosen() const {
  const int row = grid_.Row() - grid_.FixedRows();
  if (row < 0 || row >= static_cast<int>(history_.size())) return nullptr;
  return &history_[static_cast<std::size_t>(row)];
}

void HistoryView::ShowDetails() {
  ShowButton();
  const book::HistoryEntry* entry = Chosen();
  const std::int64_t id = entry == nullptr ? 0 : entry->id;
  if (id == shown_ && id != 0) return;
  shown_ = id;
  host::RowSet rows(kDetailColumns);
  if (entry != nullptr) {
    for (const book::AccountChange& change : book::ReadChanges(session_, id, kMaxAccounts)) {
      bool first = true;  // the account is named once
      for (const book::FieldChange& field : book::FieldChanges(change)) {
        rows.AppendText(first ? book::AccountText(change) : std::string());
        rows.AppendText(first ? book::ChangeWord(change) : std::string());
        first = false;
        rows.AppendText(field.field);
        rows.AppendText(field.before);
        rows.AppendText(field.after);
      }
    }
  }
  const host::GridUpdate update(details_);
  details_.LoadRows(std::move(rows));
}

void HistoryView::ShowButton() {
  const book::HistoryEntry* entry = Chosen();
  const bool again = entry != nullptr && entry->turn == 1;
  undo_.SetCaption(again ? "重做所选操作(&Z)" : "撤销所选操作(&Z)");
  undo_.SetEnabled(entry != nullptr && !entry->answered &&
                   entry->kind != book::CommandKind::kUnknown);
  std::string text = history_.empty() ? "这个账簿还没有变更记录" : "";
  if (entry != nullptr && entry->postings > 0) {
    text = "移动了 " + std::to_string(entry->postings) + " 笔分录";
  }
  if (entry != nullptr && entry->accounts > kMaxAccounts) {
    text += (text.empty() ? "" : "；") + ("下面列出前 " + std::to_string(kMaxAccounts)) + " 个科目";
  }
  summary_.SetCaption(text);
}

std::vector<Sheet::MenuItem> HistoryView::Menu() {
  const book::HistoryEntry* entry = Chosen();
  const bool again = entry != nullptr && entry->turn == 1;
  return {{.text = undo_.Caption() + (again ? "\tCtrl+Y" : "\tCtrl+Z"),
           .run = [this] { UndoChosen(); },
           .enabled = undo_.Enabled()}};
}

bool HistoryView::UseKey(viewkit::Key key, viewkit::Modifiers modifiers) {
  const book::HistoryEntry* entry = Chosen();
  const bool again = entry != nullptr && entry->turn == 1;
  const auto letter = static_cast<viewkit::Key>(again ? 'Y' : 'Z');
  const bool meant = key == letter && modifiers.control && !modifiers.shift && !modifiers.alt;
  if (meant && undo_.Enabled()) UndoChosen();
  return meant;
}

void HistoryView::UndoChosen() {
  Trapped([this] {
    const book::HistoryEntry* entry = Chosen();
    if (entry == nullptr || entry->answered) return;
    const std::string text =
        (entry->turn == 1 ? "是否重做：" : "是否撤销：") + book::DeedText(*entry);
    if (User().Ask(text, kTitle, UserPort::Icon::kQuestion, UserPort::Buttons::kYesNo) !=
        UserPort::Answer::kYes) {
      return;
    }
    const std::int64_t id = entry->id;
    run_long_(entry->turn == 1 ? "重做" : "撤销", [&](const book::Progress& progress) {
      (void)book::UndoCommand(session_, id, progress);
    });
    Load();
  });
}

}  // namespace desk::views
