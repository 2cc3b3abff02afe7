// Keys and scroll bars of a grid's window: translated here, decided on by the model.

#include <algorithm>
#include <utility>

#include "host/utf.h"
#include "viewkit/indexing.h"
#include "viewkit/win32/clipboard.h"
#include "viewkit/win32/grid_peer.h"

namespace tavrix::viewkit::win32 {
namespace {

bool IsSurrogate(wchar_t unit, wchar_t first) {
  return (unit & 0xFC00) == first;
}

/// The keys of the outline that the main keyboard has as characters only.
Key OutlineKey(wchar_t unit) {
  if (unit == L'+') return Key::kAdd;
  if (unit == L'-') return Key::kSubtract;
  return unit == L'*' ? Key::kMultiply : Key{};
}

}  // namespace

bool GridPeer::WantsKey(Key key, Modifiers modifiers) const {
  if (modifiers.alt) return false;
  if (modifiers.control && key == Key::kC) return true;
  if (modifiers.control && key == Key::kA) return Model().CanSelectSeveral();
  switch (key) {
    case Key::kLeft:
    case Key::kUp:
    case Key::kRight:
    case Key::kDown:
    case Key::kPageUp:
    case Key::kPageDown:
    case Key::kHome:
    case Key::kEnd:
    case Key::kEnter:
      return true;
    case Key::kSpace:
    case Key::kAdd:
    case Key::kSubtract:
    case Key::kMultiply:
      return !modifiers.control;
    default:
      return false;
  }
}

LRESULT GridPeer::OnInput(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_GETDLGCODE: {
      const auto* asked = reinterpret_cast<const MSG*>(lparam);
      const bool enter = asked != nullptr && asked->wParam == VK_RETURN;
      return DLGC_WANTARROWS | DLGC_WANTCHARS | (enter ? DLGC_WANTMESSAGE : 0);
    }
    case WM_KEYDOWN:
      OnKeyDown(static_cast<Key>(wparam), ModifiersOf(lparam));
      return 0;
    case WM_CHAR:
      OnChar(static_cast<wchar_t>(wparam));
      return 0;
    case WM_VSCROLL:
      OnVerticalScroll(LOWORD(wparam));
      return 0;
    case WM_HSCROLL:
      OnHorizontalScroll(LOWORD(wparam));
      return 0;
    case WM_MOUSEWHEEL:
      // Comes here only when the host's wheel source has not taken it from the window.
      OnWheel(GET_WHEEL_DELTA_WPARAM(wparam));
      return 0;
    case WM_MOUSEHWHEEL:
      OnSideWheel(GET_WHEEL_DELTA_WPARAM(wparam));
      return 0;
    default:
      return OnMouse(message, wparam, lparam);
  }
}

void GridPeer::OnKeyDown(Key key, Modifiers modifiers) {
  swallow_char_ = false;
  Model().KeyDown.Raise(key, modifiers);
  if (!Alive()) return;
  if (modifiers.control && !modifiers.alt && key == Key::kC) CopyText(Hwnd(), Model().ClipText());
  // A key that has been used must not arrive a second time, as a character.
  swallow_char_ = Model().HandleKey(key, modifiers);
}

void GridPeer::OnChar(wchar_t unit) {
  if (std::exchange(swallow_char_, false) || unit < L' ' || unit == 0x7F) return;
  if (IsSurrogate(unit, 0xD800)) {
    high_surrogate_ = unit;
    return;
  }
  if (const Key key = OutlineKey(unit); key != Key{} && Model().HandleKey(key)) return;
  if (!Alive()) return;
  std::wstring character;
  if (IsSurrogate(unit, 0xDC00)) character += high_surrogate_;
  character += unit;
  Model().HandleTypeAhead(host::Narrow(character), static_cast<std::int64_t>(GetTickCount64()));
}

int GridPeer::TrackedPosition(int bar) const {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_TRACKPOS;
  GetScrollInfo(Hwnd(), bar, &info);
  return info.nTrackPos;
}

void GridPeer::ScrollTo(int position) {
  const int rows = Model().ShownRows();
  if (rows > 0) Model().SetTopRow(Model().RowAtShownPosition(std::clamp(position, 0, rows - 1)));
}

void GridPeer::ScrollBy(int rows) {
  ScrollTo(TopPosition() + rows);
}

void GridPeer::OnVerticalScroll(int request) {
  switch (request) {
    case SB_LINEUP:
      return ScrollBy(-1);
    case SB_LINEDOWN:
      return ScrollBy(1);
    case SB_PAGEUP:
      return ScrollBy(-RowsOnLastPage());
    case SB_PAGEDOWN:
      return ScrollBy(RowsOnLastPage());
    case SB_TOP:
      return ScrollTo(0);
    case SB_BOTTOM:
      return ScrollTo(Model().ShownRows() - 1);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return ScrollTo(TrackedPosition(SB_VERT));
    default:
      return;
  }
}

void GridPeer::OnHorizontalScroll(int request) {
  const std::vector<int> columns = ScrolledColumns();
  if (columns.empty()) return;
  const auto left = std::lower_bound(columns.begin(), columns.end(), Model().LeftCol());
  auto position = static_cast<int>(left - columns.begin());
  if (request == SB_LINEUP || request == SB_PAGEUP) --position;
  if (request == SB_LINEDOWN || request == SB_PAGEDOWN) ++position;
  if (request == SB_THUMBTRACK || request == SB_THUMBPOSITION) position = TrackedPosition(SB_HORZ);
  const auto count = CountOf(columns);
  const int last = count - ColumnsOnLastPage(columns);
  Model().SetLeftCol(ItemAt(columns, std::clamp(position, 0, last)));
}

void GridPeer::OnWheel(int delta) {
  UINT lines = 3;
  SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
  wheel_rest_ += delta * std::min(static_cast<int>(std::min(lines, 100U)), RowsOnLastPage());
  const int rows = wheel_rest_ / WHEEL_DELTA;
  wheel_rest_ -= rows * WHEEL_DELTA;
  if (rows != 0) ScrollBy(-rows);
}

/// A notch is a column; to the right it is positive.
void GridPeer::OnSideWheel(int delta) {
  side_wheel_rest_ += delta;
  for (; side_wheel_rest_ >= WHEEL_DELTA; side_wheel_rest_ -= WHEEL_DELTA) {
    OnHorizontalScroll(SB_LINEDOWN);
  }
  for (; side_wheel_rest_ <= -WHEEL_DELTA; side_wheel_rest_ += WHEEL_DELTA) {
    OnHorizontalScroll(SB_LINEUP);
  }
}

}  // namespace tavrix::viewkit::win32
