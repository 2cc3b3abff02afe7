#include "viewkit/win32/view_window.h"

#include <utility>

#include "viewkit/win32/peer_host.h"

namespace tavrix::viewkit::win32 {
class ViewWindow::State : public PeerHost {
 public:
  explicit State(ViewWindowOptions options) : options_(std::move(options)) {}

  void Open(const ControlList& controls);
  /// The owner is being destroyed: no callback after this.
  void Close();
  bool Translate(MSG& message);
  bool FocusFirst();
  using PeerHost::FocusLast;
  [[nodiscard]] bool HasFocus() const;
  [[nodiscard]] bool FocusWantsKey(Key key) const;

 protected:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override;
  void OnResized() override;

 private:
  void FocusMoved(bool focused, HWND other);

  ViewWindowOptions options_;
  HWND last_focus_ = nullptr;
  bool focused_ = false;
};

void ViewWindow::State::Open(const ControlList& controls) {
  Context().keep = options_.keep;
  Context().focus_moved = [this](bool focused, HWND other) { FocusMoved(focused, other); };
  Create(ClassNamed(L"TavrixView", CS_DBLCLKS),
         {.style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
          .extended_style = WS_EX_CONTROLPARENT,
          .place = options_.place,
          .parent = options_.parent});
  Prepare(options_.back_color, options_.font);
  SetForeColor(options_.fore_color);
  OnResized();
  OpenPeers(controls);
  ShowWindow(Hwnd(), SW_SHOWNA);
}

void ViewWindow::State::Close() {
  options_.resized = {};
  options_.focus_changed = {};
  options_.focus_moved = {};
  options_.destroyed = {};
  Context().keep = {};
  Destroy();
  ClosePeers();
}

void ViewWindow::State::OnDestroyed() {
  if (options_.destroyed) std::exchange(options_.destroyed, {})();
}

void ViewWindow::State::OnResized() {
  const auto resized = options_.resized;  // the view may end, and the functions with it
  if (!resized) return;
  RECT client{};
  GetClientRect(Hwnd(), &client);
  resized(GetScale().ToTwips(static_cast<int>(client.right)),
          GetScale().ToTwips(static_cast<int>(client.bottom)));
}

void ViewWindow::State::FocusMoved(bool focused, HWND other) {
  if (focused) last_focus_ = GetFocus();
  const bool inside = focused || other == Hwnd() || (other != nullptr && IsChild(Hwnd(), other));
  const auto keep = shared_from_this();
  if (inside != focused_) {
    focused_ = inside;
    const auto focus_changed = options_.focus_changed;
    if (focus_changed) focus_changed(inside);
  }
  const auto focus_moved = options_.focus_moved;
  if (focus_moved && focused == inside) focus_moved();
}

bool ViewWindow::State::HasFocus() const {
  const HWND focus = GetFocus();
  return Alive() && focus != nullptr && (focus == Hwnd() || IsChild(Hwnd(), focus));
}

bool ViewWindow::State::FocusWantsKey(Key key) const {
  const ControlPeer* peer = HasFocus() ? PeerOf(GetFocus()) : nullptr;
  return peer != nullptr && peer->WantsKey(key, {});
}

bool ViewWindow::State::FocusFirst() {
  const auto keep = shared_from_this();
  ControlPeer* last = last_focus_ == nullptr ? nullptr : PeerOf(last_focus_);
  return (last != nullptr && last->TakeFocus()) || FocusPreferred() || FocusFrom(0, false);
}

bool ViewWindow::State::Translate(MSG& message) {
  const auto keep = shared_from_this();
  ControlPeer* peer = Alive() ? PeerOf(message.hwnd) : nullptr;
  if (peer == nullptr) return false;
  const auto keep_peer = peer->shared_from_this();
  const bool key_down = message.message == WM_KEYDOWN;
  const bool text = message.message == WM_CHAR;
  if (!key_down && !text) return false;
  const auto key = static_cast<Key>(message.wParam);
  const Modifiers modifiers = ModifiersNow();
  if (key_down && key == Key::kTab && !modifiers.control) return MoveFocus(modifiers.shift);
  if (key_down && UseViewKey(key, modifiers)) return true;
  if (!peer->Alive()) return true;
  if (key_down && !peer->WantsKey(key, modifiers)) return false;
  TranslateMessage(&message);
  DispatchMessageW(&message);
  return true;
}

LRESULT ViewWindow::State::OnMessage(UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_SETFOCUS) {
    FocusFirst();
    return 0;
  }
  return PeerHost::OnMessage(message, wparam, lparam);
}

ViewWindow::ViewWindow(const ControlList& controls, ViewWindowOptions options)
    : state_(std::make_shared<State>(std::move(options))) {
  try {
    state_->Open(controls);
  } catch (...) {
    state_->Close();  // the controls must not know the peers that are there already
    throw;
  }
}

ViewWindow::~ViewWindow() {
  state_->Close();
}

HWND ViewWindow::Handle() const {
  return state_->Hwnd();
}

void ViewWindow::SetPlace(const RECT& place) {
  if (!state_->Alive()) return;
  SetWindowPos(Handle(), nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void ViewWindow::SetShown(bool shown) {
  if (state_->Alive()) ShowWindow(Handle(), shown ? SW_SHOWNA : SW_HIDE);
}

void ViewWindow::SetBackColor(Color color) {
  state_->SetBackColor(color);
}

void ViewWindow::SetForeColor(Color color) {
  state_->SetForeColor(color);
}

void ViewWindow::SetFont(const FontSpec& font) {
  state_->SetFont(font);
}

int ViewWindow::Dpi() const {
  return state_->GetScale().dpi;
}

int ViewWindow::ToTwips(int pixels) const {
  return state_->GetScale().ToTwips(pixels);
}

int ViewWindow::ToPixels(int twips) const {
  return state_->GetScale().ToPixels(twips);
}

bool ViewWindow::TranslateAccelerator(MSG& message) {
  return state_->Translate(message);
}

bool ViewWindow::FocusFirst(bool backward) {
  return backward ? state_->FocusLast() : state_->FocusFirst();
}

bool ViewWindow::HasFocus() const {
  return state_->HasFocus();
}

bool ViewWindow::FocusWantsKey(Key key) const {
  return state_->FocusWantsKey(key);
}

void ViewWindow::Draw(HDC dc, const RECT& area) const {
  state_->Draw(dc, area);
}

}  // namespace tavrix::viewkit::win32
