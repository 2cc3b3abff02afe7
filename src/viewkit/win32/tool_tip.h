#pragma once

#include <windows.h>

#include <string>

#include "viewkit/win32/handles.h"

namespace tavrix::viewkit::win32 {

/// The tool tip of one window. Its native window is made when a text is first shown.
class ToolTip {
 public:
  explicit ToolTip(HWND owner) : owner_(owner) {}

  /// The text for `area` of the owner's client area; empty: none. A tip of another text is taken
  /// away; the new one comes when the pointer rests.
  void Set(const std::string& text, const RECT& area);
  /// To be told of the owner's messages; those of the mouse matter.
  void Relay(UINT message, WPARAM wparam, LPARAM lparam);

 private:
  void Open();

  HWND owner_;
  OwnedWindow window_;
  std::string text_;
  RECT area_{};
};

}  // namespace tavrix::viewkit::win32
