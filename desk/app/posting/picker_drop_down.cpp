#include "app/posting/picker_drop_down.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>
#include <array>
#include <utility>

#include "app/frame/popup_menu.h"

namespace desk::app {
namespace {

// Design pixels.
constexpr SIZE kFirstSize{760, 360};
constexpr SIZE kMinSize{320, 240};
constexpr int kEdge = 4;  // the part of the window around the control

RECT WorkArea(const RECT& near_by) {
  MONITORINFO info{};
  info.cbSize = sizeof info;
  GetMonitorInfoW(MonitorFromRect(&near_by, MONITOR_DEFAULTTONEAREST), &info);
  return info.rcWork;
}

/// Where a window of this size drops down from `field`.
POINT PlaceBeside(const RECT& field, SIZE size) {
  const RECT work = WorkArea(field);
  const LONG left = std::max(work.left, std::min(field.left, work.right - size.cx));
  const bool below = field.bottom + size.cy <= work.bottom;
  const bool above = field.top - size.cy >= work.top;
  if (below || !above)
    return {left, std::max(work.top, std::min(field.bottom, work.bottom - size.cy))};
  return {left, field.top - size.cy};
}

}  // namespace

std::shared_ptr<PickerDropDown> PickerDropDown::Make(HWND owner, SharedStyle style,
                                                     IDispatch* system, Calls calls) {
  auto window = std::make_shared<PickerDropDown>();
  window->owner_ = owner;
  window->style_ = std::move(style);
  window->calls_ = std::move(calls);
  const auto design = [&](int pixels) { return window->style_->scale.Design(pixels); };
  PickerDropDown& self = *window;
  self.Create(win32::ClassNamed(L"DeskPickerDropDown", CS_DROPSHADOW),
              {.text = L"选择科目",
               .style = WS_POPUP | WS_BORDER | WS_CLIPCHILDREN,
               .extended_style = WS_EX_TOOLWINDOW,
               .place = {0, 0, design(kFirstSize.cx), design(kFirstSize.cy)},
               .parent = owner});
  self.area_ =
      CreateWindowExW(WS_EX_CONTROLPARENT, WC_STATICW, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
                      0, 0, 0, 0, self.Hwnd(), nullptr, win32::ThisModule(), nullptr);
  self.Arrange();
  // The picker ends with the window at the latest, so plain references do.
  self.picker_ = std::make_unique<AccountPicker>(
      ContainerPlan{.area = self.area_,
                    .frame = self.Hwnd(),
                    .display_name = AccountPicker::kDisplayName,
                    .modeless = [&self](bool modeless) { self.SetModeless(modeless); },
                    .tab_out = [&self](bool) { self.picker_->FocusSearch(); }},
      PickerEvents{.selected = [&self] { self.Close(self.picker_->Picked()); },
                   .cancelled = [&self] { self.Close({}); }});
  self.picker_->Start(system);
  return window;
}

void PickerDropDown::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  picker_->Container().OnAmbientChange();
}

void PickerDropDown::Open(const RECT& field, const std::wstring& sought) {
  RECT now{};
  GetWindowRect(Hwnd(), &now);
  const POINT place = PlaceBeside(field, {now.right - now.left, now.bottom - now.top});
  shown_ = true;
  SetWindowPos(Hwnd(), HWND_TOP, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_SHOWWINDOW);
  picker_->Refresh(sought);
  picker_->FocusSearch();
}

void PickerDropDown::Close(const std::vector<std::wstring>& codes) {
  if (!std::exchange(shown_, false)) return;
  // The owner first: else the system would activate another program's window.
  if (GetActiveWindow() == Hwnd()) SetActiveWindow(owner_);
  ShowWindow(Hwnd(), SW_HIDE);
  calls_.closed(codes);
}

/// A dialog of the picker stands above the drop-down; the owner must not be reached either.
void PickerDropDown::SetModeless(bool modeless) {
  in_dialog_ = !modeless;
  EnableWindow(owner_, modeless);
}

RECT PickerDropDown::ControlArea() const {
  RECT area{};
  GetClientRect(Hwnd(), &area);
  const int edge = style_->scale.Design(kEdge);
  area.right = std::max<LONG>(0, area.right - edge);
  area.bottom = std::max<LONG>(0, area.bottom - edge);
  return area;
}

void PickerDropDown::Arrange() {
  if (area_ == nullptr) return;
  const RECT place = ControlArea();
  MoveWindow(area_, 0, 0, place.right, place.bottom, TRUE);
  if (picker_) picker_->Container().SetArea(place);
}

void PickerDropDown::Paint(HDC dc, const RECT& area) {
  FillBox(dc, area, FaceColor());
}

LRESULT PickerDropDown::PartAt(POINT screen) const {
  POINT point = screen;
  ScreenToClient(Hwnd(), &point);
  const RECT control = ControlArea();
  const int corner = style_->scale.Design(3 * kEdge);
  const bool right = point.x >= control.right;
  const bool below = point.y >= control.bottom;
  if (!right && !below) return HTCLIENT;
  if (point.x >= control.right - corner && point.y >= control.bottom - corner) return HTBOTTOMRIGHT;
  return right ? HTRIGHT : HTBOTTOM;
}

bool PickerDropDown::ClosesBy(const MSG& message) const {
  const bool key = message.message == WM_KEYDOWN;
  const bool with_alt = message.message == WM_SYSKEYDOWN;
  if (key) return message.wParam == VK_ESCAPE || message.wParam == VK_F4;
  return with_alt && (message.wParam == VK_UP || message.wParam == VK_DOWN);
}

bool PickerDropDown::Translate(MSG& message) {
  if (!shown_ || (message.hwnd != Hwnd() && !IsChild(Hwnd(), message.hwnd))) return false;
  const auto keep = shared_from_this();  // a pick may end it
  if (AsksForMenu(message)) return OpenMenu(message), true;
  if (picker_->Container().Translate(message)) return true;
  if (ClosesBy(message)) {
    Cancel();
    return true;
  }
  TranslateMessage(&message);
  DispatchMessageW(&message);
  return true;
}

void PickerDropDown::OnContextMenu(LPARAM place) {
  const auto keep = shared_from_this();  // a pick may end it
  const std::array entries = {MenuEntry{L"选定(&S)\tEnter", picker_->HasRow()},
                              MenuEntry{L"修改(&E)…", picker_->Offers(AccountPicker::kEdit)},
                              MenuEntry{}, MenuEntry{L"刷新(&R)"}, MenuEntry{L"取消(&C)\tEsc"}};
  const auto entry = ChooseEntry(Hwnd(), MenuPlace(area_, place, {}), entries);
  if (!entry || !shown_) return;
  if (*entry == 0) picker_->Press(AccountPicker::kPick);
  if (*entry == 1) picker_->Press(AccountPicker::kEdit);
  if (*entry == 3) picker_->Reload();
  if (*entry == 4) Cancel();
}

LRESULT PickerDropDown::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_NCHITTEST:
      return PartAt({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lparam)->ptMinTrackSize = {style_->scale.Design(kMinSize.cx),
                                                               style_->scale.Design(kMinSize.cy)};
      return 0;
    case WM_ACTIVATE:
      if (picker_) picker_->Container().OnFrameActivate(LOWORD(wparam) != WA_INACTIVE);
      if (LOWORD(wparam) == WA_INACTIVE && !in_dialog_) Cancel();
      // The owner keeps its look of the active window: it is the one that the user works in.
      if (LOWORD(wparam) != WA_INACTIVE) SendMessageW(owner_, WM_NCACTIVATE, TRUE, 0);
      return 0;
    case WM_CONTEXTMENU:
      OnContextMenu(lparam);
      return 0;
    case WM_CLOSE:
      Cancel();
      return 0;
    case WM_SETFOCUS:
      if (picker_) static_cast<void>(picker_->Container().Focus());
      return 0;
    default:
      return Pane::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
