#pragma once

#include <windows.h>

#include "app/frame/commands.h"
#include "app/frame/icons.h"
#include "app/frame/style.h"
#include "viewkit/win32/handles.h"

namespace desk::app {

/// The tool bar: pictures with their captions below, and a tip with each command's key.
class ToolBar {
 public:
  ToolBar(HWND parent, SharedStyle style);

  [[nodiscard]] HWND Handle() const { return window_.Get(); }
  [[nodiscard]] int Height() const;
  void SetStyle(SharedStyle style);
  void SetEnabled(Command command, bool enabled);
  void SetShown(Command command, bool shown);
  void SetPressed(Command command, bool pressed);
  /// Answers the bar's notifications; true when `result` is the answer.
  [[nodiscard]] bool OnNotify(const NMHDR& header, LRESULT& result) const;

 private:
  void AddButtons();
  void Size();
  [[nodiscard]] LRESULT Paint(const NMHDR& header) const;

  SharedStyle style_;
  ImageList pictures_;  // before the window that shows them
  ImageList grey_pictures_;
  tavrix::viewkit::win32::OwnedWindow window_;
};

}  // namespace desk::app
