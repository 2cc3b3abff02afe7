#include "viewkit/win32/drawn_peers.h"

#include <windowsx.h>

#include <algorithm>
#include <numeric>

#include "host/utf.h"
#include "viewkit/indexing.h"
#include "viewkit/win32/accessibility.h"
#include "viewkit/win32/colors.h"
#include "viewkit/win32/line_text.h"

namespace tavrix::viewkit::win32 {
namespace {

// In pixels at 96 dpi.
constexpr int kPadding = 14;
constexpr int kMark = 3;  // the bar that marks the active tab

}  // namespace

void TabPeer::Open() {
  const std::wstring name = host::Wide(Model().AccessibleName());
  Create(ClassNamed(L"TavrixTabs"), {.text = name.c_str(),
                                     .style = StateStyle(),
                                     .place = PlaceOfModel(),
                                     .parent = Context().window});
  tip_.emplace(Hwnd());
  shown_current_ = Model().CurrTab();
}

void TabPeer::OnDestroyed() {
  tip_.reset();
  ControlPeer::OnDestroyed();
}

bool TabPeer::WantsKey(Key key, Modifiers modifiers) const {
  if (modifiers.alt || modifiers.control) return false;
  return key == Key::kLeft || key == Key::kRight || key == Key::kHome || key == Key::kEnd;
}

bool TabPeer::UseViewKey(Key key, Modifiers modifiers) {
  return modifiers.control && Model().Visible() && Model().HandleKey(key, modifiers);
}

void TabPeer::OnFontChanged() {
  ApplyBounds();
  InvalidateRect(Hwnd(), nullptr, FALSE);
}

void TabPeer::OnContent(const Change& change) {
  if (change.kind != Change::Kind::kSelection) {
    InvalidateRect(Hwnd(), nullptr, FALSE);
    return;
  }
  InvalidateTab(shown_current_);
  shown_current_ = Model().CurrTab();
  InvalidateTab(shown_current_);
  RaiseAccessibleEvent(Hwnd(), EVENT_OBJECT_SELECTION, accessible_.Current());
  AnnounceFocus();
}

void TabPeer::AnnounceFocus() const {
  if (Model().Focused()) RaiseAccessibleEvent(Hwnd(), EVENT_OBJECT_FOCUS, accessible_.Current());
}

RECT TabPeer::PlaceOf(AccessibleId id) const {
  return id.item == 0 ? RECT{} : Places().at(static_cast<std::size_t>(id.item - 1));
}

std::vector<RECT> TabPeer::Places() const {
  RECT client{};
  GetClientRect(Hwnd(), &client);
  std::vector<int> widths;
  widths.reserve(SizeOf(Model().Tabs()));
  for (int tab = 0; tab < Model().Tabs(); ++tab) {
    widths.push_back(Context().fonts->Pixels(host::Wide(Model().TabCaption(tab)), false) +
                     2 * Context().scale.Design(kPadding));
  }
  const int wanted = std::accumulate(widths.begin(), widths.end(), 0);
  const int space = static_cast<int>(client.right);
  std::vector<RECT> places;
  LONG left = 0;
  for (const int width : widths) {
    const LONG narrowed = wanted > space ? MulDiv(width, space, wanted) : width;
    places.push_back({left, 0, left + narrowed, client.bottom});
    left += narrowed;
  }
  return places;
}

int TabPeer::TabAt(POINT point) const {
  const std::vector<RECT> places = Places();
  const auto found = std::find_if(places.begin(), places.end(), [point](const RECT& place) {
    return PtInRect(&place, point) != 0;
  });
  return found == places.end() ? -1 : static_cast<int>(found - places.begin());
}

void TabPeer::InvalidateTab(int tab) {
  const std::vector<RECT> places = Places();
  if (tab < 0 || tab >= CountOf(places)) return;
  InvalidateRect(Hwnd(), &ItemAt(places, tab), FALSE);
}

void TabPeer::Paint(HDC dc) const {
  RECT client{};
  GetClientRect(Hwnd(), &client);
  const COLORREF back = ToColorRef(Model().BackColor(), color::kButtonFace);
  Fill(dc, client, back);
  Fill(dc, {0, client.bottom - 1, client.right, client.bottom},
       Blend(GetSysColor(COLOR_BTNSHADOW), back, 60));
  SetBkMode(dc, TRANSPARENT);
  const Selected font(dc, Context().fonts->Get(false));
  const std::vector<RECT> places = Places();
  for (std::size_t tab = 0; tab < places.size(); ++tab) {
    PaintTab(dc, places[tab], static_cast<int>(tab));
  }
}

void TabPeer::PaintTab(HDC dc, const RECT& place, int tab) const {
  const bool current = tab == Model().CurrTab();
  const COLORREF back = ToColorRef(Model().BackColor(), color::kButtonFace);
  const COLORREF edge = Blend(GetSysColor(COLOR_BTNSHADOW), back, 60);
  COLORREF ground = current ? GetSysColor(COLOR_WINDOW) : back;
  if (current) {
    Fill(dc, place, edge);
    const RECT face{place.left + 1, place.top, place.right - 1, place.bottom};
    Fill(dc, face, ground);
    const LONG mark = Context().scale.Design(kMark);
    Fill(dc, {place.left, place.top, place.right, place.top + mark}, GetSysColor(COLOR_HIGHLIGHT));
  } else if (tab == hot_) {
    ground = Blend(GetSysColor(COLOR_WINDOW), back, 50);
    Fill(dc, {place.left, place.top, place.right, place.bottom - 1}, ground);
  }
  const Color fore = current ? color::kWindowText : Context().fore_color;
  SetTextColor(dc,
               Model().Enabled() ? TextOn(ground, ToColorRef(fore)) : GetSysColor(COLOR_GRAYTEXT));
  std::wstring caption = host::Wide(Model().TabCaption(tab));
  DrawLine(dc, caption, place, DT_CENTER | DT_VCENTER);
  if (!current || !Model().Focused()) return;
  RECT focus = place;
  InflateRect(&focus, -Context().scale.Design(4), -Context().scale.Design(5));
  SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
  SetBkColor(dc, GetSysColor(COLOR_WINDOW));
  DrawFocusRect(dc, &focus);
}

void TabPeer::SetHot(int tab) {
  if (tab == hot_) return;
  InvalidateTab(hot_);
  hot_ = tab;
  InvalidateTab(hot_);
}

void TabPeer::OnMouseMove(POINT point) {
  if (hot_ < 0) {
    TRACKMOUSEEVENT leave{sizeof leave, TME_LEAVE, Hwnd(), 0};
    TrackMouseEvent(&leave);
  }
  SetHot(TabAt(point));
  RECT client{};
  GetClientRect(Hwnd(), &client);
  tip_->Set(Model().ToolTipText(), client);
}

LRESULT TabPeer::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  const POINT point{GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)};
  if (message == WM_MOUSEMOVE) OnMouseMove(point);
  if (tip_) tip_->Relay(message, wparam, lparam);
  const auto painted = OnPaintMessage(message, wparam, [this](HDC dc) { Paint(dc); });
  if (painted) return *painted;
  switch (message) {
    case WM_SIZE:
    case WM_SYSCOLORCHANGE:
      InvalidateRect(Hwnd(), nullptr, FALSE);
      return 0;
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_LBUTTONDOWN:
      TakeFocus();
      if (Alive()) Model().SetCurrTab(TabAt(point));
      return 0;
    case WM_MOUSEMOVE:
      return 0;
    case WM_MOUSELEAVE:
      SetHot(-1);
      return 0;
    default:
      break;
  }
  const LRESULT result = ControlPeer::OnMessage(message, wparam, lparam);
  if (!Alive()) return result;
  if (message == WM_KEYDOWN) Model().HandleKey(static_cast<Key>(wparam), ModifiersNow());
  if (message == WM_SETFOCUS || message == WM_KILLFOCUS) InvalidateTab(Model().CurrTab());
  if (message == WM_SETFOCUS) AnnounceFocus();
  return result;
}

}  // namespace tavrix::viewkit::win32
