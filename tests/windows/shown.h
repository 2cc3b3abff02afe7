#pragma once

#include <gtest/gtest.h>

#include <optional>

#include "viewkit/control.h"
#include "viewkit/win32/view_window.h"
#include "windows/desktop.h"

namespace tavrix::test {

/// A view in a frame, with a keyboard.
template <class View>
class Shown {
 public:
  explicit Shown(View& view) {
    const viewkit::win32::ViewWindowOptions options{
        .parent = frame_.Get(),
        .place = frame_.Client(),
        .resized = [&view](int width, int height) { view.Resize(width, height); }};
    window_.emplace(view.Controls(), options);
    Pump();
  }
  [[nodiscard]] HWND Handle() const { return window_->Handle(); }
  void Close() { window_.reset(); }
  /// A key that goes down in a control, repeats as long as it is held, and comes up.
  void Press(viewkit::Control& control, WORD key, int repeats = 0) {
    ASSERT_TRUE(control.SetFocus()) << control.Name();
    Down(key, false);
    while (repeats-- > 0) Down(key, true);
    Up(key);
  }
  void Down(WORD key, bool repeated) { Deliver(WM_KEYDOWN, key, repeated ? 0x40000001 : 1); }
  void Up(WORD key) { Deliver(WM_KEYUP, key, static_cast<LPARAM>(0xC0000001)); }

 private:
  void Deliver(UINT kind, WORD key, LPARAM state) {
    PostMessageW(GetFocus(), kind, key, state);
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (window_->TranslateAccelerator(message)) continue;
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }

  Frame frame_;
  std::optional<viewkit::win32::ViewWindow> window_;
};

}  // namespace tavrix::test
