#include "viewkit/win32/tool_tip.h"

#include <commctrl.h>

#include "host/utf.h"
#include "viewkit/win32/visual_styles.h"
#include "viewkit/win32/window.h"

namespace tavrix::viewkit::win32 {
namespace {

constexpr LPARAM kWidestTip = 600;  // pixels; longer texts take several lines

TTTOOLINFOW ToolOf(HWND owner, const RECT& area, std::wstring& text) {
  TTTOOLINFOW tool{};
  tool.cbSize = TTTOOLINFOW_V2_SIZE;  // the size that every version of the controls knows
  tool.hwnd = owner;
  tool.uId = 1;
  tool.rect = area;
  tool.lpszText = text.data();
  return tool;
}

LRESULT Tell(HWND tip, UINT message, TTTOOLINFOW& tool) {
  return SendMessageW(tip, message, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace

void ToolTip::Open() {
  const VisualStyles styles;
  window_ = OwnedWindow(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                        WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, owner_,
                                        nullptr, ThisModule(), nullptr));
  SendMessageW(window_.Get(), TTM_SETMAXTIPWIDTH, 0, kWidestTip);
}

void ToolTip::Set(const std::string& text, const RECT& area) {
  if (text == text_ && EqualRect(&area, &area_)) return;
  if (text.empty() && window_.Get() == nullptr) return;
  if (window_.Get() == nullptr) Open();
  std::wstring wide = host::Wide(text);
  auto tool = ToolOf(owner_, area, wide);
  if (!text_.empty()) Tell(window_.Get(), TTM_DELTOOLW, tool);
  text_ = text;
  area_ = area;
  if (!text_.empty()) Tell(window_.Get(), TTM_ADDTOOLW, tool);
}

void ToolTip::Relay(UINT message, WPARAM wparam, LPARAM lparam) {
  const bool mouse = message >= WM_MOUSEFIRST && message <= WM_MOUSELAST;
  if (!mouse || window_.Get() == nullptr || text_.empty()) return;
  MSG relayed{};
  relayed.hwnd = owner_;
  relayed.message = message;
  relayed.wParam = wparam;
  relayed.lParam = lparam;
  SendMessageW(window_.Get(), TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
}

}  // namespace tavrix::viewkit::win32
