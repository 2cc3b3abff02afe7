#include "app/frame/report_pane.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <array>

#include "app/frame/popup_menu.h"
#include "host/report.h"
#include "host/utf.h"
#include "viewkit/win32/clipboard.h"

namespace desk::app {
namespace {

namespace host = tavrix::host;

enum Column { kTime, kKind, kBook, kText };

struct ColumnPlan {
  const wchar_t* heading;
  int width;
};
constexpr std::array kColumns = {ColumnPlan{L"时间", 84}, ColumnPlan{L"类别", 84},
                                 ColumnPlan{L"账簿", 150}, ColumnPlan{L"内容", 640}};

std::wstring TimeText() {
  std::array<wchar_t, 32> text{};
  GetTimeFormatEx(LOCALE_NAME_INVARIANT, 0, nullptr, L"HH':'mm':'ss", text.data(),
                  static_cast<int>(text.size()));
  return text.data();
}

void SetCell(HWND list, int row, int column, const std::wstring& text) {
  ListView_SetItemText(list, row, column, const_cast<wchar_t*>(text.c_str()));
}

}  // namespace

std::shared_ptr<ReportPane> ReportPane::Make(HWND parent, SharedStyle style,
                                             std::function<void()> layout_changed) {
  auto pane = std::make_shared<ReportPane>();
  pane->style_ = std::move(style);
  pane->layout_changed_ = std::move(layout_changed);
  pane->Create(win32::ClassNamed(L"DeskReports"),
               {.style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, .parent = parent});
  pane->CreateList();
  return pane;
}

void ReportPane::CreateList() {
  constexpr DWORD kStyle = WS_CHILD | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS |
                           LVS_NOSORTHEADER | LVS_SHAREIMAGELISTS;
  list_ = win32::OwnedWindow(CreateWindowExW(0, WC_LISTVIEWW, L"错误报告", kStyle, 0, 0, 0, 0,
                                             Hwnd(), nullptr, win32::ThisModule(), nullptr));
  ListView_SetExtendedListViewStyle(list_.Get(),
                                    LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP);
  for (int i = 0; i < static_cast<int>(kColumns.size()); ++i) {
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
    column.pszText = const_cast<wchar_t*>(kColumns[static_cast<std::size_t>(i)].heading);
    column.cx = kColumns[static_cast<std::size_t>(i)].width;
    column.iSubItem = i;
    ListView_InsertColumn(list_.Get(), i, &column);
  }
  SetStyle(style_);
}

void ReportPane::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  ImageList pictures = MakeImageList(style_->small_icon_pixels, false);
  ListView_SetImageList(list_.Get(), pictures.get(), LVSIL_SMALL);
  pictures_ = std::move(pictures);
  SendMessageW(list_.Get(), WM_SETFONT, reinterpret_cast<WPARAM>(style_->Font()), TRUE);
  for (int i = 0; i < static_cast<int>(kColumns.size()); ++i) {
    ListView_SetColumnWidth(list_.Get(), i,
                            style_->scale.Design(kColumns[static_cast<std::size_t>(i)].width));
  }
  Arrange();
}

void ReportPane::Add(const Report& report) {
  if (count_ >= kMaxReports) ListView_DeleteItem(list_.Get(), 0);
  const bool loading = report.level >= host::kLoadingError;
  const std::wstring time = TimeText();
  LVITEMW item{};
  item.mask = LVIF_TEXT | LVIF_IMAGE;
  item.iItem = ListView_GetItemCount(list_.Get());
  item.iImage = static_cast<int>(loading ? Icon::kError : Icon::kWarning);
  item.pszText = const_cast<wchar_t*>(time.c_str());
  const int row = ListView_InsertItem(list_.Get(), &item);
  SetCell(list_.Get(), row, kKind, loading ? L"读取错误" : L"操作提示");
  SetCell(list_.Get(), row, kBook, report.book);
  SetCell(list_.Get(), row, kText, report.text);
  ListView_EnsureVisible(list_.Get(), row, FALSE);
  count_ = ListView_GetItemCount(list_.Get());
  InvalidateRect(Hwnd(), nullptr, FALSE);
  SetOpen(true);
}

void ReportPane::Clear() {
  ListView_DeleteAllItems(list_.Get());
  count_ = 0;
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void ReportPane::SetOpen(bool open) {
  if (open_ == open) return;
  open_ = open;
  ShowWindow(list_.Get(), open ? SW_SHOW : SW_HIDE);
  InvalidateRect(Hwnd(), nullptr, FALSE);
  layout_changed_();
}

int ReportPane::WantedHeight(int available) const {
  const int heading = style_->strip_height;
  if (!open_) return heading;
  return std::clamp(style_->scale.Design(design_height_), heading, std::max(available, heading));
}

void ReportPane::SetDesignHeight(int height) {
  constexpr int kMin = 80;
  constexpr int kMax = 2000;
  design_height_ = std::clamp(height, kMin, kMax);
}

void ReportPane::Arrange() {
  const RECT area = Client();
  MoveWindow(list_.Get(), 0, style_->strip_height, area.right,
             std::max(0L, area.bottom - style_->strip_height), TRUE);
  WidenTexts();
}

/// The texts have all that the other columns leave.
void ReportPane::WidenTexts() {
  RECT area{};
  GetClientRect(list_.Get(), &area);
  int room = static_cast<int>(area.right);
  for (int i = kTime; i < kText; ++i) room -= ListView_GetColumnWidth(list_.Get(), i);
  const int least = style_->scale.Design(kColumns[kText].width);
  ListView_SetColumnWidth(list_.Get(), kText, std::max(room, least));
}

RECT ReportPane::ClearButton() const {
  RECT area{};
  GetClientRect(Hwnd(), &area);
  const int width = style_->fonts.Pixels(L"清除", false) + style_->scale.Design(20);
  return {area.right - width, 0, area.right, style_->strip_height};
}

void ReportPane::Paint(HDC dc, const RECT& area) {
  const RECT heading{0, 0, area.right, style_->strip_height};
  back_buffer_.Paint(dc, heading, [&](HDC buffer) { DrawHeading(buffer, heading); });
}

void ReportPane::DrawHeading(HDC dc, const RECT& area) const {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  FillPane(dc, area, *style_);
  const int icon = style_->small_icon_pixels;
  const int top = (area.bottom - icon) / 2;
  PaintIcon(dc, open_ ? Icon::kCollapse : Icon::kExpand, design(8), top, icon);
  const win32::Selected font(dc, style_->BoldFont());
  const std::wstring title =
      count_ == 0 ? L"错误报告" : L"错误报告（" + std::to_wstring(count_) + L"）";
  const RECT title_area{design(30), 0, area.right, area.bottom};
  DrawLine(dc, title.c_str(), title_area, TextColor());
  if (count_ == 0) return;
  const win32::Selected plain(dc, style_->Font());
  DrawLine(dc, L"清除", ClearButton(), LinkColor(), DT_CENTER);
}

void ReportPane::OnClick(POINT at) {
  if (StartDrag(at)) return;
  const RECT clear = ClearButton();
  if (count_ > 0 && PtInRect(&clear, at)) return Clear();
  SetOpen(!open_);
}

void ReportPane::OnEdgeDragged(int design_size) {
  SetDesignHeight(design_size);
  layout_changed_();
}

bool ReportPane::OnListNotify(const NMHDR& header) {
  if (header.hwndFrom != list_.Get() || header.code != LVN_KEYDOWN) return false;
  const auto& key = reinterpret_cast<const NMLVKEYDOWN&>(header);
  if (key.wVKey == 'C' && GetKeyState(VK_CONTROL) < 0) CopySelected();
  return true;
}

std::wstring ReportPane::RowText(int row) const {
  std::wstring line;
  std::vector<wchar_t> cell(4096);
  for (int column = 0; column < static_cast<int>(kColumns.size()); ++column) {
    cell[0] = L'\0';
    ListView_GetItemText(list_.Get(), row, column, cell.data(), static_cast<int>(cell.size()));
    line.append(column == 0 ? L"" : L"\t").append(cell.data());
  }
  return line + L"\r\n";
}

void ReportPane::CopySelected() const {
  std::wstring text;
  for (int row = -1;;) {
    row = ListView_GetNextItem(list_.Get(), row, LVNI_SELECTED);
    if (row < 0) break;
    text += RowText(row);
  }
  if (!text.empty()) win32::CopyText(Hwnd(), tavrix::host::Narrow(text));
}

void ReportPane::OnContextMenu(LPARAM place) {
  const bool chosen = ListView_GetSelectedCount(list_.Get()) > 0;
  const std::array entries = {MenuEntry{L"复制(&C)\tCtrl+C", chosen}, MenuEntry{},
                              MenuEntry{L"清除(&L)", count_ > 0}, MenuEntry{L"收起(&H)\tF8"}};
  const auto entry = ChooseEntry(Hwnd(), MenuPlaceInList(list_.Get(), place), entries);
  if (entry == 0U) CopySelected();
  if (entry == 2U) Clear();
  if (entry == 3U) SetOpen(false);
}

LRESULT ReportPane::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_LBUTTONDOWN:
      OnClick({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
      return 0;
    case WM_CONTEXTMENU:
      if (open_) OnContextMenu(lparam);
      return 0;
    case WM_SETFOCUS:
      SetFocus(list_.Get());
      return 0;
    case WM_NOTIFY:
      if (OnListNotify(*reinterpret_cast<const NMHDR*>(lparam))) return 0;
      break;
    default:
      break;
  }
  return Pane::OnMessage(message, wparam, lparam);
}

}  // namespace desk::app
