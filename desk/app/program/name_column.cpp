#include "app/program/name_column.h"

#include <algorithm>
#include <exception>

#include "app/automation/view_grid.h"
#include "app/com.h"
#include "book/host/settings_file.h"
#include "host/text.h"
#include "viewkit/layout/m_mode.h"
#include "viewkit/win32/scale.h"
#include "views/column_fit.h"

namespace desk::app {
namespace {

constexpr char kStatusName[] = "Kjkm";
constexpr long kNameColumn = 1;

/// The program's own part of the layout file: the width that it has given to the names.
constexpr char kSection[] = "Desk";
constexpr char kFitted[] = "NameWidth";
constexpr char kNameKey[] = "VsCol1";

/// The view's own header, whose blanks make the column as wide as it is without a layout.
constexpr char kNameHeader[] = "科目名称                    ";

/// No grid takes a wider column from its layout file.
constexpr long kWidest = 1'000'000;

long WidthOfNames(IFlexGrid& grid) {
  long width = 0;
  Check(grid.get_ColWidth(kNameColumn, &width));
  return width;
}

/// The window's width without the other columns and the scroll bar, in twips; 0 before it has one.
int RoomForNames(IFlexGrid& grid) {
  const ViewGrid face{ComPtr<IFlexGrid>(&grid)};
  const HWND window = reinterpret_cast<HWND>(face.WindowHandle());
  RECT place{};
  if (window == nullptr || !GetWindowRect(window, &place)) return 0;
  const int dpi = static_cast<int>(GetDpiForWindow(window));
  const int bar = GetSystemMetricsForDpi(SM_CXVSCROLL, static_cast<UINT>(dpi));
  const tavrix::viewkit::win32::Scale scale{dpi};
  int room = scale.ToTwips(static_cast<int>(place.right - place.left) - bar);
  for (int col = 0; col < face.Cols(); ++col) {
    if (col == kNameColumn || face.ColHidden(col)) continue;
    long width = 0;
    Check(grid.get_ColWidth(col, &width));
    room -= static_cast<int>(width);
  }
  return room;
}

void Keep(book::SharedSettingsFile& layout, const std::string& section, const char* key,
          int width) {
  try {
    layout.WriteValue(section, key, std::to_string(width));
  } catch (
      const std::exception&) {  // without a layout that can be written there is no width to keep
  }
}

}  // namespace

void FitNameColumns(KjkmView& view, tavrix::host::SystemObject& system,
                    const tavrix::viewkit::TextMeasure& measure) {
  constexpr int kAllAccounts = 0;
  const ViewGrid all{ComPtr<IFlexGrid>(&view.Grid(kAllAccounts))};
  const int room = RoomForNames(view.Grid(view.CurrentPage()));
  if (room == 0 || all.Rows() <= all.FixedRows()) return;
  const int longest = views::WidthOfContents(all, kNameColumn, measure);
  const int unfitted = views::WidthOfText(kNameHeader, measure);
  // In a small window names have more use than columns that can be scrolled to.
  const int width = std::min(longest, std::max(room, unfitted));
  book::SharedSettingsFile layout;
  layout.SetFileName(tavrix::viewkit::GetSelfFilePath(kStatusName, system));
  const long fitted_before = tavrix::host::LeadingLong(layout.ReadValue(kSection, kFitted, ""));
  for (int page = 0; page < KjkmView::kPages; ++page) {
    const std::string section = "VsColWidth_" + std::to_string(page);
    const long saved = tavrix::host::LeadingLong(layout.ReadValue(section, kNameKey, ""));
    const bool by_hand =
        saved > 0 && saved <= kWidest && saved != fitted_before && saved != unfitted;
    if (by_hand || WidthOfNames(view.Grid(page)) == 0) continue;
    Check(view.Grid(page).put_ColWidth(kNameColumn, width));
    // Also for a program that does not come to its end: both widths stand there, or neither.
    Keep(layout, section, kNameKey, width);
  }
  Keep(layout, kSection, kFitted, width);
}

}  // namespace desk::app
