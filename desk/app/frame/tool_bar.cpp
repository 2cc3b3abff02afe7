#include "app/frame/tool_bar.h"

#include <commctrl.h>

#include <vector>

#include "viewkit/win32/window.h"

namespace desk::app {
namespace {

namespace win32 = tavrix::viewkit::win32;

HWND MakeBar(HWND parent) {
  constexpr DWORD kStyle = WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | CCS_NODIVIDER |
                           CCS_NORESIZE | CCS_NOPARENTALIGN;
  return CreateWindowExW(0, TOOLBARCLASSNAMEW, L"", kStyle, 0, 0, 0, 0, parent, nullptr,
                         win32::ThisModule(), nullptr);
}

TBBUTTON Separator() {
  TBBUTTON button{};
  button.fsStyle = BTNS_SEP;
  return button;
}

TBBUTTON ButtonFor(const CommandInfo& info) {
  TBBUTTON button{};
  button.iBitmap = static_cast<int>(info.icon);
  button.idCommand = IdOf(info.command);
  button.fsState = TBSTATE_ENABLED;
  button.fsStyle = BTNS_BUTTON;
  button.iString = reinterpret_cast<INT_PTR>(info.bar_text);
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
  for (const CommandInfo& info : Commands()) {
    if (*info.bar_text == L'\0') continue;
    if (info.new_section) buttons.push_back(Separator());
    buttons.push_back(ButtonFor(info));
  }
  SendMessageW(Handle(), TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));
  Size();
}

// One size for all buttons, wide enough for the longest caption.
void ToolBar::Size() {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  const int width = style_->fonts.Pixels(L"新增同级", false) + design(14);
  const int height = style_->icon_pixels + style_->fonts.LinePixels() + design(12);
  SendMessageW(Handle(), TB_SETBUTTONWIDTH, 0, MAKELPARAM(width, width));
  SendMessageW(Handle(), TB_SETBUTTONSIZE, 0, MAKELPARAM(width, height));
  SendMessageW(Handle(), TB_AUTOSIZE, 0, 0);
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
  SendMessageW(Handle(), TB_HIDEBUTTON, IdOf(command), MAKELPARAM(!shown, 0));
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
  for (const CommandInfo& info : Commands()) {
    if (IdOf(info.command) != header.idFrom) continue;
    tip = info.tip;
    if (info.key.code != 0) tip.append(L" (").append(info.key.name).append(L")");
    query.lpszText = tip.data();
  }
  return false;
}

LRESULT ToolBar::Paint(const NMHDR& header) const {
  const auto& draw = reinterpret_cast<const NMTBCUSTOMDRAW&>(header).nmcd;
  if (draw.dwDrawStage != CDDS_PREPAINT) return CDRF_DODEFAULT;
  RECT area{};
  GetClientRect(Handle(), &area);
  FillBox(draw.hdc, area, FaceColor());
  return CDRF_DODEFAULT;
}

}  // namespace desk::app
