#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "app/frame/pane.h"
#include "app/frame/style.h"

namespace desk::app {

/// A window with a line of what is being done, a bar and a button to cancel, which has the focus.
class ProgressWindow : public Pane {
 public:
  /// In the middle of `owner`; of the screen without one.
  [[nodiscard]] static std::shared_ptr<ProgressWindow> Show(HWND owner, const std::wstring& title);
  /// `thousandths` of the whole are done; less than 0 when that is not known.
  void SetState(const std::wstring& step, const std::wstring& how_far, int thousandths);
  /// Handles what came for this window, and nothing else but painting.
  void Pump();
  /// The user has clicked the button, pressed Escape or closed the window.
  [[nodiscard]] bool Cancelled() const { return cancelled_; }

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  void Paint(HDC dc, const RECT& area) override;
  void Arrange() override;
  void MakeChildren();
  void Cancel();
  [[nodiscard]] RECT Line(int number) const;

  SharedStyle style_;
  HWND bar_ = nullptr;  // children: they go with the window
  HWND button_ = nullptr;
  std::wstring step_;
  std::wstring how_far_;
  int thousandths_ = 0;
  bool cancelled_ = false;
};

}  // namespace desk::app
