#pragma once

#include <windows.h>

#include "viewkit/controls/dialog_model.h"
#include "viewkit/win32/peer_host.h"

namespace tavrix::viewkit::win32 {

/// The window of a dialog while it is open.
class DialogWindow : public PeerHost {
 public:
  explicit DialogWindow(DialogModel& dialog);
  ~DialogWindow() override;

  /// Creates the window, hidden, in the middle of `owner` (may be null).
  void Open(HWND owner);
  /// Shows it and handles the thread's messages until the dialog has been closed. A quit message
  /// ends the dialog and is left for the outer message loop.
  void Run();
  [[nodiscard]] Accessible* Inside() override { return &accessible_; }

 protected:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void OnDestroyed() override;
  void OnResized() override {}

 private:
  void SetCaption();
  void SetIdentifiers();
  void SizeAndCenter(HWND owner);
  bool Translate(MSG& message);
  bool TranslateKey(Key key, Modifiers modifiers);
  bool MoveOption(bool backward);
  void RestoreFocus();

  DialogModel& dialog_;
  AccessibleWindow accessible_{AccessibleRole::kDialog};
  int caption_listener_ = 0;
};

}  // namespace tavrix::viewkit::win32
