#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "host/account.h"
#include "host/calls.h"
#include "host/grid_update.h"
#include "host/text.h"
#include "maintenance/columns.h"
#include "maintenance/kjkm_impl.h"

namespace tavrix::maintenance {

namespace {

using host::GridUpdate;
using viewkit::Alignment;
using viewkit::FlexGrid;

/// The category that the page of a tab shows; empty for the page of all accounts.
std::string_view CategoryOf(int tab) {
  return tab == 0 ? std::string_view() : host::kCategories[static_cast<std::size_t>(tab - 1)];
}

/// Nothing when there are none.
std::optional<host::RowSet> ReadAccounts(host::SystemObject& system, std::string_view category) {
  std::string sql = "select ccode,ccode_name,cexch_name,'',i_id,igrade,cclass from gl_code";
  if (!category.empty()) sql.append(" where cclass='").append(category).append("'");
  sql += " order by ccode";
  return host::ReadRows(system, sql, [](host::Recordset& rows) {
    std::optional<host::RowSet> accounts;
    if (!rows.EndOfFile() || !rows.BeginningOfFile()) accounts = host::GivenRows(rows, kColumns);
    return accounts;
  });
}

/// A saved account, as its row shows it.
struct SavedAccount {
  std::string category;
  std::string code;
  std::array<std::pair<int, std::string>, 6> cells;
};

std::optional<SavedAccount> ReadSaved(host::SystemObject& system, const std::string& id) {
  return host::ReadRows(system, "select * from gl_code where i_id=" + id,
                        [](host::Recordset& account) {
                          std::optional<SavedAccount> saved;
                          if (account.EndOfFile() && account.BeginningOfFile()) return saved;
                          const auto field = [&](const char* name) {
                            return host::ReadField(account, name).ToText();
                          };
                          const std::string category = field("cclass");
                          const std::string code = field("ccode");
                          saved = {category,
                                   code,
                                   {{{kCode, code},
                                     {kName, field("ccode_name")},
                                     {kCurrency, field("cexch_name")},
                                     {kLevel, field("igrade")},
                                     {kId, field("i_id")},
                                     {kCategory, category}}}};
                          return saved;
                        });
}

}  // namespace

bool Kjkm::InitVsControl(FlexGrid& grid) noexcept try {
  grid.SetRows(1);
  grid.SetCols(kColumns);
  grid.SetFixedCols(0);
  grid.SetRowHeightMin(350);
  grid.SetLook({.back = viewkit::color::kWindow,
                .back_empty = viewkit::color::kWindow,
                .sheet_border = viewkit::color::kWindow,
                .select_back = viewkit::color::kInfoBackground,
                .select_fore = viewkit::color::kHighlight,
                .grid_lines = false,
                .resize_columns = true,
                .resize_rows = true,
                .outline_bar = 5});
  grid.SetSelectionMode(viewkit::SelectionMode::kByRow);
  grid.SetOutlineCol(kCode);
  grid.SetAllowSelection(false);
  // The trailing blanks of the captions set the initial widths.
  grid.SetFormatString(
      "科目编码      |科目名称                    |外币币种  |辅助核算  |科目ID|级次|类别");
  for (int col = 0; col < kColumns; ++col) {
    if (col <= kAuxiliary) grid.SetColAlignment(col, Alignment::kLeftCenter);
    grid.SetColHidden(col, col > kAuxiliary);
    grid.SetFixedAlignment(col, Alignment::kCenterCenter);
  }
  return true;
} catch (...) {
  return false;
}

bool Kjkm::Refresh() {
  return Trapped("刷新数据时出错：", host::kLoadingError, [this] {
    const auto session = Running();
    for (int tab = 0; tab < kPages; ++tab) {
      const bool loaded = DoRefresh(session, Grid(tab), CategoryOf(tab));
      if (session_ != session) return false;  // the host has let go of the view meanwhile
      if (!loaded) break;                     // it has reported
    }
    ArmWheel(session);
    return true;
  });
}

bool Kjkm::DoRefresh(const std::shared_ptr<Session>& session, FlexGrid& grid,
                     std::string_view category) {
  const viewkit::WaitCursor wait(user_);
  Message.Raise("正在加载数据...");
  const bool loaded = Trapped("DoRefresh", host::kLoadingError, [&] {
    const GridUpdate update(grid);
    grid.SetRows(grid.FixedRows());
    grid.SetCols(kColumns);
    auto accounts = ReadAccounts(*session->pcSystem, category);
    if (session_ != session) return false;  // the grid may show another book by now
    if (accounts) grid.LoadRows(std::move(*accounts));
    FormatOutline(grid, true);
    return true;
  });
  Message.Raise("");
  return loaded;
}

void Kjkm::FormatOutline(FlexGrid& grid, bool reset) {
  const int first = grid.FixedRows();
  const int last = grid.Rows() - 1;
  const GridUpdate update(grid);
  if (reset) {
    grid.ClearOutline();
    grid.SortRows(kCode, viewkit::SortOrder::kStringAscending, first, last);
  }
  constexpr int kDeepest = 64;  // an absurd level shall not make the loop long
  const int deepest = grid.SetOutlineFromColumn(kLevel);
  for (int level = std::min(deepest, kDeepest); level >= 0; --level) grid.Outline(level);
  // A column that the user has hidden stays so.
  if (grid.ColWidth(kCode) > 0) grid.AutoSize(kCode);
}

void Kjkm::OnAccountSaved(bool pNew, std::int32_t plID) noexcept {
  Trapped("mFrmBmAdd_EvHasLoad->", host::kLoadingError, [&] {
    const auto session = Running();
    const std::string id = std::to_string(plID);
    const auto saved = ReadSaved(*session->pcSystem, id);
    if (!saved || session_ != session) return;
    const bool shown = current_tab_ == 0 || saved->category == CategoryOf(current_tab_);
    if (!shown) return;  // another page's
    FlexGrid& grid = CurrentGrid();
    const GridUpdate update(grid);
    const int row = pNew ? grid.AddItem() : EditedRow(grid, id);
    for (const auto& [col, text] : saved->cells) grid.SetTextMatrix(row, col, text);
    FormatOutline(grid, true);
    LocateCode(grid, saved->code);
  });
}

int Kjkm::EditedRow(FlexGrid& grid, std::string_view id) {
  const int current = grid.Row();
  if (current >= grid.FixedRows() && grid.TextMatrix(current, kId) == id) return current;
  // The host may have refreshed the view, or changed the page, while the dialog was open.
  const int found = grid.FindRow(id, grid.FixedRows(), kId);
  return found >= 0 ? found : grid.AddItem();
}

void Kjkm::LocateCode(FlexGrid& grid, std::string_view code) {
  const int row = grid.FindRow(code, grid.FixedRows(), kCode);
  if (row < 0) return;
  grid.SetRow(row);
  if (!grid.IsInView(row)) grid.SetTopRow(row);
  for (int node = grid.ParentRow(row); node >= 0; node = grid.ParentRow(node)) {
    grid.SetCollapsed(node, false);
  }
  grid.ShowRow(row);
}

void Kjkm::OnTabActivated(const std::string& key) noexcept {
  Trapped("Kjkm-->vxVSTab_TabActivated::", host::kLoadingError, [&] {
    const bool ours = key.size() == 4 && key.starts_with("key") && key[3] >= '1' && key[3] <= '7';
    if (!ours) return;
    current_tab_ = key[3] - '1';
    CurrentGrid().SetVisible(true);
    for (int page = 0; page < kPages; ++page) Grid(page).SetVisible(page == current_tab_);
    if (session_ && session_->mcMouseEvent.Connected()) ArmWheel(session_);
  });
}

}  // namespace tavrix::maintenance
