#include "viewkit/win32/peer_host.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "viewkit/win32/colors.h"

namespace tavrix::viewkit::win32 {

void PeerHost::Prepare(Color back_color, const FontSpec& font) {
  context_->window = Hwnd();
  font_ = font;
  SetBackColor(back_color);
  ApplyScale();
}

template <class Action>
void PeerHost::ForEachAlive(Action&& action) {
  const auto keep = shared_from_this();
  // By position: an action may end in more peers or none. NOLINTNEXTLINE(modernize-loop-convert)
  for (std::size_t position = 0; position < peers_.size(); ++position) {
    const auto peer = peers_[position];
    if (peer->Alive()) action(*peer);
  }
}

void PeerHost::OpenPeers(const ControlList& controls) {
  for (std::size_t position = 0; position < controls.Count(); ++position) {
    peers_.push_back(MakePeer(*context_, controls.At(position)));
    peers_.back()->Open();
  }
  ForEachAlive([](ControlPeer& peer) { peer.OnAllOpen(); });
}

void PeerHost::ApplyScale() {
  context_->scale.dpi = static_cast<int>(GetDpiForWindow(Hwnd()));
  SetFont(font_);
}

void PeerHost::SetFont(const FontSpec& font) {
  font_ = font;
  // Peers let go of the old fonts before these end.
  const auto old = std::exchange(context_->fonts, std::make_unique<FontSet>(font, context_->scale));
  ForEachAlive([](ControlPeer& peer) { peer.OnFontChanged(); });
}

void PeerHost::SetBackColor(Color color) {
  context_->back_color = color;
  context_->back_brush.reset(CreateSolidBrush(ToColorRef(color, color::kButtonFace)));
  RedrawAll();
}

void PeerHost::SetForeColor(Color color) {
  context_->fore_color = color;
  RedrawAll();
}

void PeerHost::RedrawAll() {
  if (Alive()) RedrawWindow(Hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

ControlPeer* PeerHost::PeerOf(HWND window) const {
  const auto found = std::find_if(peers_.begin(), peers_.end(), [window](const auto& peer) {
    return peer->Alive() && (peer->Hwnd() == window || IsChild(peer->Hwnd(), window));
  });
  return found == peers_.end() ? nullptr : found->get();
}

bool PeerHost::FocusFrom(std::ptrdiff_t position, bool backward) {
  const auto keep = shared_from_this();
  // Who hears of the focus may end the view, and with it all peers: they are counted anew.
  for (; position >= 0 && position < std::ssize(peers_); position += backward ? -1 : 1) {
    const auto peer = peers_.begin()[position];
    if (!peer->TabStop() || !CanTakeFocus(peer->Hwnd())) continue;
    // Who hears of it may put the focus elsewhere at once, as a box does that refuses its text:
    // there it belongs, and the controls after this one are not asked.
    static_cast<void>(peer->TakeFocus());
    return true;
  }
  return false;
}

bool PeerHost::FocusPreferred() {
  const auto keep = shared_from_this();
  for (std::ptrdiff_t position = 0; position < std::ssize(peers_); ++position) {
    const auto peer = peers_.begin()[position];
    if (peer->Model().PrefersFocus() && peer->TakeFocus()) return true;
  }
  return false;
}

bool PeerHost::MoveFocus(bool backward) {
  const ControlPeer* current = PeerOf(GetFocus());
  const auto found = std::find_if(peers_.begin(), peers_.end(),
                                  [current](const auto& peer) { return peer.get() == current; });
  if (found == peers_.end()) return false;
  return FocusFrom(found - peers_.begin() + (backward ? -1 : 1), backward);
}

ControlPeer* PeerHost::PeerBeside(const ControlPeer& peer, bool backward) const {
  const auto found = std::ranges::find(peers_, &peer, [](const auto& each) { return each.get(); });
  if (found == peers_.end()) return nullptr;
  const std::ptrdiff_t position = found - peers_.begin() + (backward ? -1 : 1);
  const bool inside = position >= 0 && position < std::ssize(peers_);
  return inside ? peers_.begin()[position].get() : nullptr;
}

bool PeerHost::UseViewKey(Key key, Modifiers modifiers) {
  const auto keep = shared_from_this();
  for (std::ptrdiff_t position = 0; position < std::ssize(peers_); ++position) {
    const auto peer = peers_.begin()[position];
    const bool focused = GetFocus() == peer->Hwnd();
    if (!peer->Alive() || !peer->UseViewKey(key, modifiers)) continue;
    if (!focused) FocusFrom(position + 1, false);
    return true;
  }
  return false;
}

void PeerHost::Erase(HDC dc) const {
  RECT client{};
  GetClientRect(Hwnd(), &client);
  FillRect(dc, &client, context_->back_brush.get());
}

void PeerHost::Draw(HDC dc, const RECT& area) const {
  const SavedDc saved(dc);
  IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
  OffsetViewportOrgEx(dc, area.left, area.top, nullptr);
  Erase(dc);
  for (const auto& peer : peers_) {
    if (!peer->Alive() || !peer->Model().Visible()) continue;
    RECT place{};
    GetWindowRect(peer->Hwnd(), &place);
    MapWindowPoints(nullptr, Hwnd(), reinterpret_cast<POINT*>(&place), 2);
    const SavedDc child(dc);
    OffsetViewportOrgEx(dc, place.left, place.top, nullptr);
    IntersectClipRect(dc, 0, 0, place.right - place.left, place.bottom - place.top);
    SendMessageW(peer->Hwnd(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc),
                 PRF_CLIENT | PRF_ERASEBKGND | PRF_CHILDREN);
  }
}

void PeerHost::PassOn(UINT message, WPARAM wparam, LPARAM lparam) {
  ForEachAlive([&](ControlPeer& peer) { SendMessageW(peer.Hwnd(), message, wparam, lparam); });
}

std::optional<LRESULT> PeerHost::Reflect(UINT message, WPARAM wparam, LPARAM lparam) {
  const HWND sender = message == WM_NOTIFY ? reinterpret_cast<NMHDR*>(lparam)->hwndFrom
                                           : reinterpret_cast<HWND>(lparam);
  ControlPeer* peer = sender == nullptr ? nullptr : PeerOf(sender);
  if (peer == nullptr) return {};
  const auto keep = peer->shared_from_this();
  return peer->OnNotify(message, wparam, lparam);
}

std::optional<LRESULT> PeerHost::Paint(UINT message, WPARAM wparam) {
  const auto dc = reinterpret_cast<HDC>(wparam);
  switch (message) {
    case WM_ERASEBKGND:
    case WM_PRINTCLIENT:
      Erase(dc);
      return 1;
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
      SetBkColor(dc, context_->Ground());
      SetTextColor(dc, context_->Ink());
      return reinterpret_cast<LRESULT>(context_->back_brush.get());
    default:
      return {};
  }
}

LRESULT PeerHost::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (!context_->fonts) return Window::OnMessage(message, wparam, lparam);  // not prepared yet
  if (const auto answer = Paint(message, wparam)) return *answer;
  switch (message) {
    case WM_SIZE:
      OnResized();
      return 0;
    case WM_DPICHANGED_AFTERPARENT:
      ApplyScale();
      OnResized();
      return 0;
    case WM_SYSCOLORCHANGE:
      SetBackColor(context_->back_color);
      PassOn(message, wparam, lparam);
      return 0;
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
      PassOn(message, wparam, lparam);
      return 0;
    case WM_NEXTDLGCTL:
      // A label's mnemonic gives the window that follows the label; see "WM_NEXTDLGCTL".
      if (LOWORD(lparam) != FALSE) {
        ::SetFocus(reinterpret_cast<HWND>(wparam));
      } else {
        MoveFocus(wparam != FALSE);
      }
      return 0;
    case WM_COMMAND:
    case WM_NOTIFY:
      if (const auto answer = Reflect(message, wparam, lparam)) return *answer;
      break;
    default:
      break;
  }
  return Window::OnMessage(message, wparam, lparam);
}

}  // namespace tavrix::viewkit::win32
