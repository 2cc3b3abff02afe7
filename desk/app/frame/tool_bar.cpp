#include "app/frame/tool_bar.h"

#include <commctrl.h>
#include <uxtheme.h>

#include <algorithm>
#include <deque>
#include <string>
#include <vector>

#include "host/utf.h"
#include "viewkit/win32/window.h"
#include "views/bar_fit.h"

namespace desk::app {
namespace {

using tavrix::host::Wide;

HWND MakeBar(HWND parent) {
  constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_NODIVIDER |
                           CCS_NORESIZE | CCS_NOPARENTALIGN;
  return CreateWindowExW(0, TOOLBARCLASSNAMEW, L"", kStyle, 0, 0, 0, 0, parent, nullptr,
                         win32::ThisModule(), nullptr);
}

// Lines have numbers too, to be shown and hidden by.
constexpr int kFirstLine = 1000;
constexpr int kLineWidth = 8;

TBBUTTON Separator(int id) {
  TBBUTTON button{};
  button.idCommand = id;
  button.fsStyle = BTNS_SEP;
  return button;
}

TBBUTTON MoreButton() {
  TBBUTTON button{};
  button.iBitmap = static_cast<int>(Icon::kMore);
  button.idCommand = IdOf(Command::kMore);
  button.fsState = TBSTATE_ENABLED | TBSTATE_HIDDEN;
  button.fsStyle = BTNS_BUTTON;
  button.iString = reinterpret_cast<INT_PTR>(L"更多");
  return button;
}

/// `caption` must live until the button has been added.
TBBUTTON ButtonFor(const CommandInfo& info, const std::wstring& caption) {
  TBBUTTON button{};
  button.iBitmap = static_cast<int>(info.icon);
  button.idCommand = IdOf(info.command);
  button.fsState = TBSTATE_ENABLED;
  button.fsStyle = BTNS_BUTTON;
  button.iString = reinterpret_cast<INT_PTR>(caption.c_str());
  return button;
}

}  // namespace

ToolBar::ToolBar(HWND parent, SharedStyle style) : window_(MakeBar(parent)) {
  SendMessageW(Handle(), TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
  SetStyle(std::move(style));
  AddButtons();
}

void ToolBar::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  ImageList pictures = MakeImageList(style_->icon_pixels, false);
  ImageList grey = MakeImageList(style_->icon_pixels, true);
  SendMessageW(Handle(), TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(pictures.get()));
  SendMessageW(Handle(), TB_SETDISABLEDIMAGELIST, 0, reinterpret_cast<LPARAM>(grey.get()));
  pictures_ = std::move(pictures);
  grey_pictures_ = std::move(grey);
  SendMessageW(Handle(), WM_SETFONT, reinterpret_cast<WPARAM>(style_->Font()), TRUE);
  Size();
}

void ToolBar::AddButtons() {
  std::vector<TBBUTTON> buttons;
  std::deque<std::wstring> captions;
  for (const CommandInfo& info : Commands()) {
    if (*info.bar_text == '\0') continue;
    const int line = kFirstLine + static_cast<int>(items_.size());
    if (info.new_section) AddItem(Command::kNone, Separator(line), buttons);
    AddItem(info.command, ButtonFor(info, captions.emplace_back(Wide(info.bar_text))), buttons);
  }
  buttons.push_back(MoreButton());
  SendMessageW(Handle(), TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));
  Size();
}

void ToolBar::AddItem(Command command, const TBBUTTON& button, std::vector<TBBUTTON>& buttons) {
  items_.push_back({.command = command, .id = button.idCommand});
  buttons.push_back(button);
}

// One size for all buttons, wide enough for the longest caption.
void ToolBar::Size() {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  button_width_ = style_->fonts.Pixels(L"新增同级", false) + design(12);
  const int height = style_->icon_pixels + style_->fonts.LinePixels() + design(12);
  SendMessageW(Handle(), TB_SETBUTTONWIDTH, 0, MAKELPARAM(button_width_, button_width_));
  SendMessageW(Handle(), TB_SETBUTTONSIZE, 0, MAKELPARAM(button_width_, height));
  SendMessageW(Handle(), TB_AUTOSIZE, 0, 0);
}

int ToolBar::WidthOf(const Item& item) const {
  return item.command == Command::kNone ? kLineWidth : button_width_;
}

void ToolBar::Show(int id, bool shown) {
  SendMessageW(Handle(), TB_HIDEBUTTON, static_cast<WPARAM>(id), MAKELPARAM(!shown, 0));
}

void ToolBar::Fit(int room) {
  room_ = room;
  std::vector<views::BarItem> bar;
  for (const Item& item : items_) {
    bar.push_back({.width = WidthOf(item),
                   .wanted = item.wanted,
                   .separator = item.command == Command::kNone});
  }
  const views::BarFit fit = views::FitBar(bar, room, button_width_);
  for (std::size_t i = 0; i < items_.size(); ++i) {
    if (items_[i].shown != fit.shown[i]) Show(items_[i].id, fit.shown[i]);
    items_[i].shown = fit.shown[i];
  }
  Show(IdOf(Command::kMore), fit.more);
}

std::vector<Command> ToolBar::Others() const {
  std::vector<Command> others;
  for (const Item& item : items_) {
    if (item.wanted && !item.shown && item.command != Command::kNone) {
      others.push_back(item.command);
    }
  }
  return others;
}

POINT ToolBar::MorePlace() const {
  RECT place{};
  SendMessageW(Handle(), TB_GETRECT, IdOf(Command::kMore), reinterpret_cast<LPARAM>(&place));
  POINT corner{place.left, place.bottom};
  ClientToScreen(Handle(), &corner);
  return corner;
}

int ToolBar::Height() const {
  const LRESULT size = SendMessageW(Handle(), TB_GETBUTTONSIZE, 0, 0);
  return HIWORD(size) + style_->scale.Design(2);
}

void ToolBar::SetEnabled(Command command, bool enabled) {
  if ((SendMessageW(Handle(), TB_ISBUTTONENABLED, IdOf(command), 0) != 0) == enabled) return;
  SendMessageW(Handle(), TB_ENABLEBUTTON, IdOf(command), MAKELPARAM(enabled, 0));
}

void ToolBar::SetShown(Command command, bool shown) {
  const auto item = std::ranges::find(items_, command, &Item::command);
  if (item == items_.end() || item->wanted == shown) return;
  item->wanted = shown;
  Fit(room_);
}

void ToolBar::SetPressed(Command command, bool pressed) {
  SendMessageW(Handle(), TB_CHECKBUTTON, IdOf(command), MAKELPARAM(pressed, 0));
}

bool ToolBar::OnNotify(const NMHDR& header, LRESULT& result) const {
  if (header.hwndFrom == Handle() && header.code == NM_CUSTOMDRAW) {
    result = Paint(header);
    return true;
  }
  if (header.code != TTN_GETDISPINFOW) return false;
  // The system passes one structure by its common head; the text may be longer than its own buffer.
  auto& query = const_cast<NMTTDISPINFOW&>(reinterpret_cast<const NMTTDISPINFOW&>(header));
  static std::wstring tip;
  if (const CommandInfo* info = views::FindCommand(static_cast<Command>(header.idFrom))) {
    tip = Wide(TipText(*info));
    query.lpszText = tip.data();
  }
  return false;
}

LRESULT ToolBar::Paint(const NMHDR& header) const {
  // The answer stands in the structure that the system passes by its common head.
  auto& bar = const_cast<NMTBCUSTOMDRAW&>(reinterpret_cast<const NMTBCUSTOMDRAW&>(header));
  if (bar.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) return PaintButton(bar);
  if (bar.nmcd.dwDrawStage != CDDS_PREPAINT) return CDRF_DODEFAULT;
  RECT area{};
  GetClientRect(Handle(), &area);
  FillBox(bar.nmcd.hdc, area, FaceColor());
  return GetWindowTheme(Handle()) == nullptr ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
}

/// Without themes, as in colours of high contrast, the system patterns the ground of a pressed
/// button and doubles a disabled text, and neither can be read. A pressed button gets a frame
/// instead.
LRESULT ToolBar::PaintButton(NMTBCUSTOMDRAW& button) {
  if ((button.nmcd.uItemState & CDIS_CHECKED) != 0) {
    RECT place = button.nmcd.rc;
    FillBox(button.nmcd.hdc, place, GetSysColor(COLOR_HIGHLIGHT));
    InflateRect(&place, -GetSystemMetrics(SM_CXEDGE), -GetSystemMetrics(SM_CYEDGE));
    FillBox(button.nmcd.hdc, place, FaceColor());
  }
  button.clrText = TextColor();
  button.clrBtnHighlight = FaceColor();
  return TBCDRF_NOBACKGROUND | TBCDRF_NOEDGES | TBCDRF_NOETCHEDEFFECT | TBCDRF_USECDCOLORS;
}

}  // namespace desk::app
