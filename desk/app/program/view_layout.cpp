#include "app/program/view_layout.h"

#include <algorithm>
#include <string>
#include <utility>

#include "app/controls/controls.h"
#include "host/utf.h"
#include "viewkit/layout/m_mode.h"
#include "viewkit/win32/windows_user.h"
#include "views/column_layout.h"
#include "views/layout_dialog.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;
namespace viewkit = tavrix::viewkit;
using views::LayoutChoice;
using views::LayoutDialog;

/// The name under which the view keeps its status.
constexpr char kStatusName[] = "Kjkm";

/// `choice` with the widths of `wanted`, column by column.
LayoutChoice WithWidths(LayoutChoice choice, const LayoutChoice& wanted) {
  for (views::ColumnChoice& column : choice.columns) {
    const auto found = std::ranges::find(wanted.columns, column.col, &views::ColumnChoice::col);
    if (found == wanted.columns.end()) continue;
    column.shown = found->shown;
    column.width = found->width;
  }
  return choice;
}

void WriteWidths(const std::string& path, IFlexGrid& grid, const LayoutChoice& wanted,
                 host::SystemObject& system) {
  const auto columns = CopyColumns(grid);
  const LayoutChoice before = views::ReadLayout(path, *columns, system);
  views::WriteLayout(path, *columns, before, WithWidths(before, wanted), system);
}

}  // namespace

void AskViewLayout(KjkmView& view, host::SystemObject& system, HWND frame) {
  const std::string path = viewkit::GetSelfFilePath(kStatusName, system);
  // The file holds what the mouse has changed before the dialog adds to it.
  view.SaveLayout();
  const int page = view.CurrentPage();
  viewkit::win32::WindowsUser user({.owner = [frame] { return frame; }});
  LayoutDialog dialog({.subject = host::Narrow(view.PageCaption(page)),
                       .scope = views::LayoutScope::kWidths,
                       .for_others = "同样用于其他各页(&A)"},
                      views::ReadLayout(path, *CopyColumns(view.Grid(page)), system), user);
  user.ShowModal(dialog);
  if (dialog.Result() != LayoutDialog::Outcome::kAccepted) return;
  for (int each = 0; each < KjkmView::kPages; ++each) {
    if (each != page && !dialog.ForOthers()) continue;
    WriteWidths(path, view.Grid(each), dialog.Choice(), system);
  }
  view.RestoreLayout();
}

void AskPickerLayout(AccountPicker& picker, host::SystemObject& system, HWND frame) {
  const std::string path = viewkit::GetSelfFilePath(AccountPicker::StatusName(), system);
  picker.SaveLayout();
  viewkit::win32::WindowsUser user({.owner = [frame] { return frame; }});
  const auto columns = CopyColumns(picker.Grid());
  const LayoutChoice before = views::ReadLayout(path, *columns, system);
  LayoutDialog dialog({.subject = "科目选择"}, before, user);
  user.ShowModal(dialog);
  if (dialog.Result() != LayoutDialog::Outcome::kAccepted) return;
  views::WriteLayout(path, *columns, before, dialog.Choice(), system);
  picker.RestoreLayout();
  picker.Reload();  // totals and an order that are no longer wanted go with the old rows
}

}  // namespace desk::app
