#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "viewkit/win32/control_peer.h"

namespace tavrix::viewkit::win32 {

/// A window that holds the windows of controls: the view's, or a dialog.
class PeerHost : public Window {
 public:
  void SetBackColor(Color color);
  void SetForeColor(Color color);
  void SetFont(const FontSpec& font);
  [[nodiscard]] const Scale& GetScale() const { return context_->scale; }
  [[nodiscard]] std::shared_ptr<void> Held() const override { return context_->Held(); }
  /// Draws the window with its controls; `area` is the target in `dc`.
  void Draw(HDC dc, const RECT& area) const;

 protected:
  /// Readies colour, resolution and font; the window must exist.
  void Prepare(Color back_color, const FontSpec& font);
  /// Takes over the resolution of the window's monitor.
  void ApplyScale();
  /// Creates one peer for each control, in the order of the list.
  void OpenPeers(const ControlList& controls);
  void ClosePeers() { peers_.clear(); }

  [[nodiscard]] ViewContext& Context() { return *context_; }
  /// The peer whose window, or a window inside it, this is; null for another's.
  [[nodiscard]] ControlPeer* PeerOf(HWND window) const;
  /// The one that comes after it, or before it; null at the end.
  [[nodiscard]] ControlPeer* PeerBeside(const ControlPeer& peer, bool backward) const;
  /// Focus to the first control from `position` on (or backward) that takes it.
  bool FocusFrom(std::ptrdiff_t position, bool backward);
  /// Focus to the first control that prefers it and takes it.
  bool FocusPreferred();
  /// Focus to the control before or after the focused one; false at the end.
  bool MoveFocus(bool backward);
  /// Lets each control look at a key pressed anywhere in the view. The focus stays with the control
  /// that used it, or goes to the first one after it that takes it.
  bool UseViewKey(Key key, Modifiers modifiers);
  bool FocusLast() { return FocusFrom(static_cast<std::ptrdiff_t>(peers_.size()) - 1, true); }

  /// The client area has another size or another resolution.
  virtual void OnResized() = 0;
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;

 private:
  /// Goes through the peers that have a window; who hears of it may end the view, and with it all.
  template <class Action>
  void ForEachAlive(Action&& action);
  void RedrawAll();
  void Erase(HDC dc) const;
  void PassOn(UINT message, WPARAM wparam, LPARAM lparam);
  std::optional<LRESULT> Reflect(UINT message, WPARAM wparam, LPARAM lparam);
  std::optional<LRESULT> Paint(UINT message, WPARAM wparam);

  std::shared_ptr<ViewContext> context_ = std::make_shared<ViewContext>();
  FontSpec font_;
  std::vector<std::shared_ptr<ControlPeer>> peers_;
};

}  // namespace tavrix::viewkit::win32
