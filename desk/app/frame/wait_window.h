#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "app/frame/pane.h"
#include "app/frame/style.h"

namespace desk::app {

/// A small window above the others that says what is waited for, with a button to have enough. It
/// takes no focus: keys that are typed meanwhile stay where they belong.
class WaitWindow : public Pane {
 public:
  /// In the middle of `over`.
  [[nodiscard]] static std::shared_ptr<WaitWindow> Show(HWND over);
  void SetText(const std::wstring& text);
  /// Whether the button has been clicked.
  [[nodiscard]] bool Clicked() const { return clicked_; }

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void Paint(HDC dc, const RECT& area) override;
  [[nodiscard]] RECT Button() const;

  SharedStyle style_;
  std::wstring text_;
  bool clicked_ = false;
};

}  // namespace desk::app
