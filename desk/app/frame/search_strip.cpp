#include "app/frame/search_strip.h"

#include <commctrl.h>
#include <windowsx.h>

#include <algorithm>

namespace desk::app {
namespace {

constexpr int kBox = 10;
constexpr int kSecond = 11;

}  // namespace

std::wstring WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

std::shared_ptr<SearchStrip> SearchStrip::Make(HWND parent, SharedStyle style,
                                               SearchStripPlan plan) {
  auto strip = std::make_shared<SearchStrip>();
  strip->style_ = std::move(style);
  strip->plan_ = std::move(plan);
  strip->Create(win32::ClassNamed(L"DeskSearchStrip", CS_HREDRAW),
                {.text = strip->plan_.label,
                 .style = WS_CHILD | WS_CLIPCHILDREN,
                 .extended_style = WS_EX_CONTROLPARENT,
                 .parent = parent});
  strip->box_ = strip->AddChild(WC_EDITW, L"", WS_BORDER | ES_AUTOHSCROLL, kBox);
  strip->apply_ = strip->AddChild(WC_BUTTONW, strip->plan_.apply, BS_DEFPUSHBUTTON, IDOK);
  strip->second_ = strip->AddChild(WC_BUTTONW, strip->plan_.second, BS_PUSHBUTTON, kSecond);
  SendMessageW(strip->box_, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(strip->plan_.hint));
  strip->SetStyle(strip->style_);
  return strip;
}

HWND SearchStrip::AddChild(const wchar_t* class_name, const wchar_t* text, DWORD style, int id) {
  return CreateWindowExW(0, class_name, text, WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 0, 0, 0,
                         0, Hwnd(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                         win32::ThisModule(), nullptr);
}

void SearchStrip::SetStyle(SharedStyle style) {
  style_ = std::move(style);
  for (const HWND child : {box_, apply_, second_}) {
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(style_->Font()), TRUE);
  }
  Arrange();
}

void SearchStrip::SetShown(bool shown) {
  shown_ = shown;
  SetAnswer({});
  ShowWindow(Hwnd(), shown ? SW_SHOWNA : SW_HIDE);
}

void SearchStrip::FocusBox() {
  SetFocus(box_);
  SendMessageW(box_, EM_SETSEL, 0, -1);
}

std::wstring SearchStrip::Text() const {
  return WindowText(box_);
}

void SearchStrip::SetText(const std::wstring& text) {
  SetWindowTextW(box_, text.c_str());
}

void SearchStrip::SetAnswer(std::wstring answer, bool refused) {
  refused_ = refused;
  answer_ = std::move(answer);
  InvalidateRect(Hwnd(), nullptr, TRUE);
}

void SearchStrip::Arrange() {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  RECT area{};
  GetClientRect(Hwnd(), &area);
  const int height = style_->fonts.LinePixels() + design(8);
  const int top = (area.bottom - height) / 2;
  int left = design(34) + style_->fonts.Pixels(plan_.label, false) + design(8);
  // The buttons, the answer and the cross stand beside it.
  const int box_width =
      std::clamp(static_cast<int>(area.right) - left - design(320), design(80), design(320));
  MoveWindow(box_, left, top, box_width, height, TRUE);
  left += box_width + design(8);
  for (const HWND button : {apply_, second_}) {
    const int width = style_->fonts.Pixels(WindowText(button), false) + design(28);
    MoveWindow(button, left, top, width, height, TRUE);
    left += width + design(6);
  }
  answer_left_ = left + design(8);
  // The box has no margin of its own above its text.
  SendMessageW(box_, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN,
               MAKELPARAM(design(4), design(4)));
}

RECT SearchStrip::CloseButton() const {
  const RECT area = Client();
  return CrossArea(area, area.bottom, *style_);
}

void SearchStrip::Paint(HDC dc, const RECT& area) {
  const auto design = [this](int pixels) { return style_->scale.Design(pixels); };
  FillPane(dc, area, *style_);
  const int icon = style_->small_icon_pixels;
  const int top = (area.bottom - icon) / 2;
  PaintIcon(dc, plan_.icon, design(10), top, icon);
  const win32::Selected font(dc, style_->Font());
  DrawLine(dc, plan_.label, {design(34), 0, area.right, area.bottom}, TextColor());
  const RECT close = CloseButton();
  DrawLine(dc, answer_.c_str(), {answer_left_, 0, close.left, area.bottom},
           refused_ ? RefusedColor() : TextColor());
  PaintCross(dc, close, *style_);
}

void SearchStrip::OnCommand(int id) {
  if (id == IDOK) plan_.on_apply(Text());
  if (id == kSecond) plan_.on_second(Text());
  if (id == IDCANCEL) plan_.on_close();
}

LRESULT SearchStrip::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_LBUTTONDOWN: {
      const RECT close = CloseButton();
      if (PtInRect(&close, {GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)})) plan_.on_close();
      return 0;
    }
    case WM_COMMAND:
      if (HIWORD(wparam) == BN_CLICKED) OnCommand(LOWORD(wparam));
      return 0;
    case WM_SETFOCUS:
      SetFocus(box_);
      return 0;
    default:
      return Pane::OnMessage(message, wparam, lparam);
  }
}

}  // namespace desk::app
