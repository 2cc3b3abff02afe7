#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "app/frame/pane.h"
#include "app/frame/report_pane.h"
#include "app/frame/style.h"

namespace desk::app {

/// A report shown at the foot of an open dialog, above it, without taking the focus: while a dialog
/// is open nobody looks at the frame behind it. It goes with the dialog, on a click, or in time.
class Notice : public Pane {
 public:
  [[nodiscard]] static std::shared_ptr<Notice> Show(HWND dialog, const Report& report);
  /// Shows another report in its place.
  void Change(const Report& report);
  [[nodiscard]] HWND Dialog() const { return dialog_; }

 private:
  LRESULT OnMessage(UINT message, WPARAM wparam, LPARAM lparam) override;
  [[nodiscard]] RECT Place() const;
  void MoveToPlace();
  [[nodiscard]] int TextHeight(int width) const;
  void Paint(HDC dc, const RECT& area) override;
  void OnTimer();

  HWND dialog_ = nullptr;
  SharedStyle style_;
  std::wstring text_;
  bool loading_ = false;
  int ticks_ = 0;
};

}  // namespace desk::app
